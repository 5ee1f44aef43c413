#include "fetch/NSURLConnectionLimitSize.h"

#include "fetch/NSURLConnectionWithLimit.h"

QByteArray NSURLConnectionLimitSize::sendSynchronousRequest(const URLRequest& request, HTTPURLResponsePtr* response,
                                                            qint64 downloadLimit,
                                                            const std::optional<QStringList>& contentTypeFilters,
                                                            QVariantMap* headers, FetchErrorPtr* error,
                                                            const std::atomic<bool>* canContinue,
                                                            QList<FetchHop>* redirectChain)
{
    NSURLConnectionWithLimit worker(request, downloadLimit, contentTypeFilters);
    worker.setCanContinueFlag(canContinue);
    worker.start();
    // The condition remembers its signal, so a worker that ends before this wait begins
    // does not leave us waiting.
    worker.endCondition()->wait();

    if (response)
        *response = worker.response();
    if (error)
        *error = worker.error();
    if (redirectChain)
        *redirectChain = worker.redirectChain();

    if (headers) {
        // A response without Content-Type leaves the field null; the dictionary gets "".
        const QString contentType = worker.contentType();
        headers->insert(QStringLiteral("contentType"), contentType.isNull() ? QStringLiteral("") : contentType);
        headers->insert(QStringLiteral("contentTypeError"), worker.isContentTypeError());
        headers->insert(QStringLiteral("contentLength"), worker.contentLength());
        headers->insert(QStringLiteral("contentLengthError"), worker.isContentLengthError());
        headers->insert(QStringLiteral("isRedirect"), worker.isRedirect());
        if (!worker.redirectURL().isNull())
            headers->insert(QStringLiteral("redirectURL"), worker.redirectURL());
    }

    return worker.requestData().value_or(QByteArray());
}
