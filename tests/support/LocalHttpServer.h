#pragma once

#include "RawTcpServer.h"

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// One request as the local HTTP server received it.
struct HttpRequest {
    std::string method;
    std::string target; // as sent on the request line: "/caf%C3%A9%20x?q=1"
    std::string path;   // the target's path, percent-decoded: "/café x"
    std::string query;  // after "?", as sent
    std::vector<std::pair<std::string, std::string>> headers;
    std::string body;

    // The first value of a header field, the name compared without regard to case; "" when
    // absent.
    std::string header(std::string_view name) const;
    bool hasHeader(std::string_view name) const;
};

// The answer a route handler builds. Unless the handler set one, "Content-Length" is added
// (except for 1xx, 204 and 304). Every answer closes its connection.
struct HttpResponse {
    int status = 200;
    std::vector<std::pair<std::string, std::string>> headers; // sent in this order
    std::string body;

    // Replaces any field of that name.
    void setHeader(const std::string& name, const std::string& value);
    void setContent(std::string content, const std::string& contentType);
};

// A small HTTP/1.1 server on 127.0.0.1 (a free port) for tests: routes by exact decoded
// path, any method, each request answered on the connection's own thread. Unknown paths get
// a 404 HTML page. It records every request. Bodies are sent as given: nothing is compressed.
class LocalHttpServer {
public:
    using Handler = std::function<void(const HttpRequest&, HttpResponse&)>;

    LocalHttpServer();
    ~LocalHttpServer();
    LocalHttpServer(const LocalHttpServer&) = delete;
    LocalHttpServer& operator=(const LocalHttpServer&) = delete;

    // Routes may be added or replaced while the server runs.
    void route(const std::string& path, Handler handler);
    // A fixed answer with a body.
    void setPage(const std::string& path, const std::string& body,
                 const std::string& contentType = "text/html; charset=utf-8", int status = 200);
    // A redirect to `location` (sent as given: relative or absolute).
    void setRedirect(const std::string& path, const std::string& location, int status = 301);

    bool start();
    void stop();

    int port() const { return server_.port(); }
    // "http://127.0.0.1:<port>"
    std::string baseUrl() const { return server_.baseUrl(); }
    // baseUrl() + path
    std::string url(const std::string& path) const { return baseUrl() + path; }

    std::vector<HttpRequest> requests() const;
    size_t requestCount() const;
    void clearRequests();

    static std::string percentDecode(std::string_view text);

private:
    void serve(RawTcpServer::Connection& connection);

    RawTcpServer server_;
    mutable std::mutex mutex_;
    std::map<std::string, Handler> routes_;
    std::vector<HttpRequest> requests_;
};
