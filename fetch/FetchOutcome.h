#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

// What one GET taught about its URL, kept for the audit reports beside the crawl's own
// records: the final status or why there was none, how long it took, and where redirects led.
struct FetchHop {
    QString url;     // the URL that answered with a redirect
    int status = 0;  // its status (301, 302, 303, 307, 308)
};

struct FetchOutcome {
    // Why the fetch gave no usable answer; None when the server answered (whatever status).
    enum class Failure {
        None,
        TimedOut,
        Refused,        // the connection was refused or could not be made
        HostNotFound,   // DNS
        TooLarge,       // the body outgrew the download limit
        WrongType,      // the Content-Type was not one the caller accepts
        TooManyRedirects,
        OtherHost,      // not asked: the URL is on another server than the project's
        BadURL,
        Abandoned,      // the crawl stopped during the transfer
        Other,
    };

    QString requestedURL;      // the URL string as the caller gave it
    QString finalURL;          // the URL that gave the last answer (after redirects)
    int status = 0;            // the final HTTP status; 0 when no response came
    Failure failure = Failure::None;
    QString failureText;       // the transfer's own words for the failure, when there is one
    qint64 responseMs = -1;    // from the request to the end of the answer; -1 when not asked
    QList<FetchHop> redirectChain;  // each redirect followed, in order
    QDateTime fetchedAt;       // when the request was sent (UTC)

    bool isValid() const { return !requestedURL.isNull(); }

    // A stable lower-case word for each failure ("timeout", "refused", "dns", "too-large",
    // "wrong-type", "too-many-redirects", "other-host", "bad-url", "abandoned", "error"); ""
    // for None.
    static QString failureName(Failure failure)
    {
        switch (failure) {
        case Failure::None: return QStringLiteral("");
        case Failure::TimedOut: return QStringLiteral("timeout");
        case Failure::Refused: return QStringLiteral("refused");
        case Failure::HostNotFound: return QStringLiteral("dns");
        case Failure::TooLarge: return QStringLiteral("too-large");
        case Failure::WrongType: return QStringLiteral("wrong-type");
        case Failure::TooManyRedirects: return QStringLiteral("too-many-redirects");
        case Failure::OtherHost: return QStringLiteral("other-host");
        case Failure::BadURL: return QStringLiteral("bad-url");
        case Failure::Abandoned: return QStringLiteral("abandoned");
        case Failure::Other: return QStringLiteral("error");
        }
        return QStringLiteral("error");
    }
};
