#pragma once

#include "fetch/EndCondition.h"
#include "fetch/FetchError.h"
#include "fetch/FetchOutcome.h"
#include "fetch/HTTPURLResponse.h"
#include "fetch/URLConnectionDelegate.h"
#include "fetch/URLRequest.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <atomic>
#include <memory>
#include <optional>
#include <thread>

// The worker of one limited transfer: a thread of its own that runs one URL connection,
// handles its events and records the outcome in its fields. The body is kept only up to
// downloadLimit bytes, and only when the response's Content-Type contains one of the
// filters (no filter list: any type; an empty list: none).
//
// Fields are written on the worker thread only; read them after endCondition() has been
// signalled. NSURLConnectionLimitSize::sendSynchronousRequest is the usual way to run one.
class NSURLConnectionWithLimit : public URLConnectionDelegate {
public:
    // initWithRequest:downloadLimit:contentTypeFilters:
    NSURLConnectionWithLimit(const URLRequest& request, qint64 downloadLimit,
                             const std::optional<QStringList>& contentTypeFilters);
    // Waits for the thread when it was started.
    ~NSURLConnectionWithLimit() override;

    NSURLConnectionWithLimit(const NSURLConnectionWithLimit&) = delete;
    NSURLConnectionWithLimit& operator=(const NSURLConnectionWithLimit&) = delete;

    // A flag that, once it reads false, makes the transfer fail at once with
    // FetchError::Cancelled (see URLConnection::setCanContinueFlag). Set it before start().
    void setCanContinueFlag(const std::atomic<bool>* canContinue) { canContinue_ = canContinue; }

    // Starts the thread, which runs main().
    void start();
    // The thread body: runs the connection until it ends, then signals endCondition().
    void main();

    // Connection events (on the worker thread).
    std::optional<URLRequest> connectionWillSendRequest(URLConnection& connection, const URLRequest& request,
                                                        const HTTPURLResponsePtr& redirectResponse) override;
    void connectionDidReceiveResponse(URLConnection& connection, const HTTPURLResponsePtr& response) override;
    void connectionDidReceiveData(URLConnection& connection, const QByteArray& data) override;
    std::optional<CachedURLResponse> connectionWillCacheResponse(URLConnection& connection,
                                                                 const CachedURLResponse& cachedResponse) override;
    void connectionDidFailWithError(URLConnection& connection, const FetchErrorPtr& error) override;
    void connectionDidFinishLoading(URLConnection& connection) override;

    // Fields.
    bool shouldKeepRunning() const { return shouldKeepRunning_; }
    void setShouldKeepRunning(bool v) { shouldKeepRunning_ = v; }
    // At least one redirect was followed.
    bool isRedirect() const { return isRedirect_; }
    void setIsRedirect(bool v) { isRedirect_ = v; }
    // The response was refused by the content-type filter.
    bool isContentTypeError() const { return isContentTypeError_; }
    void setIsContentTypeError(bool v) { isContentTypeError_ = v; }
    // The body outgrew downloadLimit.
    bool isContentLengthError() const { return isContentLengthError_; }
    void setIsContentLengthError(bool v) { isContentLengthError_ = v; }
    const URLRequest& request() const { return request_; }
    void setRequest(const URLRequest& v) { request_ = v; }
    // The last response received; empty when none arrived.
    HTTPURLResponsePtr response() const { return response_; }
    void setResponse(const HTTPURLResponsePtr& v) { response_ = v; }
    // The transfer failure; empty when none.
    FetchErrorPtr error() const { return error_; }
    void setError(const FetchErrorPtr& v) { error_ = v; }
    std::shared_ptr<EndCondition> endCondition() const { return endCondition_; }
    void setEndCondition(const std::shared_ptr<EndCondition>& v) { endCondition_ = v; }
    // The body bytes kept; empty when nothing was kept or the transfer was refused or failed.
    const std::optional<QByteArray>& requestData() const { return requestData_; }
    void setRequestData(const std::optional<QByteArray>& v) { requestData_ = v; }
    QString initialHTTPMethod() const { return initialHTTPMethod_; }
    void setInitialHTTPMethod(const QString& v) { initialHTTPMethod_ = v; }
    qint64 downloadLimit() const { return downloadLimit_; }
    void setDownloadLimit(qint64 v) { downloadLimit_ = v; }
    const std::optional<QStringList>& arrayOfContentTypeFilters() const { return arrayOfContentTypeFilters_; }
    void setArrayOfContentTypeFilters(const std::optional<QStringList>& v) { arrayOfContentTypeFilters_ = v; }
    // Absolute URL of the last redirect target; null when there was no redirect.
    QString redirectURL() const { return redirectURL_; }
    void setRedirectURL(const QString& v) { redirectURL_ = v; }
    // Each redirect followed: the URL that answered it and its status.
    const QList<FetchHop>& redirectChain() const { return redirectChain_; }
    // The response's "Content-Type": "" before a response, null when the response had none.
    QString contentType() const { return contentType_; }
    void setContentType(const QString& v) { contentType_ = v; }
    // The response's "Content-Length"; -1 when absent.
    qint64 contentLength() const { return contentLength_; }
    void setContentLength(qint64 v) { contentLength_ = v; }

    // Whether a content type passes one filter: a case-insensitive substring test. A missing
    // content type passes any filter, an empty filter matches no present type.
    static bool contentTypeMatchesFilter(const QString& contentType, const QString& filter);

    // A header number read the lenient way: leading blanks skipped, an optional sign, digits
    // up to the first other character; no digits gives 0.
    static qint64 longLongValue(const QString& text);

private:
    bool shouldKeepRunning_ = true;
    bool isRedirect_ = false;
    bool isContentTypeError_ = false;
    bool isContentLengthError_ = false;
    URLRequest request_;
    HTTPURLResponsePtr response_;
    FetchErrorPtr error_;
    std::shared_ptr<EndCondition> endCondition_ = std::make_shared<EndCondition>();
    std::optional<QByteArray> requestData_;
    QString initialHTTPMethod_;
    qint64 downloadLimit_ = 0;
    std::optional<QStringList> arrayOfContentTypeFilters_;
    QString redirectURL_;
    QList<FetchHop> redirectChain_;
    QString contentType_ = QStringLiteral("");
    qint64 contentLength_ = -1;
    const std::atomic<bool>* canContinue_ = nullptr;

    std::thread thread_;
};
