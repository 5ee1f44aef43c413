#pragma once

#include <QString>

class StringTable;

// What a project's name and start URL must be, for every front end alike. A refusal comes as
// a text from the string table given, so each front end tells it in its own language.
class ProjectRules {
public:
    // A name that makes file names in the data directory: not empty, no path separator, no
    // control character (they would end up in file names and in every listing), not "." or "..".
    static bool isUsableName(const QString& name, const StringTable& text, QString* why);

    // The start URL in the one form the crawl compares its links with: scheme and host in
    // lower case, an internationalised host name in ASCII (punycode), no fragment. Anything
    // else is kept as typed. A null string when the text has no "scheme://host" form to work on.
    static QString normalForm(const QString& url);

    // An http or https URL with a host, as the crawl can fetch it.
    static bool isCrawlableURL(const QString& url, const StringTable& text, QString* why);

    // As the command line reads a typed URL: blanks around it dropped, then one trailing "/".
    static QString urlFromInput(const QString& typed);
};
