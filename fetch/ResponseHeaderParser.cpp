#include "fetch/ResponseHeaderParser.h"

namespace {

// Header bytes are mostly ASCII; take UTF-8 when they form it, otherwise Latin-1, which
// never loses a byte.
QString decodeHeaderText(const QByteArray& bytes)
{
    QString text = bytes.isValidUtf8() ? QString::fromUtf8(bytes) : QString::fromLatin1(bytes);
    return text.isNull() ? QStringLiteral("") : text;
}

QByteArray withoutLineEnd(QByteArray line)
{
    while (line.endsWith('\n') || line.endsWith('\r'))
        line.chop(1);
    return line;
}

} // namespace

void ResponseHeaderParser::reset()
{
    hasStatusLine_ = false;
    complete_ = false;
    statusCode_ = 0;
    fields_.clear();
    lastFieldName_.clear();
}

bool ResponseHeaderParser::addLine(const QByteArray& rawLine)
{
    const QByteArray line = withoutLineEnd(rawLine);

    if (line.startsWith("HTTP/")) {
        reset();
        hasStatusLine_ = true;
        // "HTTP/1.1 200 OK", "HTTP/2 301"
        const qsizetype space = line.indexOf(' ');
        if (space > 0) {
            int code = 0;
            for (qsizetype i = space + 1; i < line.size() && line[i] >= '0' && line[i] <= '9' && code < 1000; ++i)
                code = code * 10 + (line[i] - '0');
            statusCode_ = code;
        }
        return false;
    }

    if (line.isEmpty()) {
        complete_ = hasStatusLine_;
        return complete_;
    }

    if (line[0] == ' ' || line[0] == '\t') {
        // An obsolete folded line continues the previous field.
        if (!lastFieldName_.isNull() && fields_.contains(lastFieldName_)) {
            QString& value = fields_[lastFieldName_];
            const QString more = decodeHeaderText(line.trimmed());
            if (!more.isEmpty())
                value = value.isEmpty() ? more : value + QLatin1Char(' ') + more;
        }
        return false;
    }

    const qsizetype colon = line.indexOf(':');
    if (colon <= 0)
        return false;
    addField(line.left(colon).trimmed(), decodeHeaderText(line.mid(colon + 1).trimmed()));
    return false;
}

void ResponseHeaderParser::addField(const QByteArray& rawName, const QString& value)
{
    const QString name = QString::fromLatin1(rawName);
    for (auto it = fields_.begin(); it != fields_.end(); ++it) {
        if (it.key().compare(name, Qt::CaseInsensitive) == 0) {
            it.value() += QStringLiteral(", ") + value;
            lastFieldName_ = it.key();
            return;
        }
    }
    fields_.insert(name, value);
    lastFieldName_ = name;
}
