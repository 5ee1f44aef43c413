#pragma once

#include <QHash>
#include <QList>
#include <QString>

#include <memory>

struct sqlite3;
class Project;

// The tables a web-rules crawl keeps beside the four crawl tables, and the writes the crawl
// makes to them. Pages and page-to-page links stay in Page and Links (rebuilt from these
// tables at the end of every run); every link found, with its tag, attribute, anchor and
// fragment, and every target, page, resource, external URL or other scheme, with the verdict
// of its fetch or check, live here.
//   WebSettings(key, value)   "rules" = "web"
//   WebTarget                 one row per URL linked to (its identity: no fragment)
//   WebLink                   one row per link found on a page of the site
class WebStore {
public:
    // Target kinds.
    static constexpr const char* kPage = "page";          // a page of the site: crawled
    static constexpr const char* kResource = "resource";  // anything else of the site: checked
    static constexpr const char* kExternal = "external";  // another host, port or scheme of http(s): checked
    static constexpr const char* kOther = "other";        // mailto:, tel:, ftp:...: not checked
    // Verdicts.
    static constexpr const char* kPending = "pending";
    static constexpr const char* kOk = "ok";
    static constexpr const char* kBroken = "broken";
    static constexpr const char* kBlocked = "blocked";      // the site refuses robots (401, 403, 429, 999, a challenge)
    static constexpr const char* kRobots = "robots";        // robots.txt forbids it
    static constexpr const char* kExcluded = "excluded";    // --include / --exclude
    static constexpr const char* kSkipped = "skipped";      // --no-external
    static constexpr const char* kNotChecked = "not-checked";  // a scheme that is not fetched
    static constexpr const char* kRedirect = "redirect";    // a page that redirects; judged by its target

    static bool hasTables(sqlite3* db);
    static bool createTables(sqlite3* db);
    // A restart from nothing: targets, links and headers go; the settings stay.
    static void clear(sqlite3* db);

    struct Target {
        qint64 idt = 0;
        QString kind;
        QString verdict;
    };
    // Every target by URL, for a crawl that goes on from an earlier run.
    static QHash<QString, Target> loadTargets(const std::shared_ptr<Project>& project);
    // 0 when the row could not be written.
    static qint64 insertTarget(const std::shared_ptr<Project>& project, const QString& url, const QString& kind,
                               const QString& scheme, const QString& verdict, const QString& rule = QString());
    static bool setKind(const std::shared_ptr<Project>& project, qint64 idt, const QString& kind);
    static bool setVerdict(const std::shared_ptr<Project>& project, qint64 idt, const QString& verdict,
                           const QString& rule = QString());
    // What a fetch or a check answered. redirectTo: the target a page redirects to, 0: none.
    static bool recordAnswer(const std::shared_ptr<Project>& project, qint64 idt, int status, const QString& failure,
                             const QString& verdict, const QString& contentType, const QString& finalUrl,
                             qint64 redirectTo = 0);
    // The ids and <a name>s of a page, which its links' fragments must name.
    static bool setFragmentIds(const std::shared_ptr<Project>& project, qint64 idt, const QStringList& ids);
    static bool insertLink(const std::shared_ptr<Project>& project, qint64 sourcePage, qint64 target,
                           const QString& tag, const QString& attribute, const QString& anchor,
                           const QString& fragment, bool navigational);

    struct PendingCheck {
        qint64 idt = 0;
        QString url;
        QString kind;
    };
    // How many resources and external URLs are still to check.
    static qint64 countPendingChecks(const std::shared_ptr<Project>& project);
    // Resources and external URLs still to check, after `afterIdt`, in the order found.
    static QList<PendingCheck> pendingChecks(const std::shared_ptr<Project>& project, qint64 afterIdt, int limit);

    struct QueueEntry {
        qint64 idt = 0;
        QString url;
        QString path;
        QString name;
        qint32 depth = 0;
    };
    // Waiting download queue entries after `afterIdt`, in queue order.
    static QList<QueueEntry> waitingEntries(const std::shared_ptr<Project>& project, qint64 afterIdt, int limit);
    static bool markEntryDone(const std::shared_ptr<Project>& project, qint64 entryIdt);

    // The end of every run: a redirecting page takes the verdict of where its chain ends,
    // then Links is rebuilt from the links between pages of the site, and each page's links
    // received and sent are counted from it. Answers whether it all went in.
    static bool settle(const std::shared_ptr<Project>& project);

    static QString setting(sqlite3* db, const QString& key);
    static bool setSetting(sqlite3* db, const QString& key, const QString& value);
};
