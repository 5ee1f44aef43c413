#pragma once

#include "crawler/DownloaderOperationLibXML.h"
#include "fetch/SynchronizedWebCall.h"

#include <QString>

// How a crawl treats the site: the same choices from the command line and the window.
struct CrawlSettings {
    // Seconds a transfer may stay silent; 0 or less keeps the default.
    double transferTimeout = 0;
    // Requests in flight at most: 1 asks one page at a time, in queue order.
    int parallelFetches = DownloaderOperationLibXML::kDefaultParallelFetches;
    // Requests per second at most; 0: no cap.
    double maxRequestsPerSecond = 0;

    void applyTo(DownloaderOperationLibXML& operation) const
    {
        operation.syncWebCall()->setTimeoutInterval(transferTimeout);
        operation.setParallelFetches(parallelFetches);
        operation.setMaxRequestsPerSecond(maxRequestsPerSecond);
    }

    // Reads "--parallel" and "--max-rate" values (empty: unchanged). Answers false with the
    // reason when one makes no sense.
    bool parse(const QString& parallel, const QString& maxRate, QString* why)
    {
        if (!parallel.isEmpty()) {
            bool ok = false;
            const int count = parallel.toInt(&ok);
            if (!ok || count < 1 || count > 64) {
                *why = QStringLiteral("--parallel wants a number of requests from 1 to 64");
                return false;
            }
            parallelFetches = count;
        }
        if (!maxRate.isEmpty()) {
            bool ok = false;
            const double rate = maxRate.toDouble(&ok);
            if (!ok || !(rate > 0) || rate > 1e6) {
                *why = QStringLiteral("--max-rate wants a number of requests per second above 0");
                return false;
            }
            maxRequestsPerSecond = rate;
        }
        return true;
    }
};
