// Redirect resolution: a Location value as a server sends it, resolved against the URL that
// answered as the transfer resolves it, then written out as the transfer writes the target
// (the redirect URL kept for the crawl, the bytes handed to libcurl). Checks that blank
// values are refused, that the result is deterministic and valid, that a value with no
// scheme keeps the answering URL's scheme, and that the written-out target forms a URL again
// the way the crawl forms one from a string.
//
// Input: the first byte selects the text form (odd: UTF-8, even: raw UTF-16 code units) and,
// by its upper bits, a fixed answering URL or the first line as one; the rest is the value.

#include "FuzzSupport.h"

#include "fetch/SynchronizedWebCall.h"
#include "fetch/URLConnection.h"

#include <QUrl>

#include <cstdint>

using fuzz::check;

namespace {

const QStringList kBases{QStringLiteral("http://www.example.com/a/b/page.html?q=1#top"),
                         QStringLiteral("https://example.com"), QStringLiteral("http://127.0.0.1:8080/dir/"),
                         QStringLiteral("http://[::1]/x/y")};

void fuzzRedirect(const QUrl& base, const QString& location)
{
    const auto target = URLConnection::redirectTarget(base, location);
    const auto again = URLConnection::redirectTarget(base, location);
    check(bool(target) == bool(again) && (!target || *target == *again), "resolution is not deterministic", location);
    if (location.trimmed().isEmpty())
        check(!target, "a blank Location was followed", location);
    if (!target)
        return;
    check(target->isValid(), "invalid target", location);
    if (!location.contains(QLatin1Char(':')))
        check(target->scheme() == base.scheme(), "a relative Location changed the scheme", location);

    const QString redirectURL = target->toString(QUrl::FullyEncoded);
    (void)target->adjusted(QUrl::RemoveFragment).toEncoded();
    (void)target->host();
    if (!redirectURL.isEmpty())
        check(bool(SynchronizedWebCall::URLFromString(redirectURL)), "the written-out target makes no URL",
              location + QStringLiteral(" -> ") + redirectURL);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray payload(reinterpret_cast<const char*>(data) + 1, static_cast<qsizetype>(size - 1));
    fuzz::runInput([&] {
        const QString text = fuzz::textFrom(data[0], payload);
        const int choice = (data[0] >> 1) % (kBases.size() + 1);
        if (choice < kBases.size()) {
            fuzzRedirect(QUrl(kBases[choice]), text);
            return;
        }
        // The answering URL as the crawl forms it from a string; the value on the next lines.
        const qsizetype newline = text.indexOf(QLatin1Char('\n'));
        const auto base = SynchronizedWebCall::URLFromString(text.left(newline < 0 ? text.size() : newline));
        if (base)
            fuzzRedirect(*base, newline < 0 ? QString() : text.mid(newline + 1));
    });
    return 0;
}
