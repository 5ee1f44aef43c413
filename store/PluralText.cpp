#include "store/PluralText.h"

#include "store/Localization.h"

namespace PluralText {

bool isSingular(quint64 count)
{
    return count < 2;
}

QString count(const char* oneKey, const char* manyKey, quint64 count)
{
    return Localization::localizedString(isSingular(count) ? oneKey : manyKey).arg(count);
}

} // namespace PluralText
