#include "crawler/WebCrawlOperation.h"

#include "base/DebugTrace.h"
#include "crawler/CrawlTransaction.h"
#include "crawler/WebWorkPool.h"
#include "fetch/HostGate.h"
#include "fetch/SynchronizedWebCall.h"
#include "fetch/URLConnection.h"
#include "fetch/WebFetcher.h"
#include "html/WebLinkExtractor.h"
#include "html/WebUrl.h"
#include "store/FetchLog.h"
#include "store/LinkHeaders.h"
#include "store/Localization.h"
#include "store/Project.h"
#include "store/QuillmereDownloaderQueue.h"
#include "store/QuillmerePage.h"

#include <chrono>

namespace {

// Answers the crawl keeps waiting for its turn at most: past that, the walk stops taking
// new work until some come back.
constexpr int kChecksInFlight = 64;
constexpr int kRobotsBodyLimit = 8 * 1024 * 1024;

QString originOf(const QUrl& url)
{
    return HostGate::keyOf(url);
}

// Where the described tables file a page: the folder of its path and its file name.
void pathAndName(const QString& url, QString* path, QString* name)
{
    const QString full = QUrl(url).path(QUrl::FullyDecoded);
    const qsizetype slash = full.lastIndexOf(QLatin1Char('/'));
    *path = slash <= 0 ? QStringLiteral("/") : full.left(slash);
    *name = full.mid(slash + 1);
    if (name->isEmpty())
        *name = QStringLiteral("index.html");
}

bool hasHeader(const WebResponse& response, const char* name, const char* value)
{
    for (const auto& header : response.headers)
        if (header.first == name && header.second.trimmed().toLower() == value)
            return true;
    return false;
}

} // namespace

WebCrawlOperation::WebCrawlOperation(std::shared_ptr<Project> project, std::shared_ptr<DownloaderDelegate> delegate,
                                     bool continueMode)
    : DownloaderOperationLibXML(std::move(project), std::move(delegate), continueMode)
{
}

WebCrawlOperation::~WebCrawlOperation()
{
    pool_.reset();
}

void WebCrawlOperation::main()
{
    downloaderDidStart();
    startRun();
    if (canContinue())
        walk();
    finishRun();
    downloaderDidEnd();
    project()->flushLogs();
}

void WebCrawlOperation::startRun()
{
    const auto project = this->project();
    WebStore::createTables(project->sqlite3Database());
    siteOrigin_ = WebUrl::normalized(QUrl(project->url()));
    startIdentity_ = WebUrl::identity(siteOrigin_);
    targets_ = WebStore::loadTargets(project);
    siteGate_ = std::make_unique<HostGate>(parallelFetches(), maxRequestsPerSecond());
    externalGate_ = std::make_unique<HostGate>(options_.perHost, maxRequestsPerSecond());
    pool_ = std::make_unique<WebWorkPool>(parallelFetches() + 2 * options_.perHost + 2);
    beginGroupIfNeeded();
    if (!isContinueMode()) {
        QString kind;
        if (!targets_.contains(startIdentity_))
            targetFor(siteOrigin_, true, 1, &kind);
    }
    waitingCount_ = QuillmereDownloaderQueue::countWaitingDownloaderQueueForProject(project);
    doneCount_ = QuillmereDownloaderQueue::countDoneDownloaderQueueForProject(project);
    setWaitingQueueCount(qint32(waitingCount_), qint32(doneCount_));
    if (options_.obeyRobots)
        askRobots(originOf(siteOrigin_));
}

void WebCrawlOperation::walk()
{
    while (canContinue()) {
        beginGroupIfNeeded();
        const bool pages = dispatchPages();
        const bool checks = dispatchChecks();
        const int ran = runCompletions(pages || checks ? 20 : 0);
        if (webGroup_ && (webGroup_->hasFailed() || entriesInWebGroup_ >= kEntriesPerCommit
                          || webGroupAge_.elapsed() >= kMillisecondsPerCommit))
            commitWebGroup();
        if (!pages && !checks && ran == 0 && pool_->pending() == 0) {
            std::lock_guard<std::mutex> lock(completionsMutex_);
            if (completions_.empty())
                break;
        }
    }
}

void WebCrawlOperation::finishRun()
{
    // What was not started is left for the next run; what runs is let finish (a stop
    // abandons the transfers) and recorded when it came back whole.
    if (pool_) {
        pool_->dropWaiting();
        while (pool_->pending() > 0)
            runCompletions(20);
        runCompletions(0);
        pool_.reset();
    }
    // No connection outlives the crawl.
    URLConnection::releaseIdleTransfers();
    beginGroupIfNeeded();
    runCompletions(0);
    commitWebGroup();
    if (!databaseError().isEmpty())
        return;
    if (!WebStore::settle(project()))
        DebugTrace("WebCrawlOperation: the links between pages could not be counted");
}

bool WebCrawlOperation::dispatchPages()
{
    const auto project = this->project();
    if (depthStop_ || project->isLimitDepthExpected() || project->isLimitPageCountExpected())
        return pagesInFlight_ > 0;
    if (options_.obeyRobots && !robotsOf(siteOrigin_).known)
        return true;  // the site's rules first
    while (pagesInFlight_ < 2 * parallelFetches() && canContinue()) {
        // Every page started counts, and the page that passes a limit is the last one.
        if (project->limit_page_count() != -1 && project->pages_count() + pagesInFlight_ > project->limit_page_count())
            break;
        if (nextEntries_.isEmpty()) {
            if (!newEntries_)
                break;
            nextEntries_ = WebStore::waitingEntries(project, entryCursor_, 200);
            if (nextEntries_.isEmpty()) {
                newEntries_ = false;
                break;
            }
        }
        const WebStore::QueueEntry entry = nextEntries_.takeFirst();
        entryCursor_ = entry.idt;
        const QUrl url(entry.url);
        const auto target = targets_.constFind(entry.url);
        const bool isStart = entry.url == startIdentity_;
        if (target != targets_.constEnd() && target->verdict != QLatin1String(WebStore::kPending)) {
            // Judged without a request (robots.txt, a filter) when it was found.
            WebStore::markEntryDone(project, entry.idt);
            entryEnded(false);
            continue;
        }
        if (options_.obeyRobots) {
            const RobotsPolicy::Verdict verdict = robotsOf(url).policy.check(url);
            if (!verdict.allowed && target != targets_.constEnd()) {
                WebStore::setVerdict(project, target->idt, QLatin1String(WebStore::kRobots), verdict.rule);
                targets_[entry.url].verdict = QLatin1String(WebStore::kRobots);
                WebStore::markEntryDone(project, entry.idt);
                entryEnded(false);
                continue;
            }
        }
        if (!isStart && !options_.allows(entry.url)) {
            if (target != targets_.constEnd()) {
                WebStore::setVerdict(project, target->idt, QLatin1String(WebStore::kExcluded));
                targets_[entry.url].verdict = QLatin1String(WebStore::kExcluded);
            }
            WebStore::markEntryDone(project, entry.idt);
            entryEnded(false);
            continue;
        }
        WebRequestOptions request;
        request.userAgent = options_.userAgent;
        request.headers = options_.headers;
        request.timeoutSeconds = syncWebCall()->requestTimeoutInterval();
        request.maxTransferSeconds = syncWebCall()->maxTransferInterval();
        request.maxBodyBytes = options_.maxPageSize;
        request.keptContentTypes = {QStringLiteral("text/html"), QStringLiteral("application/xhtml+xml")};
        request.followRedirects = false;
        ++pagesInFlight_;
        std::atomic<bool>* flag = canContinueFlag();
        pool_->submit(url, siteGate_.get(), [this, entry, url, request, flag] {
            WebResponse response = WebFetcher::get(url, request, flag);
            std::shared_ptr<WebPageScan> scan;
            if (!response.body.isNull()) {
                scan = std::make_shared<WebPageScan>(WebLinkExtractor::scan(response.body, url));
                response.body = QByteArray();  // read: not kept in memory while it waits
            }
            post([this, entry, response, scan] { pageAnswered(entry, response, scan); });
        });
        if (project->limit_depth() != -1 && entry.depth > project->limit_depth()) {
            depthStop_ = true;
            break;
        }
    }
    return pagesInFlight_ > 0 || !nextEntries_.isEmpty() || newEntries_;
}

bool WebCrawlOperation::dispatchChecks()
{
    const auto project = this->project();
    while (checksInFlight_ < kChecksInFlight && canContinue()) {
        if (nextChecks_.isEmpty()) {
            if (!newChecks_)
                break;
            nextChecks_ = WebStore::pendingChecks(project, checkCursor_, 200);
            if (nextChecks_.isEmpty()) {
                newChecks_ = false;
                break;
            }
        }
        const WebStore::PendingCheck check = nextChecks_.takeFirst();
        checkCursor_ = check.idt;
        const QUrl url(check.url);
        if (options_.obeyRobots) {
            Robots& robots = robotsOf(url);
            if (!robots.known) {
                robots.parked.append(check);
                askRobots(originOf(url));
                continue;
            }
            if (!robots.unreachable.isEmpty()) {
                recordUnreachable(check, robots.unreachable);
                continue;
            }
            const RobotsPolicy::Verdict verdict = robots.policy.check(url);
            if (!verdict.allowed) {
                WebStore::setVerdict(project, check.idt, QLatin1String(WebStore::kRobots), verdict.rule);
                targets_[check.url].verdict = QLatin1String(WebStore::kRobots);
                continue;
            }
        }
        dispatchCheck(check);
    }
    bool parked = false;
    for (const auto& robots : std::as_const(robots_))
        parked = parked || !robots.parked.isEmpty();
    return checksInFlight_ > 0 || robotsInFlight_ > 0 || parked || !nextChecks_.isEmpty() || newChecks_;
}

void WebCrawlOperation::dispatchCheck(const WebStore::PendingCheck& check)
{
    const QUrl url(check.url);
    const bool external = check.kind == QLatin1String(WebStore::kExternal);
    WebRequestOptions request;
    request.userAgent = options_.userAgent;
    request.headers = options_.headers;
    request.timeoutSeconds = external ? options_.externalTimeout : syncWebCall()->requestTimeoutInterval();
    request.maxTransferSeconds = external ? options_.externalTimeout * 2 : syncWebCall()->maxTransferInterval();
    request.followRedirects = true;
    ++checksInFlight_;
    std::atomic<bool>* flag = canContinueFlag();
    pool_->submit(url, external ? externalGate_.get() : siteGate_.get(), [this, check, url, request, flag] {
        const WebResponse response = WebFetcher::check(url, request, flag);
        post([this, check, response] { checkAnswered(check, response); });
    });
}

void WebCrawlOperation::askRobots(const QString& origin)
{
    Robots& robots = robots_[origin];
    if (robots.asked || robots.known)
        return;
    robots.asked = true;
    ++robotsInFlight_;
    const QUrl url(origin + QStringLiteral("/robots.txt"));
    WebRequestOptions request;
    request.userAgent = options_.userAgent;
    request.headers = options_.headers;
    const bool site = WebUrl::isSameOrigin(url, siteOrigin_);
    request.timeoutSeconds = site ? syncWebCall()->requestTimeoutInterval() : options_.externalTimeout;
    request.maxTransferSeconds = site ? syncWebCall()->maxTransferInterval() : options_.externalTimeout * 2;
    request.maxBodyBytes = kRobotsBodyLimit;
    request.keptContentTypes = {QStringLiteral("text/"), QStringLiteral("application/")};
    request.followRedirects = true;
    std::atomic<bool>* flag = canContinueFlag();
    pool_->submit(url, site ? siteGate_.get() : externalGate_.get(), [this, origin, url, request, flag] {
        const WebResponse response = WebFetcher::get(url, request, flag);
        post([this, origin, response] { robotsAnswered(origin, response); });
    });
}

WebCrawlOperation::Robots& WebCrawlOperation::robotsOf(const QUrl& url)
{
    Robots& robots = robots_[originOf(url)];
    if (!options_.obeyRobots && !robots.known) {
        robots.known = true;
        robots.policy = RobotsPolicy::allowAll();
    }
    return robots;
}

void WebCrawlOperation::post(std::function<void()> completion)
{
    {
        std::lock_guard<std::mutex> lock(completionsMutex_);
        completions_.push_back(std::move(completion));
    }
    completionsReady_.notify_one();
}

int WebCrawlOperation::runCompletions(int waitMs)
{
    std::deque<std::function<void()>> ready;
    {
        std::unique_lock<std::mutex> lock(completionsMutex_);
        if (completions_.empty() && waitMs > 0)
            completionsReady_.wait_for(lock, std::chrono::milliseconds(waitMs));
        ready.swap(completions_);
    }
    for (auto& completion : ready) {
        beginGroupIfNeeded();
        try {
            completion();
        } catch (...) {
            // A fault in one answer's records abandons that answer only.
            DebugTrace("WebCrawlOperation: an answer could not be recorded");
        }
    }
    return int(ready.size());
}

void WebCrawlOperation::pageAnswered(const WebStore::QueueEntry& entry, const WebResponse& response,
                                     const std::shared_ptr<WebPageScan>& scan)
{
    --pagesInFlight_;
    if (response.abandoned || response.outcome.failure == FetchOutcome::Failure::Abandoned)
        return;  // waits for the next run
    const auto project = this->project();
    downloadPageDidStartWithURL(entry.url, entry.depth);
    FetchLog::recordFetch(response.outcome, project);
    QString kind;
    const qint64 idt = targetFor(QUrl(entry.url), true, entry.depth, &kind);
    const int status = response.outcome.status;
    const QString failure = FetchOutcome::failureName(response.outcome.failure);

    if (!response.location.isNull()) {
        const QUrl to = WebUrl::normalized(QUrl(response.location));
        QString toKind;
        const qint64 toIdt = targetFor(to, true, entry.depth, &toKind);
        WebStore::recordAnswer(project, idt, status, failure, QLatin1String(WebStore::kRedirect), response.contentType,
                               to.toString(QUrl::FullyEncoded), toIdt);
        targets_[entry.url].verdict = QLatin1String(WebStore::kRedirect);
        project->appendToFileLogHandle(QStringLiteral("Perform::RedirectURL to %1\n").arg(response.location));
        WebStore::markEntryDone(project, entry.idt);
        entryEnded(true);
        return;
    }
    if (status > 0 && !LinkHeaders::getLinkHeadersWithURL(entry.url, project))
        LinkHeaders::createLinkHeadersWithURL(entry.url, response.contentType, response.contentLength, -1,
                                              project);
    const QString verdict = verdictOf(response, false);
    targets_[entry.url].verdict = verdict;
    if (!scan || verdict != QLatin1String(WebStore::kOk)) {
        const bool page = verdict != QLatin1String(WebStore::kOk) || response.outcome.failure != FetchOutcome::Failure::None;
        if (!page) {
            // Answered, and not HTML: a resource the link named, checked by this answer.
            WebStore::setKind(project, idt, QLatin1String(WebStore::kResource));
            targets_[entry.url].kind = QLatin1String(WebStore::kResource);
        } else {
            // A page of the site that gave no HTML to read: listed, as the 404 filters expect.
            foundPageWithPath(entry.path, entry.name, Localization::localizedString("ErrorContentType"), entry.url,
                              entry.depth);
        }
        WebStore::recordAnswer(project, idt, status, failure, verdict, response.contentType,
                               response.outcome.finalURL);
        WebStore::markEntryDone(project, entry.idt);
        entryEnded(true);
        return;
    }

    QString title = scan->title;
    if (title.isEmpty())
        title = QStringLiteral("No Title");
    const QuillmerePagePtr page = foundPageWithPath(entry.path, entry.name, title, entry.url, entry.depth);
    if (!page)
        return;  // not written: the group fails and the crawl stops
    if (scan->noIndex)
        page->updateIsNoIndex(true);
    if (scan->noFollow)
        page->updateIsNoFollow(true);
    if (scan->canonical.isValid() && WebUrl::identity(scan->canonical) != entry.url)
        page->updateIsCanonical(true);
    WebStore::recordAnswer(project, idt, status, failure, verdict, response.contentType, response.outcome.finalURL);
    WebStore::setFragmentIds(project, idt, QStringList(scan->fragmentIds.begin(), scan->fragmentIds.end()));
    const qint32 linkCount = qint32(scan->links.size());
    initLinkProgressWithMaxValue(linkCount);
    for (const auto& link : scan->links)
        recordLink(page->idt(), link, entry.depth);
    setLinkProgressWithValue(linkCount, linkCount);
    WebStore::markEntryDone(project, entry.idt);
    downloadPageDidEndWithURL(entry.url, entry.depth);
    entryEnded(true);
}

void WebCrawlOperation::checkAnswered(const WebStore::PendingCheck& check, const WebResponse& response)
{
    --checksInFlight_;
    if (response.abandoned || response.outcome.failure == FetchOutcome::Failure::Abandoned)
        return;  // still pending: checked by the next run
    const bool external = check.kind == QLatin1String(WebStore::kExternal);
    const QString verdict = verdictOf(response, external);
    const QString type = response.contentType.section(QLatin1Char(';'), 0, 0).trimmed().toLower();
    if (!external && verdict == QLatin1String(WebStore::kOk) && response.outcome.redirectChain.isEmpty()
        && (type == QLatin1String("text/html") || type == QLatin1String("application/xhtml+xml"))) {
        // Named first by a tag that loads (link rel=next, an iframe's neighbour...), it is a
        // page of the site all the same: crawled, not just checked.
        WebStore::setKind(project(), check.idt, QLatin1String(WebStore::kPage));
        targets_[check.url].kind = QLatin1String(WebStore::kPage);
        const qint32 depth = targetDepth_.value(check.idt, qMax<qint32>(1, project()->max_depth() + 1));
        enqueuePage(check.url, depth);
        ++entriesInWebGroup_;
        return;
    }
    WebStore::recordAnswer(project(), check.idt, response.outcome.status,
                           FetchOutcome::failureName(response.outcome.failure), verdict, response.contentType,
                           response.outcome.finalURL);
    targets_[check.url].verdict = verdict;
    ++entriesInWebGroup_;
}

void WebCrawlOperation::robotsAnswered(const QString& origin, const WebResponse& response)
{
    --robotsInFlight_;
    Robots& robots = robots_[origin];
    if (response.abandoned || response.outcome.failure == FetchOutcome::Failure::Abandoned) {
        robots.asked = false;
        return;
    }
    if (WebUrl::isSameOrigin(QUrl(origin), siteOrigin_))
        FetchLog::recordFetch(response.outcome, project());
    const FetchOutcome::Failure failure = response.outcome.failure;
    const bool answered = response.outcome.status > 0 && failure != FetchOutcome::Failure::TimedOut;
    robots.known = true;
    if (!answered && (failure == FetchOutcome::Failure::Refused || failure == FetchOutcome::Failure::HostNotFound)) {
        // No server there: its links are broken, not forbidden. The site's own pages are
        // asked anyway, and their answers say so.
        robots.policy = RobotsPolicy::allowAll();
        if (!WebUrl::isSameOrigin(QUrl(origin), siteOrigin_))
            robots.unreachable = FetchOutcome::failureName(failure);
    } else {
        robots.policy = RobotsPolicy::fromAnswer(answered ? response.outcome.status : 0, response.body, productToken());
    }
    const QList<WebStore::PendingCheck> parked = robots.parked;
    robots.parked.clear();
    for (const auto& check : parked) {
        if (!robots.unreachable.isEmpty()) {
            recordUnreachable(check, robots.unreachable);
            continue;
        }
        const QUrl url(check.url);
        const RobotsPolicy::Verdict verdict = robots.policy.check(url);
        if (verdict.allowed) {
            dispatchCheck(check);
            continue;
        }
        WebStore::setVerdict(project(), check.idt, QLatin1String(WebStore::kRobots), verdict.rule);
        targets_[check.url].verdict = QLatin1String(WebStore::kRobots);
    }
}

void WebCrawlOperation::recordUnreachable(const WebStore::PendingCheck& check, const QString& failure)
{
    WebStore::recordAnswer(project(), check.idt, 0, failure, QLatin1String(WebStore::kBroken), QString(), QString());
    targets_[check.url].verdict = QLatin1String(WebStore::kBroken);
    ++entriesInWebGroup_;
}

void WebCrawlOperation::recordLink(qint64 sourcePage, const WebLinkFound& link, qint32 depth)
{
    if (!link.url.isValid() || link.url.scheme().isEmpty())
        return;
    QString kind;
    const qint64 idt = targetFor(link.url, link.navigational, depth + 1, &kind);
    if (!idt)
        return;
    const QString fragment = WebUrl::isFetchable(link.url) ? WebUrl::fragmentOf(link.url) : QString();
    // The link's own nature, not its target's kind as known now: a target named first by a
    // tag that loads may turn out a page, and the links to it are then links between pages.
    WebStore::insertLink(project(), sourcePage, idt, link.tag, link.attribute, link.text, fragment,
                         link.navigational);
}

qint64 WebCrawlOperation::targetFor(const QUrl& url, bool navigational, qint32 depth, QString* kind)
{
    const bool fetchable = WebUrl::isFetchable(url);
    const QString identity = fetchable ? WebUrl::identity(url) : url.toString(QUrl::FullyEncoded);
    const auto known = targets_.constFind(identity);
    if (known != targets_.constEnd()) {
        *kind = known->kind;
        return known->idt;
    }
    const bool internal = fetchable && WebUrl::isSameOrigin(url, siteOrigin_);
    if (!fetchable)
        *kind = QLatin1String(WebStore::kOther);
    else if (!internal)
        *kind = QLatin1String(WebStore::kExternal);
    else
        *kind = QLatin1String(navigational ? WebStore::kPage : WebStore::kResource);

    QString verdict = QLatin1String(fetchable ? WebStore::kPending : WebStore::kNotChecked);
    QString rule;
    const bool isStart = identity == startIdentity_;
    if (fetchable && !isStart) {
        if (!options_.allows(identity)) {
            verdict = QLatin1String(WebStore::kExcluded);
        } else if (!internal && !options_.checkExternal) {
            verdict = QLatin1String(WebStore::kSkipped);
        } else if (internal && options_.obeyRobots) {
            const Robots& robots = robotsOf(url);
            if (robots.known) {
                const RobotsPolicy::Verdict v = robots.policy.check(url);
                if (!v.allowed) {
                    verdict = QLatin1String(WebStore::kRobots);
                    rule = v.rule;
                }
            }
        }
    }
    const qint64 idt = WebStore::insertTarget(project(), identity, *kind, WebUrl::schemeOf(url), verdict, rule);
    if (!idt)
        return 0;
    targets_.insert(identity, WebStore::Target{idt, *kind, verdict});
    targetDepth_.insert(idt, depth);
    if (verdict == QLatin1String(WebStore::kPending)) {
        if (*kind == QLatin1String(WebStore::kPage))
            enqueuePage(identity, depth);
        else
            newChecks_ = true;
    }
    return idt;
}

void WebCrawlOperation::enqueuePage(const QString& identity, qint32 depth)
{
    QString path, name;
    pathAndName(identity, &path, &name);
    if (QuillmereDownloaderQueue::createDownloaderQueueWithURL(identity, path, name, depth, project())) {
        ++waitingCount_;
        newEntries_ = true;
    }
}

QString WebCrawlOperation::verdictOf(const WebResponse& response, bool external) const
{
    const FetchOutcome& outcome = response.outcome;
    switch (outcome.failure) {
    case FetchOutcome::Failure::None:
    case FetchOutcome::Failure::TooLarge:   // answered; only too long to read
    case FetchOutcome::Failure::WrongType:
        break;
    default:
        return QLatin1String(WebStore::kBroken);
    }
    const int status = outcome.status;
    if (status == 0)
        return QLatin1String(WebStore::kBroken);
    // Sites that turn robots away answer so whatever the link: not a broken link.
    if (external
        && (status == 401 || status == 403 || status == 429 || status == 999
            || hasHeader(response, "cf-mitigated", "challenge")))
        return QLatin1String(WebStore::kBlocked);
    if (status >= 400)
        return QLatin1String(WebStore::kBroken);
    return QLatin1String(WebStore::kOk);
}

void WebCrawlOperation::beginGroupIfNeeded()
{
    if (webGroup_)
        return;
    webGroup_ = std::make_unique<CrawlTransaction>(project()->sqlite3Database());
    webGroupAge_.start();
}

void WebCrawlOperation::entryEnded(bool counted)
{
    Q_UNUSED(counted);
    --waitingCount_;
    ++doneCount_;
    ++entriesInWebGroup_;
    setWaitingQueueCount(qint32(waitingCount_), qint32(doneCount_));
}

void WebCrawlOperation::commitWebGroup()
{
    if (!webGroup_)
        return;
    const bool committed = webGroup_->commit();
    if (!committed) {
        setDatabaseError(webGroup_->errorMessage());
        setCanContinue(false);
    }
    webGroup_.reset();
    entriesInWebGroup_ = 0;
    if (committed)
        crawlDidCommit();
}
