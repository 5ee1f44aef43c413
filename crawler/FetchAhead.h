#pragma once

#include "crawler/PageReading.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

class RequestPacer;
class SynchronizedWebCall;

// Fetches the pages the crawl will analyse next while it analyses the current one: a few
// threads, each with a web call of its own, take the requested URLs in order. The crawl
// still analyses in queue order; it takes each answer when it gets to that page, and an
// answer it never takes (the page was analysed meanwhile, the crawl stopped or reached a
// limit) is dropped. A page's HTML is read (parsed, its links resolved) on the thread that
// fetched it, and freed there once analysed, so that the crawler's thread, which every page
// goes through in turn, only records. Used from the crawler's thread only.
class FetchAhead {
public:
    // threads: the most requests in flight. Each web call gets the time-outs and the pacer.
    FetchAhead(int threads, const QStringList& filteredContentTypes, double timeoutSeconds, double maxTransferSeconds,
               RequestPacer* pacer);
    // Abandons the transfers still running and waits for the threads.
    ~FetchAhead();
    FetchAhead(const FetchAhead&) = delete;
    FetchAhead& operator=(const FetchAhead&) = delete;

    int threadCount() const { return int(threads_.size()); }
    // What the links of a page are resolved against: the project's URL and whether nofollow
    // anchors are followed.
    void setReadingContext(const QString& projectURL, bool exploreNoFollow);
    // Requested and not yet taken (running, waiting or answered).
    int pendingCount() const;
    bool isRequested(const QString& url) const;
    // Requested, and its answer is in.
    bool isAnswered(const QString& url) const;
    // Waits up to `limit` for the answer to a requested URL; true once it is in. False at
    // once for a URL not requested, and as soon as canContinue reads false.
    bool waitForAnswer(const QString& url, std::chrono::milliseconds limit, const std::atomic<bool>& canContinue);

    // Queues the URL's GET, asked only of requiredOrigin's server (an invalid origin: any);
    // path is the directory its links are resolved in.
    void request(const QString& url, const QUrl& requiredOrigin, const QString& path);
    // The answer to a request of this URL with this origin, waiting for it if needed; into
    // receives the answer's fields. False (nothing changed) when it was not requested so.
    // While it waits, a cleared canContinue abandons every transfer; the answer then reads
    // as abandoned. reading (when given) receives the page read from the data, null when
    // there was none (no data, a redirect).
    bool take(const QString& url, const QUrl& requiredOrigin, const std::atomic<bool>& canContinue, QByteArray* data,
              SynchronizedWebCall* into, PageReadingPtr* reading = nullptr);
    // Frees an analysed page on a fetch thread.
    void dispose(PageReadingPtr reading);
    // Drops every answer and request not taken; abandons the transfers in flight.
    void dropAll();

private:
    struct Job;
    void run(SynchronizedWebCall* call);
    void abandonRunning(std::unique_lock<std::mutex>& lock);

    mutable std::mutex mutex_;
    std::condition_variable wake_;      // a job was queued, or the end came
    std::condition_variable answered_;  // a job finished
    std::deque<std::shared_ptr<Job>> waiting_;
    std::vector<PageReadingPtr> disposed_;
    QString projectURL_;
    bool exploreNoFollow_ = false;
    QHash<QString, std::shared_ptr<Job>> jobs_;  // by URL, until taken
    bool ending_ = false;
    // Cleared to abandon the transfers in flight; set again once they have stopped.
    std::atomic<bool> transfersMayRun_{true};
    int running_ = 0;
    QStringList filteredContentTypes_;
    std::vector<std::unique_ptr<SynchronizedWebCall>> calls_;
    std::vector<std::thread> threads_;
};
