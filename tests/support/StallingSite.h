#pragma once

#include "RawTcpServer.h"

#include <atomic>
#include <chrono>
#include <map>
#include <mutex>
#include <string>
#include <thread>

// A small web site on a raw server whose page /stall.html hangs until released: either
// silent, or after sending its headers and the start of its body. Once released it answers
// like any other page. Every answer closes its connection.
class StallingSite {
public:
    enum class Stall { BeforeHeaders, AfterHeaders };

    explicit StallingSite(Stall stall = Stall::AfterHeaders) : stall_(stall) {}
    ~StallingSite()
    {
        release();
        server.stop();
    }

    bool start() { return server.start(); }
    // "http://127.0.0.1:<port>"
    std::string base() const { return server.baseUrl(); }
    // An HTML page with that title and body.
    void page(const std::string& path, const std::string& title, const std::string& body)
    {
        std::lock_guard lock(mutex_);
        pages_[path] = "<html><head><title>" + title + "</title></head><body>" + body + "</body></html>";
    }
    // From now on /stall.html answers like any other page.
    void release() { released_ = true; }
    // Requests received for a path (as written on the request line).
    int hits(const std::string& path) const
    {
        std::lock_guard lock(mutex_);
        auto it = hits_.find(path);
        return it == hits_.end() ? 0 : it->second;
    }

private:
    void serve(RawTcpServer::Connection& connection)
    {
        const std::string head = connection.readRequestHead();
        const size_t start = head.find(' ') + 1;
        const std::string path = head.substr(start, head.find(' ', start) - start);
        std::string body;
        {
            std::lock_guard lock(mutex_);
            ++hits_[path];
            auto it = pages_.find(path);
            if (it == pages_.end()) {
                connection.write("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
                return;
            }
            body = it->second;
        }
        if (path == "/stall.html" && !released_) {
            if (stall_ == Stall::AfterHeaders)
                connection.write("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 100000\r\n\r\n<html><head>");
            while (!released_ && !connection.stopping())
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
            return;
        }
        connection.write("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: " + std::to_string(body.size())
                         + "\r\nConnection: close\r\n\r\n" + body);
    }

    Stall stall_;
    std::atomic<bool> released_{false};
    mutable std::mutex mutex_;
    std::map<std::string, std::string> pages_;
    std::map<std::string, int> hits_;

public:
    // Last, so that it stops before the rest goes.
    RawTcpServer server{[this](RawTcpServer::Connection& connection) { serve(connection); }};
};
