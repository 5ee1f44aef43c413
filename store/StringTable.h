#pragma once

#include <QString>

#include <memory>

class QTranslator;

// One language's keyed string table, read without installing it in the application: the
// desktop program and the crawler's stored titles keep the French table that Localization
// installs, while the command line speaks the language of its locale from the same keys.
class StringTable {
public:
    enum class Language { English, French };

    // French when the first of LC_ALL, LC_MESSAGES and LANG that is set names French
    // ("fr", "fr_FR.UTF-8"...); English otherwise.
    static Language languageFromEnvironment();
    static const StringTable& forLanguage(Language language);

    Language language() const { return language_; }
    // The key's text in this language; the English text when this table lacks it; the key
    // itself when neither has it.
    QString text(const char* key) const;
    bool hasKey(const char* key) const;

    ~StringTable();
    StringTable(const StringTable&) = delete;
    StringTable& operator=(const StringTable&) = delete;

private:
    explicit StringTable(Language language);

    Language language_;
    std::unique_ptr<QTranslator> translator_;
};
