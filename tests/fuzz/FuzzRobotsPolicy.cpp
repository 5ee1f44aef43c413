// The web rules' robots.txt policy: random bytes read as a robots.txt body, then URLs made
// of fixed paths and of the body's own lines checked against it. Checks that reading and
// checking never fail, that /robots.txt is always allowed, that an empty body allows
// everything, that a verdict names a rule of its own kind, that reading and checking are
// deterministic, that an escaped and an unescaped spelling of one path get one verdict, and
// that the answers to GET /robots.txt give the policies they must.
//
// Input: the first byte picks the crawler's name (below); the rest is the body.

#include "FuzzSupport.h"

#include "html/RobotsPolicy.h"

#include <QUrl>

#include <cstdint>

using fuzz::check;

namespace {

const QString kOrigin = QStringLiteral("https://example.com");

QUrl urlOf(const QString& pathAndQuery)
{
    return QUrl(kOrigin + pathAndQuery);
}

void checkVerdict(const RobotsPolicy& policy, const QUrl& url, const RobotsPolicy::Verdict& verdict)
{
    if (policy.disallowsEverything())
        return;
    if (!verdict.allowed)
        check(verdict.rule.startsWith(QStringLiteral("Disallow: ")), "disallowed by no Disallow rule",
              url.toString() + QStringLiteral(" -> ") + verdict.rule);
    else if (!verdict.rule.isEmpty())
        check(verdict.rule.startsWith(QStringLiteral("Allow: ")), "allowed by no Allow rule",
              url.toString() + QStringLiteral(" -> ") + verdict.rule);
}

// A path of unreserved characters reads the same with every character escaped.
void checkEscapedSpelling(const RobotsPolicy& policy, const QString& path)
{
    QString plain = QStringLiteral("/");
    QString escaped = QStringLiteral("/");
    for (QChar c : path) {
        const char16_t u = c.unicode();
        const bool unreserved = (u >= 'a' && u <= 'z') || (u >= 'A' && u <= 'Z') || (u >= '0' && u <= '9')
            || u == '-' || u == '.' || u == '_' || u == '~';
        if (!unreserved)
            continue;
        plain.append(c);
        escaped.append(QStringLiteral("%%1").arg(int(u), 2, 16, QLatin1Char('0')).toUpper());
    }
    const RobotsPolicy::Verdict a = policy.check(urlOf(plain));
    const RobotsPolicy::Verdict b = policy.check(urlOf(escaped));
    check(a.allowed == b.allowed && a.rule == b.rule, "an escaped spelling gets another verdict",
          plain + QStringLiteral(" / ") + escaped);
}

void checkRobotsTxtAllowed(const RobotsPolicy& policy, const char* what)
{
    const RobotsPolicy::Verdict verdict = policy.check(urlOf(QStringLiteral("/robots.txt")));
    check(verdict.allowed && verdict.rule.isEmpty(), what, verdict.rule);
}

void fuzzPolicy(const QByteArray& body, const QString& token)
{
    const RobotsPolicy policy = RobotsPolicy::parse(body, token);
    check(!policy.disallowsEverything(), "a parsed body disallows everything");
    check(policy.ruleCount() <= body.count('\n') + body.count('\r') + 1, "more rules than lines");
    checkRobotsTxtAllowed(policy, "/robots.txt disallowed by a body");

    const RobotsPolicy again = RobotsPolicy::parse(body, token);
    check(again.ruleCount() == policy.ruleCount(), "parsing is not deterministic");

    static const QStringList kPaths{QStringLiteral("/"), QStringLiteral("/private/x"), QStringLiteral("/a.php?x=1"),
                                    QStringLiteral("/caf%C3%A9"), QStringLiteral("/a*b$c"), QString()};
    QList<QUrl> urls;
    for (const QString& path : kPaths)
        urls.append(urlOf(path));
    // The body's lines, whole and after their first ":", as paths.
    const QList<QByteArray> lines = body.split('\n');
    for (qsizetype i = 0; i < lines.size() && i < 8; ++i) {
        const QString line = QString::fromUtf8(lines[i]).trimmed();
        const qsizetype colon = line.indexOf(QLatin1Char(':'));
        const QString value = colon >= 0 ? line.mid(colon + 1).trimmed() : line;
        urls.append(urlOf(value.startsWith(QLatin1Char('/')) ? value : QLatin1Char('/') + value));
        if (i < 4) {
            urls.append(QUrl(kOrigin + QLatin1Char('/') + line));
            checkEscapedSpelling(policy, value);
        }
    }
    for (const QUrl& url : urls) {
        const RobotsPolicy::Verdict a = policy.check(url);
        checkVerdict(policy, url, a);
        const RobotsPolicy::Verdict b = again.check(url);
        check(a.allowed == b.allowed && a.rule == b.rule, "two readings of one body disagree", url.toString());
    }

    // The answers to GET /robots.txt.
    const RobotsPolicy ok = RobotsPolicy::fromAnswer(200, body, token);
    check(ok.ruleCount() == policy.ruleCount(), "200 does not read the body");
    const RobotsPolicy missing = RobotsPolicy::fromAnswer(404, body, token);
    const RobotsPolicy failed = RobotsPolicy::fromAnswer(503, body, token);
    check(failed.disallowsEverything(), "503 does not disallow everything");
    checkRobotsTxtAllowed(failed, "/robots.txt disallowed after a 503");
    for (const QUrl& url : urls) {
        check(missing.check(url).allowed, "404 disallows", url.toString());
        // Only /robots.txt itself, however spelled.
        if (failed.check(url).allowed)
            check(url.path(QUrl::FullyDecoded) == QLatin1String("/robots.txt") && !url.hasQuery(), "503 allows",
                  url.toString());
    }

    // Nothing at all allows everything.
    const RobotsPolicy empty = RobotsPolicy::parse(QByteArray(), token);
    check(empty.ruleCount() == 0, "an empty body has rules");
    for (const QUrl& url : urls)
        check(empty.check(url).allowed, "an empty body disallows", url.toString());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    static const QString kTokens[] = {QStringLiteral("Quillmere"), QStringLiteral("quillmere"),
                                      QStringLiteral("foobot"), QString()};
    const QByteArray body(reinterpret_cast<const char*>(data) + 1, static_cast<qsizetype>(size - 1));
    fuzz::runInput([&] { fuzzPolicy(body, kTokens[data[0] % 4]); });
    return 0;
}
