#include "store/StringTable.h"

#include <QTranslator>

#include <cstdlib>

StringTable::StringTable(Language language) : language_(language), translator_(std::make_unique<QTranslator>())
{
    const QString file = language == Language::French ? QStringLiteral(":/i18n/quillmere_fr.qm")
                                                       : QStringLiteral(":/i18n/quillmere_en.qm");
    if (!translator_->load(file))
        translator_.reset();
}

StringTable::~StringTable() = default;

StringTable::Language StringTable::languageFromEnvironment()
{
    // The order in which the C library picks the messages' locale.
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(name);
        if (!value || !*value)
            continue;
        const QString locale = QString::fromLocal8Bit(value);
        return locale == QLatin1String("fr") || locale.startsWith(QLatin1String("fr_"))
                       || locale.startsWith(QLatin1String("fr."))
                   ? Language::French
                   : Language::English;
    }
    return Language::English;
}

const StringTable& StringTable::forLanguage(Language language)
{
    static const StringTable english(Language::English);
    static const StringTable french(Language::French);
    return language == Language::French ? french : english;
}

bool StringTable::hasKey(const char* key) const
{
    return translator_ && !translator_->translate(nullptr, key).isEmpty();
}

QString StringTable::text(const char* key) const
{
    if (translator_) {
        const QString found = translator_->translate(nullptr, key);
        if (!found.isEmpty())
            return found;
    }
    if (language_ != Language::English)
        return forLanguage(Language::English).text(key);
    return QString::fromUtf8(key);
}
