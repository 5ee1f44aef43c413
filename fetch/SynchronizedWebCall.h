#pragma once

#include "fetch/FetchError.h"
#include "fetch/FetchOutcome.h"
#include "fetch/HTTPURLResponse.h"
#include "fetch/URLRequest.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <atomic>
#include <optional>

class RequestPacer;

// The crawler's door to the web: a blocking GET of a URL string that answers the body only
// when the answer is usable, and that leaves on the object the classification of that last
// answer.
//
// An instance is used from one thread at a time (it is not shared): the crawl has its own,
// and each thread that fetches ahead for it has another. Each call blocks its thread while a
// worker thread runs the transfer.
//
// After getURL(), whatever it answered, read:
//   isRedirect()           at least one redirect was followed
//   redirectURL()          absolute URL of the last redirect target; null without a redirect
//   contentType()          the final response's Content-Type ("" when there was none, or no
//                          response at all)
//   contentLength()        its declared Content-Length; -1 when absent
//   downloadedLength()     body bytes received; -1 when no body was kept (failure, refused
//                          type, exceeded limit, empty body)
//   isContentTypeError()   the Content-Type matched none of the filters
//   isContentLengthError() the body exceeded kDownloadLimit (1,048,576 bytes)
//   is404()                the final status was 404
//   isAbandoned()          the transfer was given up because the can-continue flag was
//                          cleared (the crawl is stopping); the rest reads as a failure
//   isOtherHostRefused()   nothing was sent: the URL is not on the required origin; the
//                          rest reads as for a server that cannot be reached
//   lastOutcome()          what the fetch taught about the URL, for the audit: final status
//                          or failure, time taken, redirect chain, final URL, time sent
// Exception: when the string makes no URL at all, getURL() answers null at once having reset
// only isRedirect() (false) and redirectURL() (null); the other fields keep the values of the
// previous call.
class SynchronizedWebCall {
public:
    static constexpr qint64 kDownloadLimit = 1048576;
    static constexpr double kTimeoutInterval = 1000.0;
    // Seconds a whole transfer (redirects included) may take, however steadily the bytes
    // come: a server that sends a byte a second must not hold a page for ever.
    static constexpr double kMaxTransferInterval = 300.0;

    // init: every flag false, contentType "", both lengths -1, redirectURL null.
    SynchronizedWebCall();

    // GETs the URL, keeping the body only when its Content-Type contains one of the filters
    // (the crawler passes {"text/html"}, robots.txt {"text/plain"}; no list accepts any
    // type). The URL string is percent-escaped in UTF-8 (Mac OS Roman as a fallback) before
    // parsing. Answers the body when the status is 200, 201 or 204 and a non-empty body was
    // kept; otherwise a null array (isNull()), the fields telling why.
    QByteArray getURL(const QString& url, const std::optional<QStringList>& filteredMimeType);
    // The same, but only for a URL on requiredOrigin (same scheme, host and port; an invalid
    // origin allows any): another URL is refused before anything is sent, and the fields
    // read as after a connection that failed, with isOtherHostRefused() true. Redirects
    // chosen by the server are followed wherever they go.
    QByteArray getURL(const QString& url, const std::optional<QStringList>& filteredMimeType,
                      const QUrl& requiredOrigin);

    // Whether two URLs share scheme, host and port (the scheme's default port when none is
    // written).
    static bool isSameOrigin(const QUrl& url, const QUrl& origin);

    // An answer 429 or 503 whose Retry-After asks for at most this many seconds is waited
    // for and the URL asked again, up to kMaximumRetries times; otherwise it stands.
    static constexpr int kMaximumRetryAfterSeconds = 60;
    static constexpr int kMaximumRetries = 3;
    // The seconds a Retry-After value asks for (a number of seconds or an HTTP date, counted
    // from `now`); -1 when it says nothing usable.
    static qint64 retryAfterSeconds(const QString& value, const QDateTime& now);

    // The cap on requests per second shared by all the calls of a crawl; null: none.
    void setRequestPacer(RequestPacer* pacer) { pacer_ = pacer; }

    // Takes over the answer another call received (every field read after getURL()), as
    // if this call had made the request.
    void adoptAnswerOf(const SynchronizedWebCall& other);

    // The flag that abandons a transfer in progress once it reads false (the crawl's stop
    // flag); null: transfers always run to their end.
    void setCanContinueFlag(const std::atomic<bool>* canContinue) { canContinue_ = canContinue; }

    // True when the answer is unusable: no response, no body, an error, or a status other
    // than 200, 201, 204.
    bool isInValidResponse(const HTTPURLResponsePtr& response, const QByteArray& result,
                           const FetchErrorPtr& error) const;

    // HEADs the URL as it stands (no escaping) and answers the response's header fields, or
    // nothing when the answer is unusable. Touches no field.
    std::optional<HTTPHeaderFields> headURL(const QString& url);

    // True when the answer is unusable: no response, no header dictionary, an error, or a
    // status other than 200, 201, 204.
    bool isInValidHeadResponse(const HTTPURLResponsePtr& response, const FetchErrorPtr& error) const;

    // A plain blocking transfer with no limit and no filter. Answers the body (empty when
    // the body was empty) or a null array on failure.
    QByteArray performURLConnectionWithRequest(const URLRequest& request, HTTPURLResponsePtr* response,
                                               FetchErrorPtr* error);

    // Fields.
    bool isRedirect() const { return isRedirect_; }
    void setIsRedirect(bool v) { isRedirect_ = v; }
    bool isContentTypeError() const { return isContentTypeError_; }
    void setIsContentTypeError(bool v) { isContentTypeError_ = v; }
    bool isContentLengthError() const { return isContentLengthError_; }
    void setIsContentLengthError(bool v) { isContentLengthError_ = v; }
    bool is404() const { return is404_; }
    void setIs404(bool v) { is404_ = v; }
    bool isAbandoned() const { return isAbandoned_; }
    bool isOtherHostRefused() const { return isOtherHostRefused_; }
    // Never set by the calls; kept for callers that want a flag of their own.
    bool isError() const { return isError_; }
    void setIsError(bool v) { isError_ = v; }
    QString contentType() const { return contentType_; }
    void setContentType(const QString& v) { contentType_ = v; }
    qint64 contentLength() const { return contentLength_; }
    void setContentLength(qint64 v) { contentLength_ = v; }
    qint64 downloadedLength() const { return downloadedLength_; }
    void setDownloadedLength(qint64 v) { downloadedLength_ = v; }
    QString redirectURL() const { return redirectURL_; }
    void setRedirectURL(const QString& v) { redirectURL_ = v; }
    const FetchOutcome& lastOutcome() const { return lastOutcome_; }

    // Reset to 0 by each GET and never changed otherwise.
    qint64 downloadedSize() const { return downloadedSize_; }
    void setDownloadedSize(qint64 v) { downloadedSize_ = v; }

    // The time-out of the requests built here: kTimeoutInterval unless a test shortened it.
    static double timeoutInterval();
    // This instance's time-out (seconds), e.g. from the command line; 0 or less: the one above.
    void setTimeoutInterval(double seconds) { ownTimeoutInterval_ = seconds; }
    double requestTimeoutInterval() const { return ownTimeoutInterval_ > 0 ? ownTimeoutInterval_ : timeoutInterval(); }
    // This instance's bound on a whole transfer (seconds); 0 or less: kMaxTransferInterval.
    void setMaxTransferInterval(double seconds) { ownMaxTransferInterval_ = seconds; }
    double maxTransferInterval() const
    {
        return ownMaxTransferInterval_ > 0 ? ownMaxTransferInterval_ : kMaxTransferInterval;
    }
    // For tests only: a shorter time-out (seconds); 0 or less restores kTimeoutInterval.
    static void setTimeoutIntervalForTesting(double seconds);

    // The URL a string makes once escaped (UTF-8, then Mac OS Roman); nothing when it makes
    // none.
    static std::optional<QUrl> URLFromString(const QString& string);

private:
    struct Transfer;

    URLRequest requestWithURL(const QUrl& url, const QString& method) const;
    void startCall(const QString& urlString);
    void refuseOtherOrigin();
    void fetchWithRetries(const URLRequest& request, const std::optional<QStringList>& filteredMimeType,
                          Transfer& transfer);
    static void stopDuringWait(Transfer& transfer);
    void recordAnswer(const Transfer& transfer);
    void recordOutcome(const Transfer& transfer);

    bool isRedirect_ = false;
    bool isContentTypeError_ = false;
    bool isContentLengthError_ = false;
    bool is404_ = false;
    bool isError_ = false;
    QString contentType_ = QStringLiteral("");
    qint64 contentLength_ = -1;
    qint64 downloadedLength_ = -1;
    QString redirectURL_;
    qint64 downloadedSize_ = 0;
    bool isAbandoned_ = false;
    bool isOtherHostRefused_ = false;
    FetchOutcome lastOutcome_;
    double ownTimeoutInterval_ = 0;
    double ownMaxTransferInterval_ = 0;
    const std::atomic<bool>* canContinue_ = nullptr;
    RequestPacer* pacer_ = nullptr;
};
