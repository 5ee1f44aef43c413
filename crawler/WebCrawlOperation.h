#pragma once

#include "crawler/DownloaderOperationLibXML.h"
#include "crawler/WebCrawlOptions.h"
#include "html/RobotsPolicy.h"
#include "store/WebStore.h"

#include <QElapsedTimer>
#include <QHash>
#include <QSet>
#include <QUrl>

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

class HostGate;
class WebWorkPool;
struct WebLinkFound;
struct WebPageScan;
struct WebResponse;

// The crawl of a project with web rules: links read as a browser reads them (every kind,
// resolved by RFC 3986), the site's HTML pages crawled, every other link checked (internal
// resources and external URLs, HEAD then GET, a few at a time per host), robots.txt read by
// RFC 9309 for each host, #fragments kept for their report. Requests run on a pool of
// threads, pages are read there too; everything is written on the crawler's thread, in
// groups of entries as the classic crawl commits them. The delegate hears the same page
// calls as from the classic crawl (pages started, found, ended; queue counts; commits), so
// both front ends show a web crawl as they show any other.
class WebCrawlOperation : public DownloaderOperationLibXML {
public:
    WebCrawlOperation(std::shared_ptr<Project> project, std::shared_ptr<DownloaderDelegate> delegate,
                      bool continueMode);
    ~WebCrawlOperation() override;

    void setOptions(const WebCrawlOptions& options) { options_ = options; }
    const WebCrawlOptions& options() const { return options_; }

    // The robots.txt product token, and the user agent's name.
    static QString productToken() { return QStringLiteral("Quillmere"); }

    void main() override;

private:
    struct Robots {
        bool known = false;
        bool asked = false;
        RobotsPolicy policy = RobotsPolicy::allowAll();
        QList<WebStore::PendingCheck> parked;  // checks waiting for this host's rules
        // The host could not be reached at all (refused, no such host): what is linked there
        // is broken for the same reason, without asking again.
        QString unreachable;
    };

    void startRun();
    void walk();
    void finishRun();
    bool dispatchPages();
    bool dispatchChecks();
    void dispatchCheck(const WebStore::PendingCheck& check);
    void askRobots(const QString& origin);
    Robots& robotsOf(const QUrl& url);
    // Runs on the crawler's thread what the pool's threads handed back; waits up to `wait`
    // for the first. Answers how many it ran.
    int runCompletions(int waitMs);
    void post(std::function<void()> completion);

    void pageAnswered(const WebStore::QueueEntry& entry, const WebResponse& response,
                      const std::shared_ptr<WebPageScan>& scan);
    void checkAnswered(const WebStore::PendingCheck& check, const WebResponse& response);
    void robotsAnswered(const QString& origin, const WebResponse& response);
    void recordLink(qint64 sourcePage, const WebLinkFound& link, qint32 depth);
    void recordUnreachable(const WebStore::PendingCheck& check, const QString& failure);
    // The target of a URL, made when new; 0 when it could not be written.
    qint64 targetFor(const QUrl& url, bool navigational, qint32 depth, QString* kind);
    void enqueuePage(const QString& identity, qint32 depth);
    QString verdictOf(const WebResponse& response, bool external) const;

    void beginGroupIfNeeded();
    void entryEnded(bool counted);
    void commitWebGroup();

    WebCrawlOptions options_;
    QUrl siteOrigin_;
    // The start URL's identity, asked of every new target and every page: worked out once.
    QString startIdentity_;
    QHash<QString, WebStore::Target> targets_;
    QHash<QString, Robots> robots_;
    QSet<QString> queuedURLs_;
    std::unique_ptr<HostGate> siteGate_;
    std::unique_ptr<HostGate> externalGate_;
    std::unique_ptr<WebWorkPool> pool_;
    qint64 entryCursor_ = 0;
    qint64 checkCursor_ = 0;
    QList<WebStore::QueueEntry> nextEntries_;
    QList<WebStore::PendingCheck> nextChecks_;
    bool newEntries_ = true;
    bool newChecks_ = true;
    bool depthStop_ = false;
    // Where each target of this run was first found: a resource that answers HTML becomes a
    // page at that depth.
    QHash<qint64, qint32> targetDepth_;
    qint64 waitingCount_ = 0;
    qint64 doneCount_ = 0;
    int pagesInFlight_ = 0;
    int checksInFlight_ = 0;
    int robotsInFlight_ = 0;

    std::mutex completionsMutex_;
    std::condition_variable completionsReady_;
    std::deque<std::function<void()>> completions_;

    std::unique_ptr<CrawlTransaction> webGroup_;
    int entriesInWebGroup_ = 0;
    QElapsedTimer webGroupAge_;
};
