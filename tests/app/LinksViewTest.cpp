// The links list: the links to the page selected in the documents list, its title, what a
// filter does to it, its context menu and its in-memory sort.
#include "ListsTestSupport.h"

#include "store/PageFilter.h"

using namespace apptest;

namespace {

const QString kOpen = QStringLiteral("Ouvrir dans le navigateur");

class LinksViewTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        s = std::make_unique<CrawledSite>();
        ASSERT_TRUE(s->site.started);
        ASSERT_TRUE(s->crawled);
        documents = s->app.documentsView();
        view = s->app.linksView();
        table = view->linksTableView();
    }

    QString U(const std::string& path) const { return s->site.U(path); }

    // Selects, with the mouse, the documents list's row of that page.
    void selectDocument(const QString& url)
    {
        const int row = rowOfURL(documents->arrayOfPages(), url);
        ASSERT_GE(row, 0) << qPrintable(url);
        clickRow(documents->documentsTableView(), row);
        ASSERT_EQ(documents->selectedRow(), row);
    }

    // Each row as anchor | source URL | depth | links sent, as the table shows it.
    QStringList shownRows() const
    {
        QStringList rows;
        for (int r = 0; r < table->model()->rowCount(); ++r)
            rows << QStringList({shown(table, r, 0), shown(table, r, 1), shown(table, r, 2), shown(table, r, 3)}).join(" | ");
        return rows;
    }

    std::unique_ptr<CrawledSite> s;
    DocumentsView* documents = nullptr;
    LinksView* view = nullptr;
    QTableView* table = nullptr;
};

TEST_F(LinksViewTest, FourColumnsWithFrenchHeaders)
{
    EXPECT_EQ(table->model()->columnCount(), 4);
    EXPECT_EQ(headerCaptions(table), QStringList({"Ancre", "Page qui fait le lien", "Profondeur", "Liens émis"}));
    EXPECT_EQ(LinksView::columnIdentifiers(), QStringList({"IdtAnchor", "IdtPage", "IdtDepth", "IdtOutputs"}));
}

TEST_F(LinksViewTest, SelectingAPageShowsTheLinksToItInStoreOrder)
{
    ASSERT_EQ(view->numberOfRowsInTableView(), 0);
    selectDocument(U("/c.html"));

    const QuillmerePagePtr target = QuillmerePage::getPageFromURL(U("/c.html"), s->project);
    ASSERT_TRUE(target);
    const QList<QuillmereLinkPagePtr> sources = QuillmereLinkPage::getSourcesLinksFromPage(target, s->project);
    ASSERT_EQ(sources.size(), 3);
    ASSERT_EQ(view->numberOfRowsInTableView(), 3);
    for (int row = 0; row < sources.size(); ++row) {
        const auto link = sources.at(row)->quillmereLink();
        const auto page = sources.at(row)->quillmerePage();
        EXPECT_EQ(view->cellText("IdtAnchor", row), link->anchor()) << "row " << row;
        EXPECT_EQ(view->cellText("IdtPage", row), page->url()) << "row " << row;
        EXPECT_EQ(view->cellText("IdtDepth", row), QString::number(page->depth())) << "row " << row;
        EXPECT_EQ(view->cellText("IdtOutputs", row), QString::number(page->outLinkCount())) << "row " << row;
    }
    // The start page (one of its seven links went to an image) and the two pages that link on.
    EXPECT_EQ(shownRows(), QStringList({"Charlie | " + s->site.base() + " | 1 | 6", "C depuis A | " + U("/a.html") + " | 2 | 2",
                                        "C depuis B | " + U("/b.html") + " | 2 | 1"}));
    EXPECT_EQ(view->title(), "3 liens vers le document sélectionné");
    EXPECT_EQ(view->selectedRow(), -1);
    EXPECT_TRUE(view->cellText("IdtURL", 0).isEmpty());
    EXPECT_TRUE(view->cellText("IdtTitle", 0).isEmpty());

    // Choosing a link row only remembers it.
    clickRow(table, 1);
    EXPECT_EQ(view->selectedRow(), 1);
    EXPECT_EQ(view->numberOfRowsInTableView(), 3);
}

TEST_F(LinksViewTest, APageWithoutIncomingLinksGivesZeroInTheTitle)
{
    selectDocument(U("/a.html"));
    ASSERT_EQ(view->title(), "3 liens vers le document sélectionné");
    selectDocument(s->site.base());
    EXPECT_EQ(view->numberOfRowsInTableView(), 0);
    EXPECT_EQ(table->model()->rowCount(), 0);
    EXPECT_EQ(view->title(), "0 lien vers le document sélectionné");
}

TEST_F(LinksViewTest, AFilterEmptiesTheListButKeepsItsTitle)
{
    selectDocument(U("/b.html"));
    ASSERT_EQ(view->numberOfRowsInTableView(), 2);
    ASSERT_EQ(view->title(), "2 liens vers le document sélectionné");

    s->app.app()->doFilter404OnlyHTML();
    EXPECT_EQ(documents->title(), "1 document en 404 de type HTML référencé");
    EXPECT_EQ(view->numberOfRowsInTableView(), 0);
    EXPECT_EQ(view->selectedRow(), -1);
    EXPECT_EQ(view->title(), "2 liens vers le document sélectionné");

    // The same through the controller, back to every page.
    selectDocument(U("/missing.html"));
    ASSERT_EQ(view->numberOfRowsInTableView(), 1);
    EXPECT_EQ(view->cellText("IdtAnchor", 0), "Perdu");
    ASSERT_EQ(view->title(), "1 lien vers le document sélectionné");
    s->app.controller()->applyFilter(PageFilter::All);
    EXPECT_EQ(documents->title(), "5 documents référencés");
    EXPECT_EQ(view->numberOfRowsInTableView(), 0);
    EXPECT_EQ(view->title(), "1 lien vers le document sélectionné");
}

TEST_F(LinksViewTest, ContextMenuOnAnEmptyAreaIsDisabled)
{
    ASSERT_EQ(L("LinkViewOpenURL"), kOpen);
    ASSERT_EQ(view->numberOfRowsInTableView(), 0);
    QMenu* menu = view->menuNeedsUpdate(-1);
    ASSERT_EQ(menu, view->menuAction());
    ASSERT_EQ(menu->actions().size(), 1);
    EXPECT_EQ(menu->actions().at(0)->text(), kOpen);
    EXPECT_FALSE(menu->actions().at(0)->isEnabled());
    view->openURLAction();
    EXPECT_TRUE(s->app.openedURLs.empty());

    // A real right click in the empty table, then below the rows of a filled one.
    MenuSeen seen = rightClick(table, QPoint(20, 10));
    ASSERT_TRUE(seen.opened);
    EXPECT_EQ(seen.menu, view->menuAction());
    EXPECT_EQ(seen.title, kOpen);
    EXPECT_FALSE(seen.enabled);

    selectDocument(U("/c.html"));
    ASSERT_EQ(view->numberOfRowsInTableView(), 3);
    const QPoint below = pointBelowLastRow(table);
    ASSERT_LT(below.y(), table->viewport()->height());
    ASSERT_EQ(table->indexAt(below).row(), -1);
    seen = rightClick(table, below, true);
    ASSERT_TRUE(seen.opened);
    EXPECT_EQ(seen.title, kOpen);
    EXPECT_FALSE(seen.enabled);
    EXPECT_TRUE(s->app.openedURLs.empty());
}

TEST_F(LinksViewTest, ContextMenuOnARowOpensTheLinkingPage)
{
    selectDocument(U("/c.html"));
    ASSERT_EQ(view->numberOfRowsInTableView(), 3);
    QMenu* menu = view->menuNeedsUpdate(1);
    EXPECT_EQ(menu->actions().at(0)->text(), kOpen + " " + U("/a.html"));
    EXPECT_TRUE(menu->actions().at(0)->isEnabled());
    view->openURLAction();
    ASSERT_EQ(s->app.openedURLs.size(), 1u);
    EXPECT_EQ(s->app.openedURLs.at(0), QUrl(U("/a.html")));

    // Chosen from the menu of a real right click on the last row.
    const MenuSeen seen = rightClick(table, table->visualRect(table->model()->index(2, 0)).center(), true);
    ASSERT_TRUE(seen.opened);
    EXPECT_EQ(seen.title, kOpen + " " + U("/b.html"));
    EXPECT_TRUE(seen.enabled);
    ASSERT_EQ(s->app.openedURLs.size(), 2u);
    EXPECT_EQ(s->app.openedURLs.at(1), QUrl(U("/b.html")));
}

TEST_F(LinksViewTest, HeaderClickSortsInMemory)
{
    selectDocument(U("/c.html"));
    const QList<QuillmereLinkPagePtr> before = view->arrayOfLinks();
    ASSERT_EQ(before.size(), 3);
    const QStringList storeOrder = shownRows();

    // Links sent by the linking page, smallest first: /b.html 1, /a.html 2, the start page 6.
    QHeaderView* header = table->horizontalHeader();
    clickHeader(table, 3);
    ASSERT_EQ(header->sortIndicatorSection(), 3);
    if (header->sortIndicatorOrder() != Qt::AscendingOrder)
        clickHeader(table, 3);
    ASSERT_EQ(header->sortIndicatorOrder(), Qt::AscendingOrder);
    EXPECT_EQ(shownRows(), QStringList({"C depuis B | " + U("/b.html") + " | 2 | 1", "C depuis A | " + U("/a.html") + " | 2 | 2",
                                        "Charlie | " + s->site.base() + " | 1 | 6"}));
    for (const auto& row : view->arrayOfLinks())
        EXPECT_TRUE(before.contains(row));
    EXPECT_EQ(view->title(), "3 liens vers le document sélectionné");

    // By linking page, descending after a second click.
    clickHeader(table, 1);
    if (header->sortIndicatorOrder() != Qt::DescendingOrder)
        clickHeader(table, 1);
    ASSERT_EQ(header->sortIndicatorSection(), 1);
    QStringList pages;
    for (int r = 0; r < 3; ++r)
        pages << view->cellText("IdtPage", r);
    EXPECT_EQ(pages, QStringList({U("/b.html"), U("/a.html"), s->site.base()}));

    // Selecting the page again reads the links again, in the store's order.
    QTest::keyClick(documents->documentsTableView(), Qt::Key_Up);
    QTest::keyClick(documents->documentsTableView(), Qt::Key_Down);
    ASSERT_EQ(documents->arrayOfPages().at(documents->selectedRow())->url(), U("/c.html"));
    EXPECT_EQ(shownRows(), storeOrder);
}

} // namespace
