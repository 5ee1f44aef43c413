// Servers that misbehave on purpose, each crawled by the real program with a short transfer
// time-out: none may crash it, keep it past its time-out or make it grow past 100 MB.

#include "support/CliProcess.h"
#include "support/CliRunner.h"
#include "support/LocalHttpServer.h"
#include "support/RawTcpServer.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <zlib.h>

#include <atomic>
#include <iostream>
#include <mutex>

namespace {

constexpr long kMemoryCeilingKb = 100 * 1024;
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kSanitized = true;
#else
constexpr bool kSanitized = false;
#endif

std::string page(const std::string& title, const std::string& body)
{
    return "<html><head><title>" + title + "</title></head><body>" + body + "</body></html>";
}

// The path on a request line.
std::string requestPath(const std::string& head)
{
    const size_t start = head.find(' ') + 1;
    return head.substr(start, head.find(' ', start) - start);
}

class HostileServer : public ::testing::Test {
protected:
    // Makes a project on `url` and crawls it with a 2-second transfer time-out; the crawl
    // must end within `limitMs` and stay under the memory ceiling.
    void crawl(const std::string& url, int limitMs, const QStringList& newOptions = {})
    {
        ASSERT_EQ(runCli(QStringList{"new", "hostile", QString::fromStdString(url)} + newOptions, dir.path()).exitCode, 0);
        CliProcess process({"crawl", "hostile", "--timeout", "2"}, dir.path());
        ASSERT_TRUE(process.started());
        ASSERT_TRUE(process.wait(limitMs)) << "the crawl was still running after " << limitMs << " ms";
        out = process.out();
        err = process.err();
        std::cout << ::testing::UnitTest::GetInstance()->current_test_info()->name() << ": " << process.elapsedMs()
                  << " ms, peak RSS " << process.maxRssKb() / 1024.0 << " MB\n";
        EXPECT_EQ(process.termSignal(), 0) << "killed by signal " << process.termSignal();
        EXPECT_EQ(process.exitCode(), 0) << err.toStdString();
        EXPECT_GT(process.maxRssKb(), 0) << "no memory sample";
        // AddressSanitizer's shadow memory and quarantine multiply the footprint: the ceiling
        // holds for the program as it ships.
        if (!kSanitized)
            EXPECT_LT(process.maxRssKb(), kMemoryCeilingKb);
        EXPECT_TRUE(out.contains("Pages analysed:")) << out.toStdString();
    }
    QJsonArray pages()
    {
        return QJsonDocument::fromJson(runCli({"pages", "hostile", "--format", "json"}, dir.path()).out.toUtf8()).array();
    }
    QString titleOf(const std::string& url)
    {
        for (const auto& p : pages())
            if (p.toObject().value("url").toString().toStdString() == url)
                return p.toObject().value("title").toString();
        return QStringLiteral("(no page)");
    }

    QTemporaryDir dir;
    QString out;
    QString err;
};

TEST_F(HostileServer, StallAfterTheHeaders)
{
    RawTcpServer server([](RawTcpServer::Connection& c) {
        c.readRequestHead();
        c.write("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 5000\r\n\r\n<html><head><title>");
        c.waitForStop(60000);
    });
    ASSERT_TRUE(server.start());
    crawl(server.baseUrl() + "/", 8000);
    EXPECT_TRUE(out.contains("Queue:          1 done, 0 waiting")) << out.toStdString();
}

TEST_F(HostileServer, EndlessBody)
{
    std::atomic<long long> sent{0};
    RawTcpServer server([&sent](RawTcpServer::Connection& c) {
        c.readRequestHead();
        c.write("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nConnection: close\r\n\r\n<html><body>");
        const std::string chunk(64 * 1024, 'a');
        for (long long total = 0; total < (4LL << 30) && c.write(chunk); total += chunk.size())
            sent += chunk.size();
    });
    ASSERT_TRUE(server.start());
    crawl(server.baseUrl() + "/", 8000);
    std::cout << "  the server got " << sent / (1024 * 1024) << " MB out before the crawler hung up\n";
    EXPECT_TRUE(out.contains("Queue:          1 done, 0 waiting")) << out.toStdString();
}

TEST_F(HostileServer, GzipBomb)
{
    // Zeros without end, compressed on the fly (about a thousand to one): a few kilobytes on
    // the wire are megabytes once decoded.
    std::atomic<bool> askedForGzip{false};
    std::atomic<long long> decodedSent{0};
    RawTcpServer server([&](RawTcpServer::Connection& c) {
        const std::string head = c.readRequestHead();
        std::string lower = head;
        for (auto& ch : lower)
            ch = char(std::tolower(static_cast<unsigned char>(ch)));
        askedForGzip = lower.find("accept-encoding:") != std::string::npos && lower.find("gzip") != std::string::npos;
        c.write("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Encoding: gzip\r\nConnection: close\r\n\r\n");
        z_stream z{};
        if (deflateInit2(&z, Z_BEST_COMPRESSION, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY) != Z_OK)
            return;
        std::string zeros(1 << 20, '\0');
        std::string buffer(64 * 1024, '\0');
        bool open = true;
        for (int mb = 0; open && mb < 4096; ++mb) {
            z.next_in = reinterpret_cast<Bytef*>(zeros.data());
            z.avail_in = uInt(zeros.size());
            while (open && z.avail_in > 0) {
                z.next_out = reinterpret_cast<Bytef*>(buffer.data());
                z.avail_out = uInt(buffer.size());
                deflate(&z, Z_SYNC_FLUSH);
                open = c.write(std::string_view(buffer.data(), buffer.size() - z.avail_out));
            }
            decodedSent += zeros.size();
        }
        deflateEnd(&z);
    });
    ASSERT_TRUE(server.start());
    crawl(server.baseUrl() + "/", 8000);
    std::cout << "  asked for gzip: " << (askedForGzip ? "yes" : "no") << "; " << decodedSent / (1024 * 1024)
              << " MB of zeros compressed before the crawler hung up\n";
    // The crawler does ask for compression; the body limit counts decoded bytes.
    EXPECT_TRUE(askedForGzip);
    EXPECT_LT(decodedSent, 64LL << 20);
    EXPECT_TRUE(out.contains("Queue:          1 done, 0 waiting")) << out.toStdString();
}

TEST_F(HostileServer, OneMegabyteOfHeaders)
{
    // "/" sends 1 MB of header lines, "/one.html" a single header line of 1 MB.
    RawTcpServer server([](RawTcpServer::Connection& c) {
        const std::string path = requestPath(c.readRequestHead());
        const std::string body = page("Headers", "<a href=\"/one.html\">one</a>");
        std::string head = "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\n";
        if (path == "/one.html") {
            head += "X-Huge: " + std::string(1 << 20, 'h') + "\r\n";
        } else {
            for (int i = 0; i < 10000; ++i)
                head += "X-Filler-" + std::to_string(i) + ": " + std::string(90, 'f') + "\r\n";
        }
        head += "Content-Length: " + std::to_string(body.size()) + "\r\nConnection: close\r\n\r\n";
        c.write(head + body);
    });
    ASSERT_TRUE(server.start());
    crawl(server.baseUrl() + "/", 10000);
    // The transfer refuses headers that large: the page is recorded without data.
    EXPECT_TRUE(out.contains("Queue:          1 done, 0 waiting")) << out.toStdString();
}

TEST_F(HostileServer, ConnectionClosedInTheMiddleOfTheBody)
{
    RawTcpServer server([](RawTcpServer::Connection& c) {
        c.readRequestHead();
        const std::string body = page("Cut", "<a href=\"/a.html\">a</a>" + std::string(20000, 'x'));
        c.write("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: " + std::to_string(body.size())
                + "\r\n\r\n" + body.substr(0, body.size() / 2));
        c.close();
    });
    ASSERT_TRUE(server.start());
    crawl(server.baseUrl() + "/", 8000);
    // A cut body is a failed transfer: the page is recorded without data, its links unread.
    EXPECT_TRUE(out.contains("Queue:          1 done, 0 waiting")) << out.toStdString();
}

TEST_F(HostileServer, Http10WithoutLength)
{
    RawTcpServer server([](RawTcpServer::Connection& c) {
        const std::string path = requestPath(c.readRequestHead());
        const std::string body = path == "/" ? page("Old", "<a href=\"/a.html\">a</a>") : page("Old A", "");
        c.write("HTTP/1.0 200 OK\r\nContent-Type: text/html\r\n\r\n" + body);
        c.close();
    });
    ASSERT_TRUE(server.start());
    crawl(server.baseUrl() + "/", 8000);
    EXPECT_EQ(titleOf(server.baseUrl()), "Old");
    EXPECT_EQ(titleOf(server.baseUrl() + "/a.html"), "Old A");
}

TEST_F(HostileServer, TenThousandLinksOnAPage)
{
    LocalHttpServer server;
    ASSERT_TRUE(server.start());
    std::string links;
    for (int i = 0; i < 10000; ++i)
        links += "<a href=\"/p" + std::to_string(i) + ".html\">Page " + std::to_string(i) + "</a>\n";
    server.setPage("/", page("Many", links));
    // A page limit of 1 stops the crawl after the next page: the test is the one big page.
    crawl(server.baseUrl() + "/", 25000, {"--pages", "1"});
    const CliResult show = runCli({"show", "hostile"}, dir.path());
    EXPECT_TRUE(show.out.contains("Pages known:    10001")) << show.out.toStdString();
    EXPECT_TRUE(show.out.contains("Queue:          2 done, 9999 waiting")) << show.out.toStdString();
}

TEST_F(HostileServer, AHundredKilobyteURL)
{
    LocalHttpServer server;
    ASSERT_TRUE(server.start());
    const std::string longPath = "/" + std::string(50 * 1024, 'd') + "/" + std::string(50 * 1024, 'p') + ".html";
    server.setPage("/", page("Home", "<a href=\"" + longPath + "\">long</a>"));
    server.setPage(longPath, page("Long", ""));
    crawl(server.baseUrl() + "/", 10000);
    EXPECT_EQ(titleOf(server.baseUrl() + longPath), "Long");
}

TEST_F(HostileServer, InvalidUtf8AndNulBytesInAPage)
{
    LocalHttpServer server;
    ASSERT_TRUE(server.start());
    using namespace std::string_literals;
    // The parser reads the page up to its first NUL byte: the links before it count.
    const std::string bytes = "<html><head><title>Bad \xff\xfe title</title></head><body>"
                              "<a href=\"/a\xc3\x28.html\">bad \xe2\x82 anchor</a>"
                              "<a href=\"/c.html\">\xf0\x90\x80 c</a>"
                              "<a href=\"/b.html\0tail\">nul\0anchor</a>\0\0\xff</body></html>"s;
    server.setPage("/", bytes);
    server.setPage("/b.html", page("B", ""));
    server.setPage("/c.html", page("C", ""));
    crawl(server.baseUrl() + "/", 10000);
    EXPECT_EQ(titleOf(server.baseUrl() + "/c.html"), "C");
    EXPECT_TRUE(titleOf(server.baseUrl()).startsWith("Bad ")) << titleOf(server.baseUrl()).toStdString();
}

} // namespace
