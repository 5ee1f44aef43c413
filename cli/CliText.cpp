#include "cli/CliText.h"

namespace CliText {

namespace {
StringTable::Language g_language = StringTable::Language::English;
}

void setLanguage(StringTable::Language language)
{
    g_language = language;
}

StringTable::Language language()
{
    return g_language;
}

QString tr(const char* key)
{
    return StringTable::forLanguage(g_language).text(key);
}

} // namespace CliText
