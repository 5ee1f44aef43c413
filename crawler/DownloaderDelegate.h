#pragma once

#include "store/QuillmerePage.h"

#include <QString>

// What a crawl reports, and the page and link records it asks for. Every call arrives on
// the main thread while the crawler's thread waits; an implementation must never wait for
// the crawler. A delegate may instead take the per-page calls on the crawler's own thread
// (takesCallsOnCrawlerThread): the command line does, and the window does, handing what it
// shows to its own thread without waiting; the start and end calls still come on the main
// thread. The record-keeping calls must keep the crawl database consistent: see
// CrawlRecordKeeper, which does exactly what they owe.
class DownloaderDelegate {
public:
    virtual ~DownloaderDelegate() = default;

    virtual void downloaderDidStart() = 0;
    virtual void downloaderDidEnd() = 0;
    virtual void downloaderEndWithError(const QString& error) = 0;
    virtual void downloadPageDidStartWithURL(const QString& url, qint32 depth) = 0;
    virtual void downloadPageDidEndWithURL(const QString& url, qint32 depth) = 0;
    virtual QuillmerePagePtr foundPageWithPath(const QString& path, const QString& name, const QString& title,
                                               const QString& url, qint32 depth) = 0;
    virtual void updatePage(const QuillmerePagePtr& page, const QString& title) = 0;
    virtual bool foundLinkWithPath(const QString& path, const QString& name, const QString& anchor, const QString& url,
                                   qint32 depth, const QuillmerePagePtr& page) = 0;
    virtual bool foundLinkWithPage(const QuillmerePagePtr& pageTo, const QString& anchor,
                                   const QuillmerePagePtr& page) = 0;
    virtual QuillmerePagePtr getPageFromURL(const QString& url) = 0;
    virtual void initLinkProgressWithMaxValue(qint32 linkCountMax) = 0;
    virtual void setLinkProgressWithValue(qint32 value, qint32 maxValue) = 0;
    virtual void setWaitingQueueCount(qint32 waitingCount, qint32 doneCount) = 0;  // ...andDoneQueueDone:
    // The page whose start was announced was not analysed: its transfer was abandoned
    // because the crawl is stopping, and its queue entry stays waiting for a later run.
    virtual void downloadPageWasAbandonedWithURL(const QString& url, qint32 depth)
    {
        (void)url;
        (void)depth;
    }
    // Everything recorded so far is committed to the crawl database (each commit holds at
    // most 100 queue entries, begun within a quarter of a second).
    virtual void crawlDidCommit() {}
    // True when nothing else needs the main thread while the crawl runs (no window): the
    // hand-over to it per call is then saved.
    virtual bool takesCallsOnCrawlerThread() const { return false; }
    // Where crawlDidCommit is taken: with the per-page calls unless said otherwise. A window
    // that takes the per-page calls on the crawler's thread takes this one on the main
    // thread, while the crawler waits, to write the registry there.
    virtual bool takesCommitsOnCrawlerThread() const { return takesCallsOnCrawlerThread(); }
};
