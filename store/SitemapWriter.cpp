#include "store/SitemapWriter.h"

#include "base/DebugTrace.h"
#include "store/FetchLog.h"
#include "store/Localization.h"
#include "store/Project.h"
#include "store/RecordStatement.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QUrl>

#include <sqlite3.h>

using namespace RecordStatement;

namespace {

const QByteArray kUrlsetHead = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                               "<urlset xmlns=\"http://www.sitemaps.org/schemas/sitemap/0.9\">\n";
const QByteArray kUrlsetTail = "</urlset>\n";
const QByteArray kIndexHead = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                              "<sitemapindex xmlns=\"http://www.sitemaps.org/schemas/sitemap/0.9\">\n";
const QByteArray kIndexTail = "</sitemapindex>\n";

QByteArray urlEntry(const QString& loc)
{
    return "  <url><loc>" + SitemapWriter::xmlEscaped(loc).toUtf8() + "</loc></url>\n";
}

bool sameOrigin(const QUrl& a, const QUrl& b)
{
    return a.scheme().compare(b.scheme(), Qt::CaseInsensitive) == 0 && a.host().compare(b.host(), Qt::CaseInsensitive) == 0
           && a.port(a.scheme() == QLatin1String("https") ? 443 : 80) == b.port(b.scheme() == QLatin1String("https") ? 443 : 80);
}

// The URL as a sitemap wants it: absolute, percent-encoded, "/" for an empty path.
QString locOf(const QString& stored)
{
    QUrl url(stored, QUrl::TolerantMode);
    if (url.path().isEmpty())
        url.setPath(QStringLiteral("/"));
    url.setFragment(QString());
    // Credentials written into a crawled URL are never published.
    url.setUserInfo(QString());
    return url.toString(QUrl::FullyEncoded);
}

// Part files, each one urlset, cut at 50,000 URLs or 50 MiB.
class PartWriter {
public:
    explicit PartWriter(QString base) : base_(std::move(base)) {}

    bool add(const QString& loc)
    {
        const QByteArray entry = urlEntry(loc);
        if (!file_ || count_ == SitemapWriter::kMaxUrlsPerFile
            || bytes_ + entry.size() + kUrlsetTail.size() > SitemapWriter::kMaxBytesPerFile) {
            if (!close() || !open())
                return false;
        }
        ++count_;
        bytes_ += entry.size();
        return file_->write(entry) == entry.size();
    }

    bool close()
    {
        if (!file_)
            return true;
        const bool ok = file_->write(kUrlsetTail) == kUrlsetTail.size() && file_->commit();
        file_.reset();
        if (!ok) {
            errorFile_ = files_.last();
            error_ = QStringLiteral("write failed");
        }
        return ok;
    }

    QStringList files_;
    QString errorFile_;
    QString error_;

private:
    bool open()
    {
        const QString name = base_ + QStringLiteral("-%1.xml").arg(files_.size() + 1);
        file_ = std::make_unique<QSaveFile>(name);
        files_.append(name);
        count_ = 0;
        bytes_ = kUrlsetHead.size();
        if (!file_->open(QIODevice::WriteOnly) || file_->write(kUrlsetHead) != kUrlsetHead.size()) {
            errorFile_ = name;
            error_ = file_->errorString();
            file_.reset();
            return false;
        }
        return true;
    }

    QString base_;
    std::unique_ptr<QSaveFile> file_;
    int count_ = 0;
    qint64 bytes_ = 0;
};

} // namespace

QString SitemapWriter::xmlEscaped(const QString& text)
{
    QString out;
    out.reserve(text.size());
    for (const QChar c : text) {
        switch (c.unicode()) {
        case '&': out += QLatin1String("&amp;"); break;
        case '<': out += QLatin1String("&lt;"); break;
        case '>': out += QLatin1String("&gt;"); break;
        case '"': out += QLatin1String("&quot;"); break;
        case '\'': out += QLatin1String("&apos;"); break;
        default: out += c;
        }
    }
    return out;
}

bool SitemapWriter::forEachURL(const ProjectPtr& project, const std::function<void(const QString&)>& loc)
{
    sqlite3* db = databaseOf(project);
    // A page fetched before the fetch log existed has no row: its title tells it was analysed.
    const QString sql = QStringLiteral("select P.url from Page P left join ") + FetchLog::tableOrEmpty(db)
                        + QStringLiteral(" F on F.url = P.url where P.title <> '' and P.title <> ? and P.is_no_index = 0 "
                                         "and P.is_canonical = 0 and (F.url is null or (F.status = 200 and "
                                         "F.failure = '' and F.redirect_count = 0)) order by P.idt");
    const QByteArray text = sql.toUtf8();
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, text.constData(), &stmt)) {
        DebugTrace("sitemap forEachURL Error::%s", sqlite3_errmsg(db));
        return false;
    }
    bindText(stmt, 1, Localization::localizedString("ErrorContentType"));
    const QUrl site(project->url());
    while (nextRow(stmt, project)) {
        const QString stored = columnText(stmt, 0);
        const QUrl url(stored, QUrl::TolerantMode);
        // One sitemap speaks for one server: pages reached on others are left out.
        if (url.isValid() && sameOrigin(url, site))
            loc(locOf(stored));
    }
    finish(stmt);
    return true;
}

SitemapWriter::Result SitemapWriter::writeTo(QIODevice* out, const ProjectPtr& project)
{
    Result result;
    // Counted first: a sitemap too long for one file is not half written.
    qint64 count = 0;
    qint64 bytes = kUrlsetHead.size() + kUrlsetTail.size();
    if (!forEachURL(project, [&](const QString& loc) {
            ++count;
            bytes += urlEntry(loc).size();
        })) {
        result.unreadable = true;
        return result;
    }
    if (count > kMaxUrlsPerFile || bytes > kMaxBytesPerFile) {
        result.needsIndex = true;
        result.urls = count;
        return result;
    }
    bool written = out->write(kUrlsetHead) == kUrlsetHead.size();
    forEachURL(project, [&](const QString& loc) {
        const QByteArray entry = urlEntry(loc);
        written = written && out->write(entry) == entry.size();
        ++result.urls;
    });
    written = written && out->write(kUrlsetTail) == kUrlsetTail.size();
    result.ok = written;
    if (!written)
        result.errorReason = out->errorString();
    return result;
}

SitemapWriter::Result SitemapWriter::writeFile(const QString& path, const ProjectPtr& project)
{
    Result result;
    {
        QSaveFile file(path);
        if (!file.open(QIODevice::WriteOnly)) {
            result.errorFile = path;
            result.errorReason = file.errorString();
            return result;
        }
        result = writeTo(&file, project);
        if (result.ok) {
            if (!file.commit()) {
                result.ok = false;
                result.errorFile = path;
                result.errorReason = file.errorString();
            } else {
                result.files = QStringList{path};
            }
            return result;
        }
        file.cancelWriting();
        if (!result.ok && !result.needsIndex && !result.unreadable)
            result.errorFile = path;
        if (!result.needsIndex)
            return result;
    }
    // Too many for one file: parts beside the index, the index in `path`.
    result = Result();
    const QFileInfo info(path);
    const QString base = info.absolutePath() + QLatin1Char('/') + info.completeBaseName();
    PartWriter parts(base);
    bool ok = forEachURL(project, [&](const QString& loc) {
        if (parts.error_.isEmpty() && parts.add(loc))
            ++result.urls;
    });
    ok = ok && parts.error_.isEmpty() && parts.close();
    if (!ok) {
        result.unreadable = parts.error_.isEmpty();
        result.errorFile = parts.errorFile_;
        result.errorReason = parts.error_;
        return result;
    }
    QSaveFile index(path);
    QByteArray body = kIndexHead;
    const QUrl site(project->url());
    for (const QString& part : parts.files_) {
        const QUrl loc = site.resolved(QUrl(QStringLiteral("/") + QFileInfo(part).fileName()));
        body += "  <sitemap><loc>" + xmlEscaped(loc.toString(QUrl::FullyEncoded | QUrl::RemoveUserInfo)).toUtf8()
                + "</loc></sitemap>\n";
    }
    body += kIndexTail;
    if (!index.open(QIODevice::WriteOnly) || index.write(body) != body.size() || !index.commit()) {
        result.errorFile = path;
        result.errorReason = index.errorString();
        return result;
    }
    result.ok = true;
    result.files = QStringList{path} + parts.files_;
    return result;
}
