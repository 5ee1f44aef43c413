#pragma once

#include <QString>

#include <memory>

// Serves the demo site that ships inside the program on 127.0.0.1, on a free port, from a
// thread of its own: folders answer with their index.html, "/old-page.html" is moved
// permanently, unknown paths get a 404 page. "DEMO_HOST" in a page becomes host:port.
class DemoServer {
public:
    DemoServer();
    ~DemoServer();
    DemoServer(const DemoServer&) = delete;
    DemoServer& operator=(const DemoServer&) = delete;

    // On `port`, or on a free one when it is 0.
    bool start(int port = 0);
    void stop();
    int port() const { return port_; }
    QString baseURL() const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
    int port_ = 0;
};
