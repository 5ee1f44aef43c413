#pragma once

#include "fetch/HTTPURLResponse.h"

#include <QByteArray>

// A response with its body, as offered for caching when a transfer completes.
class CachedURLResponse {
public:
    CachedURLResponse(HTTPURLResponsePtr response, QByteArray data)
        : response_(std::move(response)), data_(std::move(data))
    {
    }

    HTTPURLResponsePtr response() const { return response_; }
    QByteArray data() const { return data_; }

private:
    HTTPURLResponsePtr response_;
    QByteArray data_;
};
