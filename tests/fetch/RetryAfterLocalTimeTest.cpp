// A Retry-After date is a moment in GMT: it reads the same whatever zone the crawling
// machine's clock is set to, including the hour its clock skips at the spring change to
// summer time.

#include "fetch/SynchronizedWebCall.h"

#include <QByteArray>
#include <QDateTime>
#include <QTimeZone>

#include <gtest/gtest.h>

#include <ctime>

namespace {

// Sets the process's local zone for the test's duration.
class LocalZone {
public:
    explicit LocalZone(const char* zone) : had_(qEnvironmentVariableIsSet("TZ")), saved_(qgetenv("TZ"))
    {
        qputenv("TZ", zone);
        tzset();
    }
    ~LocalZone()
    {
        if (had_)
            qputenv("TZ", saved_);
        else
            qunsetenv("TZ");
        tzset();
    }

private:
    bool had_;
    QByteArray saved_;
};

// Central European time (summer time from the last Sunday of March, 02:00 local), written
// out so that no zone database is needed.
constexpr const char* kCentralEurope = "CET-1CEST,M3.5.0,M10.5.0/3";

} // namespace

TEST(RetryAfterLocalTime, ADateInTheHourTheLocalClockSkipsIsRead)
{
    LocalZone zone(kCentralEurope);
    const QDateTime now(QDate(2024, 3, 31), QTime(2, 0, 0), QTimeZone::utc());
    EXPECT_EQ(SynchronizedWebCall::retryAfterSeconds(QStringLiteral("Sun, 31 Mar 2024 02:30:00 GMT"), now), 1800);
    EXPECT_EQ(SynchronizedWebCall::retryAfterSeconds(QStringLiteral("Sun, 27 Mar 2011 02:25:04 GMT"),
                                                    QDateTime(QDate(2011, 3, 27), QTime(2, 25, 0), QTimeZone::utc())),
              4);
}

TEST(RetryAfterLocalTime, ADateReadsAsGmtWhateverTheLocalZone)
{
    const QDateTime now(QDate(2024, 7, 1), QTime(12, 0, 0), QTimeZone::utc());
    const QString value = QStringLiteral("Mon, 01 Jul 2024 12:00:45 GMT");
    for (const char* zone : {kCentralEurope, "UTC0", "EST5EDT,M3.2.0,M11.1.0"}) {
        LocalZone local(zone);
        EXPECT_EQ(SynchronizedWebCall::retryAfterSeconds(value, now), 45) << zone;
        // Still refused when it is not a date at all.
        EXPECT_EQ(SynchronizedWebCall::retryAfterSeconds(QStringLiteral("Mon, 01 Jul 2024 12:00:45 CET"), now), -1)
            << zone;
        EXPECT_EQ(SynchronizedWebCall::retryAfterSeconds(QStringLiteral("Tue, 01 Jul 2024 12:00:45 GMT"), now), -1)
            << zone;
    }
}
