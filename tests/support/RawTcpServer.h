#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

// A TCP server on a loopback address (127.0.0.1 unless told another: Linux routes all of
// 127.0.0.0/8 to the loopback interface, so 127.0.0.2 and 127.0.0.3 stand for other hosts) and
// a free port, that hands every accepted connection to a handler
// running on a thread of its own. Meant for answers no well-behaved HTTP server gives: a
// Content-Length that lies, a server that stalls, a body that never ends.
//
// Handlers that wait or loop must watch stopping() (or use waitForStop()) so that stop()
// can end them.
class RawTcpServer {
public:
    class Connection {
    public:
        Connection(int fd, const std::atomic<bool>& stopping) : fd_(fd), stopping_(stopping) {}

        // Reads up to the end of the request head (the empty line); answers what was read,
        // or what came before the peer closed or the time ran out.
        std::string readRequestHead(int timeoutMs = 5000);

        // Reads until `count` bytes have come (or the peer closed, or the time ran out).
        std::string read(size_t count, int timeoutMs = 5000);

        // Sends all the bytes; false when the peer is gone or the server is stopping.
        bool write(std::string_view bytes);

        // Waits until the server stops or the time runs out; true when stopping.
        bool waitForStop(int timeoutMs);
        bool stopping() const { return stopping_; }

        // Waits until the peer closes its side (or the server stops); true when it closed.
        bool waitForPeerClose(int timeoutMs);

        void close();
        int fd() const { return fd_; }

    private:
        // Reads until done(data) holds, at most `limit` bytes in all (npos: no limit).
        std::string readUntil(const std::function<bool(const std::string&)>& done, size_t limit, int timeoutMs);

        int fd_;
        const std::atomic<bool>& stopping_;
    };

    using Handler = std::function<void(Connection&)>;

    // `address`: a dotted IPv4 loopback address, such as "127.0.0.2".
    explicit RawTcpServer(Handler handler, std::string address = "127.0.0.1");
    ~RawTcpServer();
    RawTcpServer(const RawTcpServer&) = delete;
    RawTcpServer& operator=(const RawTcpServer&) = delete;

    // Binds and starts accepting; false when no socket could be bound.
    bool start();
    // Stops accepting, tells the handlers to stop, waits for them and closes every socket.
    void stop();

    int port() const { return port_; }
    const std::string& address() const { return address_; }
    // "http://<address>:<port>"
    std::string baseUrl() const;
    // Connections accepted so far.
    int connectionCount() const { return connectionCount_; }

private:
    void acceptLoop();

    Handler handler_;
    std::string address_;
    int listenFd_ = -1;
    int port_ = 0;
    std::atomic<bool> stopping_{false};
    std::atomic<int> connectionCount_{0};
    std::thread acceptThread_;
    struct HandlerThread {
        std::thread thread;
        std::shared_ptr<std::atomic<bool>> done;
    };
    void reapFinishedHandlers();

    std::mutex mutex_;
    std::vector<HandlerThread> handlerThreads_;
};
