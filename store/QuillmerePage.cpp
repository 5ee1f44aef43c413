#include "store/QuillmerePage.h"

#include "base/DebugTrace.h"
#include "store/Localization.h"
#include "store/PageRowCache.h"
#include "store/QuillmereLinkPage.h"
#include "store/RecordStatement.h"

using namespace RecordStatement;

namespace {

const char* const kCreatePage =
    "insert into Page(path,page,title,url,is_no_index,is_no_follow,is_canonical,in_link_count,out_link_count,depth,"
    "weight) values(?,?,?,?,0,0,0,0,0,?,0)";
const char* const kGetPageFromPath =
    "select idt,path,page,title,url,is_no_index,is_no_follow,is_canonical,in_link_count,out_link_count,depth,weight "
    "from Page where path=? and page=?";
const char* const kGetPageFromURL =
    "select idt,path,page,title,url,is_no_index,is_no_follow,is_canonical,in_link_count,out_link_count,depth,weight "
    "from Page where url=? or url=?";
const char* const kGetPageFromIdentifier =
    "select idt,path,page,title,url,is_no_index,is_no_follow,is_canonical,in_link_count,out_link_count,depth,weight "
    "from Page where idt = ?";
const char* const kGetAllPages =
    "select P.idt,P.path,P.page,P.title,P.url,P.is_no_index,P.is_no_follow,P.is_canonical,P.in_link_count,"
    "P.out_link_count,P.depth,P.weight from Page P,LinkHeaders LH where P.is_no_index=0 and P.is_no_follow=0 and "
    "P.is_canonical=0 and P.url=LH.url and content_type like '%html%' order by idt";
// The same pages, the heaviest first (ties in store order), for a report's top rows: read
// without loading every page.
const char* const kGetTopPagesByWeight =
    "select P.idt,P.path,P.page,P.title,P.url,P.is_no_index,P.is_no_follow,P.is_canonical,P.in_link_count,"
    "P.out_link_count,P.depth,P.weight from Page P,LinkHeaders LH where P.is_no_index=0 and P.is_no_follow=0 and "
    "P.is_canonical=0 and P.url=LH.url and content_type like '%html%' order by P.weight desc,idt limit ?";
const char* const kGetPagesNoIndex =
    "select P.idt,P.path,P.page,P.title,P.url,P.is_no_index,P.is_no_follow,P.is_canonical,P.in_link_count,"
    "P.out_link_count,P.depth,P.weight from Page P where P.is_no_index=1 order by idt";
const char* const kGetPagesCanonical =
    "select P.idt,P.path,P.page,P.title,P.url,P.is_no_index,P.is_no_follow,P.is_canonical,P.in_link_count,"
    "P.out_link_count,P.depth,P.weight from Page P where P.is_canonical=1 order by idt";
const char* const kGetAllVacuumPages =
    "select P.idt,P.path,P.page,P.title,P.url,P.is_no_index,P.is_no_follow,P.is_canonical,P.in_link_count,"
    "P.out_link_count,P.depth,P.weight from Page P,LinkHeaders LH where P.url=LH.url and content_type not like "
    "'%html%' order by idt";
const char* const kCountPages = "select count(idt) from Page";
const char* const kCountVacuumPages =
    "select count(idt) from Page P, LinkHeaders LH where P.url=LH.url and content_type not like '%html%'";
const char* const kPerformWeight = "update Page set weight=in_link_count/depth";
const char* const kDecOutLinkCount = "update Page set out_link_count=out_link_count-1 where idt=?";
const char* const kUpdateTitle = "update Page set title=? where idt=?";
const char* const kUpdateInLinkCount = "update Page set in_link_count=? where idt=?";
const char* const kUpdateOutLinkCount = "update Page set out_link_count=? where idt=?";
const char* const kUpdateIsNoIndex = "update Page set is_no_index=? where idt=?";
const char* const kUpdateIsNoFollow = "update Page set is_no_follow=? where idt=?";
const char* const kUpdateIsCanonical = "update Page set is_canonical=? where idt=?";
const char* const kRemovePage = "delete from Page where idt = ?";

// The 404 lists are made by plain text substitution of the title between single quotes (no
// binding, no escaping), so a title with a quote makes the statement fail to prepare.
const QString kSelect404Head = QStringLiteral(
    "select P.idt,P.path,P.page,P.title,P.url,P.is_no_index,P.is_no_follow,P.is_canonical,P.in_link_count,"
    "P.out_link_count,P.depth,P.weight from Page P");
const QString kHtmlPattern = QStringLiteral("%html%");

QString pages404AllTypesStatement(const QString& title404)
{
    return kSelect404Head + QStringLiteral(" where P.title = '") + title404 + QStringLiteral("' order by idt");
}

QString pages404OnlyHTMLStatement(const QString& title404)
{
    return kSelect404Head + QStringLiteral(",LinkHeaders LH where P.title = '") + title404 +
           QStringLiteral("' and P.url=LH.url and content_type like '") + kHtmlPattern +
           QStringLiteral("' order by idt");
}

QString pages404AllNotHTMLStatement(const QString& title404)
{
    return kSelect404Head + QStringLiteral(",LinkHeaders LH where P.title = '") + title404 +
           QStringLiteral("' and P.url=LH.url and content_type not like '") + kHtmlPattern +
           QStringLiteral("' order by idt");
}

QString error404Title()
{
    return Localization::localizedString("Error404");
}

// One step; anything but done is taken as a row.
QuillmerePagePtr singlePage(sqlite3_stmt* stmt, const ProjectPtr& project)
{
    QuillmerePagePtr page;
    if (step(stmt, project) != SQLITE_DONE)
        page = QuillmerePage::pageFromStatement(stmt, project);
    finish(stmt);
    return page;
}

// Steps while rows come; a failed step ends the list (and is noted).
QList<QuillmerePagePtr> pageList(sqlite3_stmt* stmt, const ProjectPtr& project)
{
    QList<QuillmerePagePtr> pages;
    while (nextRow(stmt, project))
        pages.append(QuillmerePage::pageFromStatement(stmt, project));
    finish(stmt);
    return pages;
}


PageRowCache::Row rowOf(const QuillmerePage& page)
{
    PageRowCache::Row row;
    row.idt = page.idt();
    row.path = page.path();
    row.page = page.page();
    row.title = page.title();
    row.url = page.url();
    row.isNoIndex = page.isNoIndex();
    row.isNoFollow = page.isNoFollow();
    row.isCanonical = page.isCanonical();
    row.inLinkCount = page.inLinkCount();
    row.outLinkCount = page.outLinkCount();
    row.depth = page.depth();
    row.weight = page.weight();
    return row;
}

QuillmerePagePtr pageOf(const PageRowCache::Row& row, const ProjectPtr& project)
{
    return std::make_shared<QuillmerePage>(row.idt, row.path, row.page, row.title, row.url, row.isNoIndex,
                                           row.isNoFollow, row.isCanonical, row.inLinkCount, row.outLinkCount,
                                           row.depth, row.weight, project);
}

bool sameRecord(const QuillmerePagePtr& a, const QuillmerePagePtr& b)
{
    if (!a || !b)
        return !a && !b;
    const PageRowCache::Row x = rowOf(*a);
    const PageRowCache::Row y = rowOf(*b);
    return x.idt == y.idt && x.path == y.path && x.page == y.page && x.title == y.title && x.url == y.url
        && x.path.isNull() == y.path.isNull() && x.title.isNull() == y.title.isNull()
        && x.isNoIndex == y.isNoIndex && x.isNoFollow == y.isNoFollow && x.isCanonical == y.isCanonical
        && x.inLinkCount == y.inLinkCount && x.outLinkCount == y.outLinkCount && x.depth == y.depth
        && x.weight == y.weight;
}

// stringWithoutLastSlash, without its fault on an empty string: an empty URL is looked up as is.
QString withoutLastSlash(const QString& url)
{
    if (url.endsWith(QLatin1Char('/')))
        return url.left(url.size() - 1);
    return url;
}

} // namespace

QuillmerePage::QuillmerePage(qint64 idt, const QString& path, const QString& name, const QString& title,
                             const QString& url, qint64 isNoIndex, qint64 isNoFollow, qint64 isCanonical,
                             qint64 inLinkCount, qint64 outLinkCount, qint64 depth, double weight,
                             const std::shared_ptr<Project>& project)
    : idt_(idt)
    , path_(path)
    , page_(name)
    , title_(title)
    , url_(url)
    , isNoIndex_(isNoIndex)
    , isNoFollow_(isNoFollow)
    , isCanonical_(isCanonical)
    , inLinkCount_(inLinkCount)
    , outLinkCount_(outLinkCount)
    , depth_(depth)
    , weight_(weight)
    , project_(project)
{
}

// --- creation and look-ups ---

QuillmerePagePtr QuillmerePage::createPageWithPath(const QString& path, const QString& name, const QString& title,
                                                   const QString& url, qint32 depth, const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kCreatePage, &stmt)) {
        DebugTrace("createPageWithPath Error::%s", sqlite3_errmsg(db));
        return nullptr;
    }
    bindText(stmt, 1, path);
    bindText(stmt, 2, name);
    bindText(stmt, 3, title);
    bindText(stmt, 4, url);
    bindInt(stmt, 5, depth);
    QuillmerePagePtr page;
    if (step(stmt, project) == SQLITE_DONE) {
        page = std::make_shared<QuillmerePage>(sqlite3_last_insert_rowid(db), path, name, title, url, 0, 0, 0, 0, 0,
                                               depth, 0.0, project);
        // The URL's answer may now be this row.
        PageRowCache::forgetURL(db, withoutLastSlash(url));
    }
    finish(stmt);
    return page;
}

QuillmerePagePtr QuillmerePage::getPageFromPath(const QString& path, const QString& name, const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kGetPageFromPath, &stmt)) {
        DebugTrace("getPageFromPath Error::%s", sqlite3_errmsg(db));
        return nullptr;
    }
    bindText(stmt, 1, path);
    bindText(stmt, 2, name);
    return singlePage(stmt, project);
}

QuillmerePagePtr QuillmerePage::getPageFromURL(const QString& url, const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    const QString bare = withoutLastSlash(url);
    // An answer kept in memory needs no statement at all (it is asked for several times a link).
    QuillmerePagePtr kept;
    bool keptAbsent = false;
    if (const auto row = PageRowCache::find(db, bare, &keptAbsent))
        kept = pageOf(*row, project);
    const bool fromMemory = kept || keptAbsent;
    if (fromMemory && !PageRowCache::isChecking())
        return kept;
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kGetPageFromURL, &stmt)) {
        DebugTrace("getPageFromURL Error::%s", sqlite3_errmsg(db));
        return nullptr;
    }
    bindText(stmt, 1, bare + QLatin1Char('/'));
    bindText(stmt, 2, bare);
    // One step; anything but done is taken as a row, and only a true answer is kept.
    QuillmerePagePtr page;
    const int rc = step(stmt, project);
    if (rc != SQLITE_DONE)
        page = pageFromStatement(stmt, project);
    finish(stmt);
    if (fromMemory) {
        PageRowCache::noteChecked(sameRecord(kept, page), url);
        return kept;
    }
    if (rc == SQLITE_ROW || rc == SQLITE_DONE) {
        const PageRowCache::Row row = page ? rowOf(*page) : PageRowCache::Row();
        PageRowCache::remember(db, bare, page ? &row : nullptr);
    }
    return page;
}

QuillmerePagePtr QuillmerePage::getPageFromIdentifier(qint64 identifier, const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kGetPageFromIdentifier, &stmt)) {
        DebugTrace("getPageFromIdentifier Error::%s", sqlite3_errmsg(db));
        return nullptr;
    }
    bindInt(stmt, 1, identifier);
    return singlePage(stmt, project);
}

// --- lists ---

QList<QuillmerePagePtr> QuillmerePage::getAllPagesForProject(const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kGetAllPages, &stmt)) {
        DebugTrace("getAllPagesForProject Error::%s", sqlite3_errmsg(db));
        return {};
    }
    return pageList(stmt, project);
}

QList<QuillmerePagePtr> QuillmerePage::getTopPagesByWeightForProject(const ProjectPtr& project, qint32 limit)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kGetTopPagesByWeight, &stmt)) {
        DebugTrace("getTopPagesByWeightForProject Error::%s", sqlite3_errmsg(db));
        return {};
    }
    sqlite3_bind_int(stmt, 1, limit);
    return pageList(stmt, project);
}

QList<QuillmerePagePtr> QuillmerePage::getPages404AllTypesMimeForProject(const ProjectPtr& project)
{
    return getPages404AllTypesMimeForProject(project, error404Title());
}

QList<QuillmerePagePtr> QuillmerePage::getPages404AllTypesMimeForProject(const ProjectPtr& project,
                                                                         const QString& title404)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    const QByteArray sql = pages404AllTypesStatement(title404).toUtf8();
    if (!prepare(db, sql.constData(), &stmt)) {
        DebugTrace("getPages404AllTypesMimeForProject Error::%s", sqlite3_errmsg(db));
        return {};
    }
    return pageList(stmt, project);
}

QList<QuillmerePagePtr> QuillmerePage::getPages404OnlyHTMLForProject(const ProjectPtr& project)
{
    return getPages404OnlyHTMLForProject(project, error404Title());
}

QList<QuillmerePagePtr> QuillmerePage::getPages404OnlyHTMLForProject(const ProjectPtr& project,
                                                                     const QString& title404)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    const QByteArray sql = pages404OnlyHTMLStatement(title404).toUtf8();
    if (!prepare(db, sql.constData(), &stmt)) {
        DebugTrace("getPages404OnlyHTMLForProject Error::%s", sqlite3_errmsg(db));
        return {};
    }
    return pageList(stmt, project);
}

QList<QuillmerePagePtr> QuillmerePage::getPages404AllNotHTMLForProject(const ProjectPtr& project)
{
    return getPages404AllNotHTMLForProject(project, error404Title());
}

QList<QuillmerePagePtr> QuillmerePage::getPages404AllNotHTMLForProject(const ProjectPtr& project,
                                                                       const QString& title404)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    const QByteArray sql = pages404AllNotHTMLStatement(title404).toUtf8();
    if (!prepare(db, sql.constData(), &stmt)) {
        DebugTrace("getPages404AllNotHTMLForProject Error::%s", sqlite3_errmsg(db));
        return {};
    }
    return pageList(stmt, project);
}

QList<QuillmerePagePtr> QuillmerePage::getPagesNoIndexForProject(const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kGetPagesNoIndex, &stmt)) {
        DebugTrace("getPagesNoIndexForProject Error::%s", sqlite3_errmsg(db));
        return {};
    }
    return pageList(stmt, project);
}

QList<QuillmerePagePtr> QuillmerePage::getPagesCanonicalForProject(const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kGetPagesCanonical, &stmt)) {
        DebugTrace("getPagesCanonicalForProject Error::%s", sqlite3_errmsg(db));
        return {};
    }
    return pageList(stmt, project);
}

QList<QuillmerePagePtr> QuillmerePage::getAllVacuumPagesForProject(const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kGetAllVacuumPages, &stmt)) {
        DebugTrace("getAllVacuumPagesForProject Error::%s", sqlite3_errmsg(db));
        return {};
    }
    return pageList(stmt, project);
}

// --- counts ---

qint64 QuillmerePage::countPagesForProject(const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kCountPages, &stmt)) {
        DebugTrace("countPagesForProject Error::%s", sqlite3_errmsg(db));
        return 0;
    }
    return countValue(stmt, project);
}

qint64 QuillmerePage::countVacuumPagesForProject(const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kCountVacuumPages, &stmt)) {
        DebugTrace("countVacuumPagesForProject Error::%s", sqlite3_errmsg(db));
        return 0;
    }
    return countValue(stmt, project);
}

// --- SQL-side updates ---

void QuillmerePage::performWeightForProject(const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kPerformWeight, &stmt)) {
        DebugTrace("performWeightForProject Error::%s", sqlite3_errmsg(db));
        return;
    }
    PageRowCache::clear(db);
    step(stmt, project);
    finish(stmt);
}

void QuillmerePage::decOutLinkCountWithPageIdentifier(qint32 identifier, const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kDecOutLinkCount, &stmt)) {
        DebugTrace("decOutLinkCountWithPageIdentifier Error::%s", sqlite3_errmsg(db));
        return;
    }
    bindInt(stmt, 1, identifier);
    if (step(stmt, project) == SQLITE_DONE)
        PageRowCache::addToNumber(db, identifier, PageRowCache::Column::OutLinkCount, -1);
    else
        PageRowCache::clear(db);
    finish(stmt);
}

// --- row reading ---

QuillmerePagePtr QuillmerePage::pageFromStatement(sqlite3_stmt* statement, const ProjectPtr& project)
{
    return std::make_shared<QuillmerePage>(columnInt(statement, 0), columnText(statement, 1),
                                           columnText(statement, 2), columnText(statement, 3),
                                           columnText(statement, 4), columnInt(statement, 5),
                                           columnInt(statement, 6), columnInt(statement, 7),
                                           columnInt(statement, 8), columnInt(statement, 9),
                                           columnInt(statement, 10), sqlite3_column_double(statement, 11), project);
}

// --- instance updates ---

void QuillmerePage::updatePageTitle(const QString& title)
{
    const ProjectPtr owner = project_.lock();
    sqlite3* db = databaseOf(owner);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kUpdateTitle, &stmt)) {
        DebugTrace("updatePageTitle Error::%s", sqlite3_errmsg(db));
        return;
    }
    bindText(stmt, 1, title);
    bindInt(stmt, 2, idt_);
    if (step(stmt, owner) == SQLITE_DONE) {
        title_ = title;
        PageRowCache::setText(db, idt_, PageRowCache::Column::Title, PageRowCache::storedForm(title));
    } else {
        PageRowCache::clear(db);
    }
    finish(stmt);
}

// The counters are written from this record's cached value, not incremented in SQL: the
// record is the authority while a crawl runs.
void QuillmerePage::incInLinkCount()
{
    const ProjectPtr owner = project_.lock();
    sqlite3* db = databaseOf(owner);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kUpdateInLinkCount, &stmt)) {
        DebugTrace("incInLinkCount Error::%s", sqlite3_errmsg(db));
        return;
    }
    bindInt(stmt, 1, inLinkCount_ + 1);
    bindInt(stmt, 2, idt_);
    if (step(stmt, owner) == SQLITE_DONE) {
        PageRowCache::setNumber(db, idt_, PageRowCache::Column::InLinkCount, static_cast<int>(inLinkCount_ + 1));
        inLinkCount_ = inLinkCount_ + 1;
    } else {
        PageRowCache::clear(db);
    }
    finish(stmt);
}

void QuillmerePage::incOutLinkCount()
{
    const ProjectPtr owner = project_.lock();
    sqlite3* db = databaseOf(owner);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kUpdateOutLinkCount, &stmt)) {
        DebugTrace("incOutLinkCount Error::%s", sqlite3_errmsg(db));
        return;
    }
    bindInt(stmt, 1, outLinkCount_ + 1);
    bindInt(stmt, 2, idt_);
    if (step(stmt, owner) == SQLITE_DONE) {
        PageRowCache::setNumber(db, idt_, PageRowCache::Column::OutLinkCount, static_cast<int>(outLinkCount_ + 1));
        outLinkCount_ = outLinkCount_ + 1;
    } else {
        PageRowCache::clear(db);
    }
    finish(stmt);
}

// The flag updates leave the flag property alone and bump outLinkCount instead; callers rely
// on the counter running one ahead after a flag update, so this stays as it is.
void QuillmerePage::stepFlagUpdate(sqlite3_stmt* statement, bool value, int flagColumn)
{
    bindInt(statement, 1, value ? 1 : 0);
    bindInt(statement, 2, idt_);
    sqlite3* db = sqlite3_db_handle(statement);
    if (step(statement, project_.lock()) == SQLITE_DONE) {
        outLinkCount_ = outLinkCount_ + 1;
        PageRowCache::setNumber(db, idt_, static_cast<PageRowCache::Column>(flagColumn), value ? 1 : 0);
    } else {
        PageRowCache::clear(db);
    }
    finish(statement);
}

void QuillmerePage::updateIsNoIndex(bool value)
{
    const ProjectPtr owner = project_.lock();
    sqlite3* db = databaseOf(owner);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kUpdateIsNoIndex, &stmt)) {
        DebugTrace("updateIsNoIndex Error::%s", sqlite3_errmsg(db));
        return;
    }
    stepFlagUpdate(stmt, value, int(PageRowCache::Column::IsNoIndex));
}

void QuillmerePage::updateIsNoFollow(bool value)
{
    const ProjectPtr owner = project_.lock();
    sqlite3* db = databaseOf(owner);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kUpdateIsNoFollow, &stmt)) {
        DebugTrace("updateIsNoFollow Error::%s", sqlite3_errmsg(db));
        return;
    }
    stepFlagUpdate(stmt, value, int(PageRowCache::Column::IsNoFollow));
}

void QuillmerePage::updateIsCanonical(bool value)
{
    const ProjectPtr owner = project_.lock();
    sqlite3* db = databaseOf(owner);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kUpdateIsCanonical, &stmt)) {
        DebugTrace("updateIsCanonical Error::%s", sqlite3_errmsg(db));
        return;
    }
    stepFlagUpdate(stmt, value, int(PageRowCache::Column::IsCanonical));
}

void QuillmerePage::removeFromProject(const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kRemovePage, &stmt)) {
        DebugTrace("removeFromProject Error::%s", sqlite3_errmsg(db));
        return;
    }
    bindInt(stmt, 1, idt_);
    if (step(stmt, project) == SQLITE_DONE)
        PageRowCache::forgetIdentifier(db, idt_);
    else
        PageRowCache::clear(db);
    finish(stmt);
}

QList<QuillmereLinkPagePtr> QuillmerePage::getAllSourcePages() const
{
    return QuillmereLinkPage::getSourcesLinksFromPage(*this, project_.lock());
}

QString QuillmerePage::description() const
{
    return QStringLiteral("QuillmerePage (idt::") + QString::number(idt_) + QStringLiteral(") (path::") +
           describe(path_) + QStringLiteral(") (page::") + describe(page_) + QStringLiteral(") (title::") +
           describe(title_) + QStringLiteral(") (url::") + describe(url_) + QStringLiteral(") (depth::") +
           QString::number(depth_) + QStringLiteral(")");
}
