#include "store/LinkHeaders.h"
#include "store/Localization.h"
#include "store/QuillmereLink.h"
#include "store/QuillmereLinkPage.h"
#include "store/QuillmerePage.h"

#include "QuillmereRecordsTestSupport.h"

namespace {

class QuillmerePageTest : public RecordsFixture {
protected:
    QuillmerePagePtr makePage(const QString& url, qint32 depth = 1, const QString& title = QStringLiteral("T"))
    {
        return QuillmerePage::createPageWithPath(QStringLiteral("/dir"), QStringLiteral("doc.html"), title, url, depth,
                                                 project);
    }

    static QList<qint64> ids(const QList<QuillmerePagePtr>& pages)
    {
        QList<qint64> out;
        for (const auto& p : pages)
            out.append(p->idt());
        return out;
    }

    std::string rowSql(const char* column, qint64 idt)
    {
        return "select " + std::string(column) + " from Page where idt=" + std::to_string(idt);
    }
};

// --- creation ---

TEST_F(QuillmerePageTest, CreateAnswersARecordWithTheNewRowIdentifierAndTheGivenValues)
{
    auto first = makePage(QStringLiteral("http://example.com/a"), 3, QStringLiteral("Title A"));
    auto second = QuillmerePage::createPageWithPath(QStringLiteral("/x"), QStringLiteral("b.html"), QString::fromUtf8("Été"),
                                                    QStringLiteral("http://example.com/x/b.html"), 2, project);
    ASSERT_TRUE(first);
    ASSERT_TRUE(second);
    EXPECT_EQ(first->idt(), 1);
    EXPECT_EQ(second->idt(), *queryInt("select max(idt) from Page"));
    EXPECT_EQ(second->path(), QStringLiteral("/x"));
    EXPECT_EQ(second->page(), QStringLiteral("b.html"));
    EXPECT_EQ(second->title(), QString::fromUtf8("Été"));
    EXPECT_EQ(second->url(), QStringLiteral("http://example.com/x/b.html"));
    EXPECT_EQ(second->depth(), 2);
    EXPECT_EQ(second->isNoIndex(), 0);
    EXPECT_EQ(second->isNoFollow(), 0);
    EXPECT_EQ(second->isCanonical(), 0);
    EXPECT_EQ(second->inLinkCount(), 0);
    EXPECT_EQ(second->outLinkCount(), 0);
    EXPECT_EQ(second->weight(), 0.0);
    EXPECT_EQ(second->project().lock(), project);

    // The row itself, as stored (text as UTF-8).
    EXPECT_EQ(queryText(rowSql("title", second->idt())), QString::fromUtf8("Été"));
    EXPECT_EQ(queryText(rowSql("page", second->idt())), QStringLiteral("b.html"));
    EXPECT_EQ(queryInt(rowSql("depth", second->idt())), 2);
    EXPECT_EQ(queryInt(rowSql("is_no_index", second->idt())), 0);
    EXPECT_EQ(queryInt(rowSql("out_link_count", second->idt())), 0);
    EXPECT_EQ(queryDouble(rowSql("weight", second->idt())), 0.0);
}

TEST_F(QuillmerePageTest, IdentifiersContinueAfterATruncate)
{
    for (int i = 0; i < 3; ++i)
        ASSERT_TRUE(makePage(QStringLiteral("http://example.com/%1").arg(i)));
    project->truncateSQLiteDatabase();
    EXPECT_EQ(QuillmerePage::countPagesForProject(project), 0);
    auto next = makePage(QStringLiteral("http://example.com/next"));
    ASSERT_TRUE(next);
    EXPECT_EQ(next->idt(), 4);
    EXPECT_EQ(QuillmerePage::countPagesForProject(project), 1);
}

TEST_F(QuillmerePageTest, CreateWithANullStringAnswersNilWithoutTrace)
{
    TraceCapture trace;
    EXPECT_FALSE(QuillmerePage::createPageWithPath(QStringLiteral("/"), QStringLiteral("a"), QString(),
                                                   QStringLiteral("http://example.com/a"), 1, project));
    EXPECT_FALSE(QuillmerePage::createPageWithPath(QString(), QStringLiteral("a"), QStringLiteral("t"),
                                                   QStringLiteral("http://example.com/a"), 1, project));
    EXPECT_TRUE(trace.lines().empty());
    EXPECT_EQ(queryInt("select count(*) from Page"), 0);
}

TEST_F(QuillmerePageTest, AnEmptyTitleReadsBackEmptyNotNull)
{
    auto created = makePage(QStringLiteral("http://example.com/a"), 1, QStringLiteral(""));
    ASSERT_TRUE(created);
    auto found = QuillmerePage::getPageFromIdentifier(created->idt(), project);
    ASSERT_TRUE(found);
    EXPECT_TRUE(found->title().isEmpty());
    EXPECT_FALSE(found->title().isNull());
}

// --- look-ups ---

TEST_F(QuillmerePageTest, GetPageFromPathFindsByPathAndName)
{
    auto a = QuillmerePage::createPageWithPath(QStringLiteral("/a"), QStringLiteral("x.html"), QStringLiteral("A"),
                                               QStringLiteral("http://example.com/a/x.html"), 2, project);
    auto b = QuillmerePage::createPageWithPath(QStringLiteral("/b"), QStringLiteral("x.html"), QStringLiteral("B"),
                                               QStringLiteral("http://example.com/b/x.html"), 2, project);
    ASSERT_TRUE(a && b);
    auto found = QuillmerePage::getPageFromPath(QStringLiteral("/b"), QStringLiteral("x.html"), project);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->idt(), b->idt());
    EXPECT_EQ(found->title(), QStringLiteral("B"));
    EXPECT_EQ(found->project().lock(), project);
    EXPECT_FALSE(QuillmerePage::getPageFromPath(QStringLiteral("/c"), QStringLiteral("x.html"), project));
    EXPECT_FALSE(QuillmerePage::getPageFromPath(QStringLiteral("/a"), QStringLiteral("y.html"), project));
}

TEST_F(QuillmerePageTest, GetPageFromURLToleratesOneTrailingSlashBothWays)
{
    auto bare = makePage(QStringLiteral("http://example.com/dir"));
    auto slashed = makePage(QStringLiteral("http://example.com/other/"));
    ASSERT_TRUE(bare && slashed);

    auto found = QuillmerePage::getPageFromURL(QStringLiteral("http://example.com/dir/"), project);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->idt(), bare->idt());
    found = QuillmerePage::getPageFromURL(QStringLiteral("http://example.com/dir"), project);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->idt(), bare->idt());

    found = QuillmerePage::getPageFromURL(QStringLiteral("http://example.com/other"), project);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->idt(), slashed->idt());
    found = QuillmerePage::getPageFromURL(QStringLiteral("http://example.com/other/"), project);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->idt(), slashed->idt());

    EXPECT_FALSE(QuillmerePage::getPageFromURL(QStringLiteral("http://example.com/nothing"), project));
    // The comparison is exact otherwise: no case folding.
    EXPECT_FALSE(QuillmerePage::getPageFromURL(QStringLiteral("http://example.com/DIR"), project));
}

TEST_F(QuillmerePageTest, GetPageFromURLWithTwoTrailingSlashesLooksForItAndForOneSlashOnly)
{
    auto bare = makePage(QStringLiteral("http://example.com/a"));
    ASSERT_TRUE(bare);
    // "a//" looks for "a//" and "a/": the bare URL is out of reach.
    EXPECT_FALSE(QuillmerePage::getPageFromURL(QStringLiteral("http://example.com/a//"), project));

    auto oneSlash = makePage(QStringLiteral("http://example.com/b/"));
    auto twoSlashes = makePage(QStringLiteral("http://example.com/c//"));
    ASSERT_TRUE(oneSlash && twoSlashes);
    auto found = QuillmerePage::getPageFromURL(QStringLiteral("http://example.com/b//"), project);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->idt(), oneSlash->idt());
    found = QuillmerePage::getPageFromURL(QStringLiteral("http://example.com/c//"), project);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->idt(), twoSlashes->idt());
    // "c/" becomes "c" and looks for "c/" and "c": the two-slash row is not one of them.
    EXPECT_FALSE(QuillmerePage::getPageFromURL(QStringLiteral("http://example.com/c/"), project));
}

TEST_F(QuillmerePageTest, GetPageFromURLAnswersOneOfTwoMatchingRows)
{
    auto bare = makePage(QStringLiteral("http://example.com/a"));
    auto slashed = makePage(QStringLiteral("http://example.com/a/"));
    ASSERT_TRUE(bare && slashed);
    auto found = QuillmerePage::getPageFromURL(QStringLiteral("http://example.com/a"), project);
    ASSERT_TRUE(found);
    EXPECT_TRUE(found->idt() == bare->idt() || found->idt() == slashed->idt());
}

TEST_F(QuillmerePageTest, GetPageFromURLWithAnEmptyURLFindsTheSlashRow)
{
    // An empty URL keeps its text and is looked up as "/" and "".
    auto root = makePage(QStringLiteral("/"));
    ASSERT_TRUE(root);
    auto found = QuillmerePage::getPageFromURL(QStringLiteral(""), project);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->idt(), root->idt());
}

TEST_F(QuillmerePageTest, GetPageFromIdentifierReadsEveryColumn)
{
    auto page = makePage(QStringLiteral("http://example.com/a"), 4, QStringLiteral("A"));
    ASSERT_TRUE(page);
    exec("update Page set is_no_index=1,is_no_follow=1,is_canonical=0,in_link_count=7,out_link_count=9,weight=1.75 "
         "where idt=" + std::to_string(page->idt()));
    auto found = QuillmerePage::getPageFromIdentifier(page->idt(), project);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->idt(), page->idt());
    EXPECT_EQ(found->path(), QStringLiteral("/dir"));
    EXPECT_EQ(found->page(), QStringLiteral("doc.html"));
    EXPECT_EQ(found->title(), QStringLiteral("A"));
    EXPECT_EQ(found->url(), QStringLiteral("http://example.com/a"));
    EXPECT_EQ(found->isNoIndex(), 1);
    EXPECT_EQ(found->isNoFollow(), 1);
    EXPECT_EQ(found->isCanonical(), 0);
    EXPECT_EQ(found->inLinkCount(), 7);
    EXPECT_EQ(found->outLinkCount(), 9);
    EXPECT_EQ(found->depth(), 4);
    EXPECT_DOUBLE_EQ(found->weight(), 1.75);
    EXPECT_FALSE(QuillmerePage::getPageFromIdentifier(page->idt() + 100, project));
}

TEST_F(QuillmerePageTest, IntegerColumnsAreReadAs32Bits)
{
    auto page = makePage(QStringLiteral("http://example.com/a"));
    ASSERT_TRUE(page);
    exec("update Page set in_link_count=4294967297 where idt=" + std::to_string(page->idt()));
    auto found = QuillmerePage::getPageFromIdentifier(page->idt(), project);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->inLinkCount(), 1);
}

TEST_F(QuillmerePageTest, ASingleRowLookUpTakesAStepErrorForARowOfNothing)
{
    // Page replaced by a view whose last column fails while the row is computed.
    sqlite3_create_function(db(), "fail_now", 0, SQLITE_UTF8, nullptr,
                            [](sqlite3_context* ctx, int, sqlite3_value**) { sqlite3_result_error(ctx, "boom", -1); },
                            nullptr, nullptr);
    exec("drop table Page");
    exec("create view Page as select 5 as idt,'/p' as path,'n' as page,'t' as title,'u' as url,0 as is_no_index,"
         "0 as is_no_follow,0 as is_canonical,0 as in_link_count,0 as out_link_count,1 as depth,fail_now() as weight");
    TraceCapture trace;
    auto page = QuillmerePage::getPageFromIdentifier(5, project);
    ASSERT_TRUE(page);
    EXPECT_EQ(page->idt(), 0);
    EXPECT_TRUE(page->path().isNull());
    EXPECT_TRUE(page->url().isNull());
    EXPECT_TRUE(trace.lines().empty());
}

// --- lists ---

TEST_F(QuillmerePageTest, GetAllPagesListsUnflaggedHtmlPagesOncePerHeaderRow)
{
    auto html = makePage(QStringLiteral("http://example.com/html"));
    auto upper = makePage(QStringLiteral("http://example.com/upper"));
    auto image = makePage(QStringLiteral("http://example.com/img.png"));
    auto noHeader = makePage(QStringLiteral("http://example.com/none"));
    auto noIndex = makePage(QStringLiteral("http://example.com/noindex"));
    auto noFollow = makePage(QStringLiteral("http://example.com/nofollow"));
    auto canonical = makePage(QStringLiteral("http://example.com/canonical"));
    auto nullFlags = makePage(QStringLiteral("http://example.com/nullflags"));
    ASSERT_TRUE(html && upper && image && noHeader && noIndex && noFollow && canonical && nullFlags);
    for (const auto& p : {html, image, noIndex, noFollow, canonical, nullFlags}) {
        const QString type = p == image ? QStringLiteral("image/png") : QStringLiteral("text/html");
        ASSERT_TRUE(LinkHeaders::createLinkHeadersWithURL(p->url(), type, 10, 10, project));
    }
    // Twice for this one: the join repeats the page.
    ASSERT_TRUE(LinkHeaders::createLinkHeadersWithURL(upper->url(), QStringLiteral("TEXT/HTML"), 1, 1, project));
    ASSERT_TRUE(LinkHeaders::createLinkHeadersWithURL(upper->url(), QStringLiteral("text/html"), 1, 1, project));
    noIndex->updateIsNoIndex(true);
    noFollow->updateIsNoFollow(true);
    canonical->updateIsCanonical(true);
    exec("update Page set is_no_index=null,is_no_follow=null,is_canonical=null where idt=" +
         std::to_string(nullFlags->idt()));

    const auto pages = QuillmerePage::getAllPagesForProject(project);
    EXPECT_EQ(ids(pages), (QList<qint64>{html->idt(), upper->idt(), upper->idt()}));
    for (const auto& p : pages)
        EXPECT_EQ(p->project().lock(), project);
}

TEST_F(QuillmerePageTest, The404ListsUseTheLocalizedTextAndTheContentType)
{
    const QString error404 = Localization::localizedString("Error404");
    ASSERT_FALSE(error404.isEmpty());
    auto html404 = makePage(QStringLiteral("http://example.com/html404"), 1, error404);
    auto image404 = makePage(QStringLiteral("http://example.com/img404"), 1, error404);
    auto bare404 = makePage(QStringLiteral("http://example.com/bare404"), 1, error404);
    auto ok = makePage(QStringLiteral("http://example.com/ok"), 1, QStringLiteral("Fine"));
    ASSERT_TRUE(html404 && image404 && bare404 && ok);
    ASSERT_TRUE(LinkHeaders::createLinkHeadersWithURL(html404->url(), QStringLiteral("text/html; charset=UTF-8"), 1, 1,
                                                      project));
    ASSERT_TRUE(LinkHeaders::createLinkHeadersWithURL(image404->url(), QStringLiteral("image/png"), 1, 1, project));
    ASSERT_TRUE(LinkHeaders::createLinkHeadersWithURL(ok->url(), QStringLiteral("text/html"), 1, 1, project));

    EXPECT_EQ(ids(QuillmerePage::getPages404AllTypesMimeForProject(project)),
              (QList<qint64>{html404->idt(), image404->idt(), bare404->idt()}));
    EXPECT_EQ(ids(QuillmerePage::getPages404OnlyHTMLForProject(project)), (QList<qint64>{html404->idt()}));
    EXPECT_EQ(ids(QuillmerePage::getPages404AllNotHTMLForProject(project)), (QList<qint64>{image404->idt()}));
}

TEST_F(QuillmerePageTest, APageWithoutHeaderRowIsOnlyInThe404ListOfAllTypes)
{
    const QString error404 = Localization::localizedString("Error404");
    auto bare = makePage(QStringLiteral("http://example.com/bare"), 1, error404);
    ASSERT_TRUE(bare);
    bare->updateIsNoIndex(true);
    bare->updateIsCanonical(true);
    EXPECT_EQ(ids(QuillmerePage::getPages404AllTypesMimeForProject(project)), (QList<qint64>{bare->idt()}));
    EXPECT_TRUE(QuillmerePage::getPages404OnlyHTMLForProject(project).isEmpty());
    EXPECT_TRUE(QuillmerePage::getPages404AllNotHTMLForProject(project).isEmpty());
    EXPECT_TRUE(QuillmerePage::getAllPagesForProject(project).isEmpty());
    EXPECT_TRUE(QuillmerePage::getAllVacuumPagesForProject(project).isEmpty());
    EXPECT_EQ(QuillmerePage::countVacuumPagesForProject(project), 0);
}

TEST_F(QuillmerePageTest, PagesTitledWithTheContentTypeErrorAreFoundByThe404List)
{
    // The crawl writes the "ErrorContentType" text; the lists look for "Error404". The tables
    // give both the same text, which is what makes the filter work.
    EXPECT_EQ(Localization::localizedString("ErrorContentType"), Localization::localizedString("Error404"));
    auto page = makePage(QStringLiteral("http://example.com/x"), 1, Localization::localizedString("ErrorContentType"));
    ASSERT_TRUE(page);
    EXPECT_EQ(ids(QuillmerePage::getPages404AllTypesMimeForProject(project)), (QList<qint64>{page->idt()}));
}

TEST_F(QuillmerePageTest, A404TextWithASingleQuoteMakesTheThreeListsFail)
{
    const QString quoted = QStringLiteral("Page d'erreur");
    auto page = makePage(QStringLiteral("http://example.com/x"), 1, quoted);
    ASSERT_TRUE(page);
    ASSERT_TRUE(LinkHeaders::createLinkHeadersWithURL(page->url(), QStringLiteral("image/gif"), 1, 1, project));
    TraceCapture trace;
    EXPECT_TRUE(QuillmerePage::getPages404AllTypesMimeForProject(project, quoted).isEmpty());
    EXPECT_TRUE(QuillmerePage::getPages404OnlyHTMLForProject(project, quoted).isEmpty());
    EXPECT_TRUE(QuillmerePage::getPages404AllNotHTMLForProject(project, quoted).isEmpty());
    EXPECT_TRUE(traced(trace, "getPages404AllTypesMimeForProject Error::"));
    EXPECT_TRUE(traced(trace, "getPages404OnlyHTMLForProject Error::"));
    EXPECT_TRUE(traced(trace, "getPages404AllNotHTMLForProject Error::"));
}

TEST_F(QuillmerePageTest, The404TextIsSubstitutedNotBound)
{
    auto a = makePage(QStringLiteral("http://example.com/a"), 1, QStringLiteral("A"));
    auto b = makePage(QStringLiteral("http://example.com/b"), 1, QStringLiteral("B"));
    ASSERT_TRUE(a && b);
    // The text becomes part of the statement: this one matches every page.
    const QString injected = QStringLiteral("' or ''='");
    EXPECT_EQ(ids(QuillmerePage::getPages404AllTypesMimeForProject(project, injected)),
              (QList<qint64>{a->idt(), b->idt()}));
    EXPECT_EQ(ids(QuillmerePage::getPages404AllTypesMimeForProject(project, QStringLiteral("B"))),
              (QList<qint64>{b->idt()}));
}

TEST_F(QuillmerePageTest, NoIndexAndCanonicalListsFollowTheFlags)
{
    auto a = makePage(QStringLiteral("http://example.com/a"));
    auto b = makePage(QStringLiteral("http://example.com/b"));
    auto c = makePage(QStringLiteral("http://example.com/c"));
    ASSERT_TRUE(a && b && c);
    c->updateIsNoIndex(true);
    a->updateIsNoIndex(true);
    b->updateIsCanonical(true);
    b->updateIsNoFollow(true);
    EXPECT_EQ(ids(QuillmerePage::getPagesNoIndexForProject(project)), (QList<qint64>{a->idt(), c->idt()}));
    EXPECT_EQ(ids(QuillmerePage::getPagesCanonicalForProject(project)), (QList<qint64>{b->idt()}));
    a->updateIsNoIndex(false);
    EXPECT_EQ(ids(QuillmerePage::getPagesNoIndexForProject(project)), (QList<qint64>{c->idt()}));
}

TEST_F(QuillmerePageTest, VacuumCandidatesAreNonHtmlPagesOncePerHeaderRow)
{
    auto html = makePage(QStringLiteral("http://example.com/a.html"));
    auto pdf = makePage(QStringLiteral("http://example.com/a.pdf"));
    auto png = makePage(QStringLiteral("http://example.com/a.png"));
    ASSERT_TRUE(html && pdf && png);
    ASSERT_TRUE(LinkHeaders::createLinkHeadersWithURL(html->url(), QStringLiteral("text/HTML"), 1, 1, project));
    ASSERT_TRUE(LinkHeaders::createLinkHeadersWithURL(png->url(), QStringLiteral("image/png"), 1, 1, project));
    ASSERT_TRUE(LinkHeaders::createLinkHeadersWithURL(pdf->url(), QStringLiteral("application/pdf"), 1, 1, project));
    ASSERT_TRUE(LinkHeaders::createLinkHeadersWithURL(pdf->url(), QStringLiteral("application/pdf"), 1, 1, project));
    EXPECT_EQ(ids(QuillmerePage::getAllVacuumPagesForProject(project)),
              (QList<qint64>{pdf->idt(), pdf->idt(), png->idt()}));
    // Join rows, not distinct pages.
    EXPECT_EQ(QuillmerePage::countVacuumPagesForProject(project), 3);
}

TEST_F(QuillmerePageTest, TheTyped404ListsRepeatAPageWithDuplicatedHeaderRows)
{
    const QString error404 = Localization::localizedString("Error404");
    auto page = makePage(QStringLiteral("http://example.com/a"), 1, error404);
    ASSERT_TRUE(page);
    ASSERT_TRUE(LinkHeaders::createLinkHeadersWithURL(page->url(), QStringLiteral("text/html"), 1, 1, project));
    ASSERT_TRUE(LinkHeaders::createLinkHeadersWithURL(page->url(), QStringLiteral("text/html"), 1, 1, project));
    EXPECT_EQ(ids(QuillmerePage::getPages404OnlyHTMLForProject(project)), (QList<qint64>{page->idt(), page->idt()}));
    EXPECT_EQ(ids(QuillmerePage::getPages404AllTypesMimeForProject(project)), (QList<qint64>{page->idt()}));
}

TEST_F(QuillmerePageTest, ListsAreEmptyOnAnEmptyDatabase)
{
    TraceCapture trace;
    EXPECT_TRUE(QuillmerePage::getAllPagesForProject(project).isEmpty());
    EXPECT_TRUE(QuillmerePage::getPages404AllTypesMimeForProject(project).isEmpty());
    EXPECT_TRUE(QuillmerePage::getPages404OnlyHTMLForProject(project).isEmpty());
    EXPECT_TRUE(QuillmerePage::getPages404AllNotHTMLForProject(project).isEmpty());
    EXPECT_TRUE(QuillmerePage::getPagesNoIndexForProject(project).isEmpty());
    EXPECT_TRUE(QuillmerePage::getPagesCanonicalForProject(project).isEmpty());
    EXPECT_TRUE(QuillmerePage::getAllVacuumPagesForProject(project).isEmpty());
    EXPECT_EQ(QuillmerePage::countPagesForProject(project), 0);
    EXPECT_EQ(QuillmerePage::countVacuumPagesForProject(project), 0);
    EXPECT_TRUE(trace.lines().empty());
}

// --- counts and SQL-side updates ---

TEST_F(QuillmerePageTest, CountPagesCountsRows)
{
    for (int i = 0; i < 5; ++i)
        ASSERT_TRUE(makePage(QStringLiteral("http://example.com/%1").arg(i)));
    EXPECT_EQ(QuillmerePage::countPagesForProject(project), 5);
}

TEST_F(QuillmerePageTest, WeightsUseIntegerDivision)
{
    auto five = makePage(QStringLiteral("http://example.com/5"), 2);
    auto seven = makePage(QStringLiteral("http://example.com/7"), 2);
    auto zeroDepth = makePage(QStringLiteral("http://example.com/0"), 0);
    auto one = makePage(QStringLiteral("http://example.com/1"), 3);
    ASSERT_TRUE(five && seven && zeroDepth && one);
    exec("update Page set in_link_count=5 where idt=" + std::to_string(five->idt()));
    exec("update Page set in_link_count=7 where idt=" + std::to_string(seven->idt()));
    exec("update Page set in_link_count=4 where idt=" + std::to_string(zeroDepth->idt()));
    exec("update Page set in_link_count=1 where idt=" + std::to_string(one->idt()));
    QuillmerePage::performWeightForProject(project);

    EXPECT_EQ(QuillmerePage::getPageFromIdentifier(five->idt(), project)->weight(), 2.0);
    EXPECT_EQ(QuillmerePage::getPageFromIdentifier(seven->idt(), project)->weight(), 3.0);
    EXPECT_EQ(QuillmerePage::getPageFromIdentifier(one->idt(), project)->weight(), 0.0);
    // Division by zero stores NULL, which reads back as 0.0.
    EXPECT_FALSE(queryDouble(rowSql("weight", zeroDepth->idt())).has_value());
    EXPECT_EQ(QuillmerePage::getPageFromIdentifier(zeroDepth->idt(), project)->weight(), 0.0);
    // Records already in memory are not refreshed.
    EXPECT_EQ(five->weight(), 0.0);
}

TEST_F(QuillmerePageTest, DecOutLinkCountWorksInSqlOnly)
{
    auto page = makePage(QStringLiteral("http://example.com/a"));
    auto other = makePage(QStringLiteral("http://example.com/b"));
    ASSERT_TRUE(page && other);
    page->incOutLinkCount();
    page->incOutLinkCount();
    page->incOutLinkCount();
    QuillmerePage::decOutLinkCountWithPageIdentifier(qint32(page->idt()), project);
    EXPECT_EQ(queryInt(rowSql("out_link_count", page->idt())), 2);
    EXPECT_EQ(queryInt(rowSql("out_link_count", other->idt())), 0);
    EXPECT_EQ(page->outLinkCount(), 3);
    // Nothing stops it below zero.
    QuillmerePage::decOutLinkCountWithPageIdentifier(qint32(other->idt()), project);
    EXPECT_EQ(queryInt(rowSql("out_link_count", other->idt())), -1);
}

// --- instance updates ---

TEST_F(QuillmerePageTest, UpdatePageTitleWritesTheRowAndTheRecord)
{
    auto page = makePage(QStringLiteral("http://example.com/a"), 1, QStringLiteral(""));
    ASSERT_TRUE(page);
    page->updatePageTitle(QString::fromUtf8("Accueil — été"));
    EXPECT_EQ(page->title(), QString::fromUtf8("Accueil — été"));
    EXPECT_EQ(queryText(rowSql("title", page->idt())), QString::fromUtf8("Accueil — été"));
}

TEST_F(QuillmerePageTest, AnUpdateThatDoesNotFinishLeavesTheRecordUnchanged)
{
    auto page = makePage(QStringLiteral("http://example.com/a"), 1, QStringLiteral("Old"));
    ASSERT_TRUE(page);
    TraceCapture trace;
    // A null title breaks the not-null constraint.
    page->updatePageTitle(QString());
    EXPECT_EQ(page->title(), QStringLiteral("Old"));
    EXPECT_EQ(queryText(rowSql("title", page->idt())), QStringLiteral("Old"));

    exec("create trigger refuse before update on Page begin select raise(abort,'refused'); end");
    page->incInLinkCount();
    page->incOutLinkCount();
    page->updateIsCanonical(true);
    page->updateIsNoIndex(true);
    page->updateIsNoFollow(true);
    page->updatePageTitle(QStringLiteral("New"));
    EXPECT_EQ(page->inLinkCount(), 0);
    EXPECT_EQ(page->outLinkCount(), 0);
    EXPECT_EQ(page->title(), QStringLiteral("Old"));
    EXPECT_EQ(queryInt(rowSql("is_canonical", page->idt())), 0);
    EXPECT_TRUE(trace.lines().empty());
}

TEST_F(QuillmerePageTest, IncInLinkCountWritesTheCachedValuePlusOne)
{
    auto page = makePage(QStringLiteral("http://example.com/a"));
    ASSERT_TRUE(page);
    page->incInLinkCount();
    page->incInLinkCount();
    page->incInLinkCount();
    EXPECT_EQ(page->inLinkCount(), 3);
    EXPECT_EQ(queryInt(rowSql("in_link_count", page->idt())), 3);

    // Two fresh records of the same row each write their own value + 1: one increment is lost.
    auto first = QuillmerePage::getPageFromIdentifier(page->idt(), project);
    auto second = QuillmerePage::getPageFromIdentifier(page->idt(), project);
    first->incInLinkCount();
    second->incInLinkCount();
    EXPECT_EQ(queryInt(rowSql("in_link_count", page->idt())), 4);

    // The row's value is overwritten, not incremented.
    exec("update Page set in_link_count=50 where idt=" + std::to_string(page->idt()));
    page->incInLinkCount();
    EXPECT_EQ(queryInt(rowSql("in_link_count", page->idt())), 4);
    EXPECT_EQ(page->inLinkCount(), 4);
}

TEST_F(QuillmerePageTest, IncOutLinkCountWritesTheCachedValuePlusOne)
{
    auto page = makePage(QStringLiteral("http://example.com/a"));
    auto other = makePage(QStringLiteral("http://example.com/b"));
    ASSERT_TRUE(page && other);
    page->incOutLinkCount();
    page->incOutLinkCount();
    EXPECT_EQ(page->outLinkCount(), 2);
    EXPECT_EQ(queryInt(rowSql("out_link_count", page->idt())), 2);
    EXPECT_EQ(queryInt(rowSql("out_link_count", other->idt())), 0);
    EXPECT_EQ(queryInt(rowSql("in_link_count", page->idt())), 0);
    exec("update Page set out_link_count=40 where idt=" + std::to_string(page->idt()));
    page->incOutLinkCount();
    EXPECT_EQ(queryInt(rowSql("out_link_count", page->idt())), 3);
}

TEST_F(QuillmerePageTest, UpdateIsCanonicalWritesTheFlagAndBumpsOutLinkCountInMemory)
{
    auto page = makePage(QStringLiteral("http://example.com/a"));
    ASSERT_TRUE(page);
    page->updateIsCanonical(true);
    EXPECT_EQ(queryInt(rowSql("is_canonical", page->idt())), 1);
    EXPECT_EQ(page->isCanonical(), 0);
    EXPECT_EQ(page->outLinkCount(), 1);
    EXPECT_EQ(queryInt(rowSql("out_link_count", page->idt())), 0);
    // The next increment writes the larger value.
    page->incOutLinkCount();
    EXPECT_EQ(queryInt(rowSql("out_link_count", page->idt())), 2);
    page->updateIsCanonical(false);
    EXPECT_EQ(queryInt(rowSql("is_canonical", page->idt())), 0);
    EXPECT_EQ(page->outLinkCount(), 3);
}

TEST_F(QuillmerePageTest, UpdateIsNoIndexWritesTheFlagAndBumpsOutLinkCountInMemory)
{
    auto page = makePage(QStringLiteral("http://example.com/a"));
    ASSERT_TRUE(page);
    page->updateIsNoIndex(true);
    EXPECT_EQ(queryInt(rowSql("is_no_index", page->idt())), 1);
    EXPECT_EQ(queryInt(rowSql("is_no_follow", page->idt())), 0);
    EXPECT_EQ(queryInt(rowSql("is_canonical", page->idt())), 0);
    EXPECT_EQ(page->isNoIndex(), 0);
    EXPECT_EQ(page->outLinkCount(), 1);
    EXPECT_EQ(queryInt(rowSql("out_link_count", page->idt())), 0);
    page->updateIsNoIndex(false);
    EXPECT_EQ(queryInt(rowSql("is_no_index", page->idt())), 0);
    EXPECT_EQ(page->outLinkCount(), 2);
}

TEST_F(QuillmerePageTest, UpdateIsNoFollowWritesTheFlagAndBumpsOutLinkCountInMemory)
{
    auto page = makePage(QStringLiteral("http://example.com/a"));
    ASSERT_TRUE(page);
    page->updateIsNoFollow(true);
    EXPECT_EQ(queryInt(rowSql("is_no_follow", page->idt())), 1);
    EXPECT_EQ(queryInt(rowSql("is_no_index", page->idt())), 0);
    EXPECT_EQ(page->isNoFollow(), 0);
    EXPECT_EQ(page->outLinkCount(), 1);
    EXPECT_EQ(queryInt(rowSql("out_link_count", page->idt())), 0);
}

TEST_F(QuillmerePageTest, RemoveFromProjectDeletesOnlyThePageRow)
{
    auto source = makePage(QStringLiteral("http://example.com/s"));
    auto target = makePage(QStringLiteral("http://example.com/t"));
    ASSERT_TRUE(source && target);
    ASSERT_TRUE(QuillmereLink::createLinkWithPageSource(source, target, QStringLiteral("go"), 1, project));
    ASSERT_TRUE(QuillmereLink::createLinkWithPageSource(target, source, QStringLiteral("back"), 1, project));
    target->removeFromProject(project);
    EXPECT_FALSE(QuillmerePage::getPageFromIdentifier(target->idt(), project));
    EXPECT_TRUE(QuillmerePage::getPageFromIdentifier(source->idt(), project));
    EXPECT_EQ(queryInt("select count(*) from Links where idt_page=" + std::to_string(target->idt())), 1);
    EXPECT_EQ(queryInt("select count(*) from Links where idt_source=" + std::to_string(target->idt())), 1);
}

TEST_F(QuillmerePageTest, GetAllSourcePagesAnswersTheLinksToThisPageWithTheirSources)
{
    auto target = makePage(QStringLiteral("http://example.com/t"));
    auto s1 = makePage(QStringLiteral("http://example.com/s1"));
    auto s2 = makePage(QStringLiteral("http://example.com/s2"));
    ASSERT_TRUE(target && s1 && s2);
    ASSERT_TRUE(QuillmereLink::createLinkWithPageSource(s2, target, QStringLiteral("two"), 2, project));
    ASSERT_TRUE(QuillmereLink::createLinkWithPageSource(s1, target, QStringLiteral("one"), 1, project));
    ASSERT_TRUE(QuillmereLink::createLinkWithPageSource(target, s1, QStringLiteral("out"), 1, project));
    const auto pairs = target->getAllSourcePages();
    ASSERT_EQ(pairs.size(), 2);
    EXPECT_EQ(pairs[0]->quillmerePage()->idt(), s1->idt());
    EXPECT_EQ(pairs[0]->quillmereLink()->anchor(), QStringLiteral("one"));
    EXPECT_EQ(pairs[1]->quillmerePage()->idt(), s2->idt());
    EXPECT_EQ(pairs[1]->quillmereLink()->anchor(), QStringLiteral("two"));
    EXPECT_TRUE(s2->getAllSourcePages().isEmpty());
}

TEST_F(QuillmerePageTest, DescriptionPrintsTheFieldsAndNullForMissingStrings)
{
    auto page = makePage(QStringLiteral("http://example.com/a"), 3, QStringLiteral("A"));
    ASSERT_TRUE(page);
    EXPECT_EQ(page->description(),
              QStringLiteral("QuillmerePage (idt::1) (path::/dir) (page::doc.html) (title::A) (url::http://example.com/a) "
                             "(depth::3)"));
    QuillmerePage bare(7, QString(), QString(), QStringLiteral(""), QString(), 0, 0, 0, 0, 0, 2, 0.0, nullptr);
    EXPECT_EQ(bare.description(),
              QStringLiteral("QuillmerePage (idt::7) (path::(null)) (page::(null)) (title::) (url::(null)) (depth::2)"));
}

TEST_F(QuillmerePageTest, PageFromStatementReadsTheCurrentRow)
{
    auto page = makePage(QStringLiteral("http://example.com/a"), 6, QStringLiteral("A"));
    ASSERT_TRUE(page);
    sqlite3_stmt* stmt = nullptr;
    ASSERT_EQ(sqlite3_prepare_v2(db(),
                                 "select idt,path,page,title,url,is_no_index,is_no_follow,is_canonical,"
                                 "in_link_count,out_link_count,depth,weight from Page",
                                 -1, &stmt, nullptr),
              SQLITE_OK);
    ASSERT_EQ(sqlite3_step(stmt), SQLITE_ROW);
    auto read = QuillmerePage::pageFromStatement(stmt, project);
    sqlite3_finalize(stmt);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->idt(), page->idt());
    EXPECT_EQ(read->url(), page->url());
    EXPECT_EQ(read->depth(), 6);
    EXPECT_EQ(read->project().lock(), project);
}

// --- damaged databases ---

TEST_F(QuillmerePageTest, AFileThatIsNotADatabaseGivesNilEmptyAndZeroWithTraces)
{
    auto page = makePage(QStringLiteral("http://example.com/a"));
    ASSERT_TRUE(page);
    replaceDatabaseWithGarbage();
    TraceCapture trace;
    EXPECT_FALSE(makePage(QStringLiteral("http://example.com/b")));
    EXPECT_FALSE(QuillmerePage::getPageFromPath(QStringLiteral("/dir"), QStringLiteral("doc.html"), project));
    EXPECT_FALSE(QuillmerePage::getPageFromURL(QStringLiteral("http://example.com/a"), project));
    EXPECT_FALSE(QuillmerePage::getPageFromIdentifier(1, project));
    EXPECT_TRUE(QuillmerePage::getAllPagesForProject(project).isEmpty());
    EXPECT_TRUE(QuillmerePage::getPages404AllTypesMimeForProject(project).isEmpty());
    EXPECT_TRUE(QuillmerePage::getPages404OnlyHTMLForProject(project).isEmpty());
    EXPECT_TRUE(QuillmerePage::getPages404AllNotHTMLForProject(project).isEmpty());
    EXPECT_TRUE(QuillmerePage::getPagesNoIndexForProject(project).isEmpty());
    EXPECT_TRUE(QuillmerePage::getPagesCanonicalForProject(project).isEmpty());
    EXPECT_TRUE(QuillmerePage::getAllVacuumPagesForProject(project).isEmpty());
    EXPECT_EQ(QuillmerePage::countPagesForProject(project), 0);
    EXPECT_EQ(QuillmerePage::countVacuumPagesForProject(project), 0);
    QuillmerePage::performWeightForProject(project);
    QuillmerePage::decOutLinkCountWithPageIdentifier(1, project);
    page->updatePageTitle(QStringLiteral("New"));
    page->incInLinkCount();
    page->incOutLinkCount();
    page->updateIsNoIndex(true);
    page->updateIsNoFollow(true);
    page->updateIsCanonical(true);
    page->removeFromProject(project);
    EXPECT_TRUE(page->getAllSourcePages().isEmpty());
    EXPECT_EQ(page->title(), QStringLiteral("T"));
    EXPECT_EQ(page->inLinkCount(), 0);
    EXPECT_EQ(page->outLinkCount(), 0);

    for (const char* op :
         {"createPageWithPath", "getPageFromPath", "getPageFromURL", "getPageFromIdentifier", "getAllPagesForProject",
          "getPages404AllTypesMimeForProject", "getPages404OnlyHTMLForProject", "getPages404AllNotHTMLForProject",
          "getPagesNoIndexForProject", "getPagesCanonicalForProject", "getAllVacuumPagesForProject",
          "countPagesForProject", "countVacuumPagesForProject", "performWeightForProject",
          "decOutLinkCountWithPageIdentifier", "updatePageTitle", "incInLinkCount", "incOutLinkCount",
          "updateIsNoIndex", "updateIsNoFollow", "updateIsCanonical", "removeFromProject",
          "getSourcesLinksFromPage:forProject:"}) {
        EXPECT_TRUE(traced(trace, std::string(op) + " Error::file is not a database")) << op;
    }
}

TEST_F(QuillmerePageTest, AMissingPageTableGivesNilEmptyAndZeroWithTraces)
{
    replaceDatabaseWithTablesOnly({"DownloaderQueue", "LinkHeaders"});
    TraceCapture trace;
    EXPECT_FALSE(makePage(QStringLiteral("http://example.com/b")));
    EXPECT_FALSE(QuillmerePage::getPageFromURL(QStringLiteral("http://example.com/a"), project));
    EXPECT_TRUE(QuillmerePage::getAllPagesForProject(project).isEmpty());
    EXPECT_TRUE(QuillmerePage::getPages404AllTypesMimeForProject(project).isEmpty());
    EXPECT_EQ(QuillmerePage::countPagesForProject(project), 0);
    EXPECT_EQ(QuillmerePage::countVacuumPagesForProject(project), 0);
    QuillmerePage::performWeightForProject(project);
    EXPECT_TRUE(traced(trace, "createPageWithPath Error::no such table: Page"));
    EXPECT_TRUE(traced(trace, "getPageFromURL Error::no such table: Page"));
    EXPECT_TRUE(traced(trace, "getAllPagesForProject Error::no such table: Page"));
    EXPECT_TRUE(traced(trace, "getPages404AllTypesMimeForProject Error::no such table: Page"));
    EXPECT_TRUE(traced(trace, "countPagesForProject Error::no such table: Page"));
    EXPECT_TRUE(traced(trace, "countVacuumPagesForProject Error::no such table: Page"));
    EXPECT_TRUE(traced(trace, "performWeightForProject Error::no such table: Page"));
}

TEST_F(QuillmerePageTest, AMissingLinkHeadersTableOnlyBreaksTheJoinedLists)
{
    replaceDatabaseWithTablesOnly({"Page", "Links", "DownloaderQueue"});
    auto page = makePage(QStringLiteral("http://example.com/a"), 1, Localization::localizedString("Error404"));
    ASSERT_TRUE(page);
    TraceCapture trace;
    EXPECT_EQ(ids(QuillmerePage::getPages404AllTypesMimeForProject(project)), (QList<qint64>{page->idt()}));
    EXPECT_TRUE(QuillmerePage::getAllPagesForProject(project).isEmpty());
    EXPECT_TRUE(QuillmerePage::getPages404OnlyHTMLForProject(project).isEmpty());
    EXPECT_TRUE(QuillmerePage::getAllVacuumPagesForProject(project).isEmpty());
    EXPECT_TRUE(traced(trace, "getAllPagesForProject Error::no such table: LinkHeaders"));
    EXPECT_TRUE(traced(trace, "getPages404OnlyHTMLForProject Error::no such table: LinkHeaders"));
    EXPECT_TRUE(traced(trace, "getAllVacuumPagesForProject Error::no such table: LinkHeaders"));
}

TEST_F(QuillmerePageTest, ANullHandleFailsEveryOperationWithItsTrace)
{
    auto page = makePage(QStringLiteral("http://example.com/a"));
    ASSERT_TRUE(page);
    useNullHandle();
    TraceCapture trace;
    EXPECT_FALSE(makePage(QStringLiteral("http://example.com/b")));
    EXPECT_FALSE(QuillmerePage::getPageFromIdentifier(1, project));
    EXPECT_TRUE(QuillmerePage::getPagesNoIndexForProject(project).isEmpty());
    EXPECT_EQ(QuillmerePage::countPagesForProject(project), 0);
    page->incInLinkCount();
    EXPECT_EQ(page->inLinkCount(), 0);
    EXPECT_TRUE(traced(trace, "createPageWithPath Error::"));
    EXPECT_TRUE(traced(trace, "getPageFromIdentifier Error::"));
    EXPECT_TRUE(traced(trace, "getPagesNoIndexForProject Error::"));
    EXPECT_TRUE(traced(trace, "countPagesForProject Error::"));
    EXPECT_TRUE(traced(trace, "incInLinkCount Error::"));
}

TEST_F(QuillmerePageTest, ARecordWhoseProjectIsGoneFailsItsUpdatesWithTraces)
{
    auto page = makePage(QStringLiteral("http://example.com/a"));
    ASSERT_TRUE(page);
    auto orphan = std::make_shared<QuillmerePage>(page->idt(), page->path(), page->page(), page->title(), page->url(),
                                                  0, 0, 0, 0, 0, 1, 0.0, std::make_shared<Project>());
    EXPECT_TRUE(orphan->project().expired());
    TraceCapture trace;
    orphan->incOutLinkCount();
    orphan->updateIsCanonical(true);
    orphan->updatePageTitle(QStringLiteral("New"));
    EXPECT_EQ(orphan->outLinkCount(), 0);
    EXPECT_EQ(orphan->title(), QStringLiteral("T"));
    EXPECT_TRUE(orphan->getAllSourcePages().isEmpty());
    EXPECT_EQ(queryInt(rowSql("out_link_count", page->idt())), 0);
    EXPECT_TRUE(traced(trace, "incOutLinkCount Error::"));
    EXPECT_TRUE(traced(trace, "updateIsCanonical Error::"));
    EXPECT_TRUE(traced(trace, "updatePageTitle Error::"));
}

} // namespace
