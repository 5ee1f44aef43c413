#include "store/QuillmereLink.h"
#include "store/QuillmereLinkPage.h"
#include "store/QuillmerePage.h"

#include "QuillmereRecordsTestSupport.h"

namespace {

class QuillmereLinkPageTest : public RecordsFixture {
protected:
    QuillmerePagePtr makePage(const QString& name, qint32 depth = 1)
    {
        return QuillmerePage::createPageWithPath(QStringLiteral("/d"), name, QStringLiteral("Title ") + name,
                                                 QStringLiteral("http://example.com/d/") + name, depth, project);
    }
};

TEST_F(QuillmereLinkPageTest, PairsComeBackSortedByCounterWithTheirSourcePages)
{
    auto target = makePage(QStringLiteral("t"));
    auto a = makePage(QStringLiteral("a"), 2);
    auto b = makePage(QStringLiteral("b"), 3);
    auto c = makePage(QStringLiteral("c"), 4);
    ASSERT_TRUE(target && a && b && c);
    ASSERT_TRUE(QuillmereLink::createLinkWithPageSource(a, target, QStringLiteral("third"), 30, project));
    ASSERT_TRUE(QuillmereLink::createLinkWithPageSource(b, target, QStringLiteral("first"), 10, project));
    ASSERT_TRUE(QuillmereLink::createLinkWithPageSource(c, target, QStringLiteral("second"), 20, project));
    ASSERT_TRUE(QuillmereLink::createLinkWithPageSource(target, a, QStringLiteral("elsewhere"), 1, project));

    const auto pairs = QuillmereLinkPage::getSourcesLinksFromPage(target, project);
    ASSERT_EQ(pairs.size(), 3);
    EXPECT_EQ(pairs[0]->quillmereLink()->anchor(), QStringLiteral("first"));
    EXPECT_EQ(pairs[1]->quillmereLink()->anchor(), QStringLiteral("second"));
    EXPECT_EQ(pairs[2]->quillmereLink()->anchor(), QStringLiteral("third"));
    EXPECT_EQ(pairs[0]->quillmereLink()->counter(), 10);
    EXPECT_EQ(pairs[0]->quillmereLink()->idt_page(), target->idt());
    EXPECT_EQ(pairs[0]->quillmereLink()->idt_source(), b->idt());
    EXPECT_EQ(pairs[0]->quillmereLink()->project().lock(), project);
    EXPECT_EQ(pairs[0]->quillmerePage()->idt(), b->idt());
    EXPECT_EQ(pairs[1]->quillmerePage()->idt(), c->idt());
    EXPECT_EQ(pairs[2]->quillmerePage()->idt(), a->idt());
}

TEST_F(QuillmereLinkPageTest, TheSourcePageIsReadFromTheJoinedRow)
{
    auto target = makePage(QStringLiteral("t"));
    auto source = makePage(QStringLiteral("s"), 5);
    ASSERT_TRUE(target && source);
    ASSERT_TRUE(QuillmereLink::createLinkWithPageSource(source, target, QStringLiteral("go"), 1, project));
    exec("update Page set is_no_index=1,is_no_follow=0,is_canonical=1,in_link_count=11,out_link_count=12,"
         "weight=2.5 where idt=" + std::to_string(source->idt()));

    const auto pairs = QuillmereLinkPage::getSourcesLinksFromPage(target, project);
    ASSERT_EQ(pairs.size(), 1);
    auto page = pairs[0]->quillmerePage();
    ASSERT_TRUE(page);
    EXPECT_EQ(page->idt(), source->idt());
    EXPECT_EQ(page->path(), QStringLiteral("/d"));
    EXPECT_EQ(page->page(), QStringLiteral("s"));
    EXPECT_EQ(page->title(), QStringLiteral("Title s"));
    EXPECT_EQ(page->url(), QStringLiteral("http://example.com/d/s"));
    EXPECT_EQ(page->isNoIndex(), 1);
    EXPECT_EQ(page->isNoFollow(), 0);
    EXPECT_EQ(page->isCanonical(), 1);
    EXPECT_EQ(page->inLinkCount(), 11);
    EXPECT_EQ(page->outLinkCount(), 12);
    EXPECT_EQ(page->depth(), 5);
    EXPECT_DOUBLE_EQ(page->weight(), 2.5);
    EXPECT_EQ(page->project().lock(), project);
    // The pair's link has no cached pages: its page is looked up (the source, again).
    auto link = pairs[0]->quillmereLink();
    EXPECT_FALSE(link->cachedPage());
    ASSERT_TRUE(link->page());
    EXPECT_EQ(link->page()->idt(), source->idt());
}

TEST_F(QuillmereLinkPageTest, ALinkWhoseSourceRowIsGoneIsLeftOutButStillAPlainLink)
{
    auto target = makePage(QStringLiteral("t"));
    auto kept = makePage(QStringLiteral("k"));
    auto gone = makePage(QStringLiteral("g"));
    ASSERT_TRUE(target && kept && gone);
    ASSERT_TRUE(QuillmereLink::createLinkWithPageSource(kept, target, QStringLiteral("kept"), 1, project));
    ASSERT_TRUE(QuillmereLink::createLinkWithPageSource(gone, target, QStringLiteral("gone"), 2, project));
    gone->removeFromProject(project);

    const auto pairs = QuillmereLinkPage::getSourcesLinksFromPage(target, project);
    ASSERT_EQ(pairs.size(), 1);
    EXPECT_EQ(pairs[0]->quillmereLink()->anchor(), QStringLiteral("kept"));
    EXPECT_EQ(QuillmereLink::getSourcesLinksFromPage(target, project).size(), 2);
}

TEST_F(QuillmereLinkPageTest, EmptyForAPageThatNothingLinksTo)
{
    auto target = makePage(QStringLiteral("t"));
    ASSERT_TRUE(target);
    TraceCapture trace;
    EXPECT_TRUE(QuillmereLinkPage::getSourcesLinksFromPage(target, project).isEmpty());
    EXPECT_TRUE(QuillmereLinkPage::getSourcesLinksFromPage(*target, project).isEmpty());
    EXPECT_TRUE(QuillmereLinkPage::getSourcesLinksFromPage(QuillmerePagePtr(), project).isEmpty());
    EXPECT_TRUE(trace.lines().empty());
}

TEST_F(QuillmereLinkPageTest, TheRecordAndReferenceFormsAgree)
{
    auto target = makePage(QStringLiteral("t"));
    auto source = makePage(QStringLiteral("s"));
    ASSERT_TRUE(target && source);
    ASSERT_TRUE(QuillmereLink::createLinkWithPageSource(source, target, QStringLiteral("x"), 1, project));
    const auto byPointer = QuillmereLinkPage::getSourcesLinksFromPage(target, project);
    const auto byReference = QuillmereLinkPage::getSourcesLinksFromPage(*target, project);
    ASSERT_EQ(byPointer.size(), 1);
    ASSERT_EQ(byReference.size(), 1);
    EXPECT_EQ(byPointer[0]->quillmerePage()->idt(), byReference[0]->quillmerePage()->idt());
}

TEST_F(QuillmereLinkPageTest, StatementReadersUseTheJoinedColumns)
{
    exec("insert into Page(idt,path,page,title,url,is_no_index,is_no_follow,is_canonical,in_link_count,"
         "out_link_count,depth,weight) values(8,'/p','n','t','u',1,1,1,2,3,4,0.5)");
    exec("insert into Links(idt_page,idt_source,anchor,counter) values(99,8,'anc',6)");
    sqlite3_stmt* stmt = nullptr;
    ASSERT_EQ(sqlite3_prepare_v2(db(),
                                 "select L.idt_page,L.idt_source,L.anchor,L.counter,P.path,P.page,P.title,P.url,"
                                 "P.is_no_index,P.is_no_follow,P.is_canonical,P.in_link_count,P.out_link_count,"
                                 "P.depth,P.weight from Links L,Page P where L.idt_source = P.idt",
                                 -1, &stmt, nullptr),
              SQLITE_OK);
    ASSERT_EQ(sqlite3_step(stmt), SQLITE_ROW);
    auto link = QuillmereLinkPage::linkFromStatement(stmt, project);
    auto page = QuillmereLinkPage::pageFromStatement(stmt, project);
    sqlite3_finalize(stmt);
    ASSERT_TRUE(link && page);
    EXPECT_EQ(link->idt_page(), 99);
    EXPECT_EQ(link->idt_source(), 8);
    EXPECT_EQ(link->anchor(), QStringLiteral("anc"));
    EXPECT_EQ(link->counter(), 6);
    EXPECT_EQ(page->idt(), 8);
    EXPECT_EQ(page->path(), QStringLiteral("/p"));
    EXPECT_EQ(page->url(), QStringLiteral("u"));
    EXPECT_EQ(page->isNoFollow(), 1);
    EXPECT_EQ(page->outLinkCount(), 3);
    EXPECT_EQ(page->depth(), 4);
    EXPECT_DOUBLE_EQ(page->weight(), 0.5);
}

TEST_F(QuillmereLinkPageTest, AMissingTableOrBadFileGivesAnEmptyListWithItsTrace)
{
    auto target = makePage(QStringLiteral("t"));
    ASSERT_TRUE(target);
    replaceDatabaseWithTablesOnly({"Page"});
    {
        TraceCapture trace;
        EXPECT_TRUE(QuillmereLinkPage::getSourcesLinksFromPage(target, project).isEmpty());
        EXPECT_TRUE(traced(trace, "getSourcesLinksFromPage:forProject: Error::no such table: Links"));
    }
    replaceDatabaseWithGarbage();
    {
        TraceCapture trace;
        EXPECT_TRUE(QuillmereLinkPage::getSourcesLinksFromPage(target, project).isEmpty());
        EXPECT_TRUE(traced(trace, "getSourcesLinksFromPage:forProject: Error::file is not a database"));
    }
    useNullHandle();
    {
        TraceCapture trace;
        EXPECT_TRUE(QuillmereLinkPage::getSourcesLinksFromPage(target, project).isEmpty());
        EXPECT_TRUE(traced(trace, "getSourcesLinksFromPage:forProject: Error::"));
    }
}

} // namespace
