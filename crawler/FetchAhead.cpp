#include "crawler/FetchAhead.h"

#include "fetch/SynchronizedWebCall.h"

#include <chrono>

struct FetchAhead::Job {
    QString url;
    QUrl origin;
    bool started = false;
    bool done = false;
    QString path;
    QByteArray data;
    PageReadingPtr reading;
    SynchronizedWebCall answer;
};

FetchAhead::FetchAhead(int threads, const QStringList& filteredContentTypes, double timeoutSeconds,
                       double maxTransferSeconds, RequestPacer* pacer)
    : filteredContentTypes_(filteredContentTypes)
{
    // libxml2 sets up its globals once, before any thread parses.
    xmlInitParser();
    for (int i = 0; i < threads; ++i) {
        auto call = std::make_unique<SynchronizedWebCall>();
        call->setTimeoutInterval(timeoutSeconds);
        call->setMaxTransferInterval(maxTransferSeconds);
        call->setRequestPacer(pacer);
        call->setCanContinueFlag(&transfersMayRun_);
        calls_.push_back(std::move(call));
    }
    for (auto& call : calls_)
        threads_.emplace_back([this, c = call.get()] { run(c); });
}

FetchAhead::~FetchAhead()
{
    {
        std::unique_lock lock(mutex_);
        ending_ = true;
        waiting_.clear();
        transfersMayRun_.store(false);
    }
    wake_.notify_all();
    for (auto& thread : threads_)
        thread.join();
}

void FetchAhead::setReadingContext(const QString& projectURL, bool exploreNoFollow)
{
    std::lock_guard lock(mutex_);
    projectURL_ = projectURL;
    exploreNoFollow_ = exploreNoFollow;
}

void FetchAhead::dispose(PageReadingPtr reading)
{
    if (!reading)
        return;
    {
        std::lock_guard lock(mutex_);
        if (ending_)
            return;
        disposed_.push_back(std::move(reading));
    }
    // No thread is woken for it: the next one that wakes for a fetch frees it first.
}

int FetchAhead::pendingCount() const
{
    std::lock_guard lock(mutex_);
    return int(jobs_.size());
}

bool FetchAhead::isRequested(const QString& url) const
{
    std::lock_guard lock(mutex_);
    return jobs_.contains(url);
}

bool FetchAhead::isAnswered(const QString& url) const
{
    std::lock_guard lock(mutex_);
    const auto found = jobs_.constFind(url);
    return found != jobs_.cend() && found.value()->done;
}

bool FetchAhead::waitForAnswer(const QString& url, std::chrono::milliseconds limit,
                               const std::atomic<bool>& canContinue)
{
    const auto until = std::chrono::steady_clock::now() + limit;
    std::unique_lock lock(mutex_);
    const auto found = jobs_.constFind(url);
    if (found == jobs_.cend())
        return false;
    const std::shared_ptr<Job> job = found.value();
    while (!job->done && canContinue.load()) {
        const auto now = std::chrono::steady_clock::now();
        if (now >= until)
            break;
        // The stop flag is not signalled: look at it now and then.
        answered_.wait_for(lock, std::min<std::chrono::steady_clock::duration>(until - now, std::chrono::milliseconds(10)));
    }
    return job->done;
}

void FetchAhead::request(const QString& url, const QUrl& requiredOrigin, const QString& path)
{
    {
        std::lock_guard lock(mutex_);
        if (ending_ || jobs_.contains(url))
            return;
        auto job = std::make_shared<Job>();
        job->url = url;
        job->origin = requiredOrigin;
        job->path = path;
        jobs_.insert(url, job);
        waiting_.push_back(job);
    }
    wake_.notify_one();
}

bool FetchAhead::take(const QString& url, const QUrl& requiredOrigin, const std::atomic<bool>& canContinue,
                      QByteArray* data, SynchronizedWebCall* into, PageReadingPtr* reading)
{
    std::unique_lock lock(mutex_);
    const auto found = jobs_.find(url);
    if (found == jobs_.end())
        return false;
    std::shared_ptr<Job> job = found.value();
    jobs_.erase(found);
    if (job->origin != requiredOrigin) {
        // Asked under other rules than the analysis now applies: not an answer to use.
        std::erase(waiting_, job);
        return false;
    }
    if (!job->started) {
        // Needed now: first in line, ahead of the pages after it.
        std::erase(waiting_, job);
        waiting_.push_front(job);
        wake_.notify_one();
    }
    while (!job->done) {
        if (!canContinue.load()) {
            // A stop: nothing new starts, and what runs gives up (this page among them).
            waiting_.clear();
            if (!job->started) {
                job->data = QByteArray();
                SynchronizedWebCall stopped;
                std::atomic<bool> no{false};
                stopped.setCanContinueFlag(&no);
                (void)stopped.getURL(url, filteredContentTypes_, requiredOrigin);
                job->answer.adoptAnswerOf(stopped);
                job->done = true;
                break;
            }
            abandonRunning(lock);
        }
        answered_.wait_for(lock, std::chrono::milliseconds(50));
    }
    *data = job->data;
    into->adoptAnswerOf(job->answer);
    if (reading)
        *reading = std::move(job->reading);
    return true;
}

void FetchAhead::dropAll()
{
    std::unique_lock lock(mutex_);
    waiting_.clear();
    jobs_.clear();
    abandonRunning(lock);
}

// Clears the flag the running transfers read and waits until they have all given up.
void FetchAhead::abandonRunning(std::unique_lock<std::mutex>& lock)
{
    if (running_ == 0)
        return;
    transfersMayRun_.store(false);
    answered_.wait(lock, [&] { return running_ == 0; });
    transfersMayRun_.store(true);
}

void FetchAhead::run(SynchronizedWebCall* call)
{
    std::unique_lock lock(mutex_);
    for (;;) {
        wake_.wait(lock, [&] { return ending_ || !waiting_.empty() || !disposed_.empty(); });
        if (ending_)
            return;
        if (!disposed_.empty()) {
            std::vector<PageReadingPtr> freed;
            freed.swap(disposed_);
            lock.unlock();
            freed.clear();
            lock.lock();
            continue;
        }
        std::shared_ptr<Job> job = waiting_.front();
        waiting_.pop_front();
        job->started = true;
        ++running_;
        lock.unlock();
        QByteArray data = call->getURL(job->url, filteredContentTypes_, job->origin);
        // A redirect's body is never read as a page.
        PageReadingPtr reading;
        if (!call->isRedirect() && !call->isAbandoned()) {
            lock.lock();
            const QString projectURL = projectURL_;
            const bool exploreNoFollow = exploreNoFollow_;
            lock.unlock();
            try {
                reading = PageReading::read(data, job->url, job->path, projectURL, exploreNoFollow);
            } catch (...) {
                // A parse that fails so is made again by the analysis, which meets the fault
                // where it always has.
                reading.reset();
            }
        }
        lock.lock();
        job->data = data;
        job->reading = std::move(reading);
        job->answer.adoptAnswerOf(*call);
        job->done = true;
        --running_;
        answered_.notify_all();
    }
}
