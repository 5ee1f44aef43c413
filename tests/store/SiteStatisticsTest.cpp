// The counts the window's charts draw and the tree its crawl map draws, read from a crawl
// database written through the records.
#include "store/FetchLog.h"
#include "store/PageDetails.h"
#include "store/QuillmereLink.h"
#include "store/QuillmerePage.h"
#include "store/SiteStatistics.h"
#include "store/SiteTree.h"

#include "QuillmereRecordsTestSupport.h"

namespace {

FetchOutcome outcome(const QString& url, int status, qint64 ms, FetchOutcome::Failure failure = FetchOutcome::Failure::None)
{
    FetchOutcome o;
    o.requestedURL = url;
    o.finalURL = url;
    o.status = status;
    o.failure = failure;
    o.responseMs = ms;
    o.fetchedAt = QDateTime(QDate(2024, 5, 6), QTime(7, 8, 9, 10), Qt::UTC);
    return o;
}

class SiteStatisticsTest : public RecordsFixture {
protected:
    QuillmerePagePtr page(const QString& name, qint32 depth)
    {
        const QString url = QStringLiteral("http://example.com/") + name;
        return QuillmerePage::createPageWithPath("/", name, name, url, depth, project);
    }
    void link(const QuillmerePagePtr& source, const QuillmerePagePtr& target, const QString& anchor)
    {
        ASSERT_TRUE(QuillmereLink::createLinkWithPageSource(source, target, anchor, 1, project));
    }
    void fetched(const QuillmerePagePtr& p, int status, qint64 ms, FetchOutcome::Failure failure = FetchOutcome::Failure::None)
    {
        ASSERT_TRUE(FetchLog::recordFetch(outcome(p->url(), status, ms, failure), project));
    }
};

TEST_F(SiteStatisticsTest, CountsByDepthCodeAndTimeClass)
{
    const auto home = page("", 0);
    const auto a = page("a", 1);
    const auto b = page("b", 1);
    const auto c = page("c", 2);
    const auto d = page("d", 2);
    const auto e = page("e", 2);
    page("never", 3);  // known from a link only
    fetched(home, 200, 5);
    fetched(a, 200, 120);
    fetched(b, 404, 260);
    fetched(c, 0, 2500, FetchOutcome::Failure::TimedOut);
    fetched(d, 0, -1, FetchOutcome::Failure::Refused);
    fetched(e, 503, 1000);
    // A fetch of a URL that is no page (robots.txt) is not counted.
    ASSERT_TRUE(FetchLog::recordFetch(outcome("http://example.com/robots.txt", 200, 3), project));

    const SiteStatistics s = SiteStatistics::read(project);
    EXPECT_EQ(s.pagesByDepth(), (QList<SiteStatistics::Count>{{"0", 1}, {"1", 2}, {"2", 3}, {"3", 1}}));
    EXPECT_EQ(s.responseCodes(),
              (QList<SiteStatistics::Count>{{"200", 2}, {"404", 1}, {"503", 1}, {"refused", 1}, {"timeout", 1}}));
    EXPECT_EQ(SiteStatistics::responseTimeBounds(), (QList<qint64>{100, 250, 500, 1000, 2000}));
    EXPECT_EQ(s.responseTimes(), (QList<qint64>{1, 1, 1, 0, 1, 1}));
}

TEST_F(SiteStatisticsTest, TheTreeTakesTheFirstLinkFromOneLevelUp)
{
    const auto home = page("", 0);
    const auto a = page("a", 1);
    const auto b = page("b", 1);
    const auto c = page("c", 2);
    const auto orphan = page("orphan", 2);
    link(home, a, "A");
    link(home, b, "B");
    link(c, b, "B from C");    // deeper: not a parent
    link(b, c, "C from B");    // first from depth 1
    link(a, c, "C from A");
    link(c, orphan, "same level");
    fetched(home, 200, 1);
    fetched(b, 301, 1);

    const SiteTree tree = SiteTree::read(project);
    ASSERT_EQ(tree.nodes().size(), 5);
    auto node = [&](const QuillmerePagePtr& p) { return tree.nodes().at(tree.indexOf(p->idt())); };
    EXPECT_EQ(node(a).parentIdt, home->idt());
    EXPECT_EQ(node(b).parentIdt, home->idt());
    EXPECT_EQ(node(c).parentIdt, b->idt());
    EXPECT_EQ(node(orphan).parentIdt, -1);
    EXPECT_EQ(tree.roots(), (QList<int>{tree.indexOf(home->idt()), tree.indexOf(orphan->idt())}));
    EXPECT_EQ(node(home).children, (QList<int>{tree.indexOf(a->idt()), tree.indexOf(b->idt())}));
    EXPECT_TRUE(node(b).fetched);
    EXPECT_EQ(node(b).status, 301);
    EXPECT_FALSE(node(c).fetched);
    EXPECT_EQ(tree.indexOf(9999), -1);
}

TEST_F(SiteStatisticsTest, OutgoingLinksInRecordedOrderWithTheirTargetsFetch)
{
    const auto home = page("", 0);
    const auto a = page("a", 1);
    const auto b = page("b", 1);
    const auto gone = page("gone", 1);
    link(home, b, "Bravo");
    link(home, a, "Alpha");
    link(home, gone, "Parti");
    link(a, home, "Retour");
    fetched(b, 404, 7);
    gone->removeFromProject(project);

    const auto links = PageDetails::outgoingLinks(*home, project);
    ASSERT_EQ(links.size(), 2);
    EXPECT_EQ(links.at(0).anchor, "Bravo");
    EXPECT_EQ(links.at(0).target->url(), b->url());
    ASSERT_TRUE(links.at(0).fetch);
    EXPECT_EQ(links.at(0).fetch->status(), 404);
    EXPECT_EQ(links.at(1).anchor, "Alpha");
    EXPECT_FALSE(links.at(1).fetch);
    EXPECT_EQ(PageDetails::fetchOf(*b, project)->responseMs(), 7);
    EXPECT_FALSE(PageDetails::fetchOf(*a, project));
}

} // namespace
