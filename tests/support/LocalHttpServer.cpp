#include "LocalHttpServer.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

bool equalsIgnoringCase(std::string_view a, std::string_view b)
{
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
           });
}

std::string trim(std::string_view s)
{
    size_t b = 0, e = s.size();
    while (b < e && (s[b] == ' ' || s[b] == '\t'))
        ++b;
    while (e > b && (s[e - 1] == ' ' || s[e - 1] == '\t' || s[e - 1] == '\r'))
        --e;
    return std::string(s.substr(b, e - b));
}

const char* reasonPhrase(int status)
{
    switch (status) {
    case 200: return "OK";
    case 201: return "Created";
    case 204: return "No Content";
    case 301: return "Moved Permanently";
    case 302: return "Found";
    case 303: return "See Other";
    case 304: return "Not Modified";
    case 307: return "Temporary Redirect";
    case 308: return "Permanent Redirect";
    case 400: return "Bad Request";
    case 401: return "Unauthorized";
    case 403: return "Forbidden";
    case 404: return "Not Found";
    case 405: return "Method Not Allowed";
    case 410: return "Gone";
    case 429: return "Too Many Requests";
    case 500: return "Internal Server Error";
    case 503: return "Service Unavailable";
    default: return "Status";
    }
}

bool parseRequestHead(const std::string& head, HttpRequest& request)
{
    std::istringstream lines(head);
    std::string line;
    if (!std::getline(lines, line))
        return false;
    line = trim(line);
    const size_t first = line.find(' ');
    const size_t last = line.rfind(' ');
    if (first == std::string::npos || last == first)
        return false;
    request.method = line.substr(0, first);
    request.target = line.substr(first + 1, last - first - 1);
    const size_t question = request.target.find('?');
    request.path = LocalHttpServer::percentDecode(request.target.substr(0, question));
    if (question != std::string::npos)
        request.query = request.target.substr(question + 1);
    while (std::getline(lines, line)) {
        line = trim(line);
        if (line.empty())
            break;
        const size_t colon = line.find(':');
        if (colon == std::string::npos)
            continue;
        request.headers.emplace_back(trim(line.substr(0, colon)), trim(line.substr(colon + 1)));
    }
    return true;
}

} // namespace

std::string HttpRequest::header(std::string_view name) const
{
    for (const auto& [key, value] : headers)
        if (equalsIgnoringCase(key, name))
            return value;
    return {};
}

bool HttpRequest::hasHeader(std::string_view name) const
{
    return std::any_of(headers.begin(), headers.end(), [&](const auto& h) { return equalsIgnoringCase(h.first, name); });
}

void HttpResponse::setHeader(const std::string& name, const std::string& value)
{
    headers.erase(std::remove_if(headers.begin(), headers.end(),
                                 [&](const auto& h) { return equalsIgnoringCase(h.first, name); }),
                  headers.end());
    headers.emplace_back(name, value);
}

void HttpResponse::setContent(std::string content, const std::string& contentType)
{
    body = std::move(content);
    setHeader("Content-Type", contentType);
}

std::string LocalHttpServer::percentDecode(std::string_view text)
{
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size() && std::isxdigit(static_cast<unsigned char>(text[i + 1])) &&
            std::isxdigit(static_cast<unsigned char>(text[i + 2]))) {
            out.push_back(static_cast<char>(std::stoi(std::string(text.substr(i + 1, 2)), nullptr, 16)));
            i += 2;
        } else {
            out.push_back(text[i]);
        }
    }
    return out;
}

LocalHttpServer::LocalHttpServer() : server_([this](RawTcpServer::Connection& c) { serve(c); }) {}

LocalHttpServer::LocalHttpServer(const std::string& address)
    : server_([this](RawTcpServer::Connection& c) { serve(c); }, address)
{
}

LocalHttpServer::~LocalHttpServer()
{
    stop();
}

bool LocalHttpServer::start()
{
    return server_.start();
}

void LocalHttpServer::stop()
{
    server_.stop();
}

void LocalHttpServer::route(const std::string& path, Handler handler)
{
    std::lock_guard lock(mutex_);
    routes_[path] = std::move(handler);
}

void LocalHttpServer::setPage(const std::string& path, const std::string& body, const std::string& contentType,
                              int status)
{
    route(path, [body, contentType, status](const HttpRequest&, HttpResponse& response) {
        response.status = status;
        response.setContent(body, contentType);
    });
}

void LocalHttpServer::setRedirect(const std::string& path, const std::string& location, int status)
{
    route(path, [location, status](const HttpRequest&, HttpResponse& response) {
        response.status = status;
        response.setHeader("Location", location);
        response.setContent("<html><body>Moved</body></html>", "text/html");
    });
}

void LocalHttpServer::serveDirectory(const std::string& prefix, const std::string& directory)
{
    std::lock_guard lock(mutex_);
    directories_[prefix] = directory;
}

std::string LocalHttpServer::contentTypeFor(const std::string& fileName)
{
    static const std::map<std::string, std::string> types = {
        {"html", "text/html; charset=utf-8"}, {"htm", "text/html; charset=utf-8"},
        {"xhtml", "application/xhtml+xml"},   {"css", "text/css"},
        {"js", "text/javascript"},            {"mjs", "text/javascript"},
        {"json", "application/json"},         {"xml", "application/xml"},
        {"txt", "text/plain; charset=utf-8"}, {"png", "image/png"},
        {"jpg", "image/jpeg"},                {"jpeg", "image/jpeg"},
        {"gif", "image/gif"},                 {"svg", "image/svg+xml"},
        {"webp", "image/webp"},               {"ico", "image/x-icon"},
        {"pdf", "application/pdf"},           {"woff", "font/woff"},
        {"woff2", "font/woff2"},              {"mp4", "video/mp4"},
        {"webm", "video/webm"},               {"mp3", "audio/mpeg"},
        {"zip", "application/zip"},           {"gz", "application/gzip"},
    };
    const size_t slash = fileName.find_last_of('/');
    const size_t dot = fileName.find_last_of('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash))
        return "application/octet-stream";
    std::string extension = fileName.substr(dot + 1);
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    const auto it = types.find(extension);
    return it == types.end() ? "application/octet-stream" : it->second;
}

bool LocalHttpServer::serveFromDirectory(const HttpRequest& request, HttpResponse& response) const
{
    namespace fs = std::filesystem;
    std::string prefix, directory;
    {
        std::lock_guard lock(mutex_);
        for (const auto& [p, d] : directories_)
            if (request.path.compare(0, p.size(), p) == 0 && p.size() > prefix.size()) {
                prefix = p;
                directory = d;
            }
        // "/docs" asked for a prefix "/docs/": the directory itself, without its slash.
        if (prefix.empty())
            for (const auto& [p, d] : directories_)
                if (!p.empty() && p.back() == '/' && request.path + "/" == p) {
                    response.status = 301;
                    response.setHeader("Location", p);
                    response.setContent("<html><body>Moved</body></html>", "text/html");
                    return true;
                }
    }
    if (prefix.empty())
        return false;

    const auto notFound = [&response] {
        response.status = 404;
        response.setContent("<html><head><title>Not Found</title></head><body>Not Found</body></html>", "text/html");
        return true;
    };
    const std::string rest = request.path.substr(prefix.size());
    // Refuse any way out of the directory: "..", and the NUL a C path would stop at.
    std::istringstream segments(rest);
    for (std::string segment; std::getline(segments, segment, '/');)
        if (segment == "..")
            return notFound();
    if (rest.find('\0') != std::string::npos)
        return notFound();

    fs::path file = fs::path(directory) / rest;
    std::error_code error;
    if (fs::is_directory(file, error)) {
        if (!rest.empty() && rest.back() != '/') {
            response.status = 301;
            response.setHeader("Location", request.target.substr(0, request.target.find('?')) + "/");
            response.setContent("<html><body>Moved</body></html>", "text/html");
            return true;
        }
        file /= "index.html";
    }
    if (!fs::is_regular_file(file, error))
        return notFound();
    std::ifstream in(file, std::ios::binary);
    if (!in)
        return notFound();
    std::ostringstream content;
    content << in.rdbuf();
    response.status = 200;
    response.setContent(content.str(), contentTypeFor(file.filename().string()));
    return true;
}

std::vector<HttpRequest> LocalHttpServer::requests() const
{
    std::lock_guard lock(mutex_);
    return requests_;
}

size_t LocalHttpServer::requestCount() const
{
    std::lock_guard lock(mutex_);
    return requests_.size();
}

void LocalHttpServer::clearRequests()
{
    std::lock_guard lock(mutex_);
    requests_.clear();
}

void LocalHttpServer::serve(RawTcpServer::Connection& connection)
{
    std::string head = connection.readRequestHead();
    const size_t end = head.find("\r\n\r\n");
    if (end == std::string::npos)
        return;
    HttpRequest request;
    if (!parseRequestHead(head.substr(0, end + 2), request))
        return;
    request.body = head.substr(end + 4);
    if (request.hasHeader("Content-Length")) {
        const size_t length = std::stoul(request.header("Content-Length"));
        if (request.body.size() < length)
            request.body += connection.read(length - request.body.size());
    }

    Handler handler;
    {
        std::lock_guard lock(mutex_);
        requests_.push_back(request);
        auto it = routes_.find(request.path);
        if (it != routes_.end())
            handler = it->second;
    }

    HttpResponse response;
    if (handler) {
        handler(request, response);
    } else if (!serveFromDirectory(request, response)) {
        response.status = 404;
        response.setContent("<html><head><title>Not Found</title></head><body>Not Found</body></html>", "text/html");
    }

    const bool bodyless = (response.status >= 100 && response.status < 200) || response.status == 204 ||
                          response.status == 304;
    std::string out = "HTTP/1.1 " + std::to_string(response.status) + " " + reasonPhrase(response.status) + "\r\n";
    bool hasLength = false;
    for (const auto& [name, value] : response.headers) {
        out += name + ": " + value + "\r\n";
        hasLength = hasLength || equalsIgnoringCase(name, "Content-Length");
    }
    if (!hasLength && !bodyless)
        out += "Content-Length: " + std::to_string(response.body.size()) + "\r\n";
    out += "Connection: close\r\n\r\n";
    if (request.method != "HEAD" && !bodyless)
        out += response.body;
    connection.write(out);
}
