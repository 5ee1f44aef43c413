#pragma once

#include "fetch/URLConnectionDelegate.h"

#include <QByteArray>
#include <QString>

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>

struct curl_slist;

// One HTTP transfer on libcurl, reported to a delegate as a sequence of events.
//
// The connection runs on the thread that calls runOnce(); every delegate event is delivered
// on that thread during runOnce(). Each call runs one request/response exchange: the first
// request, then, when the delegate accepts a redirect, one call per hop. Redirects are
// followed here rather than by libcurl so that each hop goes through the delegate; more than
// kMaximumRedirects hops fail with HTTPTooManyRedirects.
//
// Only http and https URLs with a host are fetched; any other URL fails before anything is
// sent. Compressed bodies are accepted and handed over decoded. The request's time-out
// bounds the connection set-up and any period without incoming bytes.
//
// A "can continue" flag may be given (setCanContinueFlag): once it reads false, the
// transfer is abandoned within a tenth of a second, wherever it stands, and fails with
// FetchError::Cancelled. This is how a crawl that is told to stop leaves a stalled server.
class URLConnection {
public:
    static constexpr int kMaximumRedirects = 20;

    // A connection for the request; nothing happens before the first runOnce().
    static std::unique_ptr<URLConnection> connectionWithRequest(const URLRequest& request,
                                                                URLConnectionDelegate* delegate);

    ~URLConnection();
    URLConnection(const URLConnection&) = delete;
    URLConnection& operator=(const URLConnection&) = delete;

    // The request the connection was created with.
    const URLRequest& originalRequest() const { return originalRequest_; }
    // The request of the exchange in progress (the last redirect target once redirected).
    const URLRequest& currentRequest() const { return currentRequest_; }

    // Runs the next exchange. Answers false when there was nothing left to run: the transfer
    // has finished, failed or been cancelled.
    bool runOnce();

    // Stops the transfer; no event follows. Meant for the delegate's event handlers; from
    // another thread it takes effect within about a tenth of a second.
    void cancel() { cancelled_ = true; }
    bool isCancelled() const { return cancelled_; }

    // The flag read while the transfer runs (any thread may clear it); null: none.
    void setCanContinueFlag(const std::atomic<bool>* canContinue) { canContinue_ = canContinue; }
    bool isAbandoned() const { return canContinue_ && !canContinue_->load(); }

    // A plain blocking transfer on the calling thread: redirects followed, no size limit, no
    // type filter. Answers the body (empty, not null, when the body was empty), or a null
    // array on failure.
    static QByteArray sendSynchronousRequest(const URLRequest& request, HTTPURLResponsePtr* response,
                                             FetchErrorPtr* error);

    // The target of a redirect: the Location value, percent-escaped in UTF-8, resolved
    // against the URL that answered. Nothing when the value is blank or makes no URL (the
    // redirect response is then the answer).
    static std::optional<QUrl> redirectTarget(const QUrl& base, const QString& location);

    // "Quillmere/<version>", sent with every request.
    static QByteArray userAgent();

    // Transfers give their libcurl handles back for the next one, which then reuses the
    // open connection to the same server (keep-alive) instead of opening another. This
    // closes the handles and connections nobody is using (a crawl's end calls it).
    static void releaseIdleTransfers();
    // How many handles are kept for reuse.
    static int idleTransferCount();

private:
    friend struct URLConnectionCallbacks;

    enum class State { NotStarted, Running, Ended };

    URLConnection(const URLRequest& request, URLConnectionDelegate* delegate);

    void performExchange();
    FetchErrorPtr errorBeforeExchange() const;
    bool takeTransferHandles();
    void configureTransfer(const QByteArray& url, const QByteArray& agent, const QByteArray& method,
                           curl_slist* headerList);
    int runTransfer();
    void endExchange(int transferCode, const QByteArray& url);
    bool deliverBodilessResponse();
    size_t handleHeaderLine(const char* data, size_t size);
    size_t handleBody(const char* data, size_t size);
    bool handleRedirect(const HTTPURLResponsePtr& response);
    void deliverResponse(const HTTPURLResponsePtr& response);
    void fail(const FetchErrorPtr& error);

    URLConnectionDelegate* delegate_;
    URLRequest originalRequest_;
    URLRequest currentRequest_;
    State state_ = State::NotStarted;
    std::atomic<bool> cancelled_{false};
    const std::atomic<bool>* canContinue_ = nullptr;
    int redirectCount_ = 0;
    // When the whole transfer must have ended (steady clock, nanoseconds); 0: no bound.
    std::int64_t transferDeadlineNs_ = 0;
    void* easy_ = nullptr;
    void* multi_ = nullptr;

    // State of the exchange in progress.
    struct Exchange;
    std::unique_ptr<Exchange> exchange_;
};
