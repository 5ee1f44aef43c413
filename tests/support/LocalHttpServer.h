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

// A small HTTP/1.1 server on 127.0.0.1 (or another loopback address) and a free port for
// tests: routes by exact decoded path, any method, each request answered on the connection's
// own thread. A path no route takes may be served from a directory on disk (serveDirectory);
// anything else gets a 404 HTML page. It records every request. Bodies are sent as given:
// nothing is compressed.
class LocalHttpServer {
public:
    using Handler = std::function<void(const HttpRequest&, HttpResponse&)>;

    LocalHttpServer();
    // Listens on `address`, a dotted IPv4 loopback address such as "127.0.0.2".
    explicit LocalHttpServer(const std::string& address);
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

    // Serves the files under `directory` for the paths beginning with `prefix` (which ends with
    // "/"): prefix + "a/b.css" answers directory/a/b.css with a content type taken from its
    // extension; a directory answers its index.html, or 404 when it has none; a directory
    // asked without its final "/" is redirected (301) to it, as common servers do; a missing
    // file, or a path going up with "..", answers 404. Exact routes win over it; of two
    // prefixes, the longer wins.
    void serveDirectory(const std::string& prefix, const std::string& directory);
    // "text/html; charset=utf-8" for "x.html", "image/png" for "x.png"...;
    // "application/octet-stream" for an extension not known.
    static std::string contentTypeFor(const std::string& fileName);

    bool start();
    void stop();

    int port() const { return server_.port(); }
    const std::string& address() const { return server_.address(); }
    // "http://<address>:<port>"
    std::string baseUrl() const { return server_.baseUrl(); }
    // baseUrl() + path
    std::string url(const std::string& path) const { return baseUrl() + path; }

    std::vector<HttpRequest> requests() const;
    size_t requestCount() const;
    void clearRequests();

    static std::string percentDecode(std::string_view text);

private:
    void serve(RawTcpServer::Connection& connection);
    // Answers from a served directory; false when no directory's prefix takes the path.
    bool serveFromDirectory(const HttpRequest& request, HttpResponse& response) const;

    RawTcpServer server_;
    mutable std::mutex mutex_;
    std::map<std::string, Handler> routes_;
    std::map<std::string, std::string> directories_; // prefix -> directory
    std::vector<HttpRequest> requests_;
};
