#include "fetch/HostGate.h"

#include <algorithm>

namespace {

// How long a waiting acquire() sleeps at most before it reads the can-continue flag again.
constexpr std::chrono::milliseconds kWaitSlice{50};

} // namespace

HostGate::HostGate(int perHost, double requestsPerSecond)
    : perHost_(std::max(1, perHost)), rate_(requestsPerSecond > 0 ? requestsPerSecond : 0)
{
}

QString HostGate::keyOf(const QUrl& url)
{
    const QString scheme = url.scheme().toLower();
    const int defaultPort = scheme == QLatin1String("https") ? 443 : scheme == QLatin1String("http") ? 80 : -1;
    QString host = url.host(QUrl::FullyEncoded).toLower();
    if (host.contains(QLatin1Char(':')))
        host = QLatin1Char('[') + host + QLatin1Char(']');
    return scheme + QStringLiteral("://") + host + QLatin1Char(':') + QString::number(url.port(defaultPort));
}

bool HostGate::isFree(const QUrl& url) const
{
    std::lock_guard lock(mutex_);
    const auto found = hosts_.find(keyOf(url));
    if (found == hosts_.end())
        return true;
    return found->second.inFlight < perHost_ && std::chrono::steady_clock::now() >= found->second.nextStart;
}

bool HostGate::acquire(const QUrl& url, const std::atomic<bool>* canContinue)
{
    using Clock = std::chrono::steady_clock;
    const QString key = keyOf(url);
    std::unique_lock lock(mutex_);
    for (;;) {
        if (canContinue && !canContinue->load())
            return false;
        Host& host = hosts_[key];
        const auto now = Clock::now();
        if (host.inFlight < perHost_ && now >= host.nextStart) {
            ++host.inFlight;
            if (rate_ > 0)
                host.nextStart = now + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(1.0 / rate_));
            return true;
        }
        // A place given back wakes the wait; the rate's turn and the flag are read again
        // after a slice at most.
        auto until = now + kWaitSlice;
        if (host.inFlight < perHost_)
            until = std::min(until, host.nextStart);
        freed_.wait_until(lock, until);
    }
}

void HostGate::release(const QUrl& url)
{
    {
        std::lock_guard lock(mutex_);
        const auto found = hosts_.find(keyOf(url));
        if (found == hosts_.end())
            return;
        Host& host = found->second;
        if (host.inFlight > 0)
            --host.inFlight;
        // A host with nothing in flight and no turn to wait for needs no entry.
        if (host.inFlight == 0 && std::chrono::steady_clock::now() >= host.nextStart)
            hosts_.erase(found);
    }
    freed_.notify_all();
}
