#pragma once

#include "app/AppDelegate.h"
#include "app/MainViewController.h"
#include "app/ProgressView.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QPushButton>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <functional>

class DocumentsView;

// Presses the progress panel's start button and calls back once the crawl and its vacuum
// are over and the window is idle again, or once the time limit is reached. Meanwhile it
// records the longest gaps between two paint events and between two heartbeat ticks.
class ScriptedCrawl : public QObject {
public:
    ScriptedCrawl(AppDelegate& delegate, qint64 timeLimitMs, std::function<void(bool ended)> done)
        : delegate_(delegate), timeLimitMs_(timeLimitMs), done_(std::move(done))
    {
        traceGapMs_ = qEnvironmentVariableIntValue("QUILLMERE_GAP_TRACE");
        heartbeat_.setTimerType(Qt::PreciseTimer);
        heartbeat_.setInterval(5);
        QObject::connect(&heartbeat_, &QTimer::timeout, this, [this] {
            const qint64 now = clock_.nsecsElapsed();
            maxTickGapNs_ = std::max(maxTickGapNs_, now - lastTickNs_);
            if (traceGapMs_ > 0 && now - lastTickNs_ > traceGapMs_ * 1000000)
                std::fprintf(stderr, "tick gap %lld ms ending at %lld ms\n", (now - lastTickNs_) / 1000000, now / 1000000);
            lastTickNs_ = now;
            if (clock_.elapsed() > timeLimitMs_)
                finish(false);
        });
    }

    void start()
    {
        MainViewController* controller = delegate_.mainViewController();
        QObject::connect(controller, &MainViewController::crawlFinished, this, [this] {
            crawlEnded_ = true;
            if (traceGapMs_ > 0)
                std::fprintf(stderr, "crawl finished at %lld ms\n", clock_.elapsed());
        });
        qApp->installEventFilter(this);
        clock_.start();
        lastTickNs_ = lastPaintNs_ = 0;
        heartbeat_.start();
        controller->progressView()->buttonLancer()->click();
        // The crawl's end is followed by the operation's own last steps: wait until the
        // queue is empty too.
        idlePoll_.setInterval(10);
        QObject::connect(&idlePoll_, &QTimer::timeout, this, [this] {
            if (crawlEnded_ && !delegate_.mainViewController()->isBusy())
                finish(true);
        });
        idlePoll_.start();
    }

    // The row of the documents list whose page receives the most links (the first of
    // them); -1 for an empty list.
    static int rowWithMostIncomingLinks(DocumentsView* view);
    // Calls back once the preview has finished loading, or after waitMs in any case, and
    // then after settleMs more for it to be painted.
    static void whenPreviewLoaded(const bool& loaded, int waitMs, int settleMs, std::function<void()> then);

    double seconds() const { return seconds_; }
    qint64 maxPaintGapMs() const { return maxPaintGapNs_ / 1000000; }
    qint64 maxTickGapMs() const { return maxTickGapNs_ / 1000000; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && watched->isWidgetType()) {
            const qint64 now = clock_.nsecsElapsed();
            maxPaintGapNs_ = std::max(maxPaintGapNs_, now - lastPaintNs_);
            // QUILLMERE_GAP_TRACE=MS prints every gap longer than MS, to find where it comes from.
            if (traceGapMs_ > 0 && now - lastPaintNs_ > traceGapMs_ * 1000000)
                std::fprintf(stderr, "paint gap %lld ms ending at %lld ms%s\n", (now - lastPaintNs_) / 1000000,
                             now / 1000000, crawlEnded_ ? " (after the crawl's end)" : "");
            lastPaintNs_ = now;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    void finish(bool ended)
    {
        if (finished_)
            return;
        finished_ = true;
        seconds_ = double(clock_.nsecsElapsed()) / 1e9;
        heartbeat_.stop();
        idlePoll_.stop();
        qApp->removeEventFilter(this);
        done_(ended);
    }

    AppDelegate& delegate_;
    qint64 timeLimitMs_;
    std::function<void(bool)> done_;
    QTimer heartbeat_;
    QTimer idlePoll_;
    QElapsedTimer clock_;
    qint64 lastTickNs_ = 0;
    qint64 lastPaintNs_ = 0;
    qint64 maxTickGapNs_ = 0;
    qint64 maxPaintGapNs_ = 0;
    double seconds_ = 0;
    qint64 traceGapMs_ = 0;
    bool crawlEnded_ = false;
    bool finished_ = false;
};
