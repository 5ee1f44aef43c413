#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QRegularExpression>
#include <QString>

// What a web-rules crawl may be told besides the settings every crawl has.
struct WebCrawlOptions {
    static constexpr qint64 kDefaultMaxPageSize = 32 * 1024 * 1024;
    static constexpr qint64 kMaximumMaxPageSize = 1024LL * 1024 * 1024;
    static constexpr double kDefaultExternalTimeout = 15;
    static constexpr int kDefaultPerHost = 2;
    static constexpr int kMaximumPerHost = 16;

    bool checkExternal = true;     // --no-external clears it
    bool obeyRobots = true;        // --ignore-robots clears it
    QList<QRegularExpression> includes;  // a URL must match one of them, when there are any
    QList<QRegularExpression> excludes;  // a URL that matches one is left alone
    QString userAgent;             // "": the program's own
    QList<QPair<QByteArray, QByteArray>> headers;
    qint64 maxPageSize = kDefaultMaxPageSize;
    double externalTimeout = kDefaultExternalTimeout;
    int perHost = kDefaultPerHost;  // checks in flight to one other host

    // Whether --include and --exclude let the crawl ask for this URL.
    bool allows(const QString& url) const
    {
        for (const auto& exclude : excludes)
            if (exclude.match(url).hasMatch())
                return false;
        if (includes.isEmpty())
            return true;
        for (const auto& include : includes)
            if (include.match(url).hasMatch())
                return true;
        return false;
    }
};
