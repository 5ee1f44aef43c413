// The web rules' fetcher against local servers: which bodies it keeps and where it stops
// reading, redirects followed or reported, HEAD and the link check's fall-back to GET, the
// request's own headers, and the ways a transfer fails.

#include "FetchTestSupport.h"

#include "fetch/URLConnection.h"
#include "fetch/WebFetcher.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

using namespace fetchtest;

namespace {

const QStringList kHtml{QStringLiteral("text/html")};

WebRequestOptions pageOptions()
{
    WebRequestOptions options;
    options.keptContentTypes = kHtml;
    options.timeoutSeconds = 20;
    return options;
}

QByteArray headerValue(const WebResponse& response, const QByteArray& name)
{
    for (const auto& [field, value] : response.headers)
        if (field == name)
            return value;
    return QByteArray();
}

std::vector<std::string> methodsSeen(const LocalHttpServer& server)
{
    std::vector<std::string> methods;
    for (const auto& request : server.requests())
        methods.push_back(request.method);
    return methods;
}

// Headers of an image of `declaredLength` bytes, then the body a kilobyte at a time, slowly,
// until the client goes away or the server stops; `written` counts the body bytes sent.
RawTcpServer::Handler slowBody(const std::string& contentType, size_t declaredLength, std::atomic<size_t>& written)
{
    return [contentType, declaredLength, &written](RawTcpServer::Connection& connection) {
        connection.readRequestHead();
        if (!connection.write("HTTP/1.1 200 OK\r\nContent-Type: " + contentType +
                              "\r\nContent-Length: " + std::to_string(declaredLength) + "\r\n\r\n"))
            return;
        const std::string chunk(1024, 'x');
        while (written < declaredLength && !connection.stopping()) {
            if (!connection.write(chunk))
                return;
            written += chunk.size();
            if (connection.waitForStop(100))
                return;
        }
    };
}

class WebFetch : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(server.start()); }
    QUrl at(const std::string& path) const { return QUrl(q(server.url(path))); }
    LocalHttpServer server;
};

} // namespace

TEST_F(WebFetch, GetKeepsTheBodyOfAKeptTypeAndDescribesTheAnswer)
{
    const std::string html = "<html><head><title>A</title></head><body>a</body></html>";
    server.setPage("/a.html", html);
    const QDateTime before = QDateTime::currentDateTimeUtc().addSecs(-1);

    const WebResponse response = WebFetcher::get(at("/a.html"), pageOptions());

    EXPECT_EQ(response.outcome.failure, FetchOutcome::Failure::None) << response.outcome.failureText.toStdString();
    EXPECT_EQ(response.outcome.status, 200);
    EXPECT_EQ(response.body, QByteArray::fromStdString(html));
    EXPECT_EQ(response.contentType, QStringLiteral("text/html; charset=utf-8"));
    EXPECT_EQ(response.contentLength, qint64(html.size()));
    EXPECT_EQ(response.outcome.requestedURL, q(server.url("/a.html")));
    EXPECT_EQ(response.outcome.finalURL, q(server.url("/a.html")));
    EXPECT_TRUE(response.outcome.redirectChain.isEmpty());
    EXPECT_TRUE(response.location.isNull());
    EXPECT_FALSE(response.abandoned);
    EXPECT_GE(response.outcome.responseMs, 0);
    EXPECT_EQ(response.outcome.fetchedAt.timeSpec(), Qt::UTC);
    EXPECT_GE(response.outcome.fetchedAt, before);
    EXPECT_LE(response.outcome.fetchedAt, QDateTime::currentDateTimeUtc());
    EXPECT_EQ(methodsSeen(server), std::vector<std::string>{"GET"});
}

TEST_F(WebFetch, AnEmptyKeptBodyIsEmptyNotNull)
{
    server.setPage("/empty.html", "");
    const WebResponse response = WebFetcher::get(at("/empty.html"), pageOptions());
    EXPECT_EQ(response.outcome.status, 200);
    EXPECT_FALSE(response.body.isNull());
    EXPECT_TRUE(response.body.isEmpty());
}

TEST_F(WebFetch, TheKeptTypesArePrefixesOfTheMediaTypeWhateverTheCase)
{
    server.setPage("/x.xhtml", "<html/>", "Application/XHTML+xml;charset=utf-8");
    WebRequestOptions options = pageOptions();
    options.keptContentTypes = QStringList{QStringLiteral("text/html"), QStringLiteral("application/xhtml+xml")};
    EXPECT_EQ(WebFetcher::get(at("/x.xhtml"), options).body, QByteArray("<html/>"));
}

TEST_F(WebFetch, AnAnswerOfAnotherTypeIsReadUpToItsHeaders)
{
    const std::string png = "\x89PNG\r\n\x1a\n" + std::string(5000, 'p');
    server.setPage("/i.png", png, "image/png");

    const WebResponse response = WebFetcher::get(at("/i.png"), pageOptions());

    EXPECT_EQ(response.outcome.failure, FetchOutcome::Failure::None) << response.outcome.failureText.toStdString();
    EXPECT_EQ(response.outcome.status, 200);
    EXPECT_EQ(response.contentType, QStringLiteral("image/png"));
    EXPECT_EQ(response.contentLength, qint64(png.size()));
    EXPECT_TRUE(response.body.isNull());
    EXPECT_EQ(methodsSeen(server), std::vector<std::string>{"GET"});
}

TEST(WebFetchRaw, ALongBodyOfAnotherTypeIsNotWaitedFor)
{
    // 200 KiB at 10 KiB a second: twenty seconds for the whole body.
    std::atomic<size_t> written{0};
    const size_t length = 200 * 1024;
    RawTcpServer raw(slowBody("image/png", length, written));
    ASSERT_TRUE(raw.start());

    WebResponse response;
    const long long ms = millisecondsOf([&] { response = WebFetcher::get(QUrl(q(raw.baseUrl() + "/big.png")), pageOptions()); });

    EXPECT_EQ(response.outcome.failure, FetchOutcome::Failure::None) << response.outcome.failureText.toStdString();
    EXPECT_EQ(response.outcome.status, 200);
    EXPECT_EQ(response.contentType, QStringLiteral("image/png"));
    EXPECT_EQ(response.contentLength, qint64(length));
    EXPECT_TRUE(response.body.isNull());
    EXPECT_LT(ms, 10000);
    EXPECT_LT(written.load(), length);
}

TEST_F(WebFetch, AKeptBodyLongerThanTheLimitFailsAsTooLargeWithItsStatus)
{
    server.setPage("/big.html", std::string(2 * 1024 * 1024, 'a'));
    WebRequestOptions options = pageOptions();
    options.maxBodyBytes = 1024 * 1024;

    const WebResponse response = WebFetcher::get(at("/big.html"), options);

    EXPECT_EQ(response.outcome.failure, FetchOutcome::Failure::TooLarge);
    EXPECT_FALSE(response.outcome.failureText.isEmpty());
    EXPECT_EQ(response.outcome.status, 200);
    EXPECT_TRUE(response.body.isNull());
}

TEST(WebFetchRaw, AnUndeclaredBodyIsCutOffOnceItPassesTheLimit)
{
    // No Content-Length: the body's end is the connection's; 2 MiB, slowly enough that the
    // whole of it would take far longer than the call is given.
    std::atomic<size_t> written{0};
    RawTcpServer raw([&written](RawTcpServer::Connection& connection) {
        connection.readRequestHead();
        if (!connection.write("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nConnection: close\r\n\r\n"))
            return;
        const std::string chunk(64 * 1024, 'a');
        while (written < 2 * 1024 * 1024 && !connection.stopping()) {
            if (!connection.write(chunk))
                return;
            written += chunk.size();
            if (written >= 1024 * 1024 + chunk.size() && connection.waitForStop(1000))
                return;
        }
    });
    ASSERT_TRUE(raw.start());
    WebRequestOptions options = pageOptions();
    options.maxBodyBytes = 1024 * 1024;

    WebResponse response;
    const long long ms = millisecondsOf([&] { response = WebFetcher::get(QUrl(q(raw.baseUrl() + "/big.html")), options); });

    EXPECT_EQ(response.outcome.failure, FetchOutcome::Failure::TooLarge);
    EXPECT_EQ(response.outcome.status, 200);
    EXPECT_TRUE(response.body.isNull());
    EXPECT_LT(ms, 10000);
    EXPECT_LT(written.load(), size_t(2 * 1024 * 1024));
}

TEST_F(WebFetch, ARedirectNotFollowedGivesItsStatusAndAnAbsoluteLocation)
{
    server.setRedirect("/old/a.html", "../new/b.html?x=1", 301);

    const WebResponse response = WebFetcher::get(at("/old/a.html"), pageOptions());

    EXPECT_EQ(response.outcome.failure, FetchOutcome::Failure::None);
    EXPECT_EQ(response.outcome.status, 301);
    EXPECT_EQ(response.location, q(server.url("/new/b.html?x=1")));
    EXPECT_EQ(response.outcome.finalURL, q(server.url("/old/a.html")));
    EXPECT_TRUE(response.outcome.redirectChain.isEmpty());
    EXPECT_TRUE(response.body.isNull());
    EXPECT_EQ(methodsSeen(server), std::vector<std::string>{"GET"});
}

TEST_F(WebFetch, RedirectsFollowedAreChainedUpToTheFinalAnswer)
{
    server.setRedirect("/a", "/b", 301);
    server.setRedirect("/b", server.url("/c.html"), 302);
    server.setPage("/c.html", "<html>c</html>");
    WebRequestOptions options = pageOptions();
    options.followRedirects = true;

    const WebResponse response = WebFetcher::get(at("/a"), options);

    EXPECT_EQ(response.outcome.failure, FetchOutcome::Failure::None);
    EXPECT_EQ(response.outcome.status, 200);
    EXPECT_EQ(response.body, QByteArray("<html>c</html>"));
    EXPECT_EQ(response.outcome.requestedURL, q(server.url("/a")));
    EXPECT_EQ(response.outcome.finalURL, q(server.url("/c.html")));
    ASSERT_EQ(response.outcome.redirectChain.size(), 2);
    EXPECT_EQ(response.outcome.redirectChain[0].url, q(server.url("/a")));
    EXPECT_EQ(response.outcome.redirectChain[0].status, 301);
    EXPECT_EQ(response.outcome.redirectChain[1].url, q(server.url("/b")));
    EXPECT_EQ(response.outcome.redirectChain[1].status, 302);
    EXPECT_TRUE(response.location.isNull());
    EXPECT_EQ(server.requestCount(), 3u);
}

TEST_F(WebFetch, ARedirectToAnotherSchemeIsReportedNotFollowed)
{
    server.setRedirect("/a", "ftp://files.example.org/x.zip", 302);
    WebRequestOptions options = pageOptions();
    options.followRedirects = true;

    const WebResponse response = WebFetcher::get(at("/a"), options);

    EXPECT_EQ(response.outcome.failure, FetchOutcome::Failure::None);
    EXPECT_EQ(response.outcome.status, 302);
    EXPECT_EQ(response.location, QStringLiteral("ftp://files.example.org/x.zip"));
    EXPECT_EQ(response.outcome.finalURL, q(server.url("/a")));
    EXPECT_TRUE(response.outcome.redirectChain.isEmpty());
    EXPECT_EQ(server.requestCount(), 1u);
}

TEST_F(WebFetch, MoreThanTwentyRedirectsFail)
{
    server.setRedirect("/loop", "/loop", 302);
    WebRequestOptions options = pageOptions();
    options.followRedirects = true;

    const WebResponse response = WebFetcher::get(at("/loop"), options);

    EXPECT_EQ(response.outcome.failure, FetchOutcome::Failure::TooManyRedirects);
    EXPECT_EQ(response.outcome.redirectChain.size(), 20);
    EXPECT_EQ(server.requestCount(), 21u);
}

TEST_F(WebFetch, HeadAsksForTheHeadersOnly)
{
    const std::string html = "<html>0123456789</html>";
    server.setPage("/a.html", html);

    const WebResponse response = WebFetcher::head(at("/a.html"), pageOptions());

    EXPECT_EQ(response.outcome.failure, FetchOutcome::Failure::None) << response.outcome.failureText.toStdString();
    EXPECT_EQ(response.outcome.status, 200);
    EXPECT_EQ(response.contentLength, qint64(html.size()));
    EXPECT_EQ(response.contentType, QStringLiteral("text/html; charset=utf-8"));
    EXPECT_TRUE(response.body.isNull());
    EXPECT_EQ(methodsSeen(server), std::vector<std::string>{"HEAD"});
}

TEST_F(WebFetch, ACheckThatHeadAnswersMakesOneRequest)
{
    server.setPage("/i.png", "png", "image/png");

    const WebResponse response = WebFetcher::check(at("/i.png"), pageOptions());

    EXPECT_EQ(response.outcome.status, 200);
    EXPECT_EQ(response.contentType, QStringLiteral("image/png"));
    EXPECT_EQ(methodsSeen(server), std::vector<std::string>{"HEAD"});
}

TEST_F(WebFetch, ACheckFallsBackToAGetOfTheHeadersWhenHeadIsRefused)
{
    server.route("/i.png", [](const HttpRequest& request, HttpResponse& response) {
        if (request.method == "HEAD") {
            response.status = 405;
            return;
        }
        response.setContent(std::string(100000, 'p'), "text/html");
    });

    const WebResponse response = WebFetcher::check(at("/i.png"), pageOptions());

    EXPECT_EQ(response.outcome.failure, FetchOutcome::Failure::None);
    EXPECT_EQ(response.outcome.status, 200);
    EXPECT_EQ(response.contentType, QStringLiteral("text/html"));
    EXPECT_TRUE(response.body.isNull()); // even a kept type: a check reads no body
    EXPECT_EQ(methodsSeen(server), (std::vector<std::string>{"HEAD", "GET"}));
}

TEST_F(WebFetch, ACheckFollowsRedirectsAndFallsBackFromTheFirstURL)
{
    server.setRedirect("/a", "/b", 301);
    server.route("/b", [](const HttpRequest& request, HttpResponse& response) {
        response.status = request.method == "HEAD" ? 501 : 200;
    });

    const WebResponse response = WebFetcher::check(at("/a"), WebRequestOptions());

    EXPECT_EQ(response.outcome.status, 200);
    EXPECT_EQ(response.outcome.finalURL, q(server.url("/b")));
    ASSERT_EQ(response.outcome.redirectChain.size(), 1);
    EXPECT_EQ(methodsSeen(server), (std::vector<std::string>{"HEAD", "HEAD", "GET", "GET"}));
}

TEST_F(WebFetch, ACheckAnsweredTooManyRequestsIsLeftToTheCaller)
{
    server.route("/busy", [](const HttpRequest&, HttpResponse& response) {
        response.status = 429;
        response.setHeader("Retry-After", "120");
    });

    const WebResponse response = WebFetcher::check(at("/busy"), WebRequestOptions());

    EXPECT_EQ(response.outcome.status, 429);
    EXPECT_EQ(headerValue(response, "retry-after"), QByteArray("120"));
    EXPECT_EQ(methodsSeen(server), std::vector<std::string>{"HEAD"});
}

TEST(WebFetchRaw, ACheckFallsBackToGetWhenHeadGetsNoAnswer)
{
    std::atomic<int> heads{0}, gets{0};
    RawTcpServer raw([&](RawTcpServer::Connection& connection) {
        const std::string head = connection.readRequestHead();
        if (head.rfind("HEAD ", 0) == 0) {
            ++heads;
            return; // closes without a word
        }
        ++gets;
        connection.write("HTTP/1.1 200 OK\r\nContent-Type: image/gif\r\nContent-Length: 3\r\n\r\nGIF");
    });
    ASSERT_TRUE(raw.start());

    const WebResponse response = WebFetcher::check(QUrl(q(raw.baseUrl() + "/x.gif")), pageOptions());

    EXPECT_EQ(response.outcome.failure, FetchOutcome::Failure::None) << response.outcome.failureText.toStdString();
    EXPECT_EQ(response.outcome.status, 200);
    EXPECT_EQ(response.contentType, QStringLiteral("image/gif"));
    EXPECT_EQ(heads.load(), 1);
    EXPECT_EQ(gets.load(), 1);
}

TEST_F(WebFetch, TheProgramsUserAgentIsSentByDefault)
{
    server.setPage("/a.html", "<html/>");
    WebFetcher::get(at("/a.html"), pageOptions());
    const auto requests = server.requests();
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_EQ(requests[0].header("User-Agent"), URLConnection::userAgent().toStdString());
}

TEST_F(WebFetch, TheUserAgentAndExtraHeadersAreSentAsGiven)
{
    server.setPage("/a.html", "<html/>");
    WebRequestOptions options = pageOptions();
    options.userAgent = QStringLiteral("LinkProbe/2.0");
    options.headers = {{"Accept", "text/html,*/*;q=0.1"}, {"X-Audit", "yes"}, {"Accept-Language", "fr"}};

    WebFetcher::head(at("/a.html"), options);

    const auto requests = server.requests();
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_EQ(requests[0].header("User-Agent"), "LinkProbe/2.0");
    EXPECT_EQ(requests[0].header("X-Audit"), "yes");
    EXPECT_EQ(requests[0].header("Accept-Language"), "fr");
    int accepts = 0;
    for (const auto& [name, value] : requests[0].headers)
        if (name == "Accept" || name == "accept") {
            ++accepts;
            EXPECT_EQ(value, "text/html,*/*;q=0.1");
        }
    EXPECT_EQ(accepts, 1);
}

TEST_F(WebFetch, AUserAgentHeaderReplacesTheDefaultOne)
{
    server.setPage("/a.html", "<html/>");
    WebRequestOptions options = pageOptions();
    options.headers = {{"User-Agent", "Mozilla/5.0 (compatible)"}};

    WebFetcher::get(at("/a.html"), options);

    const auto requests = server.requests();
    ASSERT_EQ(requests.size(), 1u);
    int agents = 0;
    for (const auto& [name, value] : requests[0].headers)
        agents += (name == "User-Agent");
    EXPECT_EQ(agents, 1);
    EXPECT_EQ(requests[0].header("User-Agent"), "Mozilla/5.0 (compatible)");
}

TEST_F(WebFetch, ResponseHeaderNamesAreInLowerCaseAndInOrder)
{
    server.route("/challenge", [](const HttpRequest&, HttpResponse& response) {
        response.status = 403;
        response.setHeader("CF-Mitigated", "challenge");
        response.setHeader("Set-Cookie", "a=1");
        response.headers.push_back({"Set-Cookie", "b=2"});
        response.setContent("<html>wait</html>", "text/html");
    });

    const WebResponse response = WebFetcher::get(at("/challenge"), pageOptions());

    EXPECT_EQ(response.outcome.status, 403);
    EXPECT_EQ(headerValue(response, "cf-mitigated"), QByteArray("challenge"));
    QList<QByteArray> cookies;
    for (const auto& [name, value] : response.headers) {
        EXPECT_EQ(name, name.toLower());
        if (name == "set-cookie")
            cookies << value;
    }
    EXPECT_EQ(cookies, (QList<QByteArray>{"a=1", "b=2"}));
    EXPECT_EQ(response.body, QByteArray("<html>wait</html>"));
}

TEST(WebFetchRaw, ARefusedConnectionFailsAsRefused)
{
    RefusingPort port;
    const WebResponse response = WebFetcher::get(QUrl(q(port.url("/a.html"))), pageOptions());
    EXPECT_EQ(response.outcome.failure, FetchOutcome::Failure::Refused);
    EXPECT_FALSE(response.outcome.failureText.isEmpty());
    EXPECT_EQ(response.outcome.status, 0);
    EXPECT_FALSE(response.abandoned);
}

TEST(WebFetchRaw, AURLThatIsNotHttpFailsBeforeAnythingIsSent)
{
    for (const char* text : {"ftp://127.0.0.1/a", "mailto:someone@example.org", "http:///nohost", "/relative"}) {
        const WebResponse response = WebFetcher::get(QUrl(QString::fromLatin1(text)), pageOptions());
        EXPECT_EQ(response.outcome.failure, FetchOutcome::Failure::BadURL) << text;
        EXPECT_EQ(response.outcome.status, 0) << text;
    }
}

TEST(WebFetchRaw, ASilentServerTimesOut)
{
    RawTcpServer raw([](RawTcpServer::Connection& connection) {
        connection.readRequestHead();
        connection.waitForStop(60000);
    });
    ASSERT_TRUE(raw.start());
    WebRequestOptions options = pageOptions();
    options.timeoutSeconds = 0.5;

    WebResponse response;
    const long long ms = millisecondsOf([&] { response = WebFetcher::get(QUrl(q(raw.baseUrl() + "/a.html")), options); });

    EXPECT_EQ(response.outcome.failure, FetchOutcome::Failure::TimedOut);
    EXPECT_FALSE(response.abandoned);
    EXPECT_GE(ms, 400);
    EXPECT_LT(ms, 10000);
}

TEST(WebFetchRaw, ATrickleOfBytesEndsAtTheTransferBound)
{
    std::atomic<size_t> written{0};
    RawTcpServer raw(slowBody("text/html", 1024 * 1024, written));
    ASSERT_TRUE(raw.start());
    WebRequestOptions options = pageOptions();
    options.timeoutSeconds = 5;
    options.maxTransferSeconds = 1;

    WebResponse response;
    const long long ms = millisecondsOf([&] { response = WebFetcher::get(QUrl(q(raw.baseUrl() + "/a.html")), options); });

    EXPECT_EQ(response.outcome.failure, FetchOutcome::Failure::TimedOut);
    EXPECT_EQ(response.outcome.status, 200);
    EXPECT_TRUE(response.body.isNull());
    EXPECT_GE(ms, 900);
    EXPECT_LT(ms, 10000);
}

TEST(WebFetchRaw, ClearingCanContinueAbandonsTheTransfer)
{
    RawTcpServer raw([](RawTcpServer::Connection& connection) {
        connection.readRequestHead();
        connection.write("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 100000\r\n\r\n<html>");
        connection.waitForStop(60000);
    });
    ASSERT_TRUE(raw.start());
    std::atomic<bool> canContinue{true};
    std::thread stopper([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        canContinue.store(false);
    });

    WebResponse response;
    const long long ms = millisecondsOf([&] {
        response = WebFetcher::get(QUrl(q(raw.baseUrl() + "/a.html")), pageOptions(), &canContinue);
    });
    stopper.join();

    EXPECT_TRUE(response.abandoned);
    EXPECT_EQ(response.outcome.failure, FetchOutcome::Failure::Abandoned);
    EXPECT_TRUE(response.body.isNull());
    EXPECT_LT(ms, 5000);
}

TEST_F(WebFetch, AClearedFlagSendsNothingAndCheckDoesNotFallBack)
{
    server.setPage("/a.html", "<html/>");
    std::atomic<bool> canContinue{false};

    const WebResponse response = WebFetcher::check(at("/a.html"), pageOptions(), &canContinue);

    EXPECT_TRUE(response.abandoned);
    EXPECT_EQ(response.outcome.failure, FetchOutcome::Failure::Abandoned);
    EXPECT_EQ(server.requestCount(), 0u);
}

TEST_F(WebFetch, CallsFromSeveralThreadsAtOnceEachGetTheirOwnAnswer)
{
    for (int i = 0; i < 8; ++i)
        server.setPage("/p" + std::to_string(i) + ".html", "<html>" + std::to_string(i) + "</html>");
    std::vector<WebResponse> responses(8);
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([&, i] {
            for (int round = 0; round < 3; ++round)
                responses[i] = WebFetcher::get(at("/p" + std::to_string(i) + ".html"), pageOptions());
        });
    for (auto& thread : threads)
        thread.join();
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(responses[i].outcome.status, 200);
        EXPECT_EQ(responses[i].body, QByteArray::fromStdString("<html>" + std::to_string(i) + "</html>"));
    }
    EXPECT_EQ(server.requestCount(), 24u);
}

TEST(WebFetchRaw, CallsOneAfterAnotherReuseTheOpenConnection)
{
    // A keep-alive server: every request on a connection is answered, until the peer closes.
    std::atomic<int> requests{0};
    RawTcpServer raw([&requests](RawTcpServer::Connection& connection) {
        for (;;) {
            const std::string head = connection.readRequestHead(2000);
            if (head.find("\r\n\r\n") == std::string::npos)
                return;
            ++requests;
            const bool isHead = head.rfind("HEAD ", 0) == 0;
            std::string answer = "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 7\r\n\r\n";
            if (!isHead)
                answer += "<html/>";
            if (!connection.write(answer))
                return;
        }
    });
    ASSERT_TRUE(raw.start());

    const QUrl url(q(raw.baseUrl() + "/a.html"));
    EXPECT_EQ(WebFetcher::get(url, pageOptions()).body, QByteArray("<html/>"));
    EXPECT_EQ(WebFetcher::head(url, pageOptions()).outcome.status, 200);
    EXPECT_EQ(WebFetcher::get(url, pageOptions()).body, QByteArray("<html/>"));

    EXPECT_EQ(requests.load(), 3);
    EXPECT_EQ(raw.connectionCount(), 1);
    URLConnection::releaseIdleTransfers();
}
