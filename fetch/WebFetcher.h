#pragma once

#include "fetch/FetchOutcome.h"

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <atomic>

// How a web-rules request is made.
struct WebRequestOptions {
    QString userAgent;                              // "" : the program's own
    QList<QPair<QByteArray, QByteArray>> headers;   // extra request headers, in order
    double timeoutSeconds = 30;                     // silence allowed before giving up
    double maxTransferSeconds = 300;                // a whole transfer, redirects included
    qint64 maxBodyBytes = 32 * 1024 * 1024;         // a longer body fails with TooLarge
    // Content types whose body is kept (a prefix match on the media type, case-insensitive,
    // e.g. "text/html", "application/xhtml+xml", "text/plain"); any other answer is read up
    // to its headers only, and the transfer stops there.
    QStringList keptContentTypes;
    bool followRedirects = false;                   // at most 20
};

// One answer, whatever it was.
struct WebResponse {
    FetchOutcome outcome;        // status or failure, final URL, redirect chain, time, date
    QString contentType;         // the Content-Type field as sent, parameters included; "" when none
    qint64 contentLength = -1;   // declared; -1 when absent
    QByteArray body;             // the body when its type is kept and it came whole (empty, not null, when
                                 // empty); null otherwise, and never for a redirect with a Location
    QString location;            // absolute URL of a redirect answered and not followed; null otherwise
    QList<QPair<QByteArray, QByteArray>> headers;  // the final response's header fields, names in lower case
    bool abandoned = false;      // canContinue read false during the transfer
};

// Blocking HTTP for the web rules on libcurl: GET or HEAD of an absolute http or https URL,
// with the options above. Nothing is escaped or rewritten: the URL is sent as QUrl encodes
// it. Safe to use from several threads, one call per thread at a time.
class WebFetcher {
public:
    static WebResponse get(const QUrl& url, const WebRequestOptions& options,
                           const std::atomic<bool>* canContinue = nullptr);
    static WebResponse head(const QUrl& url, const WebRequestOptions& options,
                            const std::atomic<bool>* canContinue = nullptr);
    // A link check: HEAD, then GET (headers only) when HEAD failed or answered 4xx, 5xx;
    // redirects followed. The answer of the request that counted. No GET follows a 429 (when
    // to ask again is the caller's decision, see the "retry-after" header), nor a failure a
    // second request would only repeat: refused, unknown host, bad URL, too many redirects,
    // abandoned.
    static WebResponse check(const QUrl& url, const WebRequestOptions& options,
                             const std::atomic<bool>* canContinue = nullptr);
};
