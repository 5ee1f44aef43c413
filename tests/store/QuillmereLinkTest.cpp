#include "store/QuillmereLink.h"
#include "store/QuillmerePage.h"

#include "QuillmereRecordsTestSupport.h"

namespace {

class QuillmereLinkTest : public RecordsFixture {
protected:
    void SetUp() override
    {
        RecordsFixture::SetUp();
        source = QuillmerePage::createPageWithPath(QStringLiteral("/"), QStringLiteral("source.html"),
                                                   QStringLiteral("Source"), QStringLiteral("http://example.com/source.html"),
                                                   1, project);
        target = QuillmerePage::createPageWithPath(QStringLiteral("/"), QStringLiteral("target.html"), QStringLiteral(""),
                                                   QStringLiteral("http://example.com/target.html"), 2, project);
        ASSERT_TRUE(source && target);
        ASSERT_NE(source->idt(), target->idt());
    }

    QuillmerePagePtr source;
    QuillmerePagePtr target;
};

TEST_F(QuillmereLinkTest, CreateWritesTheTargetFirstAndKeepsBothPages)
{
    auto link = QuillmereLink::createLinkWithPageSource(source, target, QStringLiteral("Read more"), 7, project);
    ASSERT_TRUE(link);
    EXPECT_EQ(link->idt_page(), target->idt());
    EXPECT_EQ(link->idt_source(), source->idt());
    EXPECT_EQ(link->anchor(), QStringLiteral("Read more"));
    EXPECT_EQ(link->counter(), 7);
    EXPECT_EQ(link->project().lock(), project);
    EXPECT_EQ(link->cachedPage(), target);
    EXPECT_EQ(link->cachedPageSource(), source);
    EXPECT_EQ(link->page(), target);
    EXPECT_EQ(link->pageSource(), source);

    EXPECT_EQ(queryInt("select count(*) from Links"), 1);
    EXPECT_EQ(queryInt("select idt_page from Links"), target->idt());
    EXPECT_EQ(queryInt("select idt_source from Links"), source->idt());
    EXPECT_EQ(queryText("select anchor from Links"), QStringLiteral("Read more"));
    EXPECT_EQ(queryInt("select counter from Links"), 7);
}

TEST_F(QuillmereLinkTest, ANullAnchorIsStoredAsNullAndReadBackAsNull)
{
    auto link = QuillmereLink::createLinkWithPageSource(source, target, QString(), 1, project);
    ASSERT_TRUE(link);
    EXPECT_TRUE(link->anchor().isNull());
    EXPECT_EQ(queryInt("select count(*) from Links where anchor is null"), 1);
    auto empty = QuillmereLink::createLinkWithPageSource(source, target, QStringLiteral(""), 2, project);
    ASSERT_TRUE(empty);
    const auto links = QuillmereLink::getSourcesLinksFromPage(target, project);
    ASSERT_EQ(links.size(), 2);
    for (const auto& l : links) {
        if (l->counter() == 1) {
            EXPECT_TRUE(l->anchor().isNull());
        } else {
            EXPECT_FALSE(l->anchor().isNull());
            EXPECT_TRUE(l->anchor().isEmpty());
        }
    }
}

TEST_F(QuillmereLinkTest, GetSourcesLinksAnswersTheLinksThatPointToThePageWithoutCachedPages)
{
    auto other = QuillmerePage::createPageWithPath(QStringLiteral("/"), QStringLiteral("other.html"), QStringLiteral("O"),
                                                   QStringLiteral("http://example.com/other.html"), 1, project);
    ASSERT_TRUE(other);
    ASSERT_TRUE(QuillmereLink::createLinkWithPageSource(source, target, QStringLiteral("a"), 1, project));
    ASSERT_TRUE(QuillmereLink::createLinkWithPageSource(other, target, QStringLiteral("b"), 2, project));
    ASSERT_TRUE(QuillmereLink::createLinkWithPageSource(target, source, QStringLiteral("back"), 1, project));

    const auto links = QuillmereLink::getSourcesLinksFromPage(target, project);
    ASSERT_EQ(links.size(), 2);
    QList<qint64> sources;
    for (const auto& l : links) {
        EXPECT_EQ(l->idt_page(), target->idt());
        EXPECT_FALSE(l->cachedPage());
        EXPECT_FALSE(l->cachedPageSource());
        EXPECT_EQ(l->project().lock(), project);
        sources.append(l->idt_source());
    }
    std::sort(sources.begin(), sources.end());
    EXPECT_EQ(sources, (QList<qint64>{source->idt(), other->idt()}));
    EXPECT_TRUE(QuillmereLink::getSourcesLinksFromPage(other, project).isEmpty());
}

TEST_F(QuillmereLinkTest, PageOfALinkReadFromTheDatabaseIsItsSourcePage)
{
    ASSERT_TRUE(QuillmereLink::createLinkWithPageSource(source, target, QStringLiteral("a"), 1, project));
    const auto links = QuillmereLink::getSourcesLinksFromPage(target, project);
    ASSERT_EQ(links.size(), 1);
    auto link = links.first();
    auto page = link->page();
    ASSERT_TRUE(page);
    EXPECT_EQ(page->idt(), source->idt());
    EXPECT_EQ(page->title(), QStringLiteral("Source"));
    EXPECT_EQ(link->cachedPage(), page);
    auto pageSource = link->pageSource();
    ASSERT_TRUE(pageSource);
    EXPECT_EQ(pageSource->idt(), source->idt());
    EXPECT_EQ(link->cachedPageSource(), pageSource);

    // Both answers are cached: they survive the row.
    source->removeFromProject(project);
    EXPECT_EQ(link->page(), page);
    EXPECT_EQ(link->pageSource(), pageSource);
}

TEST_F(QuillmereLinkTest, PageOfALinkWhoseSourceIsGoneIsNil)
{
    ASSERT_TRUE(QuillmereLink::createLinkWithPageSource(source, target, QStringLiteral("a"), 1, project));
    source->removeFromProject(project);
    const auto links = QuillmereLink::getSourcesLinksFromPage(target, project);
    ASSERT_EQ(links.size(), 1);
    EXPECT_FALSE(links.first()->page());
    EXPECT_FALSE(links.first()->pageSource());
}

TEST_F(QuillmereLinkTest, RemoveAllLinksWithTargetDeletesOnlyThatTargetsRows)
{
    ASSERT_TRUE(QuillmereLink::createLinkWithPageSource(source, target, QStringLiteral("a"), 1, project));
    ASSERT_TRUE(QuillmereLink::createLinkWithPageSource(source, target, QStringLiteral("b"), 2, project));
    ASSERT_TRUE(QuillmereLink::createLinkWithPageSource(target, source, QStringLiteral("c"), 1, project));
    QuillmereLink::removeAllLinksWithTarget(target, project);
    EXPECT_TRUE(QuillmereLink::getSourcesLinksFromPage(target, project).isEmpty());
    EXPECT_EQ(QuillmereLink::getSourcesLinksFromPage(source, project).size(), 1);
    EXPECT_EQ(queryInt("select count(*) from Links"), 1);
    // The pages themselves stay.
    EXPECT_TRUE(QuillmerePage::getPageFromIdentifier(target->idt(), project));
}

TEST_F(QuillmereLinkTest, ANilPageBindsIdentifierZero)
{
    auto link = QuillmereLink::createLinkWithPageSource(nullptr, target, QStringLiteral("a"), 1, project);
    ASSERT_TRUE(link);
    EXPECT_EQ(link->idt_source(), 0);
    EXPECT_FALSE(link->cachedPageSource());
    EXPECT_EQ(queryInt("select idt_source from Links"), 0);
    EXPECT_TRUE(QuillmereLink::getSourcesLinksFromPage(nullptr, project).isEmpty());
}

TEST_F(QuillmereLinkTest, LinkFromStatementReadsColumnsZeroToThree)
{
    exec("insert into Links(idt_page,idt_source,anchor,counter) values(4294967300,9,'x',-3)");
    sqlite3_stmt* stmt = nullptr;
    ASSERT_EQ(sqlite3_prepare_v2(db(), "select idt_page,idt_source,anchor,counter from Links", -1, &stmt, nullptr),
              SQLITE_OK);
    ASSERT_EQ(sqlite3_step(stmt), SQLITE_ROW);
    auto link = QuillmereLink::linkFromStatement(stmt, project);
    sqlite3_finalize(stmt);
    ASSERT_TRUE(link);
    EXPECT_EQ(link->idt_page(), 4); // read as a 32-bit integer
    EXPECT_EQ(link->idt_source(), 9);
    EXPECT_EQ(link->anchor(), QStringLiteral("x"));
    EXPECT_EQ(link->counter(), -3);
}

TEST_F(QuillmereLinkTest, DescriptionPrintsTheFields)
{
    QuillmereLink link(3, 5, QStringLiteral("Home"), 2, project);
    EXPECT_EQ(link.description(), QStringLiteral("QuillmereLink (idt_page::3) (idt_source::5) (anchor::Home) (counter::2)"));
    QuillmereLink bare(1, 2, QString(), 0, nullptr);
    EXPECT_EQ(bare.description(), QStringLiteral("QuillmereLink (idt_page::1) (idt_source::2) (anchor::(null)) (counter::0)"));
}

TEST_F(QuillmereLinkTest, AMissingLinksTableGivesNilAndEmptyWithTraces)
{
    replaceDatabaseWithTablesOnly({"Page", "DownloaderQueue", "LinkHeaders"});
    auto s = QuillmerePage::createPageWithPath(QStringLiteral("/"), QStringLiteral("s"), QStringLiteral("S"),
                                               QStringLiteral("http://example.com/s"), 1, project);
    auto t = QuillmerePage::createPageWithPath(QStringLiteral("/"), QStringLiteral("t"), QStringLiteral("T"),
                                               QStringLiteral("http://example.com/t"), 1, project);
    ASSERT_TRUE(s && t);
    TraceCapture trace;
    EXPECT_FALSE(QuillmereLink::createLinkWithPageSource(s, t, QStringLiteral("a"), 1, project));
    EXPECT_TRUE(QuillmereLink::getSourcesLinksFromPage(t, project).isEmpty());
    QuillmereLink::removeAllLinksWithTarget(t, project);
    EXPECT_TRUE(traced(trace, "createLinkWithPageSource Error::no such table: Links"));
    EXPECT_TRUE(traced(trace, "getSourcesLinksFromPage:withStartLimit:endLimit:forProject: Error::no such table: Links"));
    EXPECT_TRUE(traced(trace, "removeAllLinksWithTarget Error::no such table: Links"));
}

TEST_F(QuillmereLinkTest, AFileThatIsNotADatabaseGivesNilAndEmptyWithTraces)
{
    auto link = QuillmereLink::createLinkWithPageSource(source, target, QStringLiteral("a"), 1, project);
    ASSERT_TRUE(link);
    link->setCachedPage(nullptr);
    replaceDatabaseWithGarbage();
    TraceCapture trace;
    EXPECT_FALSE(QuillmereLink::createLinkWithPageSource(source, target, QStringLiteral("b"), 2, project));
    EXPECT_TRUE(QuillmereLink::getSourcesLinksFromPage(target, project).isEmpty());
    QuillmereLink::removeAllLinksWithTarget(target, project);
    EXPECT_FALSE(link->page());
    EXPECT_TRUE(traced(trace, "createLinkWithPageSource Error::file is not a database"));
    EXPECT_TRUE(traced(trace, "getSourcesLinksFromPage:withStartLimit:endLimit:forProject: Error::file is not a database"));
    EXPECT_TRUE(traced(trace, "removeAllLinksWithTarget Error::file is not a database"));
    EXPECT_TRUE(traced(trace, "getPageFromIdentifier Error::file is not a database"));
}

TEST_F(QuillmereLinkTest, ANullHandleGivesNilWithATrace)
{
    useNullHandle();
    TraceCapture trace;
    EXPECT_FALSE(QuillmereLink::createLinkWithPageSource(source, target, QStringLiteral("a"), 1, project));
    EXPECT_TRUE(QuillmereLink::getSourcesLinksFromPage(target, project).isEmpty());
    EXPECT_TRUE(traced(trace, "createLinkWithPageSource Error::"));
    EXPECT_TRUE(traced(trace, "getSourcesLinksFromPage:withStartLimit:endLimit:forProject: Error::"));
}

} // namespace
