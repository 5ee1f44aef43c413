#include "store/ProjectRules.h"

#include "store/StringTable.h"

#include <QUrl>

bool ProjectRules::isUsableName(const QString& name, const StringTable& text, QString* why)
{
    if (name.trimmed().isEmpty()) {
        *why = text.text("CliErrorEmptyProjectName");
        return false;
    }
    if (name.contains(QLatin1Char('/')) || name.contains(QLatin1Char('\\')) || name.contains(QChar(0))) {
        *why = text.text("CliErrorNameHasSeparator").arg(name);
        return false;
    }
    for (const QChar c : name) {
        if (c.category() == QChar::Other_Control) {
            *why = text.text("ProjectErrorNameHasControl");
            return false;
        }
    }
    if (name == QLatin1String(".") || name == QLatin1String("..")) {
        *why = text.text("CliErrorNameNotFileName").arg(name);
        return false;
    }
    return true;
}

QString ProjectRules::normalForm(const QString& url)
{
    const qsizetype separator = url.indexOf(QLatin1String("://"));
    if (separator <= 0)
        return QString();
    QString rest = url.mid(separator + 3);
    // The fragment never reaches the server: the crawl would file the page under it.
    if (const qsizetype hash = rest.indexOf(QLatin1Char('#')); hash >= 0)
        rest.truncate(hash);
    qsizetype end = 0;
    while (end < rest.size() && rest.at(end) != QLatin1Char('/') && rest.at(end) != QLatin1Char('?'))
        ++end;
    const QString authority = rest.left(end);
    const qsizetype at = authority.lastIndexOf(QLatin1Char('@'));
    const QString userInfo = at >= 0 ? authority.left(at + 1) : QString();
    QString hostPort = authority.mid(at + 1);
    QString port;
    if (!hostPort.startsWith(QLatin1Char('['))) {
        if (const qsizetype colon = hostPort.lastIndexOf(QLatin1Char(':')); colon >= 0) {
            port = hostPort.mid(colon);
            hostPort.truncate(colon);
        }
    } else if (const qsizetype close = hostPort.indexOf(QLatin1Char(']')); close >= 0) {
        port = hostPort.mid(close + 1);
        hostPort.truncate(close + 1);
    }
    QString host = hostPort.toLower();
    if (!host.startsWith(QLatin1Char('['))) {
        bool ascii = true;
        for (const QChar c : host)
            ascii = ascii && c.unicode() < 0x80;
        if (!ascii) {
            host = QString::fromLatin1(QUrl::toAce(host));
            if (host.isEmpty())
                return QString();
        }
    }
    return url.left(separator).toLower() + QLatin1String("://") + userInfo + host + port + rest.mid(end);
}

bool ProjectRules::isCrawlableURL(const QString& url, const StringTable& text, QString* why)
{
    if (url.isEmpty()) {
        *why = text.text("CliErrorEmptyURL");
        return false;
    }
    const QUrl parsed(url, QUrl::StrictMode);
    const QString scheme = parsed.scheme().toLower();
    if (!parsed.isValid() || (scheme != QLatin1String("http") && scheme != QLatin1String("https"))) {
        *why = text.text("CliErrorNotHttpURL").arg(url);
        return false;
    }
    if (parsed.host().isEmpty()) {
        *why = text.text("CliErrorURLNoHost").arg(url);
        return false;
    }
    return true;
}

QString ProjectRules::urlFromInput(const QString& typed)
{
    QString url = typed.trimmed();
    if (url.endsWith(QLatin1Char('/')))
        url.chop(1);
    return url;
}
