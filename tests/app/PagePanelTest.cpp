// The page panel: for the page selected in the documents list, the status and time of its
// last fetch, the redirects followed and the pages it links to; the links list keeps showing
// the pages that link to it.
#include "PicturesTestSupport.h"

#include "app/PagePanel.h"
#include "store/FetchLog.h"

#include <QLabel>
#include <QWebEngineView>
#include <QTabBar>
#include <QTableWidget>

using namespace apptest;

namespace {

class PagePanelTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        s = std::make_unique<CrawledPicturesSite>();
        ASSERT_TRUE(s->site.started);
        ASSERT_TRUE(s->crawled);
        panel = s->tabs()->pagePanel();
        QTabBar* bar = s->tabs()->tabBar();
        QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, bar->tabRect(PreviewTabs::PageTab).center());
        ASSERT_EQ(s->tabs()->currentWidget(), panel);
    }

    QString U(const std::string& path) const { return s->site.U(path); }

    // Each row as anchor | linked page | status, as the table shows it.
    QStringList outgoingRows() const
    {
        QStringList rows;
        QTableWidget* table = panel->outgoingTable();
        for (int r = 0; r < table->rowCount(); ++r)
            rows << QStringList({table->item(r, 0)->text(), table->item(r, 1)->text(), table->item(r, 2)->text()}).join(" | ");
        return rows;
    }

    std::unique_ptr<CrawledPicturesSite> s;
    PagePanel* panel = nullptr;
};

TEST_F(PagePanelTest, TabsFollowThePreviewInFrench)
{
    PreviewTabs* tabs = s->tabs();
    ASSERT_EQ(tabs->count(), 5);
    EXPECT_EQ(tabs->widget(PreviewTabs::PreviewTab), static_cast<QWidget*>(s->app.controller()->webView()));
    EXPECT_EQ(tabs->tabText(0), "Aperçu");
    EXPECT_EQ(tabs->tabText(1), "Page");
    EXPECT_EQ(tabs->tabText(2), "Aperçu sans script");
    EXPECT_EQ(tabs->tabText(3), "Carte du site");
    EXPECT_EQ(tabs->tabText(4), "Graphiques");
    EXPECT_EQ(panel->urlLabel()->text(), "Aucune page sélectionnée");
    EXPECT_EQ(panel->outgoingTable()->rowCount(), 0);
}

TEST_F(PagePanelTest, ShowsStatusTimeAndThePagesItLinksTo)
{
    ASSERT_TRUE(s->selectDocument(U("/a.html")));
    const FetchLogPtr fetch = FetchLog::getFetchLogWithURL(U("/a.html"), s->project);
    ASSERT_TRUE(fetch);
    EXPECT_EQ(panel->urlLabel()->text(), U("/a.html"));
    EXPECT_EQ(panel->statusLabel()->text(), "200");
    ASSERT_GE(fetch->responseMs(), 0);
    EXPECT_EQ(panel->responseTimeLabel()->text(), QString::number(fetch->responseMs()) + " ms");
    EXPECT_EQ(panel->redirectsLabel()->text(), "aucune");
    EXPECT_EQ(outgoingRows(), QStringList({"B depuis A | " + U("/b.html") + " | 200", "Retour | " + s->site.base() + " | 200"}));
    // The links list still shows the pages that link to it.
    LinksView* links = s->app.linksView();
    ASSERT_EQ(links->numberOfRowsInTableView(), 2);
    EXPECT_EQ(links->cellText("IdtPage", 0), s->site.base());
    EXPECT_EQ(links->cellText("IdtPage", 1), U("/b.html"));
}

TEST_F(PagePanelTest, StartPageListsEveryLinkWithItsTargetsStatus)
{
    ASSERT_TRUE(s->selectDocument(s->site.base()));
    EXPECT_EQ(panel->statusLabel()->text(), "200");
    EXPECT_EQ(outgoingRows(), QStringList({"Alpha | " + U("/a.html") + " | 200", "Ancienne | " + U("/old.html") + " | 200",
                                           "Perdu | " + U("/missing.html") + " | 404", "Sûre | " + U("/safe.html") + " | 200"}));
}

TEST_F(PagePanelTest, ShowsTheRedirectChainAndAMissingPagesStatus)
{
    // A redirect is no document of the list: the map, or the controller, selects it.
    const QuillmerePagePtr old = QuillmerePage::getPageFromURL(U("/old.html"), s->project);
    ASSERT_TRUE(old);
    ASSERT_EQ(rowOfURL(s->app.documentsView()->arrayOfPages(), U("/old.html")), -1);
    s->app.controller()->selectPage(old);
    EXPECT_EQ(panel->urlLabel()->text(), U("/old.html"));
    EXPECT_EQ(panel->statusLabel()->text(), "200");
    EXPECT_EQ(panel->redirectsLabel()->text(), U("/old.html") + " (301) → " + U("/new.html"));

    ASSERT_TRUE(s->selectDocument(U("/missing.html")));
    EXPECT_EQ(panel->urlLabel()->text(), U("/missing.html"));
    EXPECT_EQ(panel->statusLabel()->text(), "404");
    EXPECT_EQ(panel->outgoingTable()->rowCount(), 0);
}

TEST_F(PagePanelTest, ClosingTheProjectEmptiesThePanel)
{
    ASSERT_TRUE(s->selectDocument(U("/a.html")));
    ASSERT_GT(panel->outgoingTable()->rowCount(), 0);
    s->app.controller()->closeCurrentProject();
    EXPECT_EQ(panel->urlLabel()->text(), "Aucune page sélectionnée");
    EXPECT_EQ(panel->outgoingTable()->rowCount(), 0);
}

} // namespace
