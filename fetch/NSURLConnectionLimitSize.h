#pragma once

#include "fetch/FetchError.h"
#include "fetch/FetchOutcome.h"
#include "fetch/HTTPURLResponse.h"
#include "fetch/URLRequest.h"

#include <QByteArray>
#include <QStringList>
#include <QVariantMap>

#include <atomic>
#include <optional>

// The limited synchronous send: runs one NSURLConnectionWithLimit worker and waits for it.
class NSURLConnectionLimitSize {
public:
    // Blocks the calling thread while a worker thread runs the transfer.
    //
    // Answers the body, or a null array when the transfer failed, was refused by the
    // content-type filter, outgrew downloadLimit or carried an empty body. Each out-slot may
    // be null. response receives the last response (empty when none arrived), error the
    // failure (empty when none). headers, when given, receives:
    //   "contentType"        QString, the response's Content-Type ("" when none)
    //   "contentTypeError"   bool, refused by the filter
    //   "contentLength"      qint64, the declared Content-Length, -1 when absent
    //   "contentLengthError" bool, the body outgrew the limit
    //   "isRedirect"         bool, at least one redirect was followed
    //   "redirectURL"        QString, the last redirect target; only set after a redirect
    // canContinue, when given, abandons the transfer once it reads false: it then fails with
    // FetchError::Cancelled. redirectChain, when given, receives each redirect followed.
    static QByteArray sendSynchronousRequest(const URLRequest& request, HTTPURLResponsePtr* response,
                                             qint64 downloadLimit,
                                             const std::optional<QStringList>& contentTypeFilters,
                                             QVariantMap* headers, FetchErrorPtr* error,
                                             const std::atomic<bool>* canContinue = nullptr,
                                             QList<FetchHop>* redirectChain = nullptr);
};
