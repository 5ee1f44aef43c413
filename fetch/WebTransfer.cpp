#include "fetch/WebTransfer.h"

#include "fetch/TransferHandlePool.h"
#include "fetch/URLConnection.h"
#include "base/DebugTrace.h"

#include <curl/curl.h>

#include <algorithm>
#include <cmath>

namespace {

// The longest wait for socket activity before the loop looks at the flags and clocks again.
constexpr int kPollMilliseconds = 50;

} // namespace

struct WebTransfer::State {
    Clock::time_point lastActivity = Clock::now();
    std::chrono::milliseconds idleLimit{0};
    curl_off_t lastUploaded = 0;
    bool head = false;

    // The response being read.
    bool hasStatusLine = false;
    bool headComplete = false;
    int status = 0;
    QList<QPair<QByteArray, QByteArray>> headers;
    bool keepBody = false;
    QByteArray body;

    // Why the transfer stopped before its end.
    bool stoppedAfterHead = false; // on purpose: the rest is not wanted
    bool tooLarge = false;
    bool timedOut = false;
    bool tooLong = false;          // the time-out was the bound on the whole fetch
    bool abandoned = false;
    char curlError[CURL_ERROR_SIZE] = {};

    void noteActivity() { lastActivity = Clock::now(); }
};

// libcurl calls back through plain functions; these hand the calls to the transfer.
struct WebTransferCallbacks {
    struct Context {
        const WebTransfer* transfer;
        WebTransfer::State* state;
    };
    static size_t header(char* data, size_t size, size_t count, void* object)
    {
        auto* context = static_cast<Context*>(object);
        return context->transfer->handleHeaderLine(*context->state, data, size * count);
    }
    static size_t body(char* data, size_t size, size_t count, void* object)
    {
        auto* context = static_cast<Context*>(object);
        return context->transfer->handleBody(*context->state, data, size * count);
    }
    static int progress(void* object, curl_off_t, curl_off_t, curl_off_t, curl_off_t uploaded)
    {
        auto* context = static_cast<Context*>(object);
        WebTransfer::State& state = *context->state;
        if (uploaded != state.lastUploaded) {
            state.lastUploaded = uploaded;
            state.noteActivity();
        }
        return context->transfer->shouldStop(state) ? 1 : 0;
    }
};

QByteArray WebTransfer::Result::value(const QByteArray& name) const
{
    for (const auto& [field, value] : headers)
        if (field == name)
            return value;
    return QByteArray();
}

WebTransfer::WebTransfer(const WebRequestOptions& options, const std::atomic<bool>* canContinue,
                         Clock::time_point deadline)
    : options_(options), canContinue_(canContinue), deadline_(deadline)
{
    TransferHandlePool::initialiseLibcurl();
}

bool WebTransfer::isRedirectStatus(int status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

bool WebTransfer::isKeptType(const QByteArray& contentType, const QStringList& keptTypes)
{
    const qsizetype semicolon = contentType.indexOf(';');
    const QString mediaType = QString::fromLatin1(semicolon < 0 ? contentType : contentType.left(semicolon)).trimmed();
    if (mediaType.isEmpty())
        return false;
    return std::any_of(keptTypes.cbegin(), keptTypes.cend(), [&](const QString& kept) {
        const QString prefix = kept.trimmed();
        return !prefix.isEmpty() && mediaType.startsWith(prefix, Qt::CaseInsensitive);
    });
}

// Whether the transfer must end now: the caller gave up, the server has been silent too long,
// or the whole fetch is past its bound. Asked from the progress callback and from the loop.
bool WebTransfer::shouldStop(State& state) const
{
    if (canContinue_ && !canContinue_->load()) {
        state.abandoned = true;
        return true;
    }
    const auto now = Clock::now();
    if (state.idleLimit.count() > 0 && now - state.lastActivity > state.idleLimit) {
        state.timedOut = true;
        return true;
    }
    if (now > deadline_) {
        state.timedOut = state.tooLong = true;
        return true;
    }
    return false;
}

size_t WebTransfer::handleHeaderLine(State& state, const char* data, size_t size) const
{
    state.noteActivity();
    if (state.headComplete)
        return size; // trailer fields after a chunked body

    QByteArray line(data, qsizetype(size));
    while (line.endsWith('\n') || line.endsWith('\r'))
        line.chop(1);

    if (line.startsWith("HTTP/")) {
        // A new block: an interim answer came before, or this is the first.
        const QList<QByteArray> parts = line.split(' ');
        state.hasStatusLine = true;
        state.status = parts.size() > 1 ? parts[1].toInt() : 0;
        state.headers.clear();
        return size;
    }
    if (!state.hasStatusLine)
        return size;
    if (!line.isEmpty()) {
        if ((line.startsWith(' ') || line.startsWith('\t')) && !state.headers.isEmpty()) {
            // A folded continuation of the previous field.
            state.headers.last().second += ' ' + line.trimmed();
            return size;
        }
        const qsizetype colon = line.indexOf(':');
        if (colon > 0)
            state.headers.append({line.left(colon).trimmed().toLower(), line.mid(colon + 1).trimmed()});
        return size;
    }

    // The empty line: the block is complete.
    if (state.status >= 100 && state.status < 200 && state.status != 101) {
        state.hasStatusLine = false; // an interim answer; the real one follows
        state.headers.clear();
        return size;
    }
    state.headComplete = true;
    if (state.head)
        return size;

    QByteArray contentType, location, contentLength, encoding;
    for (const auto& [name, value] : state.headers) {
        if (name == "content-type" && contentType.isNull())
            contentType = value;
        else if (name == "location" && location.isNull())
            location = value;
        else if (name == "content-length" && contentLength.isNull())
            contentLength = value;
        else if (name == "content-encoding" && encoding.isNull())
            encoding = value;
    }
    if ((isRedirectStatus(state.status) && !location.trimmed().isEmpty()) ||
        !isKeptType(contentType, options_.keptContentTypes)) {
        state.stoppedAfterHead = true;
        return 0;
    }
    bool declared = false;
    const qint64 length = contentLength.trimmed().toLongLong(&declared);
    if (declared && (encoding.isEmpty() || encoding.trimmed().compare("identity", Qt::CaseInsensitive) == 0) &&
        length > options_.maxBodyBytes) {
        // Known to be too long before a byte of it is read.
        state.tooLarge = true;
        return 0;
    }
    state.keepBody = true;
    state.body = QByteArray(""); // not null: an empty body is still a body
    return size;
}

size_t WebTransfer::handleBody(State& state, const char* data, size_t size) const
{
    state.noteActivity();
    if (!state.keepBody) {
        state.stoppedAfterHead = true;
        return 0;
    }
    if (size == 0)
        return 0;
    if (state.body.size() + qint64(size) > options_.maxBodyBytes) {
        state.tooLarge = true;
        return 0;
    }
    state.body.append(data, qsizetype(size));
    return size;
}

// curl_easy_perform's loop, with a short wait so that a flag cleared by another thread is
// seen quickly even while the server sends nothing.
int WebTransfer::runLoop(void* easyHandle, void* multiHandle, State& state) const
{
    CURL* easy = static_cast<CURL*>(easyHandle);
    CURLM* multi = static_cast<CURLM*>(multiHandle);
    if (curl_multi_add_handle(multi, easy) != CURLM_OK)
        return CURLE_FAILED_INIT;
    CURLcode code = CURLE_OK;
    for (;;) {
        int running = 0;
        if (curl_multi_perform(multi, &running) != CURLM_OK) {
            code = CURLE_FAILED_INIT;
            break;
        }
        bool ended = false;
        int left = 0;
        while (CURLMsg* message = curl_multi_info_read(multi, &left)) {
            if (message->msg == CURLMSG_DONE && message->easy_handle == easy) {
                code = message->data.result;
                ended = true;
            }
        }
        if (ended || running == 0)
            break;
        if (shouldStop(state)) {
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

namespace {

FetchOutcome::Failure failureOfCurlCode(CURLcode code)
{
    switch (code) {
    case CURLE_OPERATION_TIMEDOUT: return FetchOutcome::Failure::TimedOut;
    case CURLE_COULDNT_CONNECT: return FetchOutcome::Failure::Refused;
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY: return FetchOutcome::Failure::HostNotFound;
    case CURLE_UNSUPPORTED_PROTOCOL:
    case CURLE_URL_MALFORMAT: return FetchOutcome::Failure::BadURL;
    default: return FetchOutcome::Failure::Other;
    }
}

} // namespace

WebTransfer::Result WebTransfer::run(const QUrl& url, bool head)
{
    Result result;
    void* easyHandle = nullptr;
    void* multiHandle = nullptr;
    if (!TransferHandlePool::shared().take(&easyHandle, &multiHandle)) {
        easyHandle = curl_easy_init();
        multiHandle = curl_multi_init();
        if (!easyHandle || !multiHandle) {
            TransferHandlePool::close(easyHandle, multiHandle);
            result.failure = FetchOutcome::Failure::Other;
            result.failureText = QStringLiteral("cannot create a transfer");
            return result;
        }
    }
    CURL* easy = static_cast<CURL*>(easyHandle);

    State state;
    state.head = head;
    WebTransferCallbacks::Context context{this, &state};

    // libcurl keeps pointers to these until the transfer ends: they live here.
    const QByteArray encodedURL = url.adjusted(QUrl::RemoveFragment).toEncoded();
    const QByteArray agent = options_.userAgent.isEmpty() ? URLConnection::userAgent() : options_.userAgent.toUtf8();
    curl_slist* headerList = nullptr;
    for (const auto& [name, value] : options_.headers) {
        // "Name;" is libcurl's way to send a field with an empty value ("Name:" would remove it).
        const QByteArray field = value.isEmpty() ? name + ';' : name + ": " + value;
        headerList = curl_slist_append(headerList, field.constData());
    }

    curl_easy_setopt(easy, CURLOPT_URL, encodedURL.constData());
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 0L);
    curl_easy_setopt(easy, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    curl_easy_setopt(easy, CURLOPT_ACCEPT_ENCODING, "");
    curl_easy_setopt(easy, CURLOPT_USERAGENT, agent.constData());
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, headerList);
    curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, state.curlError);
    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &WebTransferCallbacks::header);
    curl_easy_setopt(easy, CURLOPT_HEADERDATA, &context);
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &WebTransferCallbacks::body);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, &context);
    curl_easy_setopt(easy, CURLOPT_XFERINFOFUNCTION, &WebTransferCallbacks::progress);
    curl_easy_setopt(easy, CURLOPT_XFERINFODATA, &context);
    curl_easy_setopt(easy, CURLOPT_NOPROGRESS, 0L);
    if (head) {
        curl_easy_setopt(easy, CURLOPT_NOBODY, 1L);
    } else {
        curl_easy_setopt(easy, CURLOPT_HTTPGET, 1L);
    }
    // The time-out is one of silence: it bounds the connection set-up and every stretch
    // without a byte coming or going (libcurl's low-speed check averages over seconds).
    const double timeout = options_.timeoutSeconds;
    const long timeoutMs = timeout > 0 ? std::max(1L, long(std::llround(timeout * 1000.0))) : 0L;
    curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS, timeoutMs);
    state.idleLimit = std::chrono::milliseconds(timeoutMs);
    state.noteActivity();

    const CURLcode code = shouldStop(state) ? CURLE_ABORTED_BY_CALLBACK : CURLcode(runLoop(easyHandle, multiHandle, state));

    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, nullptr);
    curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, nullptr);
    curl_slist_free_all(headerList);
    TransferHandlePool::shared().giveBack(easyHandle, multiHandle);

    if (state.hasStatusLine && state.headComplete) {
        result.status = state.status;
        result.headers = state.headers;
    }
    if (state.abandoned) {
        result.abandoned = true;
        result.failure = FetchOutcome::Failure::Abandoned;
        result.failureText = QStringLiteral("the transfer was abandoned");
    } else if (state.tooLarge) {
        result.failure = FetchOutcome::Failure::TooLarge;
        result.failureText = QStringLiteral("the body is longer than %1 bytes").arg(options_.maxBodyBytes);
    } else if (state.timedOut) {
        result.failure = FetchOutcome::Failure::TimedOut;
        result.failureText = state.tooLong ? QStringLiteral("the transfer took too long")
                                           : QStringLiteral("the request timed out");
    } else if (state.stoppedAfterHead) {
        // Not a failure: everything wanted came.
    } else if (code != CURLE_OK) {
        DebugTrace("WebTransfer %s: %s", encodedURL.constData(), state.curlError);
        result.failure = failureOfCurlCode(code);
        result.failureText = QString::fromUtf8(*state.curlError ? state.curlError : curl_easy_strerror(code));
    } else if (!state.headComplete) {
        result.failure = FetchOutcome::Failure::Other;
        result.failureText = QStringLiteral("no HTTP response");
    } else if (state.keepBody) {
        result.body = state.body;
    }
    return result;
}
