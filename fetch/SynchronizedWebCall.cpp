#include "fetch/SynchronizedWebCall.h"

#include "fetch/NSURLConnectionLimitSize.h"
#include "fetch/PercentEscapes.h"
#include "fetch/RequestPacer.h"
#include "fetch/URLConnection.h"

#include <QElapsedTimer>
#include <QLocale>
#include <QTimeZone>
#include <QVariantMap>

#include <atomic>

namespace {

std::atomic<double> testTimeoutInterval{0.0};

bool isSuccessStatus(int status)
{
    return status == 200 || status == 201 || status == 204;
}

std::optional<QUrl> parseEscaped(const QString& string, PercentEscapes::Encoding encoding)
{
    const auto escaped = PercentEscapes::stringByAddingPercentEscapes(string, encoding);
    if (!escaped)
        return std::nullopt;
    QUrl url(*escaped, QUrl::StrictMode);
    if (!url.isValid())
        return std::nullopt;
    return url;
}

FetchOutcome::Failure failureOf(const FetchErrorPtr& error, bool abandoned)
{
    if (abandoned)
        return FetchOutcome::Failure::Abandoned;
    switch (error->code()) {
    case FetchError::TimedOut: return FetchOutcome::Failure::TimedOut;
    case FetchError::CannotConnectToHost: return FetchOutcome::Failure::Refused;
    case FetchError::CannotFindHost: return FetchOutcome::Failure::HostNotFound;
    case FetchError::HTTPTooManyRedirects: return FetchOutcome::Failure::TooManyRedirects;
    case FetchError::BadURL:
    case FetchError::UnsupportedURL: return FetchOutcome::Failure::BadURL;
    default: return FetchOutcome::Failure::Other;
    }
}

} // namespace

SynchronizedWebCall::SynchronizedWebCall() = default;

double SynchronizedWebCall::timeoutInterval()
{
    const double injected = testTimeoutInterval.load();
    return injected > 0 ? injected : kTimeoutInterval;
}

void SynchronizedWebCall::setTimeoutIntervalForTesting(double seconds)
{
    testTimeoutInterval.store(seconds);
}

std::optional<QUrl> SynchronizedWebCall::URLFromString(const QString& string)
{
    if (auto url = parseEscaped(string, PercentEscapes::UTF8))
        return url;
    return parseEscaped(string, PercentEscapes::MacOSRoman);
}

URLRequest SynchronizedWebCall::requestWithURL(const QUrl& url, const QString& method) const
{
    URLRequest request(url, URLRequest::ReloadIgnoringLocalCacheData, requestTimeoutInterval());
    request.setHTTPMethod(method);
    request.setMaxTransferInterval(maxTransferInterval());
    return request;
}

bool SynchronizedWebCall::isSameOrigin(const QUrl& url, const QUrl& origin)
{
    const QString scheme = url.scheme().toLower();
    const int defaultPort = scheme == QLatin1String("https") ? 443 : 80;
    return scheme == origin.scheme().toLower() && url.host().toLower() == origin.host().toLower()
           && url.port(defaultPort) == origin.port(defaultPort);
}

QByteArray SynchronizedWebCall::getURL(const QString& urlString, const std::optional<QStringList>& filteredMimeType)
{
    return getURL(urlString, filteredMimeType, QUrl());
}

// What one GET received: the final response, the body, the error, and the header
// dictionary the size-limited transfer fills.
struct SynchronizedWebCall::Transfer {
    HTTPURLResponsePtr response;
    FetchErrorPtr error;
    QByteArray data;
    QVariantMap headers;
};

QByteArray SynchronizedWebCall::getURL(const QString& urlString, const std::optional<QStringList>& filteredMimeType,
                                       const QUrl& requiredOrigin)
{
    startCall(urlString);
    const auto url = URLFromString(urlString);
    if (!url) {
        lastOutcome_.failure = FetchOutcome::Failure::BadURL;
        return QByteArray();
    }
    lastOutcome_.finalURL = url->toString(QUrl::FullyEncoded);

    if (requiredOrigin.isValid() && !isSameOrigin(*url, requiredOrigin)) {
        refuseOtherOrigin();
        return QByteArray();
    }

    Transfer transfer;
    fetchWithRetries(requestWithURL(*url, QStringLiteral("GET")), filteredMimeType, transfer);
    isAbandoned_ = transfer.error && transfer.error->code() == FetchError::Cancelled && canContinue_
                   && !canContinue_->load();
    const bool invalid = isInValidResponse(transfer.response, transfer.data, transfer.error);
    recordAnswer(transfer);
    recordOutcome(transfer);
    if (invalid)
        return QByteArray();
    return transfer.data;
}

// The fields every call resets before anything else, even for a string that makes no URL.
void SynchronizedWebCall::startCall(const QString& urlString)
{
    downloadedSize_ = 0;
    isRedirect_ = false;
    redirectURL_ = QString();
    isAbandoned_ = false;
    isOtherHostRefused_ = false;
    lastOutcome_ = FetchOutcome();
    lastOutcome_.requestedURL = urlString.isNull() ? QStringLiteral("") : urlString;
    lastOutcome_.fetchedAt = QDateTime::currentDateTimeUtc();
}

// What a server that cannot be reached leaves, without a byte sent to it.
void SynchronizedWebCall::refuseOtherOrigin()
{
    isOtherHostRefused_ = true;
    contentType_ = QStringLiteral("");
    isContentTypeError_ = false;
    contentLength_ = -1;
    isContentLengthError_ = false;
    downloadedLength_ = -1;
    is404_ = false;
    lastOutcome_.failure = FetchOutcome::Failure::OtherHost;
}

// Sends the request in its turn, and again after a 429 or 503 whose Retry-After asks for a
// short wait, up to kMaximumRetries times.
void SynchronizedWebCall::fetchWithRetries(const URLRequest& request,
                                           const std::optional<QStringList>& filteredMimeType, Transfer& transfer)
{
    for (int attempt = 0;; ++attempt) {
        if (pacer_ && !pacer_->waitTurn(canContinue_)) {
            stopDuringWait(transfer);
            return;
        }
        transfer.headers.clear();
        lastOutcome_.redirectChain.clear();
        lastOutcome_.fetchedAt = QDateTime::currentDateTimeUtc();
        QElapsedTimer clock;
        clock.start();
        transfer.data = NSURLConnectionLimitSize::sendSynchronousRequest(
            request, &transfer.response, kDownloadLimit, filteredMimeType, &transfer.headers, &transfer.error,
            canContinue_, &lastOutcome_.redirectChain);
        lastOutcome_.responseMs = clock.elapsed();
        // A server that is busy or rate-limiting says when to come back: a short wait is
        // better than a page recorded as failed.
        const int status = transfer.response ? transfer.response->statusCode() : 0;
        if (transfer.error || (status != 429 && status != 503) || attempt >= kMaximumRetries)
            return;
        const qint64 wait = retryAfterSeconds(
            transfer.response->valueForHTTPHeaderField(QStringLiteral("Retry-After")), QDateTime::currentDateTimeUtc());
        if (wait < 0 || wait > kMaximumRetryAfterSeconds)
            return;
        if (!RequestPacer::sleepFor(std::chrono::seconds(wait), canContinue_)) {
            stopDuringWait(transfer);
            return;
        }
    }
}

// A stop during a wait (the pacer's or a Retry-After's) ends the call as a transfer
// abandoned: no response, and the fields of a failed transfer.
void SynchronizedWebCall::stopDuringWait(Transfer& transfer)
{
    transfer.error = FetchError::errorWithCode(FetchError::Cancelled, QStringLiteral("the transfer was abandoned"));
    transfer.response.reset();
    transfer.data = QByteArray();
    transfer.headers = QVariantMap{{QStringLiteral("contentType"), QStringLiteral("")},
                                   {QStringLiteral("contentLength"), qint64(-1)}};
}

// The fields read after the call, from the header dictionary and the final response.
void SynchronizedWebCall::recordAnswer(const Transfer& transfer)
{
    const QVariantMap& headers = transfer.headers;
    if (headers.value(QStringLiteral("isRedirect")).toBool()) {
        isRedirect_ = true;
        redirectURL_ = headers.value(QStringLiteral("redirectURL")).toString();
    } else {
        isRedirect_ = false;
        redirectURL_ = QString();
    }
    contentType_ = headers.value(QStringLiteral("contentType")).toString();
    isContentTypeError_ = headers.value(QStringLiteral("contentTypeError")).toBool();
    contentLength_ = headers.value(QStringLiteral("contentLength")).toLongLong();
    isContentLengthError_ = headers.value(QStringLiteral("contentLengthError")).toBool();

    downloadedLength_ = transfer.data.isNull() ? -1 : transfer.data.size();
    is404_ = (transfer.response ? transfer.response->statusCode() : 0) == 404;
}

// What the fetch taught about the URL, for the audit: status or failure and final URL.
void SynchronizedWebCall::recordOutcome(const Transfer& transfer)
{
    lastOutcome_.status = transfer.response ? transfer.response->statusCode() : 0;
    if (transfer.response)
        lastOutcome_.finalURL = transfer.response->URL().toString(QUrl::FullyEncoded);
    else if (isRedirect_)
        lastOutcome_.finalURL = redirectURL_;
    if (transfer.error) {
        lastOutcome_.failure = failureOf(transfer.error, isAbandoned_);
        lastOutcome_.failureText = transfer.error->localizedDescription();
    } else if (isContentLengthError_) {
        lastOutcome_.failure = FetchOutcome::Failure::TooLarge;
    } else if (isContentTypeError_) {
        lastOutcome_.failure = FetchOutcome::Failure::WrongType;
    }
}

qint64 SynchronizedWebCall::retryAfterSeconds(const QString& value, const QDateTime& now)
{
    const QString text = value.trimmed();
    if (text.isEmpty())
        return -1;
    bool ok = false;
    const qint64 seconds = text.toLongLong(&ok);
    if (ok)
        return seconds >= 0 ? seconds : -1;
    // An HTTP date, e.g. "Wed, 21 Oct 2015 07:28:00 GMT". Date and time are read apart and
    // joined in UTC: read as one local date-time, an hour the local clock skips (the spring
    // change to summer time) would make no date at all.
    const QStringList parts = text.split(QLatin1Char(' '));
    if (parts.size() != 6 || parts[5] != QLatin1String("GMT"))
        return -1;
    const QDate date = QLocale::c().toDate(parts.mid(0, 4).join(QLatin1Char(' ')), QStringLiteral("ddd, dd MMM yyyy"));
    const QTime time = QLocale::c().toTime(parts[4], QStringLiteral("HH:mm:ss"));
    if (!date.isValid() || !time.isValid())
        return -1;
    return qMax<qint64>(0, now.secsTo(QDateTime(date, time, QTimeZone::utc())));
}

void SynchronizedWebCall::adoptAnswerOf(const SynchronizedWebCall& other)
{
    isRedirect_ = other.isRedirect_;
    isContentTypeError_ = other.isContentTypeError_;
    isContentLengthError_ = other.isContentLengthError_;
    is404_ = other.is404_;
    contentType_ = other.contentType_;
    contentLength_ = other.contentLength_;
    downloadedLength_ = other.downloadedLength_;
    redirectURL_ = other.redirectURL_;
    downloadedSize_ = other.downloadedSize_;
    isAbandoned_ = other.isAbandoned_;
    isOtherHostRefused_ = other.isOtherHostRefused_;
    lastOutcome_ = other.lastOutcome_;
}

bool SynchronizedWebCall::isInValidResponse(const HTTPURLResponsePtr& response, const QByteArray& result,
                                            const FetchErrorPtr& error) const
{
    if (!response || result.isNull() || error)
        return true;
    return !isSuccessStatus(response->statusCode());
}

std::optional<HTTPHeaderFields> SynchronizedWebCall::headURL(const QString& urlString)
{
    const URLRequest request = requestWithURL(QUrl(urlString, QUrl::StrictMode), QStringLiteral("HEAD"));
    HTTPURLResponsePtr response;
    FetchErrorPtr error;
    performURLConnectionWithRequest(request, &response, &error);
    if (isInValidHeadResponse(response, error))
        return std::nullopt;
    return response->allHeaderFields();
}

bool SynchronizedWebCall::isInValidHeadResponse(const HTTPURLResponsePtr& response, const FetchErrorPtr& error) const
{
    if (!response || !response->allHeaderFields() || error)
        return true;
    return !isSuccessStatus(response->statusCode());
}

QByteArray SynchronizedWebCall::performURLConnectionWithRequest(const URLRequest& request,
                                                                HTTPURLResponsePtr* response, FetchErrorPtr* error)
{
    return URLConnection::sendSynchronousRequest(request, response, error);
}
