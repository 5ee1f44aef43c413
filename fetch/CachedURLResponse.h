#pragma once

#include "fetch/HTTPURLResponse.h"

#include <utility>

// A response as offered for caching when a transfer completes. Nothing here caches, so
// only the response is carried; delegates hand it back unchanged.
class CachedURLResponse {
public:
    explicit CachedURLResponse(HTTPURLResponsePtr response) : response_(std::move(response)) {}

    HTTPURLResponsePtr response() const { return response_; }

private:
    HTTPURLResponsePtr response_;
};
