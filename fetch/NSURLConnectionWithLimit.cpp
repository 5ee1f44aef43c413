#include "fetch/NSURLConnectionWithLimit.h"

#include "fetch/URLConnection.h"
#include "base/DebugTrace.h"

#include <limits>

NSURLConnectionWithLimit::NSURLConnectionWithLimit(const URLRequest& request, qint64 downloadLimit,
                                                   const std::optional<QStringList>& contentTypeFilters)
    : request_(request),
      initialHTTPMethod_(request.HTTPMethod()),
      downloadLimit_(downloadLimit),
      arrayOfContentTypeFilters_(contentTypeFilters)
{
}

NSURLConnectionWithLimit::~NSURLConnectionWithLimit()
{
    if (thread_.joinable())
        thread_.join();
}

void NSURLConnectionWithLimit::start()
{
    thread_ = std::thread([this] { main(); });
}

void NSURLConnectionWithLimit::main()
{
    // Whatever happens below, the waiting caller must be woken.
    struct SignalOnExit {
        std::shared_ptr<EndCondition> condition;
        ~SignalOnExit() { condition->signal(); }
    } signalOnExit{endCondition_};

    try {
        auto connection = URLConnection::connectionWithRequest(request_, this);
        connection->setCanContinueFlag(canContinue_);
        while (shouldKeepRunning_) {
            if (!connection->runOnce())
                break; // nothing left to run: the connection was cancelled
        }
    } catch (const std::exception& e) {
        DebugTrace("NSURLConnectionWithLimit Error::%s", e.what());
        error_ = FetchError::errorWithCode(FetchError::Unknown, QString::fromUtf8(e.what()));
        requestData_.reset();
    }
}

std::optional<URLRequest> NSURLConnectionWithLimit::connectionWillSendRequest(URLConnection& connection,
                                                                             const URLRequest& request,
                                                                             const HTTPURLResponsePtr& redirectResponse)
{
    if (!redirectResponse)
        return request;
    redirectURL_ = request.URL().toString(QUrl::FullyEncoded);
    isRedirect_ = true;
    redirectChain_.append(FetchHop{redirectResponse->URL().toString(QUrl::FullyEncoded), redirectResponse->statusCode()});
    // Every hop repeats the first request (a GET stays a GET), only the URL changes.
    URLRequest next = connection.originalRequest();
    next.setURL(request.URL());
    return next;
}

void NSURLConnectionWithLimit::connectionDidReceiveResponse(URLConnection& connection,
                                                            const HTTPURLResponsePtr& response)
{
    if (!response)
        return;
    response_ = response;
    if (response->allHeaderFields()) {
        contentType_ = response->valueForHTTPHeaderField(QStringLiteral("Content-Type"));
        const QString length = response->valueForHTTPHeaderField(QStringLiteral("Content-Length"));
        if (!length.isNull())
            contentLength_ = longLongValue(length);
    }

    if (!arrayOfContentTypeFilters_)
        return;
    bool accepted = false;
    for (const QString& filter : *arrayOfContentTypeFilters_) {
        if (contentTypeMatchesFilter(contentType_, filter))
            accepted = true;
    }
    if (!accepted) {
        connection.cancel();
        requestData_.reset();
        isContentTypeError_ = true;
    }
}

void NSURLConnectionWithLimit::connectionDidReceiveData(URLConnection& connection, const QByteArray& data)
{
    if (!requestData_)
        requestData_ = QByteArray();
    // Compared as unsigned values, as the platform does.
    if (quint64(requestData_->size()) + quint64(data.size()) <= quint64(downloadLimit_)) {
        requestData_->append(data);
    } else {
        isContentLengthError_ = true;
        connection.cancel();
        requestData_.reset();
    }
}

std::optional<CachedURLResponse> NSURLConnectionWithLimit::connectionWillCacheResponse(URLConnection&,
                                                                                       const CachedURLResponse& cachedResponse)
{
    return cachedResponse;
}

void NSURLConnectionWithLimit::connectionDidFailWithError(URLConnection&, const FetchErrorPtr& error)
{
    if (error)
        error_ = error;
    shouldKeepRunning_ = false;
    requestData_.reset();
}

void NSURLConnectionWithLimit::connectionDidFinishLoading(URLConnection&)
{
    shouldKeepRunning_ = false;
}

bool NSURLConnectionWithLimit::contentTypeMatchesFilter(const QString& contentType, const QString& filter)
{
    // A search in a missing string answers position 0 rather than "not found", so a
    // response without Content-Type gets through every filter.
    if (contentType.isNull())
        return true;
    if (filter.isEmpty())
        return false;
    return contentType.contains(filter, Qt::CaseInsensitive);
}

qint64 NSURLConnectionWithLimit::longLongValue(const QString& text)
{
    qsizetype i = 0;
    while (i < text.size() && text[i].isSpace())
        ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == QLatin1Char('+') || text[i] == QLatin1Char('-'))) {
        negative = text[i] == QLatin1Char('-');
        ++i;
    }
    constexpr qint64 max = std::numeric_limits<qint64>::max();
    qint64 value = 0;
    for (; i < text.size() && text[i] >= QLatin1Char('0') && text[i] <= QLatin1Char('9'); ++i) {
        const int digit = text[i].unicode() - '0';
        if (value > (max - digit) / 10)
            return negative ? std::numeric_limits<qint64>::min() : max;
        value = value * 10 + digit;
    }
    return negative ? -value : value;
}
