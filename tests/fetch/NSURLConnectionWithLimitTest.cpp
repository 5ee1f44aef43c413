#include "fetch/NSURLConnectionLimitSize.h"
#include "fetch/NSURLConnectionWithLimit.h"

#include "FetchTestSupport.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

using namespace fetchtest;

namespace {

constexpr qint64 kLimit = 1048576;

struct Outcome {
    QByteArray body;
    HTTPURLResponsePtr response;
    FetchErrorPtr error;
    QVariantMap headers;
};

Outcome fetchLimited(const std::string& url, qint64 limit, const std::optional<QStringList>& filters,
                     double timeout = 20.0)
{
    Outcome o;
    URLRequest request(QUrl(q(url)), URLRequest::ReloadIgnoringLocalCacheData, timeout);
    o.body = NSURLConnectionLimitSize::sendSynchronousRequest(request, &o.response, limit, filters, &o.headers, &o.error);
    return o;
}

const QStringList kHtml{QStringLiteral("text/html")};

class LimitedTransfer : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(server.start()); }
    LocalHttpServer server;
};

} // namespace

TEST(NSURLConnectionWithLimitFields, InitialValues)
{
    URLRequest request(QUrl("http://127.0.0.1/x"));
    NSURLConnectionWithLimit worker(request, 1234, QStringList{"text/html"});
    EXPECT_TRUE(worker.shouldKeepRunning());
    EXPECT_FALSE(worker.isRedirect());
    EXPECT_FALSE(worker.isContentTypeError());
    EXPECT_FALSE(worker.isContentLengthError());
    EXPECT_EQ(worker.request().URL(), request.URL());
    EXPECT_FALSE(worker.response());
    EXPECT_FALSE(worker.error());
    ASSERT_TRUE(worker.endCondition());
    EXPECT_FALSE(worker.endCondition()->isSignalled());
    EXPECT_FALSE(worker.requestData().has_value());
    EXPECT_EQ(worker.initialHTTPMethod(), QStringLiteral("GET"));
    EXPECT_EQ(worker.downloadLimit(), 1234);
    ASSERT_TRUE(worker.arrayOfContentTypeFilters().has_value());
    EXPECT_EQ(*worker.arrayOfContentTypeFilters(), QStringList{"text/html"});
    EXPECT_TRUE(worker.redirectURL().isNull());
    EXPECT_FALSE(worker.contentType().isNull());
    EXPECT_EQ(worker.contentType(), QStringLiteral(""));
    EXPECT_EQ(worker.contentLength(), -1);
}

TEST(NSURLConnectionWithLimitFields, HeaderNumbersAreReadLeniently)
{
    EXPECT_EQ(NSURLConnectionWithLimit::longLongValue(QStringLiteral("5000000")), 5000000);
    EXPECT_EQ(NSURLConnectionWithLimit::longLongValue(QStringLiteral("  42abc")), 42);
    EXPECT_EQ(NSURLConnectionWithLimit::longLongValue(QStringLiteral("abc")), 0);
    EXPECT_EQ(NSURLConnectionWithLimit::longLongValue(QStringLiteral("")), 0);
    EXPECT_EQ(NSURLConnectionWithLimit::longLongValue(QStringLiteral("-7")), -7);
    EXPECT_EQ(NSURLConnectionWithLimit::longLongValue(QStringLiteral("99999999999999999999999")),
              std::numeric_limits<qint64>::max());
}

TEST(NSURLConnectionWithLimitFields, FilterMatchingIsACaseInsensitiveSubstringTest)
{
    EXPECT_TRUE(NSURLConnectionWithLimit::contentTypeMatchesFilter("TEXT/HTML;charset=iso-8859-1", "text/html"));
    EXPECT_TRUE(NSURLConnectionWithLimit::contentTypeMatchesFilter("application/xhtml+xml", "html"));
    EXPECT_FALSE(NSURLConnectionWithLimit::contentTypeMatchesFilter("image/png", "text/html"));
    EXPECT_FALSE(NSURLConnectionWithLimit::contentTypeMatchesFilter("text/html", ""));
    EXPECT_TRUE(NSURLConnectionWithLimit::contentTypeMatchesFilter(QString(), "text/html"));
}

TEST_F(LimitedTransfer, AWorkerThatEndsBeforeTheCallerWaitsDoesNotLeaveItWaiting)
{
    server.setPage("/page", "<html>quick</html>");
    URLRequest request(QUrl(q(server.url("/page"))), URLRequest::ReloadIgnoringLocalCacheData, 20);
    NSURLConnectionWithLimit worker(request, kLimit, std::nullopt);
    worker.start();
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!worker.endCondition()->isSignalled() && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    ASSERT_TRUE(worker.endCondition()->isSignalled());
    worker.endCondition()->wait(); // the signal is long gone; this must still return
    ASSERT_TRUE(worker.requestData().has_value());
    EXPECT_EQ(*worker.requestData(), QByteArray("<html>quick</html>"));
    EXPECT_FALSE(worker.shouldKeepRunning());
}

TEST_F(LimitedTransfer, NullFilterListAcceptsEveryType)
{
    server.setPage("/img.png", std::string("\x89PNG\r\n\x1a\n", 8), "image/png");
    Outcome o = fetchLimited(server.url("/img.png"), kLimit, std::nullopt);
    EXPECT_EQ(o.body, QByteArray("\x89PNG\r\n\x1a\n", 8));
    EXPECT_EQ(o.headers.value("contentType").toString(), QStringLiteral("image/png"));
    EXPECT_FALSE(o.headers.value("contentTypeError").toBool());
    EXPECT_FALSE(o.error);
}

TEST_F(LimitedTransfer, EmptyFilterListRefusesEveryResponse)
{
    server.setPage("/page", "<html>fine</html>", "text/html");
    Outcome o = fetchLimited(server.url("/page"), kLimit, QStringList{});
    EXPECT_TRUE(o.body.isNull());
    EXPECT_TRUE(o.headers.value("contentTypeError").toBool());
    EXPECT_EQ(o.headers.value("contentType").toString(), QStringLiteral("text/html"));
    EXPECT_FALSE(o.error);
    ASSERT_TRUE(o.response);
    EXPECT_EQ(o.response->statusCode(), 200);
}

TEST_F(LimitedTransfer, UppercaseTypeWithCharsetPassesTheHtmlFilter)
{
    server.setPage("/page", "<html>latin</html>", "TEXT/HTML;charset=iso-8859-1");
    Outcome o = fetchLimited(server.url("/page"), kLimit, kHtml);
    EXPECT_EQ(o.body, QByteArray("<html>latin</html>"));
    EXPECT_FALSE(o.headers.value("contentTypeError").toBool());
    EXPECT_EQ(o.headers.value("contentType").toString(), QStringLiteral("TEXT/HTML;charset=iso-8859-1"));
}

TEST_F(LimitedTransfer, AnyMatchingFilterOfSeveralAccepts)
{
    server.setPage("/robots.txt", "User-agent: *\n", "text/plain; charset=utf-8");
    Outcome o = fetchLimited(server.url("/robots.txt"), kLimit, QStringList{"text/html", "text/plain"});
    EXPECT_EQ(o.body, QByteArray("User-agent: *\n"));
    EXPECT_FALSE(o.headers.value("contentTypeError").toBool());
}

TEST_F(LimitedTransfer, BodyOfExactlyTheLimitIsKeptWhole)
{
    const std::string body(static_cast<size_t>(kLimit), 'a');
    server.setPage("/exact", body);
    Outcome o = fetchLimited(server.url("/exact"), kLimit, kHtml);
    EXPECT_EQ(o.body.size(), kLimit);
    EXPECT_FALSE(o.headers.value("contentLengthError").toBool());
    EXPECT_EQ(o.headers.value("contentLength").toLongLong(), kLimit);
    EXPECT_FALSE(o.error);
}

TEST_F(LimitedTransfer, OneByteOverTheLimitDropsTheBody)
{
    server.setPage("/over", std::string(static_cast<size_t>(kLimit) + 1, 'a'));
    Outcome o = fetchLimited(server.url("/over"), kLimit, kHtml);
    EXPECT_TRUE(o.body.isNull());
    EXPECT_TRUE(o.headers.value("contentLengthError").toBool());
    EXPECT_FALSE(o.headers.value("contentTypeError").toBool());
    EXPECT_EQ(o.headers.value("contentLength").toLongLong(), kLimit + 1);
    EXPECT_FALSE(o.error); // a limit is not a transport failure
}

TEST_F(LimitedTransfer, SmallLimitsCountEveryChunk)
{
    server.setPage("/eleven", "0123456789X");
    EXPECT_EQ(fetchLimited(server.url("/eleven"), 11, kHtml).body, QByteArray("0123456789X"));
    Outcome o = fetchLimited(server.url("/eleven"), 10, kHtml);
    EXPECT_TRUE(o.body.isNull());
    EXPECT_TRUE(o.headers.value("contentLengthError").toBool());
}

TEST_F(LimitedTransfer, NoContentLengthHeaderReadsMinusOne)
{
    RawTcpServer raw(answerWith("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nConnection: close\r\n\r\n"
                                "<html>until the connection closes</html>"));
    ASSERT_TRUE(raw.start());
    Outcome o = fetchLimited(raw.baseUrl() + "/", kLimit, kHtml);
    EXPECT_EQ(o.body, QByteArray("<html>until the connection closes</html>"));
    EXPECT_EQ(o.headers.value("contentLength").toLongLong(), -1);
    EXPECT_FALSE(o.error);
}

TEST_F(LimitedTransfer, DeclaredLengthAboveTheLimitIsOnlyRecorded)
{
    // A chunked body of 100 bytes under a declared length of 5000000: the declared length is
    // recorded, never compared with the limit.
    const std::string body(100, 'b');
    RawTcpServer raw(answerWith("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 5000000\r\n"
                                "Transfer-Encoding: chunked\r\nConnection: close\r\n\r\n64\r\n" +
                                body + "\r\n0\r\n\r\n"));
    ASSERT_TRUE(raw.start());
    Outcome o = fetchLimited(raw.baseUrl() + "/", kLimit, kHtml);
    EXPECT_EQ(o.body, QByteArray::fromStdString(body));
    EXPECT_EQ(o.headers.value("contentLength").toLongLong(), 5000000);
    EXPECT_FALSE(o.headers.value("contentLengthError").toBool());
    EXPECT_FALSE(o.error);
}

TEST_F(LimitedTransfer, DeclaredLengthThatTheBodyNeverReachesIsALostConnection)
{
    RawTcpServer raw(answerWith("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 5000000\r\n\r\n" +
                                std::string(100, 'c')));
    ASSERT_TRUE(raw.start());
    Outcome o = fetchLimited(raw.baseUrl() + "/", kLimit, kHtml);
    EXPECT_TRUE(o.body.isNull());
    ASSERT_TRUE(o.error);
    EXPECT_EQ(o.error->code(), FetchError::NetworkConnectionLost);
    EXPECT_EQ(o.headers.value("contentLength").toLongLong(), 5000000);
    EXPECT_FALSE(o.headers.value("contentLengthError").toBool());
    ASSERT_TRUE(o.response);
    EXPECT_EQ(o.response->statusCode(), 200);
}

TEST_F(LimitedTransfer, BytesBeyondTheDeclaredLengthAreNotPartOfTheBody)
{
    RawTcpServer raw(answerWith("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 10\r\n\r\n" +
                                std::string(100, 'd')));
    ASSERT_TRUE(raw.start());
    Outcome o = fetchLimited(raw.baseUrl() + "/", kLimit, kHtml);
    EXPECT_EQ(o.body, QByteArray(10, 'd'));
    EXPECT_EQ(o.headers.value("contentLength").toLongLong(), 10);
}

TEST_F(LimitedTransfer, RedirectThenOkReturnsTheBodyAndTheTarget)
{
    server.setRedirect("/old", server.url("/new"));
    server.setPage("/new", "<html>new</html>");
    Outcome o = fetchLimited(server.url("/old"), kLimit, kHtml);
    EXPECT_EQ(o.body, QByteArray("<html>new</html>"));
    EXPECT_TRUE(o.headers.value("isRedirect").toBool());
    EXPECT_EQ(o.headers.value("redirectURL").toString(), q(server.url("/new")));
    ASSERT_TRUE(o.response);
    EXPECT_EQ(o.response->statusCode(), 200);
    EXPECT_EQ(o.response->URL().toString(), q(server.url("/new")));
}

TEST_F(LimitedTransfer, TwoHopsLeaveTheSecondTargetAndRelativeLocationsAreResolved)
{
    server.setRedirect("/a", "/b", 302);
    server.setRedirect("/b", "c", 307);
    server.setPage("/c", "<html>c</html>");
    Outcome o = fetchLimited(server.url("/a"), kLimit, kHtml);
    EXPECT_EQ(o.body, QByteArray("<html>c</html>"));
    EXPECT_TRUE(o.headers.value("isRedirect").toBool());
    EXPECT_EQ(o.headers.value("redirectURL").toString(), q(server.url("/c")));
    EXPECT_EQ(server.requestCount(), 3u);
}

TEST_F(LimitedTransfer, EveryHopRepeatsTheFirstRequest)
{
    server.setRedirect("/see-other", "/target", 303);
    server.setPage("/target", "<html>t</html>");
    URLRequest request(QUrl(q(server.url("/see-other"))), URLRequest::ReloadIgnoringLocalCacheData, 20);
    request.setValueForHTTPHeaderField("probe", "X-Probe");
    QVariantMap headers;
    NSURLConnectionLimitSize::sendSynchronousRequest(request, nullptr, kLimit, std::nullopt, &headers, nullptr);
    const auto requests = server.requests();
    ASSERT_EQ(requests.size(), 2u);
    EXPECT_EQ(requests[1].method, "GET");
    EXPECT_EQ(requests[1].path, "/target");
    EXPECT_EQ(requests[1].header("X-Probe"), "probe");
}

TEST_F(LimitedTransfer, NoRedirectLeavesNoRedirectKey)
{
    server.setPage("/page", "<html>p</html>");
    Outcome o = fetchLimited(server.url("/page"), kLimit, kHtml);
    EXPECT_FALSE(o.headers.value("isRedirect").toBool());
    EXPECT_FALSE(o.headers.contains("redirectURL"));
    // Every other key is always present.
    for (const char* key : {"contentType", "contentTypeError", "contentLength", "contentLengthError", "isRedirect"})
        EXPECT_TRUE(o.headers.contains(key)) << key;
}

TEST_F(LimitedTransfer, ARedirectLoopFailsAfterTwentyHops)
{
    server.setRedirect("/loop", "/loop", 302);
    Outcome o = fetchLimited(server.url("/loop"), kLimit, kHtml);
    EXPECT_TRUE(o.body.isNull());
    ASSERT_TRUE(o.error);
    EXPECT_EQ(o.error->code(), FetchError::HTTPTooManyRedirects);
    EXPECT_TRUE(o.headers.value("isRedirect").toBool());
    EXPECT_EQ(o.headers.value("redirectURL").toString(), q(server.url("/loop")));
    EXPECT_EQ(server.requestCount(), 21u); // the first request and twenty hops
}

TEST_F(LimitedTransfer, OkWithAnEmptyBodyGivesNullWithoutErrorOrFlag)
{
    server.setPage("/empty", "");
    Outcome o = fetchLimited(server.url("/empty"), kLimit, kHtml);
    EXPECT_TRUE(o.body.isNull());
    EXPECT_FALSE(o.error);
    ASSERT_TRUE(o.response);
    EXPECT_EQ(o.response->statusCode(), 200);
    EXPECT_FALSE(o.headers.value("contentTypeError").toBool());
    EXPECT_FALSE(o.headers.value("contentLengthError").toBool());
    EXPECT_FALSE(o.headers.value("isRedirect").toBool());
    EXPECT_EQ(o.headers.value("contentLength").toLongLong(), 0);
}

TEST_F(LimitedTransfer, NotFoundPagesKeepTheirBodyAtThisLevel)
{
    server.setPage("/gone", "<html>missing</html>", "text/html", 404);
    Outcome o = fetchLimited(server.url("/gone"), kLimit, kHtml);
    EXPECT_EQ(o.body, QByteArray("<html>missing</html>"));
    ASSERT_TRUE(o.response);
    EXPECT_EQ(o.response->statusCode(), 404);
}

TEST(LimitedTransferFailure, RefusedConnectionGivesAnErrorAndTheInitialFields)
{
    RefusingPort port;
    Outcome o = fetchLimited(port.url("/x"), kLimit, kHtml);
    EXPECT_TRUE(o.body.isNull());
    ASSERT_TRUE(o.error);
    EXPECT_EQ(o.error->domain(), QStringLiteral("NSURLErrorDomain"));
    EXPECT_EQ(o.error->code(), FetchError::CannotConnectToHost);
    EXPECT_FALSE(o.error->localizedDescription().isEmpty());
    EXPECT_FALSE(o.response);
    EXPECT_EQ(o.headers.value("contentType").toString(), QStringLiteral(""));
    EXPECT_EQ(o.headers.value("contentLength").toLongLong(), -1);
    EXPECT_FALSE(o.headers.value("contentTypeError").toBool());
    EXPECT_FALSE(o.headers.value("contentLengthError").toBool());
    EXPECT_FALSE(o.headers.value("isRedirect").toBool());
}

TEST(LimitedTransferFailure, OutSlotsMayAllBeNull)
{
    RefusingPort port;
    URLRequest request(QUrl(q(port.url("/x"))));
    EXPECT_TRUE(NSURLConnectionLimitSize::sendSynchronousRequest(request, nullptr, kLimit, kHtml, nullptr, nullptr)
                    .isNull());
}

TEST(LimitedTransferFailure, AMissingContentTypePassesTheFilterAndReadsEmpty)
{
    RawTcpServer raw(answerWith("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nno type!!"));
    ASSERT_TRUE(raw.start());
    Outcome o = fetchLimited(raw.baseUrl() + "/", kLimit, kHtml);
    EXPECT_EQ(o.body, QByteArray("no type!!"));
    EXPECT_FALSE(o.headers.value("contentTypeError").toBool());
    EXPECT_EQ(o.headers.value("contentType").userType(), QMetaType::QString);
    EXPECT_EQ(o.headers.value("contentType").toString(), QStringLiteral(""));
}

TEST(LimitedTransferFailure, AnEmptyContentTypeIsRefusedByTheFilter)
{
    RawTcpServer raw(answerWith("HTTP/1.1 200 OK\r\nContent-Type: \r\nContent-Length: 5\r\n\r\nempty"));
    ASSERT_TRUE(raw.start());
    Outcome o = fetchLimited(raw.baseUrl() + "/", kLimit, kHtml);
    EXPECT_TRUE(o.body.isNull());
    EXPECT_TRUE(o.headers.value("contentTypeError").toBool());
}

TEST(LimitedTransferFailure, AServerThatNeverAnswersTimesOut)
{
    RawTcpServer raw([](RawTcpServer::Connection& c) {
        c.readRequestHead();
        c.waitForStop(60000);
    });
    ASSERT_TRUE(raw.start());
    Outcome o;
    const auto ms = millisecondsOf([&] { o = fetchLimited(raw.baseUrl() + "/", kLimit, kHtml, 1.0); });
    EXPECT_LT(ms, 4000);
    EXPECT_GE(ms, 900);
    EXPECT_TRUE(o.body.isNull());
    ASSERT_TRUE(o.error);
    EXPECT_EQ(o.error->code(), FetchError::TimedOut);
    EXPECT_FALSE(o.response);
    EXPECT_EQ(o.headers.value("contentType").toString(), QStringLiteral(""));
}

TEST(LimitedTransferFailure, AServerThatStallsInTheBodyTimesOut)
{
    RawTcpServer raw([](RawTcpServer::Connection& c) {
        c.readRequestHead();
        c.write("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 1000\r\n\r\n<html>partial");
        c.waitForStop(60000);
    });
    ASSERT_TRUE(raw.start());
    Outcome o;
    const auto ms = millisecondsOf([&] { o = fetchLimited(raw.baseUrl() + "/", kLimit, kHtml, 1.0); });
    EXPECT_LT(ms, 4000); // counted from the last byte, not averaged over a window
    EXPECT_GE(ms, 900);
    EXPECT_TRUE(o.body.isNull());
    ASSERT_TRUE(o.error);
    EXPECT_EQ(o.error->code(), FetchError::TimedOut);
    EXPECT_EQ(o.headers.value("contentType").toString(), QStringLiteral("text/html"));
    EXPECT_EQ(o.headers.value("contentLength").toLongLong(), 1000);
}

TEST(LimitedTransferFailure, ABodyThatKeepsTricklingIsNotTimedOut)
{
    // Eight bytes a quarter of a second apart: two seconds in all, never a second of silence.
    RawTcpServer raw([](RawTcpServer::Connection& c) {
        c.readRequestHead();
        c.write("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 8\r\n\r\n");
        for (char byte : std::string("trickle!")) {
            if (c.waitForStop(250) || !c.write(std::string(1, byte)))
                return;
        }
    });
    ASSERT_TRUE(raw.start());
    Outcome o = fetchLimited(raw.baseUrl() + "/", kLimit, kHtml, 1.0);
    EXPECT_FALSE(o.error) << (o.error ? o.error->localizedDescription().toStdString() : "");
    EXPECT_EQ(o.body, QByteArray("trickle!"));
}

TEST(LimitedTransferFailure, ABodyThatNeverEndsIsCutAtTheLimit)
{
    std::atomic<bool> peerClosed{false};
    RawTcpServer raw([&](RawTcpServer::Connection& c) {
        c.readRequestHead();
        if (!c.write("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nConnection: close\r\n\r\n"))
            return;
        const std::string chunk(16384, 'z');
        while (c.write(chunk)) {
        }
        peerClosed = !c.stopping();
    });
    ASSERT_TRUE(raw.start());
    Outcome o;
    const auto ms = millisecondsOf([&] { o = fetchLimited(raw.baseUrl() + "/", 200000, kHtml); });
    EXPECT_LT(ms, 10000);
    EXPECT_TRUE(o.body.isNull());
    EXPECT_TRUE(o.headers.value("contentLengthError").toBool());
    EXPECT_EQ(o.headers.value("contentLength").toLongLong(), -1);
    EXPECT_FALSE(o.error);
    // The transfer was abandoned: the server's writes fail once the client has gone.
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (!peerClosed && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_TRUE(peerClosed);
}

TEST_F(LimitedTransfer, GzipBodiesAreDecodedAndTheLimitCountsDecodedBytes)
{
    std::string html = "<html><body>";
    for (int i = 0; i < 500; ++i)
        html += "<p>line " + std::to_string(i) + "</p>";
    html += "</body></html>";
    const std::string compressed = gzip(html);
    ASSERT_LT(compressed.size(), html.size());
    server.route("/gz", [&](const HttpRequest& request, HttpResponse& response) {
        if (request.header("Accept-Encoding").find("gzip") == std::string::npos) {
            response.setContent(html, "text/html");
            return;
        }
        response.setContent(compressed, "text/html");
        response.setHeader("Content-Encoding", "gzip");
    });
    Outcome o = fetchLimited(server.url("/gz"), kLimit, kHtml);
    EXPECT_EQ(o.body, QByteArray::fromStdString(html));
    EXPECT_EQ(o.headers.value("contentLength").toLongLong(), static_cast<qint64>(compressed.size()));

    // A limit between the compressed and the decoded size trips.
    Outcome cut = fetchLimited(server.url("/gz"), static_cast<qint64>(html.size()) - 1, kHtml);
    EXPECT_TRUE(cut.body.isNull());
    EXPECT_TRUE(cut.headers.value("contentLengthError").toBool());
    Outcome whole = fetchLimited(server.url("/gz"), static_cast<qint64>(html.size()), kHtml);
    EXPECT_EQ(whole.body.size(), static_cast<qsizetype>(html.size()));
}
