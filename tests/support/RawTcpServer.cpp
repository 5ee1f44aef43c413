#include "RawTcpServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>

namespace {
constexpr int kPollSliceMs = 20;

using Clock = std::chrono::steady_clock;

int remainingMs(Clock::time_point deadline)
{
    auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
    return left < 0 ? 0 : static_cast<int>(left);
}
} // namespace

std::string RawTcpServer::Connection::readRequestHead(int timeoutMs)
{
    return readUntil([](const std::string& data) { return data.find("\r\n\r\n") != std::string::npos; },
                     std::string::npos, timeoutMs);
}

std::string RawTcpServer::Connection::read(size_t count, int timeoutMs)
{
    return readUntil([count](const std::string& data) { return data.size() >= count; }, count, timeoutMs);
}

std::string RawTcpServer::Connection::readUntil(const std::function<bool(const std::string&)>& done, size_t limit,
                                                int timeoutMs)
{
    std::string data;
    const auto deadline = Clock::now() + std::chrono::milliseconds(timeoutMs);
    while (!done(data) && !stopping_) {
        const int left = remainingMs(deadline);
        if (left == 0)
            break;
        pollfd p{fd_, POLLIN, 0};
        const int ready = ::poll(&p, 1, left < kPollSliceMs ? left : kPollSliceMs);
        if (ready < 0 && errno != EINTR)
            break;
        if (ready <= 0)
            continue;
        char buffer[4096];
        const size_t room = limit == std::string::npos ? sizeof buffer : limit - data.size();
        const ssize_t n = ::recv(fd_, buffer, room < sizeof buffer ? room : sizeof buffer, 0);
        if (n <= 0)
            break;
        data.append(buffer, static_cast<size_t>(n));
    }
    return data;
}

bool RawTcpServer::Connection::write(std::string_view bytes)
{
    size_t sent = 0;
    while (sent < bytes.size()) {
        if (stopping_)
            return false;
        pollfd p{fd_, POLLOUT, 0};
        const int ready = ::poll(&p, 1, kPollSliceMs);
        if (ready < 0 && errno != EINTR)
            return false;
        if (ready <= 0)
            continue;
        if (p.revents & (POLLERR | POLLHUP))
            return false;
        const ssize_t n = ::send(fd_, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (n < 0) {
            if (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR)
                continue;
            return false;
        }
        sent += static_cast<size_t>(n);
    }
    return true;
}

bool RawTcpServer::Connection::waitForStop(int timeoutMs)
{
    const auto deadline = Clock::now() + std::chrono::milliseconds(timeoutMs);
    while (!stopping_ && remainingMs(deadline) > 0)
        std::this_thread::sleep_for(std::chrono::milliseconds(kPollSliceMs));
    return stopping_;
}

bool RawTcpServer::Connection::waitForPeerClose(int timeoutMs)
{
    const auto deadline = Clock::now() + std::chrono::milliseconds(timeoutMs);
    while (!stopping_ && remainingMs(deadline) > 0) {
        pollfd p{fd_, POLLIN, 0};
        if (::poll(&p, 1, kPollSliceMs) <= 0)
            continue;
        char buffer[4096];
        const ssize_t n = ::recv(fd_, buffer, sizeof buffer, MSG_DONTWAIT);
        if (n == 0 || (n < 0 && errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR))
            return true;
    }
    return false;
}

void RawTcpServer::Connection::close()
{
    if (fd_ >= 0) {
        ::close(fd_);
        fd_ = -1;
    }
}

RawTcpServer::RawTcpServer(Handler handler, std::string address)
    : handler_(std::move(handler)), address_(std::move(address))
{
}

RawTcpServer::~RawTcpServer()
{
    stop();
}

std::string RawTcpServer::baseUrl() const
{
    return "http://" + address_ + ":" + std::to_string(port_);
}

bool RawTcpServer::start()
{
    listenFd_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (listenFd_ < 0)
        return false;
    const int yes = 1;
    ::setsockopt(listenFd_, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = 0;
    socklen_t length = sizeof address;
    if (::inet_pton(AF_INET, address_.c_str(), &address.sin_addr) != 1 ||
        ::bind(listenFd_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(listenFd_, 64) != 0 ||
        ::getsockname(listenFd_, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
        ::close(listenFd_);
        listenFd_ = -1;
        return false;
    }
    port_ = ntohs(address.sin_port);
    stopping_ = false;
    acceptThread_ = std::thread([this] { acceptLoop(); });
    return true;
}

void RawTcpServer::acceptLoop()
{
    while (!stopping_) {
        pollfd p{listenFd_, POLLIN, 0};
        if (::poll(&p, 1, kPollSliceMs) <= 0)
            continue;
        const int fd = ::accept4(listenFd_, nullptr, nullptr, SOCK_CLOEXEC);
        if (fd < 0)
            continue;
        ++connectionCount_;
        reapFinishedHandlers();
        auto done = std::make_shared<std::atomic<bool>>(false);
        std::thread thread([this, fd, done] {
            Connection connection(fd, stopping_);
            handler_(connection);
            connection.close();
            *done = true;
        });
        std::lock_guard lock(mutex_);
        handlerThreads_.push_back({std::move(thread), done});
    }
}

// Joins the handlers that have ended, so that a long run does not pile up threads.
void RawTcpServer::reapFinishedHandlers()
{
    std::lock_guard lock(mutex_);
    for (auto it = handlerThreads_.begin(); it != handlerThreads_.end();) {
        if (*it->done) {
            it->thread.join();
            it = handlerThreads_.erase(it);
        } else {
            ++it;
        }
    }
}

void RawTcpServer::stop()
{
    if (listenFd_ < 0)
        return;
    stopping_ = true;
    if (acceptThread_.joinable())
        acceptThread_.join();
    std::vector<HandlerThread> threads;
    {
        std::lock_guard lock(mutex_);
        threads.swap(handlerThreads_);
    }
    for (auto& t : threads)
        t.thread.join();
    ::close(listenFd_);
    listenFd_ = -1;
}
