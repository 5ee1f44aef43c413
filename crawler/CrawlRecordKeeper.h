#pragma once

#include "store/QuillmerePage.h"

#include <QElapsedTimer>
#include <QString>

#include <atomic>
#include <memory>

struct CrawlCounters;
class Project;

// The record-keeping that a crawl's delegate owes it, written once for every front end:
// pages and links found, the running page count and depth that make the limits act, and
// the steps at the end of a crawl. The start and end steps are called on the main thread,
// the per-page calls there too or, for a front end that shows no window, on the crawler's
// thread. Nothing here locks: calls must not overlap.
//
// With a window beside the crawl (setKeepsCountersApart), the per-page calls never write to
// the project: the running count and depth go to counters of the keeper's own, which the
// project reads while the crawl runs (see CrawlCounters), and the registry's values are
// written from them at each commit and at the end, on the main thread while the crawler
// waits. The counters below may be read from any thread.
class CrawlRecordKeeper {
public:
    explicit CrawlRecordKeeper(std::shared_ptr<Project> project);
    ~CrawlRecordKeeper();

    // Before crawlDidStart.
    void setKeepsCountersApart(bool apart) { keepsCountersApart_ = apart; }

    std::shared_ptr<Project> project() const { return project_; }
    qint32 pageCount() const { return pageCount_.load(std::memory_order_relaxed); }
    qint32 maxDepth() const { return maxDepth_.load(std::memory_order_relaxed); }
    // Pages started since crawlDidStart (pageCount also counts those of earlier runs).
    qint32 pagesStartedThisRun() const { return pagesThisRun_.load(std::memory_order_relaxed); }

    // The page count as far as the pages committed to the crawl database.
    static qint32 committedPageCount(const std::shared_ptr<Project>& project);
    // The project's page count: the registry's, or the committed one when a crawl killed
    // outright left the registry behind.
    static qint32 pageCountOf(const std::shared_ptr<Project>& project);
    // A crawl killed before its end steps saved the registry leaves the registry's count and
    // depth behind its pages: the count committed in the crawl database's header wins, and
    // when nothing waits, the depth is that of the deepest entry done. Changes the project
    // in memory only; answers whether it changed it (the caller saves, if it may write).
    static bool reconcileWithDatabase(const std::shared_ptr<Project>& project);
    // A crawl from scratch: empties the crawl database and the last crawl's counters.
    static void restartProject(const std::shared_ptr<Project>& project);

    // downloaderDidStart: stamps the start date and takes up the stored counters.
    void crawlDidStart();
    // downloadPageDidStartWithURL:andDepth: counts the page and writes the running count
    // and that page's depth to the project, where the crawler's limit tests read them.
    void pageDidStart(const QString& url, qint32 depth);
    // The page just started was given up (the crawl is stopping): it is not counted.
    void pageWasAbandoned();
    // The crawl committed what it recorded: the registry is saved, once a second at most.
    // The counters saved then are those of committed pages, so a crawl killed outright
    // continues from true counts.
    void crawlDidCommit();
    // downloaderDidEnd: weights, stop date, final counters, registry saved. Answers the
    // queue's waiting and done counts.
    void crawlDidEnd(qint64* waitingCount, qint64* doneCount);

    QuillmerePagePtr foundPageWithPath(const QString& path, const QString& name, const QString& title,
                                       const QString& url, qint32 depth);
    void updatePage(const QuillmerePagePtr& page, const QString& title);
    bool foundLinkWithPath(const QString& path, const QString& name, const QString& anchor, const QString& url,
                           qint32 depth, const QuillmerePagePtr& page);
    bool foundLinkWithPage(const QuillmerePagePtr& pageTo, const QString& anchor, const QuillmerePagePtr& page);
    QuillmerePagePtr getPageFromURL(const QString& url);

private:
    // Writes the running count and the depth in hand where the limits read them.
    void publishCounters(qint32 depthInHand);
    // The counters kept apart, written to the registry's values (main thread).
    void writeCountersToProject();

    std::shared_ptr<Project> project_;
    std::atomic<qint32> pageCount_{0};
    std::atomic<qint32> maxDepth_{0};
    std::atomic<qint32> pagesThisRun_{0};
    qint32 maxDepthBeforePage_ = 0;
    QElapsedTimer sinceLastSave_;
    bool keepsCountersApart_ = false;
    std::shared_ptr<CrawlCounters> counters_;
};
