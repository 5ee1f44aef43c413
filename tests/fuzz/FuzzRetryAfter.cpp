// Retry-After values as busy servers send them: a number of seconds or an HTTP date, read
// as the fetch reads them before deciding to wait. Checks the range of the answer, that it
// does not depend on anything but the value and the clock, that a plain number reads as
// itself, and that a date read against two clocks a known time apart differs by that time
// (down to zero), and that any moment written as a server writes an HTTP date reads back as
// the seconds to that moment. The local clock runs in a zone with summer time, so that a
// reading that went through local time would show.
//
// Input: the first byte selects the text form (odd: UTF-8, even: raw UTF-16 code units) and
// the clock; the rest is the value.

#include "FuzzSupport.h"

#include "fetch/SynchronizedWebCall.h"

#include <QDateTime>
#include <QLocale>
#include <QTimeZone>

#include <cstdint>
#include <cstring>
#include <ctime>

using fuzz::check;

namespace {

const QDateTime kNow(QDate(2024, 3, 5), QTime(10, 0, 0), QTimeZone::utc());

void fuzzRetryAfter(const QString& value, const QDateTime& now)
{
    const qint64 seconds = SynchronizedWebCall::retryAfterSeconds(value, now);
    check(seconds >= -1, "negative wait", value);
    check(SynchronizedWebCall::retryAfterSeconds(value, now) == seconds, "reading is not deterministic", value);

    const QString trimmed = value.trimmed();
    bool ok = false;
    const qint64 number = trimmed.toLongLong(&ok);
    if (ok) {
        check(seconds == (number >= 0 ? number : -1), "a number of seconds misread", value);
        return;
    }
    // A date: one minute later on the clock, one minute less to wait (never below zero).
    const qint64 later = SynchronizedWebCall::retryAfterSeconds(value, now.addSecs(60));
    if (seconds < 0)
        check(later == -1, "a value read as a date only at some times", value);
    else
        check(later == qMax<qint64>(0, seconds - 60), "a date read against two clocks", value);
}

// A moment between 1970 and 2170 taken from the input, written as an HTTP date.
void fuzzWrittenDate(const QByteArray& bytes)
{
    quint64 raw = 0;
    std::memcpy(&raw, bytes.constData(), std::min<size_t>(sizeof raw, size_t(bytes.size())));
    const QDateTime when = QDateTime::fromSecsSinceEpoch(qint64(raw % (200ULL * 365 * 86400)), QTimeZone::utc());
    const QString value = QLocale::c().toString(when, QStringLiteral("ddd, dd MMM yyyy HH:mm:ss 'GMT'"));
    check(SynchronizedWebCall::retryAfterSeconds(value, kNow) == qMax<qint64>(0, kNow.secsTo(when)),
          "an HTTP date misread", value);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    // Central European time, summer time included, without needing the zone database.
    qputenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
    tzset();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray payload(reinterpret_cast<const char*>(data) + 1, static_cast<qsizetype>(size - 1));
    fuzz::runInput([&] {
        const QString value = fuzz::textFrom(data[0], payload);
        fuzzRetryAfter(value, kNow);
        fuzzRetryAfter(value, kNow.addDays(data[0] >> 1).addSecs(data[0]));
        fuzzWrittenDate(payload);
    });
    return 0;
}
