#pragma once

#include "fetch/CachedURLResponse.h"
#include "fetch/FetchError.h"
#include "fetch/HTTPURLResponse.h"
#include "fetch/URLRequest.h"

#include <QByteArray>

#include <optional>

class URLConnection;

// The events of one transfer, delivered on the thread that runs the connection, in this
// order: willSendRequest (once for the first request, then once per redirect), then either
// didReceiveResponse, any number of didReceiveData and didFinishLoading, or
// didFailWithError at any point. A cancelled connection delivers nothing more.
class URLConnectionDelegate {
public:
    virtual ~URLConnectionDelegate() = default;

    // The request about to be sent: the first one (no redirect response) or the target of a
    // redirect. Answer the request to send, or nothing to stop there (for a redirect, its
    // response then stands as the final one).
    virtual std::optional<URLRequest> connectionWillSendRequest(URLConnection& connection, const URLRequest& request,
                                                                const HTTPURLResponsePtr& redirectResponse)
    {
        (void)connection;
        (void)redirectResponse;
        return request;
    }

    // The final response's status and header fields, before any body byte.
    virtual void connectionDidReceiveResponse(URLConnection& connection, const HTTPURLResponsePtr& response) = 0;

    // One piece of the body, already decoded when the server compressed it.
    virtual void connectionDidReceiveData(URLConnection& connection, const QByteArray& data) = 0;

    // Asks whether a response may be stored in a response cache. This stack has no response
    // cache (every request reloads), so URLConnection never asks; the event is part of the
    // interface for delegates shared with a caching client.
    virtual std::optional<CachedURLResponse> connectionWillCacheResponse(URLConnection& connection,
                                                                         const CachedURLResponse& cachedResponse)
    {
        (void)connection;
        return cachedResponse;
    }

    virtual void connectionDidFailWithError(URLConnection& connection, const FetchErrorPtr& error) = 0;

    virtual void connectionDidFinishLoading(URLConnection& connection) = 0;
};
