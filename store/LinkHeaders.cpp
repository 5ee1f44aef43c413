#include "store/LinkHeaders.h"

#include "base/DebugTrace.h"
#include "store/PageRowCache.h"
#include "store/RecordStatement.h"

using namespace RecordStatement;

namespace {

const char* const kCreateLinkHeaders =
    "insert into LinkHeaders(url,content_type,content_length,downloaded_length) values(?,?,?,?)";
const char* const kGetLinkHeaders =
    "select url,content_type,content_length,downloaded_length from LinkHeaders where url = ?";

constexpr qint64 kMaxContentLength = 1048576;

bool sameText(const QString& a, const QString& b)
{
    return a.isNull() == b.isNull() && a == b;
}

QString describeLength(const std::optional<qint64>& length)
{
    return length ? QString::number(*length) : QStringLiteral("(null)");
}

} // namespace

LinkHeaders::LinkHeaders(const QString& url, const QString& contentType, std::optional<qint64> contentLength,
                         std::optional<qint64> downloadedLength, const std::shared_ptr<Project>& project)
    : url_(url)
    , contentType_(contentType)
    , contentLength_(contentLength)
    , downloadedLength_(downloadedLength)
    , project_(project)
{
}

LinkHeadersPtr LinkHeaders::createLinkHeadersWithURL(const QString& url, const QString& contentType,
                                                     std::optional<qint64> contentLength,
                                                     std::optional<qint64> downloadedLength,
                                                     const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kCreateLinkHeaders, &stmt)) {
        DebugTrace("createLinkHeadersWithURL Error::%s", sqlite3_errmsg(db));
        return nullptr;
    }
    bindText(stmt, 1, url);
    bindText(stmt, 2, contentType);
    bindInt(stmt, 3, contentLength.value_or(0));
    bindInt(stmt, 4, downloadedLength.value_or(0));
    LinkHeadersPtr headers;
    if (step(stmt, project) == SQLITE_DONE) {
        headers = std::make_shared<LinkHeaders>(url, contentType, contentLength, downloadedLength, project);
        // The URL's first row may be this one now.
        PageRowCache::forgetHeaders(db, url);
    } else {
        PageRowCache::clear(db);
    }
    finish(stmt);
    return headers;
}

bool LinkHeaders::sameRow(const LinkHeadersPtr& a, const LinkHeadersPtr& b)
{
    if (!a || !b)
        return !a && !b;
    return sameText(a->url_, b->url_) && sameText(a->contentType_, b->contentType_)
        && a->contentLength_ == b->contentLength_ && a->downloadedLength_ == b->downloadedLength_;
}

LinkHeadersPtr LinkHeaders::getLinkHeadersWithURL(const QString& url, const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    // Asked for every link during a crawl: an answer kept in memory needs no statement.
    bool keptAbsent = false;
    const std::optional<PageRowCache::HeadersRow> kept = PageRowCache::findHeaders(db, url, &keptAbsent);
    const LinkHeadersPtr keptHeaders =
        kept ? std::make_shared<LinkHeaders>(kept->url, kept->contentType, kept->contentLength, kept->downloadedLength,
                                             project)
             : nullptr;
    const bool fromMemory = kept || keptAbsent;
    if (fromMemory && !PageRowCache::isChecking())
        return keptHeaders;
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kGetLinkHeaders, &stmt)) {
        DebugTrace("getLinkHeadersWithURL Error::%s", sqlite3_errmsg(db));
        return nullptr;
    }
    bindText(stmt, 1, url);
    LinkHeadersPtr headers;
    const int rc = step(stmt, project);
    if (rc != SQLITE_DONE)
        headers = linkHeadersFromStatement(stmt, project);
    finish(stmt);
    if (fromMemory) {
        PageRowCache::noteChecked(sameRow(headers, keptHeaders), url, "LinkHeaders row");
        return keptHeaders;
    }
    if (rc == SQLITE_ROW || rc == SQLITE_DONE) {
        if (headers) {
            const PageRowCache::HeadersRow row{headers->url_, headers->contentType_, headers->contentLength_,
                                               headers->downloadedLength_};
            PageRowCache::rememberHeaders(db, url, &row);
        } else {
            PageRowCache::rememberHeaders(db, url, nullptr);
        }
    }
    return headers;
}

LinkHeadersPtr LinkHeaders::linkHeadersFromStatement(sqlite3_stmt* statement, const ProjectPtr& project)
{
    return std::make_shared<LinkHeaders>(columnText(statement, 0), columnText(statement, 1),
                                         columnInt(statement, 2), columnInt(statement, 3), project);
}

bool LinkHeaders::isContentTypeHTML() const
{
    // A missing content type has always counted as HTML; keep it so.
    if (contentType_.isNull())
        return true;
    return contentType_.contains(QStringLiteral("text/html"), Qt::CaseInsensitive);
}

bool LinkHeaders::isContentLengthToBig() const
{
    return contentLength_.value_or(0) > kMaxContentLength;
}

QString LinkHeaders::description() const
{
    return QStringLiteral("LinkHeaders (url::") + describe(url_) + QStringLiteral(") (contentType::") +
           describe(contentType_) + QStringLiteral(") (contentLength::") + describeLength(contentLength_) +
           QStringLiteral(") (downloadedLength::") + describeLength(downloadedLength_) + QStringLiteral(")");
}
