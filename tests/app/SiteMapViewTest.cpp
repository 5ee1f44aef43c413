// The crawl map: one item per page laid out as the shortest-path tree, coloured by status and
// sized by links received; the page selected in the documents list is ringed, a click on a
// page selects it in the list, the wheel zooms and a drag pans.
#include "PicturesTestSupport.h"

#include "app/PagePanel.h"
#include "app/SiteMapView.h"
#include "app/SplitView.h"
#include "store/SiteTree.h"

#include <QGraphicsEllipseItem>
#include <QGraphicsScene>
#include <QLabel>
#include <QScrollBar>
#include <QTabBar>
#include <QWheelEvent>

#include <sqlite3.h>

#include <algorithm>

using namespace apptest;

namespace {

class SiteMapViewTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        s = std::make_unique<CrawledPicturesSite>();
        ASSERT_TRUE(s->site.started);
        ASSERT_TRUE(s->crawled);
        map = s->tabs()->siteMap();
        QTabBar* bar = s->tabs()->tabBar();
        QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, bar->tabRect(PreviewTabs::MapTab).center());
        ASSERT_EQ(s->tabs()->currentWidget(), static_cast<QWidget*>(map));
        // The pane tall enough for a map.
        QList<int> sizes = s->app.controller()->splitView()->sizes();
        sizes[3] = 500;
        s->app.controller()->splitView()->setSizes(sizes);
        QCoreApplication::processEvents();
    }

    QString U(const std::string& path) const { return s->site.U(path); }
    qint64 idtOf(const QString& url) const
    {
        const QuillmerePagePtr page = QuillmerePage::getPageFromURL(url, s->project);
        return page ? page->idt() : -1;
    }

    // Brings a page's item to the middle of the map and clicks it.
    void clickPage(qint64 idt)
    {
        QGraphicsEllipseItem* item = map->nodeItem(idt);
        ASSERT_TRUE(item);
        map->centerOn(item);
        QTest::mouseClick(map->viewport(), Qt::LeftButton, Qt::NoModifier, map->mapFromScene(item->pos()));
    }

    std::unique_ptr<CrawledPicturesSite> s;
    SiteMapView* map = nullptr;
};

TEST_F(SiteMapViewTest, OneItemPerPageAndTheShortestPathTreesEdges)
{
    // /, a, b, old, new, missing, safe.
    ASSERT_EQ(QuillmerePage::countPagesForProject(s->project), 7);
    EXPECT_EQ(map->nodeCount(), 7);
    for (const QString& url : {s->site.base(), U("/a.html"), U("/b.html"), U("/old.html"), U("/new.html"), U("/missing.html"), U("/safe.html")})
        EXPECT_TRUE(map->nodeItem(idtOf(url))) << qPrintable(url);

    const SiteTree tree = SiteTree::read(s->project);
    ASSERT_EQ(tree.nodes().size(), 7);
    EXPECT_EQ(map->edgeCount(), 7 - tree.roots().size());
    // b.html hangs under a.html, which hangs under the start page, the one root at depth 0.
    const auto& b = tree.nodes().at(tree.indexOf(idtOf(U("/b.html"))));
    EXPECT_EQ(b.parentIdt, idtOf(U("/a.html")));
    EXPECT_EQ(tree.nodes().at(tree.indexOf(idtOf(U("/a.html")))).parentIdt, idtOf(s->site.base()));
    EXPECT_EQ(tree.nodes().at(tree.roots().first()).idt, idtOf(s->site.base()));
    for (const auto& node : tree.nodes())
        if (node.parentIdt >= 0)
            EXPECT_EQ(tree.nodes().at(tree.indexOf(node.parentIdt)).depth, node.depth - 1) << qPrintable(node.url);
}

TEST_F(SiteMapViewTest, ColouredByStatusAndSizedByLinksReceived)
{
    auto colour = [&](const std::string& path) { return map->nodeItem(idtOf(U(path)))->brush().color(); };
    auto width = [&](const std::string& path) { return map->nodeItem(idtOf(U(path)))->rect().width(); };
    EXPECT_EQ(colour("/a.html"), colour("/b.html"));
    EXPECT_NE(colour("/a.html"), colour("/missing.html"));
    // a.html receives links from the start page and from b.html; b.html from a.html only.
    ASSERT_GT(QuillmerePage::getPageFromURL(U("/a.html"), s->project)->inLinkCount(),
              QuillmerePage::getPageFromURL(U("/b.html"), s->project)->inLinkCount());
    EXPECT_GT(width("/a.html"), width("/b.html"));
}

TEST_F(SiteMapViewTest, SelectingAPageInTheListRingsIt)
{
    EXPECT_EQ(map->highlightedPage(), -1);
    ASSERT_TRUE(s->selectDocument(U("/a.html")));
    EXPECT_EQ(map->highlightedPage(), idtOf(U("/a.html")));
    ASSERT_TRUE(map->highlightItem());
    EXPECT_TRUE(map->highlightItem()->isVisible());
    EXPECT_EQ(map->highlightItem()->pos(), map->nodeItem(idtOf(U("/a.html")))->pos());

    ASSERT_TRUE(s->selectDocument(U("/missing.html")));
    EXPECT_EQ(map->highlightedPage(), idtOf(U("/missing.html")));
    EXPECT_EQ(map->highlightItem()->pos(), map->nodeItem(idtOf(U("/missing.html")))->pos());
}

TEST_F(SiteMapViewTest, ClickingAPageSelectsItInTheList)
{
    clickPage(idtOf(U("/b.html")));
    DocumentsView* documents = s->app.documentsView();
    const int row = rowOfURL(documents->arrayOfPages(), U("/b.html"));
    ASSERT_GE(row, 0);
    EXPECT_EQ(documents->selectedRow(), row);
    EXPECT_TRUE(documents->documentsTableView()->selectionModel()->isRowSelected(row, QModelIndex()));
    EXPECT_EQ(map->highlightedPage(), idtOf(U("/b.html")));
    // The links list shows the links to it.
    ASSERT_EQ(s->app.linksView()->numberOfRowsInTableView(), 1);
    EXPECT_EQ(s->app.linksView()->cellText("IdtPage", 0), U("/a.html"));
}

TEST_F(SiteMapViewTest, ClickingAPageTheListDoesNotShowFillsThePanel)
{
    // A redirect is not a document of the list.
    ASSERT_EQ(rowOfURL(s->app.documentsView()->arrayOfPages(), U("/old.html")), -1);
    clickPage(idtOf(U("/old.html")));
    EXPECT_EQ(map->highlightedPage(), idtOf(U("/old.html")));
    QTabBar* bar = s->tabs()->tabBar();
    QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, bar->tabRect(PreviewTabs::PageTab).center());
    EXPECT_EQ(s->tabs()->pagePanel()->urlLabel()->text(), U("/old.html"));
}

TEST_F(SiteMapViewTest, WheelZoomsAndDragPans)
{
    const double before = map->transform().m11();
    const QPointF at(map->viewport()->width() / 2.0, map->viewport()->height() / 2.0);
    QWheelEvent in(at, map->viewport()->mapToGlobal(at), QPoint(), QPoint(0, 480), Qt::NoButton, Qt::NoModifier,
                   Qt::NoScrollPhase, false);
    QApplication::sendEvent(map->viewport(), &in);
    EXPECT_GT(map->transform().m11(), before * 1.5);
    QApplication::sendEvent(map->viewport(), &in);
    QApplication::sendEvent(map->viewport(), &in);

    QScrollBar* bar = map->verticalScrollBar();
    ASSERT_GE(bar->maximum() - bar->minimum(), 200);
    const int scrolled = bar->value();
    // Dragged up the view scrolls down, and the other way round: towards the side with room.
    const double drag = bar->maximum() - scrolled >= 100 ? -100 : 100;
    QTest::mousePress(map->viewport(), Qt::LeftButton, Qt::NoModifier, at.toPoint());
    QMouseEvent move(QEvent::MouseMove, at + QPointF(0, drag), map->viewport()->mapToGlobal(at + QPointF(0, drag)),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(map->viewport(), &move);
    QTest::mouseRelease(map->viewport(), Qt::LeftButton, Qt::NoModifier, (at + QPointF(0, drag)).toPoint());
    EXPECT_EQ(bar->value(), scrolled - int(drag));
    // A drag is no click: nothing was selected.
    EXPECT_EQ(s->app.documentsView()->selectedRow(), -1);

    QWheelEvent out(at, map->viewport()->mapToGlobal(at), QPoint(), QPoint(0, -480), Qt::NoButton, Qt::NoModifier,
                    Qt::NoScrollPhase, false);
    for (int i = 0; i < 3; ++i)
        QApplication::sendEvent(map->viewport(), &out);
    EXPECT_NEAR(map->transform().m11(), before, before * 0.01);
}

TEST_F(SiteMapViewTest, AnotherCrawlDrawsTheMapAgain)
{
    ASSERT_EQ(map->nodeCount(), 7);
    s->site.server.setPage("/b.html", "<html><head><title>Bravo</title></head><body><a href='c.html'>C</a></body></html>");
    s->site.server.setPage("/c.html", "<html><head><title>Charlie</title></head><body>fin</body></html>");
    Alert::queueAnswer(Alert::FirstButtonReturn);
    ASSERT_TRUE(s->app.crawlThroughStartButton(20000));
    EXPECT_EQ(map->nodeCount(), 8);
    EXPECT_TRUE(map->nodeItem(idtOf(U("/c.html"))));
}

} // namespace

namespace {

// A site of 2,000 pages written straight into a crawl database: a tree of ten children a page,
// each page after the first also linked from a deeper page before its parent's link.
ProjectPtr writeLargeSite(LaunchedApp& app, int pages)
{
    ProjectPtr project = app.createAndShowProject("large", "http://127.0.0.1:9");
    sqlite3* db = project->sqlite3Database();
    if (!db)
        return nullptr;
    sqlite3_exec(db, "begin", nullptr, nullptr, nullptr);
    QList<int> depth(pages + 1, 0);
    for (int i = 1; i <= pages; ++i) {
        depth[i] = i == 1 ? 0 : depth.at((i - 2) / 10 + 1) + 1;
        const QString sql = QStringLiteral("insert into Page(path,page,title,url,is_no_index,is_no_follow,is_canonical,"
                                           "in_link_count,out_link_count,depth,weight) values('/','p%1.html','P%1',"
                                           "'http://127.0.0.1:9/p%1.html',0,0,0,%2,10,%3,0)")
                                .arg(i)
                                .arg(i == 1 ? 0 : 2)
                                .arg(depth.at(i));
        sqlite3_exec(db, sql.toUtf8().constData(), nullptr, nullptr, nullptr);
    }
    for (int i = 2; i <= pages; ++i) {
        const int parent = (i - 2) / 10 + 1;
        // A deeper page's link comes first: it must not make the tree.
        const int deeper = std::min(pages, i + 7);
        if (depth.at(deeper) >= depth.at(i))
            sqlite3_exec(db, QStringLiteral("insert into Links values(%1,%2,'x',0)").arg(i).arg(deeper).toUtf8().constData(),
                         nullptr, nullptr, nullptr);
        sqlite3_exec(db, QStringLiteral("insert into Links values(%1,%2,'p',1)").arg(i).arg(parent).toUtf8().constData(),
                     nullptr, nullptr, nullptr);
    }
    sqlite3_exec(db, "commit", nullptr, nullptr, nullptr);
    app.controller()->populateCurrentProject(project);
    return project;
}

TEST(LargeSiteMapTest, ShownWholeAsOnePictureAndAsItemsOnceZoomedIn)
{
    LaunchedApp app;
    app.window()->resize(1200, 1000);
    app.window()->show();
    const ProjectPtr project = writeLargeSite(app, 2000);
    ASSERT_TRUE(project);
    PreviewTabs* tabs = app.controller()->previewTabs();
    tabs->setCurrentIndex(PreviewTabs::MapTab);
    SiteMapView* map = tabs->siteMap();
    QCoreApplication::processEvents();

    EXPECT_EQ(map->nodeCount(), 2000);
    EXPECT_EQ(map->edgeCount(), 1999);
    const SiteTree tree = SiteTree::read(project);
    for (const auto& node : tree.nodes())
        if (node.idt > 1)
            ASSERT_EQ(node.parentIdt, (node.idt - 2) / 10 + 1) << node.idt;
    // Whole, it is one picture; zoomed in, the pages themselves.
    EXPECT_FALSE(map->overview().isNull());
    EXPECT_TRUE(map->overviewShown());
    const QPointF at(map->viewport()->width() / 2.0, map->viewport()->height() / 2.0);
    QWheelEvent in(at, map->viewport()->mapToGlobal(at), QPoint(), QPoint(0, 960), Qt::NoButton, Qt::NoModifier,
                   Qt::NoScrollPhase, false);
    for (int i = 0; i < 3 && map->overviewShown(); ++i)
        QApplication::sendEvent(map->viewport(), &in);
    EXPECT_FALSE(map->overviewShown());
}

} // namespace
