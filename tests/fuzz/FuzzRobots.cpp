// The robots.txt rules: a random file goes through the loader the crawl calls, and random
// site-relative paths (the file's own lines, and a few fixed ones) through the matcher.
// Checks the shape of each rule, that a rule matches what it must, that loading and matching
// are deterministic, and that the list's answer is the rules' answers combined.
//
// Input: the first byte selects the text form (even: bytes decoded as the crawl decodes the
// downloaded file, strict UTF-8 with no text at all when invalid; odd: raw UTF-16 code units,
// lone surrogates included); the rest is the file.

#include "FuzzSupport.h"

#include "html/RobotEntryFullURL.h"
#include "html/RobotEntryJokerURL.h"
#include "html/RobotsTxt.h"

#include <QStringDecoder>

#include <cstdint>

using fuzz::check;
using fuzz::fail;

namespace {

// What the crawl does with the downloaded body before loading it.
QString decodeDownloadedFile(const QByteArray& data)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder.decode(data);
    return decoder.hasError() ? QString() : text;
}

QStringList valuesOf(const QList<RobotEntryPtr>& rules)
{
    QStringList values;
    for (const RobotEntryPtr& rule : rules)
        values.append(rule->description());
    return values;
}

void checkRules(const QList<RobotEntryPtr>& rules)
{
    for (const RobotEntryPtr& rule : rules) {
        check(bool(rule), "null rule");
        const QString value = rule->robotEntryValue();
        if (auto full = std::dynamic_pointer_cast<RobotEntryFullURL>(rule)) {
            check(value.size() >= 2 && value.startsWith(QLatin1Char('/')), "bad prefix rule", value);
            check(!value.contains(QLatin1Char('*')), "star in a prefix rule", value);
            check(!value.contains(QLatin1Char(':')), "colon kept in a prefix rule", value);
            check(full->isURLDisallowed(value), "prefix rule does not match itself", value);
            // Beyond ASCII, upper case and case folding part ways (dotless i); not a finding.
            bool ascii = true;
            for (QChar c : value)
                ascii = ascii && c.unicode() < 0x80;
            if (ascii)
                check(full->isURLDisallowed(value.toUpper() + QStringLiteral("/more")), "prefix rule is case-sensitive",
                      value);
            check(!full->isURLDisallowed(value.left(value.size() - 1)), "prefix rule matches a shorter path", value);
        } else if (auto joker = std::dynamic_pointer_cast<RobotEntryJokerURL>(rule)) {
            check(!value.contains(QLatin1Char('*')), "star left in fragment rule", value);
            check(!value.contains(QLatin1Char(':')), "colon kept in a fragment rule", value);
            check(joker->isURLDisallowed(QStringLiteral("/x") + value + QStringLiteral("y")) || value.isEmpty(),
                  "fragment rule does not match a path holding it", value);
            check(!joker->isURLDisallowed(QString()) || value.isEmpty(), "fragment rule matches nothing", value);
            if (value.isEmpty())
                check(!joker->isURLDisallowed(QStringLiteral("/any/path")), "empty fragment rule disallows", value);
        } else {
            fail("rule of the base class", value);
        }
        (void)rule->description();
    }
}

void checkPath(const QString& path, const QList<RobotEntryPtr>& rules)
{
    bool anyDisallows = false;
    for (const RobotEntryPtr& rule : rules)
        anyDisallows = anyDisallows || rule->isURLDisallowed(path);
    const bool allowed = isAllowedURLWithArrayOfDisallowed(path, rules);
    check(allowed == !anyDisallows, "the list and its rules disagree", path);
    check(isAllowedURLWithArrayOfDisallowed(path, rules) == allowed, "matching is not deterministic", path);
}

void fuzzRobots(const QString& text)
{
    QList<RobotEntryPtr> rules;
    loadRobotsTxtToArray(text, rules);
    checkRules(rules);

    QList<RobotEntryPtr> again;
    loadRobotsTxtToArray(text, again);
    check(valuesOf(again) == valuesOf(rules), "loading is not deterministic");

    // Loading appends: a second file adds its rules after the first one's.
    loadRobotsTxtToArray(text, again);
    check(again.size() == 2 * rules.size(), "loading twice did not append");

    static const QStringList kPaths{QStringLiteral("/"), QStringLiteral("/private/x"), QStringLiteral("/a.pdf"),
                                    QString(), QStringLiteral("")};
    for (const QString& path : kPaths)
        checkPath(path, rules);
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (qsizetype i = 0; i < lines.size() && i < 16; ++i)
        checkPath(lines[i], rules);
    check(isAllowedURLWithArrayOfDisallowed(text, {}), "no rules disallow");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray payload(reinterpret_cast<const char*>(data) + 1, static_cast<qsizetype>(size - 1));
    fuzz::runInput([&] {
        fuzzRobots(data[0] % 2 == 0 ? decodeDownloadedFile(payload) : fuzz::utf16From(payload));
    });
    return 0;
}
