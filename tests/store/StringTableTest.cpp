#include "store/Localization.h"
#include "store/PageFilter.h"
#include "store/StringTable.h"

#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

using Language = StringTable::Language;

TEST(StringTable, OneKeyGivesTheTextOfEachLanguage)
{
    const StringTable& english = StringTable::forLanguage(Language::English);
    const StringTable& french = StringTable::forLanguage(Language::French);
    EXPECT_EQ(english.text("DocumentViewColumnTitle"), "Title");
    EXPECT_EQ(french.text("DocumentViewColumnTitle"), "Titre");
    EXPECT_EQ(english.text("DocumentsListTitleAll").arg(3), "3 documents listed");
    EXPECT_EQ(french.text("DocumentsListTitleAll").arg(3), QStringLiteral("3 documents référencés"));
    EXPECT_EQ(english.text("NoSuchKey"), "NoSuchKey");
    EXPECT_FALSE(french.hasKey("NoSuchKey"));
}

TEST(StringTable, EveryKeyHasItsEnglishAndItsFrenchText)
{
    QFile ts(QStringLiteral(QUILLMERE_SOURCE_DIR "/translations/quillmere_fr.ts"));
    ASSERT_TRUE(ts.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(ts.readAll());
    const QRegularExpression id(QStringLiteral("<message id=\"([A-Za-z0-9]+)\">"));
    int keys = 0;
    for (auto it = id.globalMatch(text); it.hasNext(); ++keys) {
        const QByteArray key = it.next().captured(1).toUtf8();
        EXPECT_TRUE(StringTable::forLanguage(Language::English).hasKey(key.constData())) << key.constData();
        EXPECT_TRUE(StringTable::forLanguage(Language::French).hasKey(key.constData())) << key.constData();
    }
    EXPECT_GT(keys, 150);
}

TEST(StringTable, TheLocaleNamesTheLanguage)
{
    struct Case {
        const char* all;
        const char* messages;
        const char* lang;
        Language expected;
    } cases[] = {
        {nullptr, nullptr, "fr_FR.UTF-8", Language::French}, {nullptr, nullptr, "fr", Language::French},
        {nullptr, nullptr, "en_GB.UTF-8", Language::English}, {nullptr, nullptr, nullptr, Language::English},
        {"C", nullptr, "fr_FR.UTF-8", Language::English},    {nullptr, "fr_CA.UTF-8", "en_US", Language::French},
        {"", "", "fr_BE", Language::French},                  {nullptr, nullptr, "french", Language::English},
    };
    for (const auto& c : cases) {
        auto set = [](const char* name, const char* value) {
            if (value)
                setenv(name, value, 1);
            else
                unsetenv(name);
        };
        set("LC_ALL", c.all);
        set("LC_MESSAGES", c.messages);
        set("LANG", c.lang);
        EXPECT_EQ(StringTable::languageFromEnvironment(), c.expected) << (c.lang ? c.lang : "-");
    }
    unsetenv("LC_ALL");
    unsetenv("LC_MESSAGES");
    setenv("LANG", "C.UTF-8", 1);
}

TEST(StringTable, TheDesktopListsKeepTheirFrenchTitles)
{
    EXPECT_EQ(PageFilter::title(PageFilter::NoIndex, 2), QStringLiteral("2 documents en noindex référencés"));
    EXPECT_EQ(PageFilter::sourcesTitle(5), QStringLiteral("5 liens vers le document sélectionné"));
}

} // namespace
