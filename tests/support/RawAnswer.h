#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <string>

// An answer read from a plain socket: status (0 when none came), head (status line and
// fields) and body.
struct RawAnswer {
    int status = 0;
    std::string head;
    std::string body;
};

// One request sent over a plain socket to address:port, the answer read until the server
// closes: nothing of the crawler's own fetching is involved.
inline RawAnswer ask(const std::string& address, int port, const std::string& method, const std::string& target)
{
    RawAnswer answer;
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_port = htons(static_cast<uint16_t>(port));
    ::inet_pton(AF_INET, address.c_str(), &to.sin_addr);
    if (::connect(fd, reinterpret_cast<sockaddr*>(&to), sizeof to) != 0) {
        ::close(fd);
        return answer;
    }
    const std::string request = method + " " + target + " HTTP/1.1\r\nHost: " + address + "\r\n\r\n";
    ::send(fd, request.data(), request.size(), MSG_NOSIGNAL);
    std::string all;
    char buffer[65536];
    for (ssize_t n; (n = ::recv(fd, buffer, sizeof buffer, 0)) > 0;)
        all.append(buffer, static_cast<size_t>(n));
    ::close(fd);
    const size_t end = all.find("\r\n\r\n");
    if (end == std::string::npos || all.size() < 12)
        return answer;
    answer.status = std::stoi(all.substr(9, 3));
    answer.head = all.substr(0, end + 2);
    answer.body = all.substr(end + 4);
    return answer;
}


// The same for an absolute "http://ADDRESS:PORT/target" URL.
inline RawAnswer askUrl(const std::string& method, const std::string& url)
{
    const size_t hostStart = url.find("://") + 3;
    const size_t slash = url.find('/', hostStart);
    const std::string authority = url.substr(hostStart, slash - hostStart);
    const size_t colon = authority.rfind(':');
    const std::string target = slash == std::string::npos ? "/" : url.substr(slash);
    return ask(authority.substr(0, colon), std::stoi(authority.substr(colon + 1)), method, target);
}
