#include "fetch/WebFetcher.h"

#include "fetch/URLConnection.h"
#include "fetch/WebTransfer.h"

#include <QElapsedTimer>

#include <chrono>

namespace {

bool isHTTPScheme(const QUrl& url)
{
    const QString scheme = url.scheme().toLower();
    return scheme == QLatin1String("http") || scheme == QLatin1String("https");
}

bool isFetchable(const QUrl& url)
{
    return url.isValid() && !url.isRelative() && isHTTPScheme(url) && !url.host().isEmpty();
}

WebTransfer::Clock::time_point deadlineFor(double seconds)
{
    if (!(seconds > 0))
        return WebTransfer::Clock::time_point::max();
    return WebTransfer::Clock::now() +
           std::chrono::duration_cast<WebTransfer::Clock::duration>(std::chrono::duration<double>(seconds));
}

// The request and the redirects it leads to (when asked to follow them).
WebResponse fetch(const QUrl& url, const WebRequestOptions& options, bool head, const std::atomic<bool>* canContinue)
{
    WebResponse response;
    FetchOutcome& outcome = response.outcome;
    outcome.requestedURL = url.toString(QUrl::FullyEncoded);
    outcome.finalURL = outcome.requestedURL;
    outcome.fetchedAt = QDateTime::currentDateTimeUtc();
    QElapsedTimer timer;
    timer.start();

    if (!isFetchable(url)) {
        outcome.failure = FetchOutcome::Failure::BadURL;
        outcome.failureText = QStringLiteral("not an http or https URL with a host: %1").arg(outcome.requestedURL);
        outcome.responseMs = timer.elapsed();
        return response;
    }

    WebTransfer transfer(options, canContinue, deadlineFor(options.maxTransferSeconds));
    QUrl current = url;
    for (int redirects = 0;; ++redirects) {
        WebTransfer::Result result = transfer.run(current, head);
        outcome.finalURL = current.toString(QUrl::FullyEncoded);
        outcome.status = result.status;
        outcome.failure = result.failure;
        outcome.failureText = result.failureText;
        response.abandoned = result.abandoned;
        response.headers = result.headers;
        response.body = result.body;
        response.location = QString();
        const QByteArray contentType = result.value("content-type");
        response.contentType = QString::fromLatin1(contentType);
        bool declared = false;
        const qint64 length = result.value("content-length").trimmed().toLongLong(&declared);
        response.contentLength = declared && length >= 0 ? length : -1;

        if (result.failure != FetchOutcome::Failure::None || !WebTransfer::isRedirectStatus(result.status))
            break;
        const auto target = URLConnection::redirectTarget(current, QString::fromLatin1(result.value("location")));
        if (!target)
            break; // no usable Location: the redirect is the answer
        response.location = target->toString(QUrl::FullyEncoded);
        // Only the web's schemes are followed; a redirect elsewhere is reported as answered.
        if (!options.followRedirects || !isFetchable(*target))
            break;
        if (redirects >= URLConnection::kMaximumRedirects) {
            outcome.failure = FetchOutcome::Failure::TooManyRedirects;
            outcome.failureText = QStringLiteral("too many HTTP redirects");
            break;
        }
        outcome.redirectChain.append(FetchHop{outcome.finalURL, result.status});
        current = *target;
    }
    outcome.responseMs = timer.elapsed();
    return response;
}

// Failures a second request to the same URL would only repeat.
bool isWorthAnotherRequest(const WebResponse& response)
{
    switch (response.outcome.failure) {
    case FetchOutcome::Failure::None:
        // Servers that refuse HEAD answer 405, 501, 403, 404...; a 429 asks to wait, which
        // is the caller's decision, not a reason to ask again at once.
        return response.outcome.status >= 400 && response.outcome.status != 429;
    case FetchOutcome::Failure::Refused:
    case FetchOutcome::Failure::HostNotFound:
    case FetchOutcome::Failure::BadURL:
    case FetchOutcome::Failure::TooManyRedirects:
    case FetchOutcome::Failure::Abandoned:
        return false;
    default:
        return true;
    }
}

} // namespace

WebResponse WebFetcher::get(const QUrl& url, const WebRequestOptions& options, const std::atomic<bool>* canContinue)
{
    return fetch(url, options, false, canContinue);
}

WebResponse WebFetcher::head(const QUrl& url, const WebRequestOptions& options, const std::atomic<bool>* canContinue)
{
    return fetch(url, options, true, canContinue);
}

WebResponse WebFetcher::check(const QUrl& url, const WebRequestOptions& options, const std::atomic<bool>* canContinue)
{
    WebRequestOptions checking = options;
    checking.followRedirects = true;
    WebResponse answer = head(url, checking, canContinue);
    if (!isWorthAnotherRequest(answer))
        return answer;
    checking.keptContentTypes.clear();
    return get(url, checking, canContinue);
}
