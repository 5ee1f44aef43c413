#include "fetch/SynchronizedWebCall.h"

#include "FetchTestSupport.h"

#include <gtest/gtest.h>

using namespace fetchtest;

namespace {

const QStringList kHtml{QStringLiteral("text/html")};

class WebCall : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(server.start()); }
    void TearDown() override { SynchronizedWebCall::setTimeoutIntervalForTesting(0); }
    QString url(const std::string& path) const { return q(server.url(path)); }

    // Leaves every field of the call in a state that no later call in these tests produces
    // by accident, so that "reset" and "kept" can be told apart.
    void fillWithA404(SynchronizedWebCall& call)
    {
        server.setRedirect("/moved-to-missing", "/missing");
        server.setPage("/missing", "<html>lost</html>", "text/html; charset=utf-8", 404);
        EXPECT_TRUE(call.getURL(url("/moved-to-missing"), kHtml).isNull());
        ASSERT_TRUE(call.is404());
        ASSERT_TRUE(call.isRedirect());
    }

    LocalHttpServer server;
};

} // namespace

TEST(WebCallFields, InitialValues)
{
    SynchronizedWebCall call;
    EXPECT_FALSE(call.isRedirect());
    EXPECT_FALSE(call.isContentTypeError());
    EXPECT_FALSE(call.isContentLengthError());
    EXPECT_FALSE(call.is404());
    EXPECT_FALSE(call.isError());
    EXPECT_FALSE(call.contentType().isNull());
    EXPECT_EQ(call.contentType(), QStringLiteral(""));
    EXPECT_EQ(call.contentLength(), -1);
    EXPECT_EQ(call.downloadedLength(), -1);
    EXPECT_TRUE(call.redirectURL().isNull());
    EXPECT_EQ(call.downloadedSize(), 0);
    EXPECT_EQ(SynchronizedWebCall::timeoutInterval(), 1000.0);
    EXPECT_EQ(SynchronizedWebCall::kDownloadLimit, 1048576);
}

TEST(WebCallFields, ValidityNeedsAResponseABodyNoErrorAndASuccessStatus)
{
    SynchronizedWebCall call;
    auto status = [](int code) { return std::make_shared<const HTTPURLResponse>(QUrl("http://h/"), code, HTTPHeaderFields{}); };
    const QByteArray body("x");
    EXPECT_FALSE(call.isInValidResponse(status(200), body, nullptr));
    EXPECT_FALSE(call.isInValidResponse(status(201), body, nullptr));
    EXPECT_FALSE(call.isInValidResponse(status(204), body, nullptr));
    EXPECT_TRUE(call.isInValidResponse(status(202), body, nullptr));
    EXPECT_TRUE(call.isInValidResponse(status(404), body, nullptr));
    EXPECT_TRUE(call.isInValidResponse(status(200), QByteArray(), nullptr));
    EXPECT_TRUE(call.isInValidResponse(nullptr, body, nullptr));
    EXPECT_TRUE(call.isInValidResponse(status(200), body, FetchError::errorWithCode(FetchError::TimedOut, "t")));

    EXPECT_FALSE(call.isInValidHeadResponse(status(200), nullptr));
    EXPECT_TRUE(call.isInValidHeadResponse(status(500), nullptr));
    EXPECT_TRUE(call.isInValidHeadResponse(
        std::make_shared<const HTTPURLResponse>(QUrl("http://h/"), 200, std::nullopt), nullptr));
}

TEST(WebCallFields, UrlStringsAreEscapedBeforeParsing)
{
    auto url = SynchronizedWebCall::URLFromString(QString::fromUtf8("http://example.com/été 2024.html?q=a b"));
    ASSERT_TRUE(url.has_value());
    EXPECT_EQ(url->toEncoded(), QByteArray("http://example.com/%C3%A9t%C3%A9%202024.html?q=a%20b"));
    EXPECT_FALSE(SynchronizedWebCall::URLFromString(QStringLiteral("http://example.com/%zz")).has_value());
    EXPECT_FALSE(SynchronizedWebCall::URLFromString(QStringLiteral("http://[::1")).has_value());
    EXPECT_FALSE(SynchronizedWebCall::URLFromString(QString()).has_value());
}

TEST_F(WebCall, AnHtmlPageIsReturnedWithItsFields)
{
    const std::string page = "<html>" + std::string(1987, 'p') + "</html>";
    ASSERT_EQ(page.size(), 2000u);
    server.setPage("/page.html", page, "text/html;charset=utf-8");
    SynchronizedWebCall call;
    const QByteArray body = call.getURL(url("/page.html"), kHtml);
    EXPECT_EQ(body, QByteArray::fromStdString(page));
    EXPECT_EQ(call.downloadedLength(), 2000);
    EXPECT_EQ(call.contentLength(), 2000);
    EXPECT_EQ(call.contentType(), QStringLiteral("text/html;charset=utf-8"));
    EXPECT_FALSE(call.is404());
    EXPECT_FALSE(call.isRedirect());
    EXPECT_TRUE(call.redirectURL().isNull());
    EXPECT_FALSE(call.isContentTypeError());
    EXPECT_FALSE(call.isContentLengthError());
    EXPECT_EQ(call.downloadedSize(), 0);
}

TEST_F(WebCall, TheRequestIsAGetWithTheProductUserAgent)
{
    server.setPage("/p", "<html/>");
    SynchronizedWebCall call;
    call.getURL(url("/p"), kHtml);
    ASSERT_EQ(server.requestCount(), 1u);
    const HttpRequest request = server.requests()[0];
    EXPECT_EQ(request.method, "GET");
    EXPECT_EQ(request.header("User-Agent"), std::string("Quillmere/") + QUILLMERE_VERSION);
}

TEST_F(WebCall, A201PageIsUsable)
{
    server.setPage("/created", "<html>made</html>", "text/html", 201);
    SynchronizedWebCall call;
    EXPECT_EQ(call.getURL(url("/created"), kHtml), QByteArray("<html>made</html>"));
}

TEST_F(WebCall, ANotFoundPageGivesNullWithIs404AndItsSize)
{
    const std::string page = "<html><body>Page introuvable</body></html>";
    server.setPage("/nope", page, "text/html", 404);
    SynchronizedWebCall call;
    EXPECT_TRUE(call.getURL(url("/nope"), kHtml).isNull());
    EXPECT_TRUE(call.is404());
    EXPECT_EQ(call.downloadedLength(), static_cast<qint64>(page.size()));
    EXPECT_EQ(call.contentType(), QStringLiteral("text/html"));
}

TEST_F(WebCall, OtherFailureStatusesGiveNullWithTheSizeThatArrived)
{
    server.setPage("/broken", "<html>oops</html>", "text/html", 500);
    SynchronizedWebCall call;
    EXPECT_TRUE(call.getURL(url("/broken"), kHtml).isNull());
    EXPECT_FALSE(call.is404());
    EXPECT_EQ(call.downloadedLength(), 17);
}

TEST_F(WebCall, A204HasNoBodyAndGivesNull)
{
    server.setPage("/nothing", "", "text/html", 204);
    SynchronizedWebCall call;
    EXPECT_TRUE(call.getURL(url("/nothing"), kHtml).isNull());
    EXPECT_EQ(call.downloadedLength(), -1);
    EXPECT_FALSE(call.is404());
    EXPECT_FALSE(call.isContentTypeError());
    EXPECT_FALSE(call.isContentLengthError());
    EXPECT_EQ(call.contentLength(), -1);
}

TEST_F(WebCall, AnImageIsRefusedByTheHtmlFilter)
{
    server.setPage("/logo.png", std::string(300, '\x01'), "image/png");
    SynchronizedWebCall call;
    EXPECT_TRUE(call.getURL(url("/logo.png"), kHtml).isNull());
    EXPECT_TRUE(call.isContentTypeError());
    EXPECT_EQ(call.contentType(), QStringLiteral("image/png"));
    EXPECT_EQ(call.contentLength(), 300);
    EXPECT_EQ(call.downloadedLength(), -1);
    EXPECT_FALSE(call.is404());
}

TEST_F(WebCall, RobotsTxtIsFetchedWithThePlainTextFilter)
{
    server.setPage("/robots.txt", "User-agent: *\nDisallow: /private\n", "text/plain; charset=utf-8");
    SynchronizedWebCall call;
    EXPECT_EQ(call.getURL(url("/robots.txt"), QStringList{"text/plain"}),
              QByteArray("User-agent: *\nDisallow: /private\n"));
    EXPECT_TRUE(call.getURL(url("/robots.txt"), kHtml).isNull());
    EXPECT_TRUE(call.isContentTypeError());
}

TEST_F(WebCall, SpacesAndAccentedLettersAreSentEscapedInUtf8)
{
    server.setPage("/dossier/été 2024.html", "<html>été</html>");
    SynchronizedWebCall call;
    EXPECT_EQ(call.getURL(url("/dossier/été 2024.html"), kHtml), QByteArray("<html>été</html>"));
    ASSERT_EQ(server.requestCount(), 1u);
    EXPECT_EQ(server.requests()[0].target, "/dossier/%C3%A9t%C3%A9%202024.html");
}

TEST_F(WebCall, ARedirectGivesTheBodyAndTheFinalAbsoluteUrl)
{
    server.setRedirect("/old", "/new");
    server.setPage("/new", "<html>new</html>");
    SynchronizedWebCall call;
    EXPECT_EQ(call.getURL(url("/old"), kHtml), QByteArray("<html>new</html>"));
    EXPECT_TRUE(call.isRedirect());
    EXPECT_EQ(call.redirectURL(), url("/new"));

    // The next call starts afresh.
    EXPECT_FALSE(call.getURL(url("/new"), kHtml).isNull());
    EXPECT_FALSE(call.isRedirect());
    EXPECT_TRUE(call.redirectURL().isNull());
}

TEST_F(WebCall, AnUnparsableSecondUrlKeepsTheFirstCallsFields)
{
    SynchronizedWebCall call;
    fillWithA404(call);
    const qint64 length = call.downloadedLength();
    call.setDownloadedSize(77);

    EXPECT_TRUE(call.getURL(QStringLiteral("http://127.0.0.1/%zz"), kHtml).isNull());
    EXPECT_TRUE(call.is404());
    EXPECT_EQ(call.contentType(), QStringLiteral("text/html; charset=utf-8"));
    EXPECT_EQ(call.downloadedLength(), length);
    EXPECT_EQ(call.contentLength(), length);
    // These three are reset before the URL is made.
    EXPECT_FALSE(call.isRedirect());
    EXPECT_TRUE(call.redirectURL().isNull());
    EXPECT_EQ(call.downloadedSize(), 0);
    EXPECT_EQ(server.requestCount(), 2u); // the two of the first call only
}

TEST_F(WebCall, AUrlWithoutHostFailsLikeARefusedConnectionAndSendsNothing)
{
    RawTcpServer raw([](RawTcpServer::Connection& c) {
        c.readRequestHead();
        c.write("HTTP/1.1 200 OK\r\nContent-Type: text/plain\r\nContent-Length: 2\r\n\r\nno");
    });
    ASSERT_TRUE(raw.start());
    SynchronizedWebCall call;
    fillWithA404(call);

    // What the robots.txt address of a project becomes once its double slash is collapsed.
    const QString robots = QStringLiteral("http:/127.0.0.1:%1/robots.txt").arg(raw.port());
    EXPECT_TRUE(call.getURL(robots, QStringList{"text/plain"}).isNull());
    EXPECT_EQ(raw.connectionCount(), 0);
    EXPECT_EQ(call.contentType(), QStringLiteral(""));
    EXPECT_EQ(call.contentLength(), -1);
    EXPECT_EQ(call.downloadedLength(), -1);
    EXPECT_FALSE(call.is404());
    EXPECT_FALSE(call.isRedirect());
    EXPECT_TRUE(call.redirectURL().isNull());
    EXPECT_FALSE(call.isContentTypeError());
    EXPECT_FALSE(call.isContentLengthError());
}

TEST_F(WebCall, ARefusedConnectionResetsTheFields)
{
    SynchronizedWebCall call;
    fillWithA404(call);
    RefusingPort port;
    EXPECT_TRUE(call.getURL(q(port.url("/page.html")), kHtml).isNull());
    EXPECT_EQ(call.contentType(), QStringLiteral(""));
    EXPECT_EQ(call.contentLength(), -1);
    EXPECT_EQ(call.downloadedLength(), -1);
    EXPECT_FALSE(call.is404());
    EXPECT_FALSE(call.isRedirect());
    EXPECT_FALSE(call.isContentTypeError());
    EXPECT_FALSE(call.isContentLengthError());
    EXPECT_FALSE(call.isError());
}

TEST_F(WebCall, TheMebibyteLimitKeepsExactlyItsSize)
{
    server.setPage("/exact", std::string(1048576, 'e'));
    server.setPage("/over", std::string(1048577, 'o'));
    SynchronizedWebCall call;
    EXPECT_EQ(call.getURL(url("/exact"), kHtml).size(), 1048576);
    EXPECT_EQ(call.downloadedLength(), 1048576);
    EXPECT_FALSE(call.isContentLengthError());

    EXPECT_TRUE(call.getURL(url("/over"), kHtml).isNull());
    EXPECT_TRUE(call.isContentLengthError());
    EXPECT_EQ(call.contentLength(), 1048577);
    EXPECT_EQ(call.downloadedLength(), -1);
}

TEST_F(WebCall, ACompressedPageCountsItsDecodedBytes)
{
    const std::string html = "<html>" + std::string(5000, 'g') + "</html>";
    const std::string compressed = gzip(html);
    server.route("/gz", [&](const HttpRequest&, HttpResponse& response) {
        response.setContent(compressed, "text/html");
        response.setHeader("Content-Encoding", "gzip");
    });
    SynchronizedWebCall call;
    EXPECT_EQ(call.getURL(url("/gz"), kHtml), QByteArray::fromStdString(html));
    EXPECT_EQ(call.downloadedLength(), static_cast<qint64>(html.size()));
    EXPECT_EQ(call.contentLength(), static_cast<qint64>(compressed.size()));
}

TEST_F(WebCall, AStallingServerIsGivenUpAfterTheTimeOut)
{
    RawTcpServer raw([](RawTcpServer::Connection& c) {
        c.readRequestHead();
        c.waitForStop(60000);
    });
    ASSERT_TRUE(raw.start());
    SynchronizedWebCall::setTimeoutIntervalForTesting(1.0);
    EXPECT_EQ(SynchronizedWebCall::timeoutInterval(), 1.0);
    SynchronizedWebCall call;
    QByteArray body;
    const auto ms = millisecondsOf([&] { body = call.getURL(q(raw.baseUrl() + "/slow.html"), kHtml); });
    EXPECT_TRUE(body.isNull());
    EXPECT_LT(ms, 4000);
    EXPECT_EQ(call.downloadedLength(), -1);
    EXPECT_EQ(call.contentType(), QStringLiteral(""));
    SynchronizedWebCall::setTimeoutIntervalForTesting(0);
    EXPECT_EQ(SynchronizedWebCall::timeoutInterval(), 1000.0);
}

TEST_F(WebCall, HeadAnswersTheHeaderFieldsAndTouchesNoField)
{
    server.route("/head", [](const HttpRequest&, HttpResponse& response) {
        response.setContent("<html>body</html>", "text/html");
        response.setHeader("X-Test", "present");
    });
    SynchronizedWebCall call;
    call.setContentType("kept");
    call.setIs404(true);
    call.setDownloadedLength(5);
    auto fields = call.headURL(url("/head"));
    ASSERT_TRUE(fields.has_value());
    EXPECT_EQ(fields->value("X-Test"), QStringLiteral("present"));
    EXPECT_EQ(fields->value("Content-Length"), QStringLiteral("17"));
    ASSERT_EQ(server.requestCount(), 1u);
    EXPECT_EQ(server.requests()[0].method, "HEAD");
    EXPECT_EQ(call.contentType(), QStringLiteral("kept"));
    EXPECT_TRUE(call.is404());
    EXPECT_EQ(call.downloadedLength(), 5);
}

TEST_F(WebCall, HeadOfAMissingPageOrOfAnUnescapedStringGivesNothing)
{
    server.setPage("/a b", "x");
    SynchronizedWebCall call;
    EXPECT_FALSE(call.headURL(url("/missing")).has_value());
    EXPECT_FALSE(call.headURL(url("/a b")).has_value()); // not escaped: no URL, nothing sent
    EXPECT_EQ(server.requestCount(), 1u);
}

TEST_F(WebCall, ThePlainTransferHasNoLimitAndNoFilter)
{
    server.setPage("/big.bin", std::string(1048577, 'b'), "application/octet-stream");
    SynchronizedWebCall call;
    HTTPURLResponsePtr response;
    FetchErrorPtr error;
    URLRequest request(QUrl(url("/big.bin")), URLRequest::ReloadIgnoringLocalCacheData, 20);
    const QByteArray body = call.performURLConnectionWithRequest(request, &response, &error);
    EXPECT_EQ(body.size(), 1048577);
    EXPECT_FALSE(error);
    ASSERT_TRUE(response);
    EXPECT_EQ(response->valueForHTTPHeaderField("Content-Type"), QStringLiteral("application/octet-stream"));
    EXPECT_EQ(call.downloadedLength(), -1); // no field is touched
}

// --- what a fetch leaves for the audit ---

TEST_F(WebCall, TheOutcomeOfAPageHoldsItsStatusTimeAndUrl)
{
    server.setPage("/ok.html", "<html>ok</html>");
    SynchronizedWebCall call;
    const QDateTime before = QDateTime::currentDateTimeUtc().addSecs(-1);
    ASSERT_FALSE(call.getURL(url("/ok.html"), kHtml).isNull());
    const FetchOutcome& o = call.lastOutcome();
    EXPECT_EQ(o.requestedURL, url("/ok.html"));
    EXPECT_EQ(o.finalURL, url("/ok.html"));
    EXPECT_EQ(o.status, 200);
    EXPECT_EQ(o.failure, FetchOutcome::Failure::None);
    EXPECT_GE(o.responseMs, 0);
    EXPECT_TRUE(o.redirectChain.isEmpty());
    EXPECT_GE(o.fetchedAt, before);
    EXPECT_LE(o.fetchedAt, QDateTime::currentDateTimeUtc());
}

TEST_F(WebCall, TheOutcomeOfAnErrorStatusIsThatStatusWithoutFailure)
{
    server.setPage("/gone", "<html>gone</html>", "text/html", 410);
    server.setPage("/oops", "<html>oops</html>", "text/html", 500);
    SynchronizedWebCall call;
    EXPECT_TRUE(call.getURL(url("/gone"), kHtml).isNull());
    EXPECT_EQ(call.lastOutcome().status, 410);
    EXPECT_EQ(call.lastOutcome().failure, FetchOutcome::Failure::None);
    EXPECT_TRUE(call.getURL(url("/oops"), kHtml).isNull());
    EXPECT_EQ(call.lastOutcome().status, 500);
}

TEST_F(WebCall, TheOutcomeKeepsEveryRedirectHopWithItsStatus)
{
    server.setRedirect("/a", "/b", 301);
    server.setRedirect("/b", "/c", 302);
    server.setPage("/c", "<html>c</html>");
    SynchronizedWebCall call;
    ASSERT_FALSE(call.getURL(url("/a"), kHtml).isNull());
    const FetchOutcome& o = call.lastOutcome();
    ASSERT_EQ(o.redirectChain.size(), 2);
    EXPECT_EQ(o.redirectChain[0].url, url("/a"));
    EXPECT_EQ(o.redirectChain[0].status, 301);
    EXPECT_EQ(o.redirectChain[1].url, url("/b"));
    EXPECT_EQ(o.redirectChain[1].status, 302);
    EXPECT_EQ(o.finalURL, url("/c"));
    EXPECT_EQ(o.status, 200);
}

TEST_F(WebCall, TheOutcomeNamesTheTransferFailures)
{
    RefusingPort refusing;
    SynchronizedWebCall call;
    EXPECT_TRUE(call.getURL(q(refusing.url("/x")), kHtml).isNull());
    EXPECT_EQ(call.lastOutcome().status, 0);
    EXPECT_EQ(call.lastOutcome().failure, FetchOutcome::Failure::Refused);
    EXPECT_EQ(FetchOutcome::failureName(call.lastOutcome().failure), QStringLiteral("refused"));
    EXPECT_FALSE(call.lastOutcome().failureText.isEmpty());

    server.setPage("/big", std::string(1048577, 'o'));
    EXPECT_TRUE(call.getURL(url("/big"), kHtml).isNull());
    EXPECT_EQ(call.lastOutcome().status, 200);
    EXPECT_EQ(call.lastOutcome().failure, FetchOutcome::Failure::TooLarge);

    server.setPage("/logo.png", std::string(30, '\x01'), "image/png");
    EXPECT_TRUE(call.getURL(url("/logo.png"), kHtml).isNull());
    EXPECT_EQ(call.lastOutcome().failure, FetchOutcome::Failure::WrongType);

    const QUrl origin(url("/"));
    EXPECT_TRUE(call.getURL(QStringLiteral("http://other.invalid/"), kHtml, origin).isNull());
    EXPECT_EQ(call.lastOutcome().failure, FetchOutcome::Failure::OtherHost);
}

TEST_F(WebCall, TheOutcomeOfASilentServerIsATimeOut)
{
    server.route("/slow", [](const HttpRequest&, HttpResponse& response) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1500));
        response.setContent("<html/>", "text/html");
    });
    SynchronizedWebCall call;
    call.setTimeoutInterval(0.3);
    EXPECT_TRUE(call.getURL(url("/slow"), kHtml).isNull());
    EXPECT_EQ(call.lastOutcome().failure, FetchOutcome::Failure::TimedOut);
    EXPECT_EQ(FetchOutcome::failureName(call.lastOutcome().failure), QStringLiteral("timeout"));
}
