#pragma once

#include "store/StringTable.h"

#include <QString>

// The command line's texts, looked up by key in the string table of its language: English,
// or French under a French locale. What the crawl writes to the database does not depend on
// it.
namespace CliText {
void setLanguage(StringTable::Language language);
StringTable::Language language();
QString tr(const char* key);
} // namespace CliText
