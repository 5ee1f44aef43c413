#include "fetch/URLConnection.h"

#include "FetchTestSupport.h"

#include <gtest/gtest.h>

using namespace fetchtest;

namespace {

// Writes every event down as one line.
class RecordingDelegate : public URLConnectionDelegate {
public:
    QStringList events;
    QByteArray body;
    HTTPURLResponsePtr response;
    FetchErrorPtr error;
    bool followRedirects = true;
    bool cancelOnResponse = false;

    std::optional<URLRequest> connectionWillSendRequest(URLConnection&, const URLRequest& request,
                                                        const HTTPURLResponsePtr& redirectResponse) override
    {
        events << (redirectResponse ? QStringLiteral("redirect %1 -> %2")
                                          .arg(redirectResponse->statusCode())
                                          .arg(request.URL().path())
                                    : QStringLiteral("send %1").arg(request.URL().path()));
        if (redirectResponse && !followRedirects)
            return std::nullopt;
        return request;
    }
    void connectionDidReceiveResponse(URLConnection& connection, const HTTPURLResponsePtr& r) override
    {
        events << QStringLiteral("response %1").arg(r->statusCode());
        response = r;
        if (cancelOnResponse)
            connection.cancel();
    }
    void connectionDidReceiveData(URLConnection&, const QByteArray& data) override
    {
        if (events.isEmpty() || events.last() != QStringLiteral("data"))
            events << QStringLiteral("data");
        body += data;
    }
    void connectionDidFailWithError(URLConnection&, const FetchErrorPtr& e) override
    {
        events << QStringLiteral("fail %1").arg(e->code());
        error = e;
    }
    void connectionDidFinishLoading(URLConnection&) override { events << QStringLiteral("finish"); }
};

void runToEnd(URLConnection& connection)
{
    int runs = 0;
    while (connection.runOnce())
        ASSERT_LT(++runs, 100);
}

class Connection : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(server.start()); }
    URLRequest requestFor(const std::string& path)
    {
        return URLRequest(QUrl(q(server.url(path))), URLRequest::ReloadIgnoringLocalCacheData, 20);
    }
    LocalHttpServer server;
};

} // namespace

TEST_F(Connection, EventsComeInOrderAndEachHopIsOneRun)
{
    server.setRedirect("/a", "/b");
    server.setPage("/b", "<html>b</html>");
    RecordingDelegate delegate;
    auto connection = URLConnection::connectionWithRequest(requestFor("/a"), &delegate);
    EXPECT_TRUE(connection->runOnce()); // the first request, answered by a redirect
    EXPECT_EQ(delegate.events, QStringList({"send /a", "redirect 301 -> /b"}));
    EXPECT_EQ(connection->currentRequest().URL().path(), QStringLiteral("/b"));
    EXPECT_EQ(connection->originalRequest().URL().path(), QStringLiteral("/a"));
    EXPECT_TRUE(connection->runOnce()); // the hop
    EXPECT_FALSE(connection->runOnce());
    EXPECT_EQ(delegate.events, QStringList({"send /a", "redirect 301 -> /b", "response 200", "data", "finish"}));
    EXPECT_EQ(delegate.body, QByteArray("<html>b</html>"));
}

TEST_F(Connection, ARefusedRedirectStandsAsTheAnswer)
{
    server.setRedirect("/a", "/b");
    RecordingDelegate delegate;
    delegate.followRedirects = false;
    auto connection = URLConnection::connectionWithRequest(requestFor("/a"), &delegate);
    runToEnd(*connection);
    EXPECT_EQ(delegate.events, QStringList({"send /a", "redirect 301 -> /b", "response 301", "data", "finish"}));
    EXPECT_EQ(server.requestCount(), 1u);
    EXPECT_EQ(delegate.response->valueForHTTPHeaderField("location"), QStringLiteral("/b"));
}

TEST_F(Connection, CancellingOnTheResponseEndsEverything)
{
    server.setPage("/page", std::string(50000, 'x'));
    RecordingDelegate delegate;
    delegate.cancelOnResponse = true;
    auto connection = URLConnection::connectionWithRequest(requestFor("/page"), &delegate);
    EXPECT_TRUE(connection->runOnce());
    EXPECT_FALSE(connection->runOnce());
    EXPECT_TRUE(connection->isCancelled());
    EXPECT_EQ(delegate.events, QStringList({"send /page", "response 200"}));
}

TEST_F(Connection, SendsTheProductUserAgentAndAcceptsCompression)
{
    server.setPage("/ua", "ok", "text/plain");
    RecordingDelegate delegate;
    auto connection = URLConnection::connectionWithRequest(requestFor("/ua"), &delegate);
    runToEnd(*connection);
    ASSERT_EQ(server.requestCount(), 1u);
    const HttpRequest request = server.requests()[0];
    EXPECT_EQ(request.method, "GET");
    EXPECT_EQ(request.header("User-Agent"), std::string("Quillmere/") + QUILLMERE_VERSION);
    EXPECT_NE(request.header("Accept-Encoding").find("gzip"), std::string::npos);
}

TEST_F(Connection, InterimResponsesAreNotTheAnswer)
{
    RawTcpServer raw(answerWith("HTTP/1.1 100 Continue\r\n\r\n"
                                "HTTP/1.1 200 OK\r\nContent-Type: text/plain\r\nContent-Length: 2\r\n\r\nhi"));
    ASSERT_TRUE(raw.start());
    RecordingDelegate delegate;
    auto connection = URLConnection::connectionWithRequest(URLRequest(QUrl(q(raw.baseUrl() + "/"))), &delegate);
    runToEnd(*connection);
    EXPECT_EQ(delegate.events, QStringList({"send /", "response 200", "data", "finish"}));
    EXPECT_EQ(delegate.body, QByteArray("hi"));
}

TEST_F(Connection, UrlsWithoutHostOrWithAnotherSchemeFailBeforeAnythingIsSent)
{
    const QString hostless = QStringLiteral("http:/127.0.0.1:%1/robots.txt").arg(server.port());
    for (const QString& url : {hostless, QStringLiteral("ftp://127.0.0.1:%1/x").arg(server.port()),
                               QStringLiteral("relative/path")}) {
        RecordingDelegate delegate;
        auto connection = URLConnection::connectionWithRequest(URLRequest(QUrl(url)), &delegate);
        runToEnd(*connection);
        ASSERT_TRUE(delegate.error) << url.toStdString();
        EXPECT_EQ(delegate.error->code(), FetchError::UnsupportedURL);
        EXPECT_FALSE(delegate.response);
    }
    EXPECT_EQ(server.requestCount(), 0u);
}

TEST_F(Connection, SynchronousSendTellsAnEmptyBodyFromAFailure)
{
    server.setPage("/empty", "");
    HTTPURLResponsePtr response;
    FetchErrorPtr error;
    QByteArray body = URLConnection::sendSynchronousRequest(requestFor("/empty"), &response, &error);
    EXPECT_FALSE(body.isNull());
    EXPECT_TRUE(body.isEmpty());
    EXPECT_FALSE(error);
    ASSERT_TRUE(response);
    EXPECT_EQ(response->statusCode(), 200);

    RefusingPort port;
    body = URLConnection::sendSynchronousRequest(URLRequest(QUrl(q(port.url("/")))), &response, &error);
    EXPECT_TRUE(body.isNull());
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), FetchError::CannotConnectToHost);
}
