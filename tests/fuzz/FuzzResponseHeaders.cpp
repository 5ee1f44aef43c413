// Response header blocks as libcurl hands them over, one line at a time: status lines,
// fields, folded lines, interim responses, bytes that are not UTF-8. Each completed block
// becomes the response the transfer hands on, and the fields the transfer reads from it
// (Content-Type against the type filters, Content-Length as a number) are read as it reads
// them. Checks the status range, that field names are unique regardless of case and found
// again by the case-blind lookup, that every value is a non-null string, and that the
// length and filter readings agree with plain reference readings.
//
// Input: the first byte is unused (kept for a common corpus layout); the rest is the header
// bytes, cut into lines after each "\n".

#include "FuzzSupport.h"

#include "fetch/HTTPURLResponse.h"
#include "fetch/NSURLConnectionWithLimit.h"
#include "fetch/ResponseHeaderParser.h"

#include <QUrl>

#include <cstdint>

using fuzz::check;

namespace {

void checkFields(const HTTPHeaderFields& fields)
{
    const QStringList names = fields.keys();
    for (qsizetype i = 0; i < names.size(); ++i) {
        check(!fields.value(names[i]).isNull(), "null field value", names[i]);
        for (qsizetype j = i + 1; j < names.size(); ++j)
            check(names[i].compare(names[j], Qt::CaseInsensitive) != 0, "field named twice", names[i]);
    }
}

bool isAscii(const QString& s)
{
    for (QChar c : s) {
        if (c.unicode() >= 0x80)
            return false;
    }
    return true;
}

// A plain reading of a run of decimal digits, for the lengths where it cannot overflow.
void checkLength(const QString& text)
{
    const qint64 value = NSURLConnectionWithLimit::longLongValue(text);
    const QString trimmed = text.trimmed();
    bool digitsOnly = !trimmed.isEmpty() && trimmed.size() <= 18;
    for (QChar c : trimmed)
        digitsOnly = digitsOnly && c >= QLatin1Char('0') && c <= QLatin1Char('9');
    if (digitsOnly)
        check(value == trimmed.toLongLong(), "Content-Length misread", text);
    if (!text.isEmpty() && !text.at(0).isSpace() && !text.at(0).isDigit() && text.at(0) != QLatin1Char('+')
        && text.at(0) != QLatin1Char('-'))
        check(value == 0, "Content-Length without digits is not 0", text);
}

void checkResponse(const HTTPURLResponse& response)
{
    check(response.allHeaderFields().has_value(), "response without its fields");
    checkFields(*response.allHeaderFields());
    for (auto it = response.allHeaderFields()->cbegin(); it != response.allHeaderFields()->cend(); ++it)
        check(response.valueForHTTPHeaderField(it.key()) == it.value(), "case-blind lookup misses", it.key());

    // What the transfer reads from the response it hands on.
    const QString contentType = response.valueForHTTPHeaderField(QStringLiteral("Content-Type"));
    const QStringList filters{QStringLiteral("text/html"), QStringLiteral("text/plain"), QString(), QStringLiteral("")};
    for (const QString& filter : filters) {
        const bool matches = NSURLConnectionWithLimit::contentTypeMatchesFilter(contentType, filter);
        if (contentType.isNull())
            check(matches, "a missing Content-Type was refused");
        else if (filter.isEmpty())
            check(!matches, "an empty filter matched", contentType);
        else if (isAscii(contentType))
            check(matches == contentType.toLower().contains(filter), "filter test misreads", contentType);
    }
    const QString length = response.valueForHTTPHeaderField(QStringLiteral("Content-Length"));
    if (!length.isNull())
        checkLength(length);
    (void)response.valueForHTTPHeaderField(QStringLiteral("Location"));
    (void)response.valueForHTTPHeaderField(QStringLiteral("Retry-After"));
}

// One parser fed line by line, as the transfer does.
QList<int> parseBlocks(const QList<QByteArray>& lines)
{
    const QUrl url(QStringLiteral("http://www.example.com/a/b.html"));
    ResponseHeaderParser parser;
    QList<int> statuses;
    for (const QByteArray& line : lines) {
        const bool closed = parser.addLine(line);
        check(parser.statusCode() >= 0 && parser.statusCode() <= 9999, "status out of range",
              QString::number(parser.statusCode()));
        checkFields(parser.headerFields());
        if (!closed)
            continue;
        check(parser.isComplete() && parser.hasStatusLine(), "block closed without a status line");
        const int status = parser.statusCode();
        statuses.append(status);
        HTTPURLResponse response(url, status, parser.headerFields());
        checkResponse(response);
        if (status >= 100 && status < 200 && status != 101)
            parser.reset(); // an interim response; the real one follows
    }
    return statuses;
}

QList<QByteArray> linesOf(const QByteArray& bytes)
{
    QList<QByteArray> lines;
    qsizetype start = 0;
    while (start < bytes.size()) {
        qsizetype end = bytes.indexOf('\n', start);
        end = end < 0 ? bytes.size() : end + 1;
        lines.append(bytes.mid(start, end - start));
        start = end;
    }
    return lines;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray payload(reinterpret_cast<const char*>(data) + 1, static_cast<qsizetype>(size - 1));
    fuzz::runInput([&] {
        const QList<QByteArray> lines = linesOf(payload);
        const QList<int> statuses = parseBlocks(lines);
        check(parseBlocks(lines) == statuses, "parsing is not deterministic");
        // Lines handed over without their line ends read the same.
        QList<QByteArray> bare;
        for (QByteArray line : lines) {
            while (line.endsWith('\n') || line.endsWith('\r'))
                line.chop(1);
            bare.append(line);
        }
        check(parseBlocks(bare) == statuses, "line ends change the reading");
    });
    return 0;
}
