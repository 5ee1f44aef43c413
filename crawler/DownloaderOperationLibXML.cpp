#include "crawler/DownloaderOperationLibXML.h"

#include "crawler/CrawlTransaction.h"
#include "crawler/FetchAhead.h"
#include "crawler/MainThread.h"
#include "fetch/RequestPacer.h"
#include "fetch/SynchronizedWebCall.h"
#include "fetch/URLConnection.h"
#include "html/HTMLLink.h"
#include "html/PageFacts.h"
#include "html/PathOperations.h"
#include "html/RobotEntry.h"
#include "html/StringOperations.h"
#include "store/LinkHeaders.h"
#include "store/PageRowCache.h"
#include "store/Localization.h"
#include "base/DebugTrace.h"
#include "store/FetchLog.h"
#include "store/Project.h"
#include "store/QuillmereDownloaderQueue.h"
#include "store/RedirectChain.h"

#include <QElapsedTimer>
#include <QStringDecoder>
#include <QUrl>

#include <utility>

#include <sqlite3.h>

namespace {
// Strict UTF-8: a file with invalid sequences gives no text at all.
QString decodeUtf8OrNull(const QByteArray& data)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder.decode(data);
    return decoder.hasError() ? QString() : text;
}

QString titleOf(const PageFacts& page)
{
    QString title = stringByTrim(page.titleText);
    if (title.isEmpty())
        title = QStringLiteral("No Title");
    return title;
}

struct RobotsDirectives {
    bool noIndex = false;
    bool noFollow = false;
};

RobotsDirectives robotsDirectivesOf(const PageFacts& page)
{
    RobotsDirectives directives;
    for (const HeadElementFacts& meta : page.metas) {
        if (!isEqualCaseInsensitive(meta.first, QStringLiteral("robots")))
            continue;
        const QString& content = meta.second;
        if (content.contains(QStringLiteral("noindex"), Qt::CaseInsensitive))
            directives.noIndex = true;
        if (content.contains(QStringLiteral("nofollow"), Qt::CaseInsensitive))
            directives.noFollow = true;
    }
    return directives;
}

// The last canonical link of the head, null when there is none or when it names the page
// itself.
QString canonicalOf(const PageFacts& page, const QString& url)
{
    QString canonical;
    for (const HeadElementFacts& link : page.links) {
        if (!isEqualCaseInsensitive(link.first, QStringLiteral("canonical")))
            continue;
        const QString& href = link.second;
        canonical = (!href.isNull() && canonicalComparisonForm(href) == canonicalComparisonForm(url)) ? QString() : href;
    }
    return canonical;
}
} // namespace

DownloaderOperationLibXML::DownloaderOperationLibXML(std::shared_ptr<Project> project,
                                                     std::shared_ptr<DownloaderDelegate> delegate, bool continueMode)
    : isContinueMode_(continueMode),
      project_(std::move(project)),
      downloaderDelegate_(std::move(delegate)),
      syncWebCall_(std::make_unique<SynchronizedWebCall>()),
      arrayOfFilteredContentType_{QStringLiteral("text/html")},
      pacer_(std::make_unique<RequestPacer>())
{
    // A stop abandons the transfer in hand instead of waiting for a stalled server.
    syncWebCall_->setCanContinueFlag(&canContinue_);
    syncWebCall_->setRequestPacer(pacer_.get());
    relay_ = DelegateRelay(downloaderDelegate_ && downloaderDelegate_->takesCallsOnCrawlerThread());
    commitRelay_ = DelegateRelay(downloaderDelegate_ && downloaderDelegate_->takesCommitsOnCrawlerThread());
    if (project_)
        projectOrigin_ = SynchronizedWebCall::URLFromString(project_->url()).value_or(QUrl());
}

DownloaderOperationLibXML::~DownloaderOperationLibXML() = default;

std::shared_ptr<DownloaderOperationLibXML>
DownloaderOperationLibXML::initWithProject(std::shared_ptr<Project> project, std::shared_ptr<DownloaderDelegate> delegate)
{
    return std::make_shared<DownloaderOperationLibXML>(std::move(project), std::move(delegate), false);
}

std::shared_ptr<DownloaderOperationLibXML>
DownloaderOperationLibXML::initForContinueWithProject(std::shared_ptr<Project> project,
                                                      std::shared_ptr<DownloaderDelegate> delegate)
{
    return std::make_shared<DownloaderOperationLibXML>(std::move(project), std::move(delegate), true);
}

void DownloaderOperationLibXML::setMaxRequestsPerSecond(double rate)
{
    pacer_ = std::make_unique<RequestPacer>(rate);
    syncWebCall_->setRequestPacer(pacer_.get());
}

double DownloaderOperationLibXML::maxRequestsPerSecond() const
{
    return pacer_->rate();
}

QString DownloaderOperationLibXML::firstURLErrorMessage()
{
    return QStringLiteral("Attention les URL trouvées dans les pages ne correspondent pas a celle du projet, "
                          "vérifier si c'est bien http ou https par exemple !");
}

void DownloaderOperationLibXML::main()
{
    // The flag is not set again here: a stop asked for before the run began holds, and the
    // run goes straight to its end steps.
    downloaderDidStart();
    if (!isContinueMode_) {
        QuillmereDownloaderQueue::createDownloaderQueueWithURL(project_->url(), QStringLiteral("/"),
                                                               QStringLiteral("index.html"), 1, project_);
    }
    // Redirect chains are counted across entries and continued runs (a restart empties
    // the table with the crawl's own).
    RedirectChain::prepareTable(project_);
    loadRobotsTxt();
    if (parallelFetches_ > 1)
        fetchAhead_ = std::make_unique<FetchAhead>(parallelFetches_, arrayOfFilteredContentType_,
                                                   syncWebCall_->requestTimeoutInterval(),
                                                   syncWebCall_->maxTransferInterval(), pacer_.get());
    if (fetchAhead_)
        fetchAhead_->setReadingContext(project_->url(), project_->explore_no_follow());
    {
        // The page records the walk looks up by URL are answered from memory while it runs
        // (this operation is the connection's only writer meanwhile).
        sqlite3* db = project_->sqlite3Database();
        PageRowCache::enable(db);
        // The walk looks pages up by URL and updates the counters of pages anywhere in the
        // file: on a large site a bigger page cache keeps that off the disk. Given back after.
        sqlite3_exec(db, "PRAGMA cache_size=-65536", nullptr, nullptr, nullptr);
        struct Off {
            sqlite3* db;
            ~Off()
            {
                sqlite3_exec(db, "PRAGMA cache_size=-16384", nullptr, nullptr, nullptr);
                PageRowCache::disable(db);
            }
        } off{db};
        downloadFromWaitingQueue();
    }
    // No thread, transfer or connection outlives the walk.
    fetchAhead_.reset();
    URLConnection::releaseIdleTransfers();
    downloaderDidEnd();
    if (isPossibleFirstURLError_)
        downloaderEndWithError(firstURLErrorMessage());
    project_->flushLogs();
}

void DownloaderOperationLibXML::loadRobotsTxt()
{
    // The path join folds the scheme's "//", so a start URL with a host gives an address
    // without one, whose fetch fails: such sites are crawled without Disallow rules.
    const QString robotsURL = PathOperations::Join(project_->url(), QStringLiteral("robots.txt"));
    const QByteArray data = syncWebCall_->getURL(robotsURL, QStringList{QStringLiteral("text/plain")});
    if (!syncWebCall_->isAbandoned())
        FetchLog::recordFetch(syncWebCall_->lastOutcome(), project_);
    if (data.isEmpty()) {
        DebugTrace("Pas de fichier robots.txt");
        return;
    }
    QList<std::shared_ptr<RobotEntry>> rules;
    project_->loadRobotsTxt(decodeUtf8OrNull(data), rules);
    arrayOfDisallowedURLs_ = rules;
    hasDisallowedURLs_ = true;
    DebugTrace("Contenu du robots.txt");
    for (const auto& rule : arrayOfDisallowedURLs_)
        DebugTrace("%s", qPrintable(rule->description()));
}

void DownloaderOperationLibXML::reportQueueCounts(bool recount)
{
    // Counting the queue costs a walk of its index, which on a large site made every page
    // slower than the one before (at a million entries, a batch of 100 pages walked the
    // whole queue twice). The counts are taken from the database once and followed in
    // memory after: this operation is the only writer of the queue while it runs, so the
    // figures are the same. A refused commit undoes writes already counted: they are taken
    // again then.
    if (recount || !queueCountsKnown_) {
        waitingCount_ = QuillmereDownloaderQueue::countWaitingDownloaderQueueForProject(project_);
        doneCount_ = QuillmereDownloaderQueue::countDoneDownloaderQueueForProject(project_);
        queueCountsKnown_ = true;
    }
    setWaitingQueueCount(qint32(waitingCount_), qint32(doneCount_));
}

void DownloaderOperationLibXML::enqueue(const QString& url, const QString& path, const QString& documentName,
                                        qint32 depth)
{
    if (QuillmereDownloaderQueue::createDownloaderQueueWithURL(url, path, documentName, depth, project_))
        ++waitingCount_;
}

void DownloaderOperationLibXML::downloadFromWaitingQueue()
{
    QList<QuillmereDownloaderQueuePtr> batch = QuillmereDownloaderQueue::getAllWaitingDownloaderQueueForProject(project_);
    if (!canContinue())
        return;
    for (;;) {
        if (project_->isLimitDepthExpected() || project_->isLimitPageCountExpected() || batch.isEmpty())
            break;
        reportQueueCounts(false);
        if (canContinue())
            walkBatch(batch);
        // What was fetched ahead of this batch is not needed: the next one is read afresh.
        if (fetchAhead_)
            fetchAhead_->dropAll();
        commitGroup();
        batch = QuillmereDownloaderQueue::getAllWaitingDownloaderQueueForProject(project_);
        if (!canContinue())
            break;
    }
    if (fetchAhead_)
        fetchAhead_->dropAll();
    commitGroup();
}

// Treats the batch's entries in queue order until a limit is reached or the crawl stops,
// committing their records group by group.
void DownloaderOperationLibXML::walkBatch(const QList<QuillmereDownloaderQueuePtr>& batch)
{
    for (qsizetype i = 0; i < batch.size(); ++i) {
        const auto& entry = batch[i];
        if (project_->isLimitDepthExpected() || project_->isLimitPageCountExpected())
            break;
        if (fetchAhead_)
            fetchAheadFrom(batch, i);
        // A page whose answer keeps the walk waiting is the time to write: the pages done so
        // far are not left uncommitted behind a slow or hanging one. A short wait, as when
        // the analysis catches up with the fetches, is not worth a commit.
        if (group_ && entriesInGroup_ > 0
            && !(fetchAhead_ && fetchAhead_->waitForAnswer(entry->url(), kWaitBeforeCommit, canContinue_)))
            commitGroup();
        if (!canContinue())
            break;
        if (!group_) {
            group_ = std::make_unique<CrawlTransaction>(project_->sqlite3Database());
            groupAge_.start();
        }
        pageAbandoned_ = false;
        downloadAndPerformURL(entry->url(), entry->path(), entry->documentName(), qint32(entry->depth()));
        // A page given up because the crawl is stopping waits for the next run.
        if (!pageAbandoned_) {
            entry->updatePerformDoneWithBooleanValue(true);
            --waitingCount_;
            ++doneCount_;
        }
        ++entriesInGroup_;
        if (group_->hasFailed() || entriesInGroup_ >= kEntriesPerCommit || groupAge_.elapsed() >= kMillisecondsPerCommit
            || !canContinue())
            commitGroup();
        reportQueueCounts(false);
        if (!canContinue())
            break;
    }
}

// Commits the group in hand, if any; a refused commit stops the walk.
void DownloaderOperationLibXML::commitGroup()
{
    if (!group_)
        return;
    const bool committed = group_->commit();
    if (!committed) {
        databaseError_ = group_->errorMessage();
        setCanContinue(false);
        queueCountsKnown_ = false;
    }
    group_.reset();
    entriesInGroup_ = 0;
    if (committed)
        crawlDidCommit();
}

// Starts the GETs of the entries after this one, as far as the limits let the walk go and
// as many as may be in flight.
void DownloaderOperationLibXML::fetchAheadFrom(const QList<QuillmereDownloaderQueuePtr>& batch, qsizetype next)
{
    if (!canContinue())
        return;
    // Every page started counts, and the page that passes the limit is the last analysed.
    qsizetype allowance = batch.size() - next;
    if (project_->limit_page_count() != -1)
        allowance = qMin<qsizetype>(allowance, qMax(0, project_->limit_page_count() + 1 - project_->pages_count()));
    const qsizetype end = qMin(batch.size(), next + allowance);
    const qsizetype window = qMin(end, next + 4 * qsizetype(parallelFetches_));
    for (qsizetype j = next; j < window && fetchAhead_->pendingCount() < parallelFetches_; ++j) {
        const auto& entry = batch[j];
        const QString& url = entry->url();
        if (!analysedURLs_.contains(url) && !fetchAhead_->isRequested(url)) {
            // An entry whose page an earlier run analysed is passed over when its turn
            // comes: asking the server for it would be a request for nothing.
            const QuillmerePagePtr known = getPageFromURL(url);
            if (known && !known->title().isEmpty())
                rememberAnalysed(url);
            else
                fetchAhead_->request(url, requiredOriginOf(url), entry->path());
        }
        // A page deeper than the limit is the last one the walk starts.
        if (project_->limit_depth() != -1 && entry->depth() > project_->limit_depth())
            break;
    }
}

void DownloaderOperationLibXML::rememberAnalysed(const QString& url)
{
    constexpr qsizetype kMaximumRemembered = 50000;
    if (analysedURLs_.size() >= kMaximumRemembered)
        analysedURLs_.clear();
    analysedURLs_.insert(url);
}

QUrl DownloaderOperationLibXML::requiredOriginOf(const QString& url) const
{
    // Only the project's own server is asked for a URL taken from a link: a link can look
    // internal to the link rules and still name another host (user-info, a longer host
    // name). A redirect target is the site's own choice and goes wherever it points.
    return redirectTargets_.contains(url) ? QUrl() : projectOrigin_;
}

QByteArray DownloaderOperationLibXML::fetchPage(const QString& url, const QUrl& origin)
{
    prefetchedReading_.reset();
    QByteArray data;
    if (fetchAhead_ && fetchAhead_->take(url, origin, canContinue_, &data, syncWebCall_.get(), &prefetchedReading_))
        return data;
    return syncWebCall_->getURL(url, arrayOfFilteredContentType_, origin);
}

void DownloaderOperationLibXML::downloadAndPerformURL(const QString& url, const QString& path,
                                                      const QString& documentName, qint32 depth)
{
    QuillmerePagePtr currentPage = getPageFromURL(url);
    if (currentPage && !currentPage->title().isEmpty())
        return;  // analysed already, in this run or an earlier one
    try {
        analysePage(url, path, documentName, depth, currentPage);
        if (!pageAbandoned_)
            rememberAnalysed(url);
    } catch (...) {
        // A fault while analysing one page abandons that page only; what was recorded stays.
        DebugTrace("downloadAndPerformURL exception (%s)", qPrintable(url));
    }
    // The page's reading is freed by a fetch thread, off the serial path.
    prefetchedReading_.reset();
    if (fetchAhead_)
        fetchAhead_->dispose(std::move(pageInHand_));
    pageInHand_.reset();
}

void DownloaderOperationLibXML::analysePage(const QString& url, const QString& path, const QString& documentName,
                                            qint32 depth, QuillmerePagePtr currentPage)
{
    downloadPageDidStartWithURL(url, depth);
    QByteArray data;
    if (!fetchAndRecordAnswer(url, depth, &data))
        return;
    if (data.isNull()) {
        recordPageWithoutHTML(url, path, documentName, depth, currentPage);
        return;
    }
    pageInHand_ = saveAndRead(data, url, path);
    const PageFacts& page = pageInHand_->facts;
    const QString title = titleOf(page);
    if (stopsAtRobotsDirectives(url, page, title, currentPage) || stopsAtCanonical(url, page, title, currentPage))
        return;

    if (currentPage)
        updatePage(currentPage, title);
    else
        currentPage = foundPageWithPath(path, documentName, title, url, depth);

    QList<HTMLLinkPtr> linksToQueue;
    if (!recordLinks(*pageInHand_, depth, currentPage, &linksToQueue))
        return;
    downloadPageDidEndWithURL(url, depth);
    queueLinks(linksToQueue, depth);
}

// Fetches the page and records what the server answered. False when the analysis ends
// here: the fetch was given up because the crawl is stopping, or the answer is a redirect.
bool DownloaderOperationLibXML::fetchAndRecordAnswer(const QString& url, qint32 depth, QByteArray* data)
{
    *data = fetchPage(url, requiredOriginOf(url));
    if (syncWebCall_->isAbandoned()) {
        pageAbandoned_ = true;
        downloadPageWasAbandonedWithURL(url, depth);
        return false;
    }
    FetchLog::recordFetch(syncWebCall_->lastOutcome(), project_);
    if (syncWebCall_->isOtherHostRefused()) {
        logAnomaly(QStringLiteral("SKIP::OtherHost %1 not requested: it is not on %2\n")
                       .arg(url, projectOrigin_.toString(QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment)));
    }
    if (syncWebCall_->lastOutcome().failure == FetchOutcome::Failure::BadURL)
        logAnomaly(QStringLiteral("SKIP::BadURL %1: %2\n").arg(url, syncWebCall_->lastOutcome().failureText));
    // Asked in this order for the trace's sake; what follows depends only on the data and
    // on the redirect.
    if (!syncWebCall_->isContentTypeError() && !syncWebCall_->isContentLengthError())
        (void)syncWebCall_->is404();
    if (syncWebCall_->isRedirect()) {
        performRedirect(url, depth);
        return false;
    }

    if (!LinkHeaders::getLinkHeadersWithURL(url, project_)) {
        LinkHeaders::createLinkHeadersWithURL(url, syncWebCall_->contentType(), syncWebCall_->contentLength(),
                                              syncWebCall_->downloadedLength(), project_);
    }
    return true;
}

// No HTML came (an error, or another type of content): the page is recorded with the
// error's title.
void DownloaderOperationLibXML::recordPageWithoutHTML(const QString& url, const QString& path,
                                                      const QString& documentName, qint32 depth,
                                                      const QuillmerePagePtr& currentPage)
{
    const QString title = Localization::localizedString("ErrorContentType");
    if (currentPage)
        updatePage(currentPage, title);
    else
        foundPageWithPath(path, documentName, title, url, depth);
}

// Keeps a copy of the HTML and reads it: its parse (null when it cannot be parsed) and its
// links, resolved against the page's URL and path.
PageReadingPtr DownloaderOperationLibXML::saveAndRead(const QByteArray& data, const QString& url, const QString& path)
{
    const QString fileName = QStringLiteral("content_html_%1.html").arg(htmlFileCounter_++);
    project_->saveHtmlData(data, fileName);
    // Read already by the thread that fetched it, when fetched ahead for this same entry.
    PageReadingPtr reading = std::exchange(prefetchedReading_, nullptr);
    if (reading && reading->url == url && reading->path == path)
        return reading;
    return PageReading::read(data, url, path, project_->url(), project_->explore_no_follow());
}

// A page marked both noindex and nofollow is analysed no further; noindex alone is
// recorded and the analysis goes on. True when it stops here.
bool DownloaderOperationLibXML::stopsAtRobotsDirectives(const QString& url, const PageFacts& page,
                                                        const QString& title, const QuillmerePagePtr& currentPage)
{
    const RobotsDirectives directives = robotsDirectivesOf(page);
    if (directives.noIndex && directives.noFollow) {
        if (url == project_->url())
            startPageStop_ = StartPageStop{StartPageStop::Kind::NoIndexNoFollow, QString()};
        if (currentPage) {
            currentPage->updateIsNoIndex(true);
            currentPage->updateIsNoFollow(true);
            updatePage(currentPage, title);
        }
        return true;
    }
    if (directives.noIndex && currentPage) {
        currentPage->updateIsNoIndex(true);
        updatePage(currentPage, title);
    }
    return false;
}

// A page naming another URL as its canonical form is analysed no further. True when it
// stops here.
bool DownloaderOperationLibXML::stopsAtCanonical(const QString& url, const PageFacts& page, const QString& title,
                                                 const QuillmerePagePtr& currentPage)
{
    const QString canonical = canonicalOf(page, url);
    if (canonical.isNull())
        return false;
    if (url == project_->url())
        startPageStop_ = StartPageStop{StartPageStop::Kind::Canonical, canonical};
    if (currentPage) {
        currentPage->updateIsCanonical(true);
        updatePage(currentPage, title);
    }
    return true;
}

// Records the page's links to pages of the site and gathers those to queue. False when a
// link shows the project's URL to be wrong: the crawl stops there.
bool DownloaderOperationLibXML::recordLinks(const PageReading& page, qint32 depth, const QuillmerePagePtr& currentPage,
                                            QList<HTMLLinkPtr>* linksToQueue)
{
    if (page.fault && page.faultIndex < 0)
        std::rethrow_exception(page.fault);
    const qint32 anchorCount = qint32(page.links.size());
    initLinkProgressWithMaxValue(anchorCount);
    for (qint32 n = 1; n <= anchorCount; ++n) {
        setLinkProgressWithValue(n, anchorCount);
        if (page.fault && page.faultIndex == n - 1)
            std::rethrow_exception(page.fault);
        // Null for an anchor the crawl does not follow.
        const HTMLLinkPtr& link = page.links[n - 1];
        if (!link)
            continue;
        if (link->isExternalLink()) {
            if (link->isPossibleFirstURLError()) {
                isPossibleFirstURLError_ = true;
                setCanContinue(false);
                return false;
            }
            continue;
        }
        if (!link->isAllowedURLwithArrayOfDisallowed(arrayOfDisallowedURLs()))
            continue;
        const LinkHeadersPtr headers = LinkHeaders::getLinkHeadersWithURL(link->fullHref(), project_);
        if (headers && !headers->isContentTypeHTML())
            continue;  // known not to be a page
        linksToQueue->append(link);
        if (QuillmerePagePtr target = getPageFromURL(link->fullHref()))
            foundLinkWithPage(target, link->anchor(), currentPage);
        else
            foundLinkWithPath(link->documentPath(), link->documentName(), link->anchor(), link->fullHref(), depth + 1,
                              currentPage);
    }
    return true;
}

// Queues the link targets not queued yet and not analysed already.
void DownloaderOperationLibXML::queueLinks(const QList<HTMLLinkPtr>& links, qint32 depth)
{
    for (const auto& link : links) {
        if (QuillmereDownloaderQueue::pageURLIsAlreadyInQueue(link->fullHref(), project_))
            continue;
        const QuillmerePagePtr known = getPageFromURL(link->fullHref());
        if (known && !known->title().isEmpty())
            continue;
        enqueue(link->fullHref(), link->documentPath(), link->documentName(), depth + 1);
    }
}

void DownloaderOperationLibXML::performRedirect(const QString& url, qint32 depth)
{
    const QString target = syncWebCall_->redirectURL();
    const QuillmerePagePtr known = getPageFromURL(target);
    if (known && !known->title().isEmpty()) {
        project_->appendToFileLogHandle(QStringLiteral("SKIP::RedirectURL to %1\n").arg(target));
        return;
    }
    const qint64 entries = QuillmereDownloaderQueue::countDownloaderQueueWithURL(target, project_);
    if (entries >= kMaximumRedirectEntries) {
        logAnomaly(QStringLiteral("SKIP::RedirectURL to %1: queued %2 times already, the site redirects in a loop\n")
                       .arg(target)
                       .arg(entries));
        return;
    }
    const QString scheme = QUrl(target).scheme().toLower();
    if (scheme != QLatin1String("http") && scheme != QLatin1String("https")) {
        logAnomaly(QStringLiteral("SKIP::RedirectURL to %1: only http and https are fetched\n").arg(target));
        return;
    }
    // A chain of distinct targets escapes the count above: each chain started from one
    // entry may queue a bounded number of redirect targets.
    RedirectChain::Link link = RedirectChain::linkOf(url, project_);
    ++link.hops;
    if (link.hops > RedirectChain::kMaximumHops) {
        logAnomaly(QStringLiteral("SKIP::RedirectURL to %1: more than %2 redirects from %3\n")
                       .arg(target)
                       .arg(RedirectChain::kMaximumHops)
                       .arg(link.origin));
        return;
    }
    project_->appendToFileLogHandle(QStringLiteral("Perform::RedirectURL to %1\n").arg(target));

    const QStringList components = PathOperations::Components(QUrl(target).path(QUrl::FullyDecoded));
    QString path;
    QString name;
    if (url.endsWith(QLatin1Char('/'))) {
        // A directory URL redirected elsewhere files the target as a directory of its own.
        for (const auto& component : components) {
            if (component != QLatin1String("/"))
                path += QLatin1Char('/') + component;
        }
        path += QLatin1Char('/');
        name = QStringLiteral("index.html");
    } else if (components.isEmpty()) {
        path = QStringLiteral("/");
        name = QStringLiteral("index.html");
    } else {
        for (qsizetype i = 0; i + 1 < components.size(); ++i) {
            if (components[i] != QLatin1String("/"))
                path += QLatin1Char('/') + components[i];
        }
        path += QLatin1Char('/');
        name = components.last();
    }
    if (path.isEmpty())
        path = QStringLiteral("/");
    redirectTargets_.insert(target);
    RedirectChain::recordLink(target, link, project_);
    enqueue(target, path, name, depth + 1);
}

// What the crawl refused to do goes to the project's error log (the normal log is a hook).
void DownloaderOperationLibXML::logAnomaly(const QString& entry)
{
    DebugTrace("%s", qPrintable(entry.trimmed()));
    project_->appendToErrorFileLogHandle(entry);
}

// --- relays ---

void DownloaderOperationLibXML::downloaderDidStart()
{
    MainThread::performAndWaitFor([this] { mainThreadDownloaderDidStart(); });
}

void DownloaderOperationLibXML::downloaderDidEnd()
{
    MainThread::performAndWaitFor([this] { mainThreadDownloaderDidEnd(); });
}

void DownloaderOperationLibXML::downloaderEndWithError(const QString& error)
{
    MainThread::performAndWaitFor([&] { mainThreadDownloaderEndWithErrorAndDictionnary(error); });
}

void DownloaderOperationLibXML::downloadPageDidStartWithURL(const QString& url, qint32 depth)
{
    relay_([&] { mainThreadDownloadPageDidStartWithDictionnary(url, depth); });
}

void DownloaderOperationLibXML::downloadPageDidEndWithURL(const QString& url, qint32 depth)
{
    relay_([&] { mainThreadDownloadPageDidEndWithDictionnary(url, depth); });
}

QuillmerePagePtr DownloaderOperationLibXML::foundPageWithPath(const QString& path, const QString& name,
                                                              const QString& title, const QString& url, qint32 depth)
{
    return relay_([&] { return mainThreadFoundPageWithMutableDictionnary(path, name, title, url, depth); });
}

void DownloaderOperationLibXML::updatePage(const QuillmerePagePtr& page, const QString& title)
{
    relay_([&] { mainThreadUpdatePageWithDictionnary(page, title); });
}

bool DownloaderOperationLibXML::foundLinkWithPath(const QString& path, const QString& name, const QString& anchor,
                                                  const QString& url, qint32 depth, const QuillmerePagePtr& page)
{
    return relay_([&] { return mainThreadFoundLinkNameWithMutableDictionnary(path, name, anchor, url, depth, page); });
}

bool DownloaderOperationLibXML::foundLinkWithPage(const QuillmerePagePtr& pageTo, const QString& anchor,
                                                  const QuillmerePagePtr& page)
{
    return relay_([&] { return mainThreadFoundLinkPageWithMutableDictionnary(pageTo, anchor, page); });
}

QuillmerePagePtr DownloaderOperationLibXML::getPageFromURL(const QString& url)
{
    return relay_([&] { return mainThreadGetPageFromURLWithMutableDictionnary(url); });
}

void DownloaderOperationLibXML::initLinkProgressWithMaxValue(qint32 linkCountMax)
{
    relay_([&] { mainThreadInitLinkProgressWithMutableDictionnary(linkCountMax); });
}

void DownloaderOperationLibXML::setLinkProgressWithValue(qint32 value, qint32 maxValue)
{
    relay_([&] { mainThreadSetLinkProgressWithMutableDictionnary(value, maxValue); });
}

void DownloaderOperationLibXML::setWaitingQueueCount(qint32 waitingCount, qint32 doneCount)
{
    relay_([&] { mainThreadSetWaitingAndDoneQueueCountWithMutableDictionnary(waitingCount, doneCount); });
}

void DownloaderOperationLibXML::downloadPageWasAbandonedWithURL(const QString& url, qint32 depth)
{
    relay_([&] { mainThreadDownloadPageWasAbandonedWithDictionnary(url, depth); });
}

void DownloaderOperationLibXML::crawlDidCommit()
{
    commitRelay_([this] { mainThreadCrawlDidCommit(); });
}

void DownloaderOperationLibXML::mainThreadCrawlDidCommit()
{
    downloaderDelegate_->crawlDidCommit();
}

void DownloaderOperationLibXML::mainThreadDownloaderDidStart()
{
    downloaderDelegate_->downloaderDidStart();
}

void DownloaderOperationLibXML::mainThreadDownloaderDidEnd()
{
    downloaderDelegate_->downloaderDidEnd();
}

void DownloaderOperationLibXML::mainThreadDownloaderEndWithErrorAndDictionnary(const QString& error)
{
    downloaderDelegate_->downloaderEndWithError(error);
}

void DownloaderOperationLibXML::mainThreadDownloadPageDidStartWithDictionnary(const QString& url, qint32 depth)
{
    downloaderDelegate_->downloadPageDidStartWithURL(url, depth);
}

void DownloaderOperationLibXML::mainThreadDownloadPageDidEndWithDictionnary(const QString& url, qint32 depth)
{
    downloaderDelegate_->downloadPageDidEndWithURL(url, depth);
}

QuillmerePagePtr DownloaderOperationLibXML::mainThreadFoundPageWithMutableDictionnary(const QString& path,
                                                                                    const QString& name,
                                                                                    const QString& title,
                                                                                    const QString& url, qint32 depth)
{
    return downloaderDelegate_->foundPageWithPath(path, name, title, url, depth);
}

void DownloaderOperationLibXML::mainThreadUpdatePageWithDictionnary(const QuillmerePagePtr& page, const QString& title)
{
    downloaderDelegate_->updatePage(page, title);
}

bool DownloaderOperationLibXML::mainThreadFoundLinkNameWithMutableDictionnary(const QString& path, const QString& name,
                                                                              const QString& anchor, const QString& url,
                                                                              qint32 depth, const QuillmerePagePtr& page)
{
    return downloaderDelegate_->foundLinkWithPath(path, name, anchor, url, depth, page);
}

bool DownloaderOperationLibXML::mainThreadFoundLinkPageWithMutableDictionnary(const QuillmerePagePtr& pageTo,
                                                                              const QString& anchor,
                                                                              const QuillmerePagePtr& page)
{
    return downloaderDelegate_->foundLinkWithPage(pageTo, anchor, page);
}

QuillmerePagePtr DownloaderOperationLibXML::mainThreadGetPageFromURLWithMutableDictionnary(const QString& url)
{
    return downloaderDelegate_->getPageFromURL(url);
}

void DownloaderOperationLibXML::mainThreadInitLinkProgressWithMutableDictionnary(qint32 linkCountMax)
{
    downloaderDelegate_->initLinkProgressWithMaxValue(linkCountMax);
}

void DownloaderOperationLibXML::mainThreadSetLinkProgressWithMutableDictionnary(qint32 value, qint32 maxValue)
{
    downloaderDelegate_->setLinkProgressWithValue(value, maxValue);
}

void DownloaderOperationLibXML::mainThreadSetWaitingAndDoneQueueCountWithMutableDictionnary(qint32 waitingCount,
                                                                                          qint32 doneCount)
{
    downloaderDelegate_->setWaitingQueueCount(waitingCount, doneCount);
}

void DownloaderOperationLibXML::mainThreadDownloadPageWasAbandonedWithDictionnary(const QString& url, qint32 depth)
{
    downloaderDelegate_->downloadPageWasAbandonedWithURL(url, depth);
}
