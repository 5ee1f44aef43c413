#pragma once

#include "crawler/DelegateRelay.h"
#include "crawler/DownloaderDelegate.h"
#include "crawler/Operation.h"
#include "crawler/StartPageStop.h"
#include "crawler/PageReading.h"
#include "store/QuillmereDownloaderQueue.h"

#include <QElapsedTimer>
#include <QList>
#include <QSet>
#include <QStringList>
#include <QUrl>

#include <atomic>
#include <chrono>
#include <memory>

class CrawlTransaction;
class FetchAhead;
class HTMLLink;
struct PageFacts;
class HTMLParser;
class Project;
class RequestPacer;
class RobotEntry;
class SynchronizedWebCall;

// The crawler: walks one project's download queue in batches of 100, analyses each page in
// queue order, and reports everything to its delegate, waiting for every answer: on the main
// thread, or on its own thread for a delegate that shows no window. While one page is
// analysed the next ones of the batch are fetched (setParallelFetches), and the records of
// many pages are committed together (at most kEntriesPerCommit entries or
// kMillisecondsPerCommit).
class DownloaderOperationLibXML : public Operation {
public:
    DownloaderOperationLibXML(std::shared_ptr<Project> project, std::shared_ptr<DownloaderDelegate> delegate,
                              bool continueMode = false);
    ~DownloaderOperationLibXML() override;

    static std::shared_ptr<DownloaderOperationLibXML> initWithProject(std::shared_ptr<Project> project,
                                                                      std::shared_ptr<DownloaderDelegate> delegate);
    static std::shared_ptr<DownloaderOperationLibXML>
    initForContinueWithProject(std::shared_ptr<Project> project, std::shared_ptr<DownloaderDelegate> delegate);

    // The stop flag: the only value written from another thread while the crawl runs. It
    // starts set, so that a stop asked for before the run begins is kept.
    bool canContinue() const { return canContinue_.load(); }
    void setCanContinue(bool value) { canContinue_.store(value); }
    // Where a signal handler may clear the flag (lock-free atomic).
    std::atomic<bool>* canContinueFlag() { return &canContinue_; }

    bool isPossibleFirstURLError() const { return isPossibleFirstURLError_; }
    bool isContinueMode() const { return isContinueMode_; }
    qint32 htmlFileCounter() const { return htmlFileCounter_; }
    std::shared_ptr<Project> project() const { return project_; }
    std::shared_ptr<DownloaderDelegate> downloaderDelegate() const { return downloaderDelegate_; }
    SynchronizedWebCall* syncWebCall() const { return syncWebCall_.get(); }
    QStringList arrayOfFilteredContentType() const { return arrayOfFilteredContentType_; }
    const QList<std::shared_ptr<RobotEntry>>* arrayOfDisallowedURLs() const
    {
        return hasDisallowedURLs_ ? &arrayOfDisallowedURLs_ : nullptr;
    }

    // At most this many requests in flight; 1 fetches each page when its turn comes.
    // Eight requests in flight against the one host a crawl asks: what well-known crawlers
    // allow themselves against one site, and enough to hide 20 ms of latency a request.
    static constexpr int kDefaultParallelFetches = 8;
    void setParallelFetches(int count) { parallelFetches_ = count < 1 ? 1 : count; }
    int parallelFetches() const { return parallelFetches_; }
    // The cap on requests per second; 0 or less: none. Set before the crawl starts.
    void setMaxRequestsPerSecond(double rate);
    double maxRequestsPerSecond() const;

    // A commit groups the work of at most this many queue entries, each entry whole, and
    // is made after the first entry that ends this long or more after the group began.
    static constexpr int kEntriesPerCommit = 100;
    static constexpr qint64 kMillisecondsPerCommit = 250;
    // A page whose answer is not in after this long has what was done before it committed
    // first.
    static constexpr std::chrono::milliseconds kWaitBeforeCommit{50};

    static QString firstURLErrorMessage();
    // Set when the crawl database refused a page's writes (disk full, file gone); the walk
    // then stops.
    QString databaseError() const { return databaseError_; }
    // Why the start page was left unanalysed in this run, when its tags said so. Read once
    // the run is over.
    StartPageStop startPageStop() const { return startPageStop_; }

    void main() override;
    void downloadFromWaitingQueue();
    void downloadAndPerformURL(const QString& url, const QString& path, const QString& documentName, qint32 depth);

    // Relays: same calls as the delegate's, performed through relay_ while this waits.
    void downloaderDidStart();
    void downloaderDidEnd();
    void downloaderEndWithError(const QString& error);
    void downloadPageDidStartWithURL(const QString& url, qint32 depth);
    void downloadPageDidEndWithURL(const QString& url, qint32 depth);
    QuillmerePagePtr foundPageWithPath(const QString& path, const QString& name, const QString& title,
                                       const QString& url, qint32 depth);
    void updatePage(const QuillmerePagePtr& page, const QString& title);
    bool foundLinkWithPath(const QString& path, const QString& name, const QString& anchor, const QString& url,
                           qint32 depth, const QuillmerePagePtr& page);
    bool foundLinkWithPage(const QuillmerePagePtr& pageTo, const QString& anchor, const QuillmerePagePtr& page);
    QuillmerePagePtr getPageFromURL(const QString& url);
    void initLinkProgressWithMaxValue(qint32 linkCountMax);
    void setLinkProgressWithValue(qint32 value, qint32 maxValue);
    void setWaitingQueueCount(qint32 waitingCount, qint32 doneCount);
    void downloadPageWasAbandonedWithURL(const QString& url, qint32 depth);
    void crawlDidCommit();

    // The halves that call the delegate, run where relay_ says: same arguments, same answer.
    void mainThreadDownloaderDidStart();
    void mainThreadDownloaderDidEnd();
    void mainThreadDownloaderEndWithErrorAndDictionnary(const QString& error);
    void mainThreadDownloadPageDidStartWithDictionnary(const QString& url, qint32 depth);
    void mainThreadDownloadPageDidEndWithDictionnary(const QString& url, qint32 depth);
    QuillmerePagePtr mainThreadFoundPageWithMutableDictionnary(const QString& path, const QString& name,
                                                               const QString& title, const QString& url, qint32 depth);
    void mainThreadUpdatePageWithDictionnary(const QuillmerePagePtr& page, const QString& title);
    bool mainThreadFoundLinkNameWithMutableDictionnary(const QString& path, const QString& name, const QString& anchor,
                                                       const QString& url, qint32 depth, const QuillmerePagePtr& page);
    bool mainThreadFoundLinkPageWithMutableDictionnary(const QuillmerePagePtr& pageTo, const QString& anchor,
                                                       const QuillmerePagePtr& page);
    QuillmerePagePtr mainThreadGetPageFromURLWithMutableDictionnary(const QString& url);
    void mainThreadInitLinkProgressWithMutableDictionnary(qint32 linkCountMax);
    void mainThreadSetLinkProgressWithMutableDictionnary(qint32 value, qint32 maxValue);
    void mainThreadSetWaitingAndDoneQueueCountWithMutableDictionnary(qint32 waitingCount, qint32 doneCount);
    void mainThreadDownloadPageWasAbandonedWithDictionnary(const QString& url, qint32 depth);
    void mainThreadCrawlDidCommit();

    // A redirect target already queued this many times is not queued again: the site
    // redirects in a loop.
    static constexpr qint64 kMaximumRedirectEntries = 20;

protected:
    // For a crawl that walks the queue its own way (the web rules).
    void setDatabaseError(const QString& error) { databaseError_ = error; }

private:
    void loadRobotsTxt();
    void reportQueueCounts(bool recount);
    void walkBatch(const QList<QuillmereDownloaderQueuePtr>& batch);
    void commitGroup();
    void enqueue(const QString& url, const QString& path, const QString& documentName, qint32 depth);
    void analysePage(const QString& url, const QString& path, const QString& documentName, qint32 depth,
                     QuillmerePagePtr currentPage);
    // The steps of analysePage, in their order.
    bool fetchAndRecordAnswer(const QString& url, qint32 depth, QByteArray* data);
    void recordPageWithoutHTML(const QString& url, const QString& path, const QString& documentName, qint32 depth,
                               const QuillmerePagePtr& currentPage);
    PageReadingPtr saveAndRead(const QByteArray& data, const QString& url, const QString& path);
    bool stopsAtRobotsDirectives(const QString& url, const PageFacts& page, const QString& title,
                                 const QuillmerePagePtr& currentPage);
    bool stopsAtCanonical(const QString& url, const PageFacts& page, const QString& title,
                          const QuillmerePagePtr& currentPage);
    bool recordLinks(const PageReading& page, qint32 depth, const QuillmerePagePtr& currentPage,
                     QList<std::shared_ptr<HTMLLink>>* linksToQueue);
    void queueLinks(const QList<std::shared_ptr<HTMLLink>>& links, qint32 depth);
    void performRedirect(const QString& url, qint32 depth);
    void logAnomaly(const QString& entry);
    QUrl requiredOriginOf(const QString& url) const;
    void rememberAnalysed(const QString& url);
    QByteArray fetchPage(const QString& url, const QUrl& origin);
    void fetchAheadFrom(const QList<QuillmereDownloaderQueuePtr>& batch, qsizetype next);

    std::atomic<bool> canContinue_{true};
    bool isPossibleFirstURLError_ = false;
    bool isContinueMode_ = false;
    qint32 htmlFileCounter_ = 1;
    std::shared_ptr<Project> project_;
    std::shared_ptr<DownloaderDelegate> downloaderDelegate_;
    std::unique_ptr<SynchronizedWebCall> syncWebCall_;
    QStringList arrayOfFilteredContentType_;
    QList<std::shared_ptr<RobotEntry>> arrayOfDisallowedURLs_;
    bool hasDisallowedURLs_ = false;
    QString databaseError_;
    // Scheme, host and port of the project's URL: the only server a queued URL is asked of.
    QUrl projectOrigin_;
    // The redirect targets queued in this run: the site's server chose them, so they may be
    // on another host.
    QSet<QString> redirectTargets_;
    // Set when the page in hand was left unanalysed because the crawl is stopping.
    bool pageAbandoned_ = false;
    // Runs the delegate's per-page calls: on the main thread, or on this thread for a
    // delegate that shows no window. The start and end calls always go to the main thread.
    DelegateRelay relay_;
    DelegateRelay commitRelay_;
    int parallelFetches_ = kDefaultParallelFetches;
    std::unique_ptr<RequestPacer> pacer_;
    std::unique_ptr<FetchAhead> fetchAhead_;
    // The page fetchPage last took from fetchAhead_, read on its thread, and the page the
    // analysis has in hand.
    PageReadingPtr prefetchedReading_;
    PageReadingPtr pageInHand_;
    // Pages this run analysed lately: not worth fetching ahead again. Only a shortcut for the
    // look-up that decides it, so it is emptied when full, to keep a long crawl's memory flat.
    QSet<QString> analysedURLs_;
    // The records of many entries go in one transaction: one commit for up to
    // kEntriesPerCommit pages fetched ahead instead of one for each. Each entry's writes and
    // its done mark stay in the same transaction, so a crash or a failed write leaves whole
    // entries, and those not committed stay waiting for the next run.
    std::unique_ptr<CrawlTransaction> group_;
    int entriesInGroup_ = 0;
    QElapsedTimer groupAge_;
    bool queueCountsKnown_ = false;
    qint64 waitingCount_ = 0;
    qint64 doneCount_ = 0;
    StartPageStop startPageStop_;
};
