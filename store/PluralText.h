#pragma once

#include <QString>

// A count in a sentence, with the form its number takes: in French 0 and 1 take the
// singular ("1 lien", "0 lien"), 2 and more the plural ("2 liens").
namespace PluralText {
bool isSingular(quint64 count);
// The text of oneKey or manyKey, with %1 the count.
QString count(const char* oneKey, const char* manyKey, quint64 count);
} // namespace PluralText
