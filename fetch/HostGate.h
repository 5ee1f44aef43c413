#pragma once

#include <QString>
#include <QUrl>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>

// Politeness per host for the web rules' checks: at most `perHost` requests in flight to
// one host (scheme, host and port) and, when a rate is set, at most that many requests per
// second to it (0: no rate). Shared by every thread of a crawl. A perHost below 1 counts as 1.
class HostGate {
public:
    explicit HostGate(int perHost = 2, double requestsPerSecond = 0);

    // Whether a request to this URL's host could start now without waiting.
    bool isFree(const QUrl& url) const;
    // Waits for a free place for this host and the rate's turn; false (nothing taken) once
    // canContinue reads false.
    bool acquire(const QUrl& url, const std::atomic<bool>* canContinue);
    // Gives the place back.
    void release(const QUrl& url);

    // "http://host:port": the key a URL is counted under.
    static QString keyOf(const QUrl& url);

private:
    struct Host {
        int inFlight = 0;
        std::chrono::steady_clock::time_point nextStart{};
    };
    int perHost_;
    double rate_;
    mutable std::mutex mutex_;
    std::condition_variable freed_;
    std::map<QString, Host> hosts_;
};
