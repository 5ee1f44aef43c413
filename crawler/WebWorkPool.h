#pragma once

#include <QUrl>

#include <atomic>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

class HostGate;

// The threads that make a web-rules crawl's requests: each task waits for its host's turn
// at its gate, runs, and gives the place back. A task whose host is busy is passed over for
// the next one, so one slow host does not hold the others up. Results go back to the
// crawler's thread through its own queue (see WebCrawlOperation).
class WebWorkPool {
public:
    explicit WebWorkPool(int threads);
    // Drops the tasks not started and waits for the running ones.
    ~WebWorkPool();
    WebWorkPool(const WebWorkPool&) = delete;
    WebWorkPool& operator=(const WebWorkPool&) = delete;

    void submit(const QUrl& url, HostGate* gate, std::function<void()> task);
    // Tasks not yet started are dropped; answers how many.
    int dropWaiting();
    // Waiting or running.
    int pending() const;

private:
    struct Task {
        QUrl url;
        HostGate* gate = nullptr;
        std::function<void()> run;
    };
    void work();

    mutable std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<Task> waiting_;
    int running_ = 0;
    bool ending_ = false;
    std::atomic<bool> keepWaiting_{true};
    std::vector<std::thread> threads_;
};
