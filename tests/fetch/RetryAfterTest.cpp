// A busy or rate-limiting server's Retry-After: short waits are honoured and the URL asked
// again, long ones are not, and a stop cuts the wait short. Also the pacer that spaces a
// crawl's requests.

#include "fetch/RequestPacer.h"
#include "fetch/SynchronizedWebCall.h"

#include "FetchTestSupport.h"

#include <QDateTime>
#include <QLocale>
#include <QTimeZone>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

using namespace fetchtest;

namespace {

const QStringList kHtml{QStringLiteral("text/html")};
const std::string kPage = "<html><head><title>Back</title></head><body>here</body></html>";

QString httpDate(const QDateTime& when)
{
    return QLocale::c().toString(when.toTimeZone(QTimeZone::utc()), QStringLiteral("ddd, dd MMM yyyy HH:mm:ss 'GMT'"));
}

class RetryAfter : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(server.start()); }
    QString url(const std::string& path) const { return q(server.url(path)); }

    // Answers `status` with that Retry-After for the first `busyAnswers` requests, the page
    // afterwards.
    void busyRoute(const std::string& path, int status, const std::string& retryAfter, int busyAnswers)
    {
        server.route(path, [this, status, retryAfter, busyAnswers](const HttpRequest&, HttpResponse& response) {
            if (answered_.fetch_add(1) < busyAnswers) {
                response.status = status;
                response.setHeader("Retry-After", retryAfter);
                response.setContent("<html>busy</html>", "text/html; charset=utf-8");
            } else {
                response.setContent(kPage, "text/html; charset=utf-8");
            }
        });
    }

    std::atomic<int> answered_{0};
    // Last, so that it stops before the counter its routes use goes.
    LocalHttpServer server;
};

} // namespace

TEST(RetryAfterValue, SecondsAndHttpDates)
{
    const QDateTime now(QDate(2024, 3, 5), QTime(10, 0, 0), QTimeZone::utc());
    EXPECT_EQ(SynchronizedWebCall::retryAfterSeconds(QStringLiteral("5"), now), 5);
    EXPECT_EQ(SynchronizedWebCall::retryAfterSeconds(QStringLiteral(" 0 "), now), 0);
    EXPECT_EQ(SynchronizedWebCall::retryAfterSeconds(QStringLiteral("-3"), now), -1);
    EXPECT_EQ(SynchronizedWebCall::retryAfterSeconds(QStringLiteral("soon"), now), -1);
    EXPECT_EQ(SynchronizedWebCall::retryAfterSeconds(QStringLiteral(""), now), -1);
    EXPECT_EQ(SynchronizedWebCall::retryAfterSeconds(QString(), now), -1);
    EXPECT_EQ(SynchronizedWebCall::retryAfterSeconds(QStringLiteral("Tue, 05 Mar 2024 10:00:30 GMT"), now), 30);
    EXPECT_EQ(SynchronizedWebCall::retryAfterSeconds(httpDate(now.addSecs(30)), now), 30);
    // A moment already gone: come back at once.
    EXPECT_EQ(SynchronizedWebCall::retryAfterSeconds(QStringLiteral("Tue, 05 Mar 2024 09:59:00 GMT"), now), 0);
    EXPECT_EQ(SynchronizedWebCall::retryAfterSeconds(httpDate(now.addDays(-400)), now), 0);
}

TEST_F(RetryAfter, AShortWaitIsHonouredAndThePageFetchedAgain)
{
    busyRoute("/busy.html", 503, "1", 1);
    SynchronizedWebCall call;
    const QByteArray data = call.getURL(url("/busy.html"), kHtml);
    EXPECT_EQ(data.toStdString(), kPage);
    EXPECT_EQ(server.requestCount(), 2u);
    EXPECT_EQ(call.lastOutcome().status, 200);
    EXPECT_FALSE(call.isAbandoned());
}

TEST_F(RetryAfter, A429ThatAsksForTooLongStands)
{
    busyRoute("/limited.html", 429, "3600", 1);
    SynchronizedWebCall call;
    QByteArray data;
    const long long ms = millisecondsOf([&] { data = call.getURL(url("/limited.html"), kHtml); });
    EXPECT_LT(ms, 5000);
    EXPECT_TRUE(data.isNull());
    EXPECT_EQ(call.lastOutcome().status, 429);
    EXPECT_EQ(server.requestCount(), 1u);
}

TEST_F(RetryAfter, AServerThatStaysBusyIsAskedAFewTimesOnly)
{
    busyRoute("/down.html", 503, "0", 1000);
    SynchronizedWebCall call;
    const QByteArray data = call.getURL(url("/down.html"), kHtml);
    EXPECT_TRUE(data.isNull());
    EXPECT_EQ(call.lastOutcome().status, 503);
    EXPECT_EQ(server.requestCount(), size_t(1 + SynchronizedWebCall::kMaximumRetries));
    EXPECT_EQ(SynchronizedWebCall::kMaximumRetries, 3);
}

TEST_F(RetryAfter, AStopDuringTheWaitEndsTheCallAtOnce)
{
    busyRoute("/slow.html", 503, "30", 1000);
    std::atomic<bool> canContinue{true};
    SynchronizedWebCall call;
    call.setCanContinueFlag(&canContinue);
    std::thread stopper([&] {
        // Once the first answer is in, the call is waiting.
        while (server.requestCount() < 1)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        canContinue.store(false);
    });
    QByteArray data;
    const auto start = std::chrono::steady_clock::now();
    data = call.getURL(url("/slow.html"), kHtml);
    const auto end = std::chrono::steady_clock::now();
    stopper.join();
    // Measured from the request, whose answer came in well before the stop.
    EXPECT_LT(std::chrono::duration_cast<std::chrono::milliseconds>(end - start).count(), 1500);
    EXPECT_TRUE(data.isNull());
    EXPECT_TRUE(call.isAbandoned());
    EXPECT_EQ(server.requestCount(), 1u);
}

TEST(RequestPacerTest, SpacesTurnsByTheRate)
{
    RequestPacer pacer(20);
    EXPECT_EQ(pacer.rate(), 20);
    std::atomic<bool> canContinue{true};
    const long long ms = millisecondsOf([&] {
        for (int i = 0; i < 5; ++i)
            EXPECT_TRUE(pacer.waitTurn(&canContinue));
    });
    // The first turn is at once, the four others 50 ms apart.
    EXPECT_GE(ms, 180);
    EXPECT_LT(ms, 5000);
}

TEST(RequestPacerTest, NoRateNoWait)
{
    RequestPacer pacer(0);
    std::atomic<bool> canContinue{true};
    const long long ms = millisecondsOf([&] {
        for (int i = 0; i < 100; ++i)
            EXPECT_TRUE(pacer.waitTurn(&canContinue));
        EXPECT_TRUE(pacer.waitTurn(nullptr));
    });
    EXPECT_LT(ms, 1000);
}

TEST(RequestPacerTest, AClearedFlagEndsTheWait)
{
    RequestPacer pacer(0.5);
    std::atomic<bool> canContinue{true};
    EXPECT_TRUE(pacer.waitTurn(&canContinue));
    // The next turn is two seconds away; a stop must not wait for it.
    std::thread stopper([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        canContinue.store(false);
    });
    bool answer = true;
    const long long ms = millisecondsOf([&] { answer = pacer.waitTurn(&canContinue); });
    stopper.join();
    EXPECT_FALSE(answer);
    EXPECT_LT(ms, 1500);
    // Already cleared: no wait at all.
    EXPECT_FALSE(pacer.waitTurn(&canContinue));
}
