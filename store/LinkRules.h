#pragma once

#include <QString>

#include <memory>
#include <optional>

struct sqlite3;
class Project;

// The two ways a project reads links: `classic`, the crawler's original rules (the default,
// unchanged), or `web`, links read as a browser reads them. Chosen when the project is made
// and kept in its crawl database: a web project's database holds the web tables (a table of
// settings among them); a classic one holds none of them.
enum class LinkRules { Classic, Web };

class LinkRulesStore {
public:
    // "classic", "web".
    static QString nameOf(LinkRules rules);
    // The rules a name gives (case-insensitive); nothing for an unknown name.
    static std::optional<LinkRules> fromName(const QString& name);

    // The rules of an open crawl database: web when it holds the web settings table.
    static LinkRules of(sqlite3* db);
    static LinkRules of(const std::shared_ptr<Project>& project);

    // Makes a crawl database a web project's: creates the web tables and writes the choice.
    // Answers whether it could.
    static bool makeWeb(sqlite3* db);
};
