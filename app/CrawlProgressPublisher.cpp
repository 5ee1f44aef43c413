#include "app/CrawlProgressPublisher.h"

#include <QMetaObject>
#include <QTimer>

CrawlProgressPublisher::CrawlProgressPublisher(std::function<void(const State&)> show, QObject* parent)
    : QObject(parent), show_(std::move(show))
{
}

void CrawlProgressPublisher::page(qint32 pageCount, const QString& url, qint32 depth)
{
    std::lock_guard lock(mutex_);
    pending_.pageCount = pageCount;
    pending_.url = url;
    pending_.depth = depth;
    pending_.hasPage = true;
    scheduleLocked();
}

void CrawlProgressPublisher::links(qint32 value, qint32 maxValue)
{
    std::lock_guard lock(mutex_);
    pending_.linkValue = value;
    pending_.linkMax = maxValue;
    pending_.hasLinks = true;
    scheduleLocked();
}

void CrawlProgressPublisher::queue(qint32 waiting, qint32 done)
{
    std::lock_guard lock(mutex_);
    pending_.waiting = waiting;
    pending_.done = done;
    pending_.hasQueue = true;
    scheduleLocked();
}

void CrawlProgressPublisher::scheduleLocked()
{
    changed_ = true;
    if (posted_)
        return;
    posted_ = true;
    // Dropped with this object if it goes first.
    QMetaObject::invokeMethod(this, [this] { deliver(); }, Qt::QueuedConnection);
}

void CrawlProgressPublisher::deliver()
{
    if (sinceShown_.isValid() && sinceShown_.elapsed() < kMinimumIntervalMs) {
        QTimer::singleShot(int(kMinimumIntervalMs - sinceShown_.elapsed()), this, [this] { deliver(); });
        return;
    }
    State state;
    {
        std::lock_guard lock(mutex_);
        posted_ = false;
        if (!changed_)
            return;
        changed_ = false;
        state = pending_;
        // What is shown is not shown again.
        pending_ = State();
    }
    sinceShown_.start();
    ++updatesShown_;
    show_(state);
}

void CrawlProgressPublisher::flush()
{
    State state;
    {
        std::lock_guard lock(mutex_);
        if (!changed_)
            return;
        changed_ = false;
        state = pending_;
        // What is shown is not shown again.
        pending_ = State();
    }
    ++updatesShown_;
    show_(state);
}
