#pragma once

#include "support/LocalHttpServer.h"
#include "support/RawTcpServer.h"

#include <QString>

#include <arpa/inet.h>
#include <dirent.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
#include <zlib.h>

#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>

namespace fetchtest {

inline QString q(const std::string& s)
{
    return QString::fromStdString(s);
}

// The gzip form of the bytes, as a server that compresses would send them.
inline std::string gzip(const std::string& data)
{
    z_stream stream{};
    if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY) != Z_OK)
        throw std::runtime_error("deflateInit2");
    std::string out(deflateBound(&stream, static_cast<uLong>(data.size())) + 64, '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data.data()));
    stream.avail_in = static_cast<uInt>(data.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    const int rc = deflate(&stream, Z_FINISH);
    deflateEnd(&stream);
    if (rc != Z_STREAM_END)
        throw std::runtime_error("deflate");
    out.resize(stream.total_out);
    return out;
}

// A port on 127.0.0.1 where nothing listens: the socket is bound, so no one else takes the
// port while the object lives, but never listens, so connections are refused.
class RefusingPort {
public:
    RefusingPort()
    {
        fd_ = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        ::bind(fd_, reinterpret_cast<sockaddr*>(&address), sizeof address);
        ::getsockname(fd_, reinterpret_cast<sockaddr*>(&address), &length);
        port_ = ntohs(address.sin_port);
    }
    ~RefusingPort() { ::close(fd_); }
    int port() const { return port_; }
    std::string url(const std::string& path) const { return "http://127.0.0.1:" + std::to_string(port_) + path; }

private:
    int fd_ = -1;
    int port_ = 0;
};

inline int countEntries(const char* directory)
{
    int count = 0;
    if (DIR* dir = ::opendir(directory)) {
        while (dirent* entry = ::readdir(dir))
            if (entry->d_name[0] != '.')
                ++count;
        ::closedir(dir);
    }
    return count;
}

// Open file descriptors of this process (the directory listing's own descriptor included,
// the same in every count).
inline int openFileDescriptorCount()
{
    return countEntries("/proc/self/fd");
}

inline int threadCount()
{
    return countEntries("/proc/self/task");
}

// A raw answer: reads the request head, sends `bytes` and closes.
inline RawTcpServer::Handler answerWith(std::string bytes)
{
    return [bytes](RawTcpServer::Connection& connection) {
        connection.readRequestHead();
        connection.write(bytes);
    };
}

// Milliseconds taken by a call.
template <typename F>
long long millisecondsOf(F&& f)
{
    const auto start = std::chrono::steady_clock::now();
    f();
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start).count();
}

} // namespace fetchtest
