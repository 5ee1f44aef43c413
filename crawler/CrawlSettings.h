#pragma once

#include "crawler/DownloaderOperationLibXML.h"
#include "fetch/SynchronizedWebCall.h"

#include <QString>

#include <cmath>

// How a crawl treats the site: the same choices from the command line and the window.
struct CrawlSettings {
    // The ranges the values may take; outside them a value is refused, not clamped.
    static constexpr double kMinimumTimeout = 0.1;
    static constexpr double kMaximumTimeout = 86400;
    static constexpr double kMinimumTransferTime = 1;
    static constexpr double kMaximumTransferTime = 86400;
    static constexpr int kMaximumParallelFetches = 64;
    static constexpr double kMinimumRate = 0.01;
    static constexpr double kMaximumRate = 1000;

    // Seconds a transfer may stay silent; 0 or less keeps the default.
    double transferTimeout = 0;
    // Seconds a whole transfer may take; the default bounds the window's crawls as well.
    double maxTransferTime = SynchronizedWebCall::kMaxTransferInterval;
    // Requests in flight at most: 1 asks one page at a time, in queue order.
    int parallelFetches = DownloaderOperationLibXML::kDefaultParallelFetches;
    // Requests per second at most; 0: no cap.
    double maxRequestsPerSecond = 0;

    void applyTo(DownloaderOperationLibXML& operation) const
    {
        operation.syncWebCall()->setTimeoutInterval(transferTimeout);
        operation.syncWebCall()->setMaxTransferInterval(maxTransferTime);
        operation.setParallelFetches(parallelFetches);
        operation.setMaxRequestsPerSecond(maxRequestsPerSecond);
    }

    // A number written in full, finite and within [low, high]; NaN and infinities are not.
    static bool parseNumber(const QString& text, double low, double high, double* value)
    {
        bool ok = false;
        const double number = text.trimmed().toDouble(&ok);
        if (!ok || !std::isfinite(number) || number < low || number > high)
            return false;
        *value = number;
        return true;
    }

    // Reads "--parallel" and "--max-rate" values (empty: unchanged). Answers false with the
    // reason when one makes no sense.
    bool parse(const QString& parallel, const QString& maxRate, QString* why)
    {
        if (!parallel.isEmpty()) {
            bool ok = false;
            const int count = parallel.toInt(&ok);
            if (!ok || count < 1 || count > kMaximumParallelFetches) {
                *why = QStringLiteral("--parallel wants a number of requests from 1 to 64");
                return false;
            }
            parallelFetches = count;
        }
        if (!maxRate.isEmpty() && !parseNumber(maxRate, kMinimumRate, kMaximumRate, &maxRequestsPerSecond)) {
            *why = QStringLiteral("--max-rate wants a number of requests per second from 0.01 to 1000");
            return false;
        }
        return true;
    }
};
