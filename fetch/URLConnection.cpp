#include "fetch/URLConnection.h"

#include "fetch/PercentEscapes.h"
#include "fetch/ResponseHeaderParser.h"
#include "fetch/TransferHandlePool.h"
#include "base/DebugTrace.h"

#include <curl/curl.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <mutex>
#include <utility>
#include <vector>

struct URLConnection::Exchange {
    using Clock = std::chrono::steady_clock;

    // The time-out counts from the last sign of life: a header line, body bytes or request
    // bytes going out.
    void noteActivity() { lastActivity = Clock::now(); }
    bool isIdleTooLong() const
    {
        return idleLimit.count() > 0 && Clock::now() - lastActivity > idleLimit;
    }
    // A server that sends a byte now and then is never idle: the whole transfer has a bound.
    bool isPastDeadline() const
    {
        return deadlineNs != 0 && Clock::now().time_since_epoch().count() > deadlineNs;
    }

    ResponseHeaderParser parser;
    Clock::time_point lastActivity = Clock::now();
    std::chrono::milliseconds idleLimit{0};
    std::int64_t deadlineNs = 0;
    curl_off_t lastUploaded = 0;
    bool timedOut = false;
    bool tooLong = false; // the time-out was the bound on the whole transfer
    bool abandoned = false; // the can-continue flag was cleared during the exchange
    bool responseDelivered = false;
    std::optional<URLRequest> nextRequest; // set when the delegate accepted a redirect
    FetchErrorPtr pendingError;            // set when the exchange was stopped on purpose
    char curlError[CURL_ERROR_SIZE] = {};
};

// libcurl calls back through plain functions; these hand the calls to the connection.
struct URLConnectionCallbacks {
    static size_t header(char* data, size_t size, size_t count, void* connection)
    {
        return static_cast<URLConnection*>(connection)->handleHeaderLine(data, size * count);
    }
    static size_t body(char* data, size_t size, size_t count, void* connection)
    {
        return static_cast<URLConnection*>(connection)->handleBody(data, size * count);
    }
    // Called at every turn of the transfer loop (at least every kPollMilliseconds) and more
    // often while bytes flow. A non-zero answer aborts the transfer: this is where a time-out,
    // a cancel or a cleared can-continue flag from another thread lands.
    static int progress(void* object, curl_off_t, curl_off_t, curl_off_t, curl_off_t uploaded)
    {
        auto* connection = static_cast<URLConnection*>(object);
        if (connection->cancelled_)
            return 1;
        URLConnection::Exchange& exchange = *connection->exchange_;
        if (connection->isAbandoned()) {
            exchange.abandoned = true;
            return 1;
        }
        if (uploaded != exchange.lastUploaded) {
            exchange.lastUploaded = uploaded;
            exchange.noteActivity();
        } else if (exchange.isIdleTooLong()) {
            exchange.timedOut = true;
            return 1;
        }
        if (exchange.isPastDeadline()) {
            exchange.timedOut = exchange.tooLong = true;
            return 1;
        }
        return 0;
    }
};

namespace {

// The longest wait for socket activity before the transfer loop turns again (and checks
// the time-out and the flags).
constexpr int kPollMilliseconds = 100;

FetchErrorPtr abandonedError()
{
    return FetchError::errorWithCode(FetchError::Cancelled, QStringLiteral("the transfer was abandoned"));
}

bool isHTTPScheme(const QUrl& url)
{
    const QString scheme = url.scheme().toLower();
    return scheme == QLatin1String("http") || scheme == QLatin1String("https");
}

bool isRedirectStatus(int status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

// Refuses what libcurl must not be given: it would read "http:/host/x" as having a host, and
// would fetch other schemes than the web's.
FetchErrorPtr errorForUnfetchableURL(const QUrl& url)
{
    if (!url.isValid() || url.isEmpty())
        return FetchError::errorWithCode(FetchError::BadURL, QStringLiteral("bad URL"));
    if (!isHTTPScheme(url))
        return FetchError::errorWithCode(FetchError::UnsupportedURL,
                                         QStringLiteral("unsupported URL: %1").arg(url.toString()));
    if (url.host().isEmpty())
        return FetchError::errorWithCode(FetchError::UnsupportedURL,
                                         QStringLiteral("unsupported URL, no host: %1").arg(url.toString()));
    return nullptr;
}

FetchErrorPtr errorForCurlCode(CURLcode code, const char* detail)
{
    int errorCode = FetchError::Unknown;
    switch (code) {
    case CURLE_UNSUPPORTED_PROTOCOL:
        errorCode = FetchError::UnsupportedURL;
        break;
    case CURLE_URL_MALFORMAT:
        errorCode = FetchError::BadURL;
        break;
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
        errorCode = FetchError::CannotFindHost;
        break;
    case CURLE_COULDNT_CONNECT:
        errorCode = FetchError::CannotConnectToHost;
        break;
    case CURLE_OPERATION_TIMEDOUT:
        errorCode = FetchError::TimedOut;
        break;
    case CURLE_PARTIAL_FILE:
    case CURLE_GOT_NOTHING:
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
    case CURLE_HTTP2:
    case CURLE_HTTP2_STREAM:
        errorCode = FetchError::NetworkConnectionLost;
        break;
    case CURLE_WEIRD_SERVER_REPLY:
        errorCode = FetchError::BadServerResponse;
        break;
    case CURLE_BAD_CONTENT_ENCODING:
        errorCode = FetchError::CannotDecodeContentData;
        break;
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CERTPROBLEM:
    case CURLE_SSL_CIPHER:
    case CURLE_SSL_CACERT_BADFILE:
        errorCode = FetchError::SecureConnectionFailed;
        break;
    case CURLE_ABORTED_BY_CALLBACK:
        errorCode = FetchError::Cancelled;
        break;
    default:
        break;
    }
    QString text = QString::fromUtf8(detail && *detail ? detail : curl_easy_strerror(code));
    return FetchError::errorWithCode(errorCode, text);
}

} // namespace

std::optional<QUrl> URLConnection::redirectTarget(const QUrl& base, const QString& location)
{
    if (location.trimmed().isEmpty())
        return std::nullopt;
    const auto escaped = PercentEscapes::stringByAddingPercentEscapes(location.trimmed(), PercentEscapes::UTF8);
    if (!escaped)
        return std::nullopt;
    const QUrl relative(*escaped, QUrl::TolerantMode);
    if (!relative.isValid())
        return std::nullopt;
    QUrl target = base.resolved(relative);
    if (!target.isValid())
        return std::nullopt;
    return target;
}

std::unique_ptr<URLConnection> URLConnection::connectionWithRequest(const URLRequest& request,
                                                                   URLConnectionDelegate* delegate)
{
    return std::unique_ptr<URLConnection>(new URLConnection(request, delegate));
}

URLConnection::URLConnection(const URLRequest& request, URLConnectionDelegate* delegate)
    : delegate_(delegate), originalRequest_(request), currentRequest_(request)
{
    TransferHandlePool::initialiseLibcurl();
}

URLConnection::~URLConnection()
{
    if (easy_ && multi_) {
        TransferHandlePool::shared().giveBack(easy_, multi_);
        return;
    }
    TransferHandlePool::close(easy_, multi_);
}

void URLConnection::releaseIdleTransfers()
{
    TransferHandlePool::shared().releaseIdle();
}

int URLConnection::idleTransferCount()
{
    return TransferHandlePool::shared().idleCount();
}

QByteArray URLConnection::userAgent()
{
    return QByteArrayLiteral("Quillmere/" QUILLMERE_VERSION);
}

bool URLConnection::runOnce()
{
    if (state_ == State::Ended || cancelled_) {
        state_ = State::Ended;
        return false;
    }
    if (state_ == State::NotStarted) {
        state_ = State::Running;
        auto request = delegate_->connectionWillSendRequest(*this, originalRequest_, nullptr);
        if (cancelled_ || !request) {
            state_ = State::Ended;
            return true;
        }
        currentRequest_ = *request;
        const double bound = originalRequest_.maxTransferInterval();
        if (bound > 0) {
            const auto span = std::chrono::duration_cast<Exchange::Clock::duration>(std::chrono::duration<double>(bound));
            transferDeadlineNs_ = (Exchange::Clock::now() + span).time_since_epoch().count();
        }
    }
    performExchange();
    return true;
}

void URLConnection::fail(const FetchErrorPtr& error)
{
    state_ = State::Ended;
    delegate_->connectionDidFailWithError(*this, error);
}

void URLConnection::performExchange()
{
    if (auto error = errorBeforeExchange()) {
        fail(error);
        return;
    }
    if (!takeTransferHandles()) {
        fail(FetchError::errorWithCode(FetchError::Unknown, QStringLiteral("cannot create a transfer")));
        return;
    }
    exchange_ = std::make_unique<Exchange>();

    const QByteArray url = currentRequest_.URL().adjusted(QUrl::RemoveFragment).toEncoded();
    const QByteArray agent = userAgent();
    const QByteArray method = currentRequest_.HTTPMethod().toUpper().toLatin1();
    curl_slist* headerList = nullptr;
    const auto fields = currentRequest_.allHTTPHeaderFields();
    for (auto it = fields.cbegin(); it != fields.cend(); ++it)
        headerList = curl_slist_append(headerList, (it.key() + QStringLiteral(": ") + it.value()).toUtf8().constData());

    // libcurl keeps pointers to these strings until the transfer ends: they live here.
    configureTransfer(url, agent, method, headerList);
    const int code = runTransfer();
    CURL* easy = static_cast<CURL*>(easy_);
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, nullptr);
    curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, nullptr);
    curl_slist_free_all(headerList);

    endExchange(code, url);
}

// What stops an exchange before anything is sent: a URL that must not be fetched, a
// cleared can-continue flag, or the bound on the whole transfer already reached.
FetchErrorPtr URLConnection::errorBeforeExchange() const
{
    if (auto error = errorForUnfetchableURL(currentRequest_.URL()))
        return error;
    if (isAbandoned())
        return abandonedError();
    if (transferDeadlineNs_ != 0 && Exchange::Clock::now().time_since_epoch().count() > transferDeadlineNs_)
        return FetchError::errorWithCode(FetchError::TimedOut, QStringLiteral("the transfer took too long"));
    return nullptr;
}

// The handles of an earlier hop, else a kept pair, else new ones; false when none can be made.
bool URLConnection::takeTransferHandles()
{
    if (easy_ || TransferHandlePool::shared().take(&easy_, &multi_))
        return true;
    easy_ = curl_easy_init();
    multi_ = curl_multi_init();
    return easy_ && multi_;
}

void URLConnection::configureTransfer(const QByteArray& url, const QByteArray& agent, const QByteArray& method,
                                      curl_slist* headerList)
{
    CURL* easy = static_cast<CURL*>(easy_);
    curl_easy_setopt(easy, CURLOPT_URL, url.constData());
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 0L);
    curl_easy_setopt(easy, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    curl_easy_setopt(easy, CURLOPT_ACCEPT_ENCODING, "");
    curl_easy_setopt(easy, CURLOPT_USERAGENT, agent.constData());
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, headerList);
    curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, exchange_->curlError);
    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &URLConnectionCallbacks::header);
    curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &URLConnectionCallbacks::body);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
    curl_easy_setopt(easy, CURLOPT_XFERINFOFUNCTION, &URLConnectionCallbacks::progress);
    curl_easy_setopt(easy, CURLOPT_XFERINFODATA, this);
    curl_easy_setopt(easy, CURLOPT_NOPROGRESS, 0L);

    if (method == "HEAD") {
        curl_easy_setopt(easy, CURLOPT_CUSTOMREQUEST, nullptr);
        curl_easy_setopt(easy, CURLOPT_NOBODY, 1L);
    } else {
        curl_easy_setopt(easy, CURLOPT_HTTPGET, 1L);
        curl_easy_setopt(easy, CURLOPT_CUSTOMREQUEST, method == "GET" ? nullptr : method.constData());
    }

    // The time-out is one of inactivity, as in the platform's URL loading: it bounds the
    // connection set-up and every stretch without a byte coming or going. libcurl's own
    // low-speed check averages over several seconds, so inactivity is measured here.
    const double timeout = currentRequest_.timeoutInterval();
    const long timeoutMs = timeout > 0 ? std::max(1L, long(std::llround(timeout * 1000.0))) : 0L;
    curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS, timeoutMs);
    exchange_->idleLimit = std::chrono::milliseconds(timeoutMs);
    exchange_->deadlineNs = transferDeadlineNs_;
    exchange_->noteActivity();
}

// Classifies how the exchange ended: cancelled, abandoned, redirected (the next runOnce()
// sends the new request), stopped on purpose, timed out, failed in libcurl, or finished.
void URLConnection::endExchange(int transferCode, const QByteArray& url)
{
    const CURLcode code = CURLcode(transferCode);
    if (cancelled_) {
        state_ = State::Ended;
        return;
    }
    if (exchange_->abandoned) {
        fail(abandonedError());
        return;
    }
    if (exchange_->nextRequest) {
        currentRequest_ = *exchange_->nextRequest;
        ++redirectCount_;
        return;
    }
    if (exchange_->pendingError) {
        fail(exchange_->pendingError);
        return;
    }
    if (exchange_->timedOut) {
        fail(FetchError::errorWithCode(FetchError::TimedOut, exchange_->tooLong
                                                                 ? QStringLiteral("the transfer took too long")
                                                                 : QStringLiteral("the request timed out")));
        return;
    }
    if (code != CURLE_OK) {
        DebugTrace("URLConnection %s: %s", url.constData(), exchange_->curlError);
        fail(errorForCurlCode(code, exchange_->curlError));
        return;
    }
    if (!exchange_->responseDelivered && !deliverBodilessResponse())
        return;
    state_ = State::Ended;
    delegate_->connectionDidFinishLoading(*this);
}

// A response whose header block ended without body bytes is delivered here; false when the
// exchange has ended instead (no status line, or the delegate cancelled).
bool URLConnection::deliverBodilessResponse()
{
    // Every body-less response still ends its header block; this is a guard for a server
    // that closed the connection inside its headers.
    if (!exchange_->parser.hasStatusLine()) {
        fail(FetchError::errorWithCode(FetchError::CannotParseResponse, QStringLiteral("no HTTP response")));
        return false;
    }
    deliverResponse(std::make_shared<const HTTPURLResponse>(currentRequest_.URL(), exchange_->parser.statusCode(),
                                                            exchange_->parser.headerFields()));
    if (cancelled_) {
        state_ = State::Ended;
        return false;
    }
    return true;
}

// curl_easy_perform's loop, with a wait short enough that a flag cleared by another thread
// (or a signal handler) is seen within kPollMilliseconds even when the server sends nothing.
int URLConnection::runTransfer()
{
    CURL* easy = static_cast<CURL*>(easy_);
    CURLM* multi = static_cast<CURLM*>(multi_);
    if (curl_multi_add_handle(multi, easy) != CURLM_OK)
        return CURLE_FAILED_INIT;
    CURLcode code = CURLE_OK;
    bool ended = false;
    for (;;) {
        int running = 0;
        if (curl_multi_perform(multi, &running) != CURLM_OK) {
            code = CURLE_FAILED_INIT;
            break;
        }
        int left = 0;
        while (CURLMsg* message = curl_multi_info_read(multi, &left)) {
            if (message->msg == CURLMSG_DONE && message->easy_handle == easy) {
                code = message->data.result;
                ended = true;
            }
        }
        if (ended || running == 0)
            break;
        if (exchange_->isPastDeadline()) {
            exchange_->timedOut = exchange_->tooLong = true;
            code = CURLE_OPERATION_TIMEDOUT;
            break;
        }
        if (cancelled_ || isAbandoned()) {
            // Seen here as well as in the progress callback, which libcurl may call less
            // often while the server is silent.
            exchange_->abandoned = !cancelled_;
            code = CURLE_ABORTED_BY_CALLBACK;
            break;
        }
        if (curl_multi_poll(multi, nullptr, 0, kPollMilliseconds, nullptr) != CURLM_OK) {
            code = CURLE_FAILED_INIT;
            break;
        }
    }
    curl_multi_remove_handle(multi, easy);
    return code;
}

void URLConnection::deliverResponse(const HTTPURLResponsePtr& response)
{
    exchange_->responseDelivered = true;
    delegate_->connectionDidReceiveResponse(*this, response);
}

size_t URLConnection::handleHeaderLine(const char* data, size_t size)
{
    if (cancelled_)
        return 0;
    exchange_->noteActivity();
    if (exchange_->responseDelivered)
        return size; // trailer fields after a chunked body

    auto& parser = exchange_->parser;
    if (!parser.addLine(QByteArray(data, qsizetype(size))))
        return size;

    const int status = parser.statusCode();
    if (status >= 100 && status < 200 && status != 101) {
        parser.reset(); // an interim response; the real one follows
        return size;
    }

    auto response = std::make_shared<const HTTPURLResponse>(currentRequest_.URL(), status, parser.headerFields());
    if (isRedirectStatus(status) && handleRedirect(response))
        return 0; // this exchange ends here; the next runOnce() sends the new request
    if (cancelled_)
        return 0;

    deliverResponse(response);
    return cancelled_ ? 0 : size;
}

// Answers true when the exchange must stop here: the redirect is followed, refused for its
// number, or the delegate cancelled.
bool URLConnection::handleRedirect(const HTTPURLResponsePtr& response)
{
    const auto target = redirectTarget(currentRequest_.URL(), response->valueForHTTPHeaderField(QStringLiteral("Location")));
    if (!target)
        return false; // no usable Location: the redirect is the answer

    if (!isHTTPScheme(*target) || target->host().isEmpty()) {
        // Only the web's schemes are followed: a redirect to file:, smb: or javascript: is
        // the fetch's failure, never a request and never a page.
        exchange_->pendingError = FetchError::errorWithCode(
            FetchError::UnsupportedURL,
            QStringLiteral("redirect to a URL that is not http or https: %1").arg(target->toString(QUrl::RemoveUserInfo)));
        return true;
    }
    if (redirectCount_ >= kMaximumRedirects) {
        exchange_->pendingError = FetchError::errorWithCode(FetchError::HTTPTooManyRedirects,
                                                            QStringLiteral("too many HTTP redirects"));
        return true;
    }

    URLRequest proposed = currentRequest_;
    proposed.setURL(*target);
    const int status = response->statusCode();
    const QString method = proposed.HTTPMethod().toUpper();
    if ((status == 303 && method != QLatin1String("HEAD")) ||
        ((status == 301 || status == 302) && method == QLatin1String("POST")))
        proposed.setHTTPMethod(QStringLiteral("GET"));

    auto next = delegate_->connectionWillSendRequest(*this, proposed, response);
    if (cancelled_)
        return true;
    if (!next)
        return false;
    exchange_->nextRequest = std::move(next);
    return true;
}

size_t URLConnection::handleBody(const char* data, size_t size)
{
    if (cancelled_)
        return 0;
    exchange_->noteActivity();
    if (!exchange_->responseDelivered) {
        // Body bytes before a complete header block: only possible from a broken server.
        exchange_->pendingError = FetchError::errorWithCode(FetchError::CannotParseResponse,
                                                            QStringLiteral("body before the response headers"));
        return 0;
    }
    if (size == 0)
        return 0;
    delegate_->connectionDidReceiveData(*this, QByteArray(data, qsizetype(size)));
    return cancelled_ ? 0 : size;
}

namespace {

// Collects a whole transfer for the plain synchronous send.
class CollectingDelegate : public URLConnectionDelegate {
public:
    HTTPURLResponsePtr response;
    FetchErrorPtr error;
    QByteArray body = QByteArray(""); // not null: an empty body is still a body
    bool finished = false;

    void connectionDidReceiveResponse(URLConnection&, const HTTPURLResponsePtr& r) override { response = r; }
    void connectionDidReceiveData(URLConnection&, const QByteArray& data) override { body.append(data); }
    void connectionDidFailWithError(URLConnection&, const FetchErrorPtr& e) override { error = e; }
    void connectionDidFinishLoading(URLConnection&) override { finished = true; }
};

} // namespace

QByteArray URLConnection::sendSynchronousRequest(const URLRequest& request, HTTPURLResponsePtr* response,
                                                 FetchErrorPtr* error)
{
    CollectingDelegate collector;
    auto connection = connectionWithRequest(request, &collector);
    while (connection->runOnce()) {
    }
    if (response)
        *response = collector.response;
    if (error)
        *error = collector.error;
    return collector.finished ? collector.body : QByteArray();
}
