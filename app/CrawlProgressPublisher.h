#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>

#include <functional>
#include <mutex>

// Carries a crawl's progress from the crawler's thread to the window without making the
// crawler wait: each call keeps the latest figures, and at most one update is pending on
// the main thread at a time, shown no more than about 30 times a second. What is shown is
// always the latest state, never a backlog.
class CrawlProgressPublisher : public QObject {
    Q_OBJECT
public:
    struct State {
        qint32 pageCount = 0;
        QString url;
        qint32 depth = 0;
        bool hasPage = false;
        qint32 linkValue = 0;
        qint32 linkMax = 0;
        bool hasLinks = false;
        qint32 waiting = 0;
        qint32 done = 0;
        bool hasQueue = false;
    };

    static constexpr qint64 kMinimumIntervalMs = 33;

    explicit CrawlProgressPublisher(std::function<void(const State&)> show, QObject* parent = nullptr);

    // Any thread.
    void page(qint32 pageCount, const QString& url, qint32 depth);
    void links(qint32 value, qint32 maxValue);
    void queue(qint32 waiting, qint32 done);

    // Main thread: shows what is pending now (at the end of a crawl), and forgets it.
    void flush();
    // Main thread: updates shown so far (for the tests and the bench).
    qint64 updatesShown() const { return updatesShown_; }

private:
    // Called with the lock held after a change: asks the main thread once.
    void scheduleLocked();
    void deliver();

    std::function<void(const State&)> show_;
    std::mutex mutex_;
    State pending_;     // guarded by mutex_
    bool changed_ = false;  // guarded by mutex_
    bool posted_ = false;   // guarded by mutex_
    QElapsedTimer sinceShown_;  // main thread
    qint64 updatesShown_ = 0;   // main thread
};
