// What the crawler asks of a transfer beyond the body limit: to be abandoned at once when the
// crawl's can-continue flag is cleared, to time out after the instance's own time-out, and
// to refuse a URL that is not on the project's server without sending anything.

#include "FetchTestSupport.h"

#include "fetch/SynchronizedWebCall.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

using namespace fetchtest;

namespace {

const QStringList kHtml{QStringLiteral("text/html")};

// Sends headers and the start of a body, then nothing until the server stops.
void stallAfterHeaders(RawTcpServer::Connection& connection)
{
    connection.readRequestHead();
    connection.write("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 100000\r\n\r\n<html><head>");
    connection.waitForStop(60000);
}

TEST(TransferLimits, ClearingTheCanContinueFlagAbandonsAStalledTransferWithinATenthOfASecond)
{
    RawTcpServer raw(stallAfterHeaders);
    ASSERT_TRUE(raw.start());
    std::atomic<bool> canContinue{true};
    SynchronizedWebCall call;
    call.setCanContinueFlag(&canContinue);
    std::chrono::steady_clock::time_point cleared;
    std::thread stopper([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(400));
        cleared = std::chrono::steady_clock::now();
        canContinue.store(false);
    });
    const QByteArray body = call.getURL(q(raw.baseUrl() + "/stall.html"), kHtml);
    const auto returned = std::chrono::steady_clock::now();
    stopper.join();

    EXPECT_TRUE(body.isNull());
    EXPECT_TRUE(call.isAbandoned());
    EXPECT_LT(std::chrono::duration_cast<std::chrono::milliseconds>(returned - cleared).count(), 300);
    // The rest reads as a failed transfer.
    EXPECT_FALSE(call.isRedirect());
    EXPECT_FALSE(call.is404());
    EXPECT_EQ(call.downloadedLength(), -1);
}

TEST(TransferLimits, AClearedFlagSendsNothingAndTheNextCallIsNotAbandoned)
{
    LocalHttpServer server;
    ASSERT_TRUE(server.start());
    server.setPage("/a.html", "<html><head><title>A</title></head></html>");
    std::atomic<bool> canContinue{false};
    SynchronizedWebCall call;
    call.setCanContinueFlag(&canContinue);

    EXPECT_TRUE(call.getURL(q(server.url("/a.html")), kHtml).isNull());
    EXPECT_TRUE(call.isAbandoned());
    EXPECT_EQ(server.requestCount(), 0u);

    canContinue.store(true);
    EXPECT_FALSE(call.getURL(q(server.url("/a.html")), kHtml).isNull());
    EXPECT_FALSE(call.isAbandoned());
}

TEST(TransferLimits, AnInstanceTimeOutEndsAStalledTransferAndATimeOutIsNotAnAbandon)
{
    RawTcpServer raw(stallAfterHeaders);
    ASSERT_TRUE(raw.start());
    std::atomic<bool> canContinue{true};
    SynchronizedWebCall call;
    call.setCanContinueFlag(&canContinue);
    EXPECT_EQ(call.requestTimeoutInterval(), 1000.0);
    call.setTimeoutInterval(0.5);
    EXPECT_EQ(call.requestTimeoutInterval(), 0.5);

    QByteArray body;
    const auto ms = millisecondsOf([&] { body = call.getURL(q(raw.baseUrl() + "/stall.html"), kHtml); });
    EXPECT_TRUE(body.isNull());
    EXPECT_GE(ms, 450);
    EXPECT_LT(ms, 2000);
    EXPECT_FALSE(call.isAbandoned());
    // Another instance keeps the default.
    EXPECT_EQ(SynchronizedWebCall().requestTimeoutInterval(), 1000.0);
}

TEST(TransferLimits, AURLOnAnotherServerIsRefusedWithoutARequest)
{
    LocalHttpServer site;
    LocalHttpServer other;
    ASSERT_TRUE(site.start());
    ASSERT_TRUE(other.start());
    other.setPage("/x.html", "<html><head><title>X</title></head></html>");
    site.setPage("/x.html", "<html><head><title>X</title></head></html>");
    const QUrl origin(q(site.baseUrl() + "/"));
    const std::string sitePort = std::to_string(site.port());
    const std::string otherPort = std::to_string(other.port());
    SynchronizedWebCall call;

    // A first call leaves fields that the refusal must overwrite.
    site.setPage("/missing.html", "gone", "text/html", 404);
    EXPECT_TRUE(call.getURL(q(site.url("/missing.html")), kHtml, origin).isNull());
    EXPECT_TRUE(call.is404());

    for (const std::string& url : {"http://127.0.0.1:" + sitePort + "@127.0.0.1:" + otherPort + "/x.html",
                                   "http://127.0.0.1:" + sitePort + "@localhost:" + otherPort + "/x.html",
                                   "http://localhost:" + otherPort + "/x.html",
                                   "https://127.0.0.1:" + sitePort + "/x.html",
                                   std::string("http://127.0.0.1.invalid/x.html")}) {
        EXPECT_TRUE(call.getURL(q(url), kHtml, origin).isNull()) << url;
        EXPECT_TRUE(call.isOtherHostRefused()) << url;
        EXPECT_FALSE(call.is404()) << url;
        EXPECT_EQ(call.contentType(), QStringLiteral("")) << url;
        EXPECT_EQ(call.contentLength(), -1) << url;
        EXPECT_EQ(call.downloadedLength(), -1) << url;
        EXPECT_FALSE(call.isRedirect()) << url;
    }
    EXPECT_EQ(other.requestCount(), 0u);

    // The project's own server, with or without user-info, and without an origin at all.
    EXPECT_FALSE(call.getURL(q(site.url("/x.html")), kHtml, origin).isNull());
    EXPECT_FALSE(call.isOtherHostRefused());
    EXPECT_FALSE(call.getURL(q("http://user@127.0.0.1:" + sitePort + "/x.html"), kHtml, origin).isNull());
    EXPECT_FALSE(call.getURL(q(other.url("/x.html")), kHtml).isNull());
    EXPECT_FALSE(call.isOtherHostRefused());
}

TEST(TransferLimits, SameOriginComparesSchemeHostAndPortWithDefaultPorts)
{
    EXPECT_TRUE(SynchronizedWebCall::isSameOrigin(QUrl("http://Example.com/a"), QUrl("http://example.com:80/")));
    EXPECT_TRUE(SynchronizedWebCall::isSameOrigin(QUrl("https://example.com:443/a"), QUrl("https://example.com")));
    EXPECT_FALSE(SynchronizedWebCall::isSameOrigin(QUrl("https://example.com/a"), QUrl("http://example.com/")));
    EXPECT_FALSE(SynchronizedWebCall::isSameOrigin(QUrl("http://www.example.com/"), QUrl("http://example.com/")));
    EXPECT_FALSE(SynchronizedWebCall::isSameOrigin(QUrl("http://example.com.evil.org/"), QUrl("http://example.com/")));
    EXPECT_FALSE(SynchronizedWebCall::isSameOrigin(QUrl("http://example.com:8080/"), QUrl("http://example.com/")));
}

} // namespace
