// The documents list over a crawled site: columns, cells, the title of each filter, the
// selection, the in-memory sort, the context menu and the closing of the project.
#include "ListsTestSupport.h"

#include "store/PageFilter.h"

#include <QHeaderView>

#include <climits>

#include <sqlite3.h>

using namespace apptest;

namespace {

const QString kOpen = QStringLiteral("Ouvrir dans le navigateur");

class DocumentsViewTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        s = std::make_unique<CrawledSite>();
        ASSERT_TRUE(s->site.started);
        ASSERT_TRUE(s->crawled);
        view = s->app.documentsView();
        table = view->documentsTableView();
    }

    QStringList rowURLs() const { return urlsOf(view->arrayOfPages()); }
    QStringList storeURLs() const { return urlsOf(QuillmerePage::getAllPagesForProject(s->project)); }
    QString U(const std::string& path) const { return s->site.U(path); }
    int rowOf(const std::string& path) const { return rowOfURL(view->arrayOfPages(), U(path)); }

    std::unique_ptr<CrawledSite> s;
    DocumentsView* view = nullptr;
    QTableView* table = nullptr;
};

TEST_F(DocumentsViewTest, SixColumnsWithFrenchHeaders)
{
    EXPECT_EQ(table->model()->columnCount(), 6);
    EXPECT_EQ(headerCaptions(table),
              QStringList({"URL", "Titre", "Profondeur", "Liens reçus", "Liens émis", "Poids"}));
    EXPECT_EQ(DocumentsView::columnIdentifiers(),
              QStringList({"IdtURL", "IdtTitle", "IdtDepth", "IdtInputs", "IdtOutputs", "IdtWeight"}));
}

TEST_F(DocumentsViewTest, RowsAreTheStorePagesInTheirOrder)
{
    const QStringList expected = {s->site.base(), U("/a.html"), U("/b.html"), U("/c.html"), U("/missing.html")};
    EXPECT_EQ(storeURLs(), expected);
    EXPECT_EQ(rowURLs(), expected);
    EXPECT_EQ(view->numberOfRowsInTableView(), 5);
    EXPECT_EQ(table->model()->rowCount(), 5);
}

TEST_F(DocumentsViewTest, CellTextsByIdentifier)
{
    const QList<QuillmerePagePtr> pages = QuillmerePage::getAllPagesForProject(s->project);
    ASSERT_EQ(view->numberOfRowsInTableView(), pages.size());
    const QStringList ids = DocumentsView::columnIdentifiers();
    for (int row = 0; row < pages.size(); ++row) {
        const QuillmerePagePtr& page = pages.at(row);
        const QStringList expected = {page->url(),
                                      page->title(),
                                      QString::number(page->depth()),
                                      QString::number(page->inLinkCount()),
                                      QString::number(page->outLinkCount()),
                                      QString::number(page->weight())};
        for (int column = 0; column < 6; ++column) {
            EXPECT_EQ(view->cellText(ids.at(column), row), expected.at(column)) << "row " << row << " " << qPrintable(ids.at(column));
            EXPECT_EQ(shown(table, row, column), expected.at(column)) << "row " << row << " column " << column;
        }
    }
    // Known values of the site: the start page and the page that three others link to.
    const int start = rowOfURL(view->arrayOfPages(), s->site.base());
    ASSERT_EQ(start, 0);
    EXPECT_EQ(view->cellText("IdtTitle", start), "Accueil");
    EXPECT_EQ(view->cellText("IdtDepth", start), "1");
    EXPECT_EQ(view->cellText("IdtInputs", start), "0");
    const int a = rowOf("/a.html");
    ASSERT_GE(a, 0);
    EXPECT_EQ(view->cellText("IdtURL", a), U("/a.html"));
    EXPECT_EQ(view->cellText("IdtTitle", a), "Zulu");
    EXPECT_EQ(view->cellText("IdtDepth", a), "2");
    EXPECT_EQ(view->cellText("IdtInputs", a), "3");
    EXPECT_EQ(view->cellText("IdtOutputs", a), "2");
}

TEST_F(DocumentsViewTest, UnknownIdentifierGivesNoCell)
{
    ASSERT_GT(view->numberOfRowsInTableView(), 0);
    for (const char* id : {"IdtPage", "IdtAnchor", "idturl", "URL", ""})
        EXPECT_TRUE(view->cellText(id, 0).isEmpty()) << id;
    EXPECT_FALSE(view->cellText("IdtURL", 0).isEmpty());
}

TEST_F(DocumentsViewTest, TitleAndRowsForEachFilterCode)
{
    struct Case {
        qint32 code;
        QString title;
        QStringList urls;
    };
    const QStringList all = {s->site.base(), U("/a.html"), U("/b.html"), U("/c.html"), U("/missing.html")};
    const QList<Case> cases = {
        {1, "2 documents en 404 tous types référencés", {U("/missing.html"), U("/missing.png")}},
        {2, "1 document en 404 de type HTML référencé", {U("/missing.html")}},
        {3, "1 document en 404 non HTML référencé", {U("/missing.png")}},
        {4, "1 document en noindex référencé", {U("/hidden.html")}},
        {5, "1 document canonisé référencé", {U("/canon.html")}},
        {0, "5 documents référencés", all},
    };
    for (const Case& c : cases) {
        view->refreshTableViewWithFilter(c.code);
        EXPECT_EQ(view->title(), c.title) << "filter " << c.code;
        EXPECT_EQ(rowURLs(), c.urls) << "filter " << c.code;
        EXPECT_EQ(table->model()->rowCount(), c.urls.size()) << "filter " << c.code;
    }
    // Codes past the last filter read as no filter, title included.
    for (qint32 code : {6, 7, 1000, INT_MAX}) {
        view->refreshTableViewWithFilter(PageFilter::Canonical);
        ASSERT_EQ(view->numberOfRowsInTableView(), 1);
        view->refreshTableViewWithFilter(code);
        EXPECT_EQ(view->title(), "5 documents référencés") << "filter " << code;
        EXPECT_EQ(rowURLs(), all) << "filter " << code;
    }
}

TEST_F(DocumentsViewTest, BackgroundRefreshShowsTheRowsOnceReadAndALaterRefreshWins)
{
    view->refreshTableViewWithFilter(PageFilter::Canonical);
    ASSERT_EQ(view->numberOfRowsInTableView(), 1);
    // Read on another thread: the list keeps its rows until the read is in.
    int shown = 0;
    view->refreshTableViewWithFilterInBackground(PageFilter::All, [&] { ++shown; });
    EXPECT_TRUE(view->isLoading());
    EXPECT_EQ(view->numberOfRowsInTableView(), 1);
    ASSERT_TRUE(waitUntil([&] { return shown == 1; }, 10000));
    EXPECT_FALSE(view->isLoading());
    EXPECT_EQ(rowURLs(), storeURLs());
    EXPECT_EQ(view->title(), "5 documents référencés");

    // A refresh asked for after a background read wins over it, whichever ends last.
    shown = 0;
    view->refreshTableViewWithFilterInBackground(PageFilter::All, [&] { ++shown; });
    view->refreshTableViewWithFilter(PageFilter::Error404OnlyHTML);
    ASSERT_TRUE(waitUntil([&] { return shown == 1; }, 10000));
    EXPECT_EQ(rowURLs(), QStringList({U("/missing.html")}));
    EXPECT_EQ(view->title(), "1 document en 404 de type HTML référencé");

    // Of two background reads, the second is the one shown, and both callers hear back.
    shown = 0;
    view->refreshTableViewWithFilterInBackground(PageFilter::All, [&] { ++shown; });
    view->refreshTableViewWithFilterInBackground(PageFilter::NoIndex, [&] { ++shown; });
    ASSERT_TRUE(waitUntil([&] { return shown == 2; }, 10000));
    EXPECT_EQ(rowURLs(), QStringList({U("/hidden.html")}));
}

TEST_F(DocumentsViewTest, BackgroundRefreshOfAnotherProjectShownMeanwhileIsDropped)
{
    view->refreshTableViewWithFilter(PageFilter::All);
    int shown = 0;
    view->refreshTableViewWithFilterInBackground(PageFilter::All, [&] { ++shown; });
    view->setCurrentProject(nullptr);
    view->closeCurrentProject();
    ASSERT_TRUE(waitUntil([&] { return shown == 1; }, 10000));
    EXPECT_EQ(view->numberOfRowsInTableView(), 0);
}

TEST_F(DocumentsViewTest, NumberColumnsFitTheirWidestCellAndTheirCaption)
{
    auto checkFits = [&](const char* when) {
        QHeaderView* header = table->horizontalHeader();
        for (int c = 2; c < 6; ++c) {
            EXPECT_GE(header->sectionSize(c), header->sectionSizeHint(c)) << when << " column " << c;
            for (int row = 0; row < table->model()->rowCount(); ++row)
                EXPECT_GE(header->sectionSize(c), table->sizeHintForIndex(table->model()->index(row, c)).width())
                    << when << " column " << c << " row " << row;
        }
    };
    view->refreshTableViewWithFilter(PageFilter::All);
    checkFits("all pages");
    // Numbers far wider than the captions, on a row that is not the first.
    ASSERT_EQ(sqlite3_exec(s->project->sqlite3Database(),
                           "update Page set in_link_count = 123456789012, out_link_count = 98765432109, depth = 1234567890, "
                           "weight = 0.12345678901234566 where url like '%/c.html'",
                           nullptr, nullptr, nullptr),
              SQLITE_OK);
    view->refreshTableViewWithFilter(PageFilter::All);
    checkFits("wide numbers");
    // Sorted, the widest cell is elsewhere: the widths hold.
    table->sortByColumn(5, Qt::DescendingOrder);
    checkFits("sorted");
    int shown = 0;
    view->refreshTableViewWithFilterInBackground(PageFilter::Error404AllTypes, [&] { ++shown; });
    ASSERT_TRUE(waitUntil([&] { return shown == 1; }, 10000));
    checkFits("read in the background");
    view->closeCurrentProject();
    checkFits("empty");
}

TEST_F(DocumentsViewTest, RefreshForgetsTheSelectedRow)
{
    EXPECT_EQ(view->selectedRow(), -1);
    clickRow(table, 2);
    ASSERT_EQ(view->selectedRow(), 2);
    view->refreshTableViewWithFilter(PageFilter::All);
    EXPECT_EQ(view->selectedRow(), -1);
    clickRow(table, 1);
    ASSERT_EQ(view->selectedRow(), 1);
    view->refreshTableViewWithFilter(PageFilter::Error404AllTypes);
    EXPECT_EQ(view->selectedRow(), -1);
}

TEST_F(DocumentsViewTest, HeaderClickSortsInMemoryAndRefreshRestoresStoreOrder)
{
    const QList<QuillmerePagePtr> before = view->arrayOfPages();
    QHeaderView* header = table->horizontalHeader();

    clickHeader(table, 1); // Titre
    ASSERT_EQ(header->sortIndicatorSection(), 1);
    QStringList titles;
    for (const auto& page : view->arrayOfPages())
        titles << page->title();
    const QStringList ascending = {"Accueil", "Echo", "Erreur 404 ou contenu non HTML", "Mike", "Zulu"};
    QStringList descending = ascending;
    std::reverse(descending.begin(), descending.end());
    EXPECT_EQ(titles, header->sortIndicatorOrder() == Qt::AscendingOrder ? ascending : descending);
    EXPECT_EQ(shown(table, 0, 1), titles.first());
    // The same records, only in another order: nothing was read again.
    EXPECT_EQ(view->arrayOfPages().size(), before.size());
    for (const auto& page : view->arrayOfPages())
        EXPECT_TRUE(before.contains(page)) << qPrintable(page->url());

    // A second click on the same header turns the order round.
    const Qt::SortOrder first = header->sortIndicatorOrder();
    clickHeader(table, 1);
    EXPECT_NE(header->sortIndicatorOrder(), first);
    QStringList again;
    for (const auto& page : view->arrayOfPages())
        again << page->title();
    std::reverse(again.begin(), again.end());
    EXPECT_EQ(again, titles);

    // A numeric column: links received.
    clickHeader(table, 3);
    ASSERT_EQ(header->sortIndicatorSection(), 3);
    const bool up = header->sortIndicatorOrder() == Qt::AscendingOrder;
    const QList<QuillmerePagePtr> byInputs = view->arrayOfPages();
    for (int i = 1; i < byInputs.size(); ++i) {
        const qint64 previous = byInputs.at(i - 1)->inLinkCount();
        const qint64 current = byInputs.at(i)->inLinkCount();
        EXPECT_TRUE(up ? previous <= current : previous >= current) << "row " << i;
    }

    ASSERT_NE(rowURLs(), storeURLs());
    view->refreshTableViewWithFilter(PageFilter::All);
    EXPECT_EQ(rowURLs(), storeURLs());
    EXPECT_EQ(shown(table, 0, 0), s->site.base());
}

TEST_F(DocumentsViewTest, ContextMenuOnARowAndBelowTheLastRow)
{
    ASSERT_EQ(L("DocumentViewOpenURL"), kOpen);
    const int rows = view->numberOfRowsInTableView();
    ASSERT_EQ(rows, 5);
    for (int row = 0; row < rows; ++row) {
        QMenu* menu = view->menuNeedsUpdate(row);
        ASSERT_EQ(menu, view->menuAction());
        ASSERT_EQ(menu->actions().size(), 1);
        EXPECT_EQ(menu->actions().at(0)->text(), kOpen + " " + view->arrayOfPages().at(row)->url());
        EXPECT_TRUE(menu->actions().at(0)->isEnabled());
    }
    for (int row : {rows, rows + 3, -1}) {
        QMenu* menu = view->menuNeedsUpdate(row);
        EXPECT_EQ(menu->actions().at(0)->text(), kOpen) << "row " << row;
        EXPECT_FALSE(menu->actions().at(0)->isEnabled()) << "row " << row;
    }

    // The real right click, below the last row and then on a row.
    const QPoint below = pointBelowLastRow(table);
    ASSERT_LT(below.y(), table->viewport()->height());
    EXPECT_EQ(table->indexAt(below).row(), -1);
    MenuSeen seen = rightClick(table, below);
    ASSERT_TRUE(seen.opened);
    EXPECT_EQ(seen.menu, view->menuAction());
    EXPECT_EQ(seen.title, kOpen);
    EXPECT_FALSE(seen.enabled);

    const QPoint onRow = table->visualRect(table->model()->index(2, 0)).center();
    ASSERT_EQ(table->indexAt(onRow).row(), 2);
    seen = rightClick(table, onRow);
    ASSERT_TRUE(seen.opened);
    EXPECT_EQ(seen.title, kOpen + " " + U("/b.html"));
    EXPECT_TRUE(seen.enabled);
    EXPECT_TRUE(s->app.openedURLs.empty());
}

TEST_F(DocumentsViewTest, OpenURLActionHandsTheRowURLToTheBrowser)
{
    const int c = rowOf("/c.html");
    ASSERT_GE(c, 0);
    view->menuNeedsUpdate(c);
    view->openURLAction();
    ASSERT_EQ(s->app.openedURLs.size(), 1u);
    EXPECT_EQ(s->app.openedURLs.at(0), QUrl(U("/c.html")));

    // Below the last row the item opens nothing.
    view->menuNeedsUpdate(view->numberOfRowsInTableView());
    view->openURLAction();
    EXPECT_EQ(s->app.openedURLs.size(), 1u);

    // Chosen from the menu of a real right click.
    const int a = rowOf("/a.html");
    ASSERT_GE(a, 0);
    const MenuSeen seen = rightClick(table, table->visualRect(table->model()->index(a, 1)).center(), true);
    ASSERT_TRUE(seen.opened);
    ASSERT_EQ(s->app.openedURLs.size(), 2u);
    EXPECT_EQ(s->app.openedURLs.at(1), QUrl(U("/a.html")));
}

TEST_F(DocumentsViewTest, SelectingARowByMouseOrKeyboardShowsItsLinks)
{
    LinksView* links = s->app.linksView();
    ASSERT_EQ(links->numberOfRowsInTableView(), 0);
    const int a = rowOf("/a.html");
    ASSERT_EQ(a, 1);

    clickRow(table, a);
    EXPECT_EQ(view->selectedRow(), a);
    ASSERT_EQ(links->numberOfRowsInTableView(), 3);
    EXPECT_EQ(links->title(), "3 liens vers le document sélectionné");
    EXPECT_EQ(links->cellText("IdtAnchor", 0), "Alpha");

    // Down arrow: the next row, /b.html, linked from the start page and from /a.html.
    table->setFocus();
    QTest::keyClick(table, Qt::Key_Down);
    EXPECT_EQ(view->selectedRow(), a + 1);
    ASSERT_EQ(view->arrayOfPages().at(a + 1)->url(), U("/b.html"));
    ASSERT_EQ(links->numberOfRowsInTableView(), 2);
    EXPECT_EQ(links->title(), "2 liens vers le document sélectionné");
    EXPECT_EQ(links->cellText("IdtAnchor", 0), "Bravo");
    EXPECT_EQ(links->cellText("IdtAnchor", 1), "B depuis A");

    QTest::keyClick(table, Qt::Key_Up);
    EXPECT_EQ(view->selectedRow(), a);
    EXPECT_EQ(links->numberOfRowsInTableView(), 3);
}

TEST_F(DocumentsViewTest, ClosingTheProjectEmptiesTheRowsButKeepsTheTitle)
{
    clickRow(table, 1);
    ASSERT_EQ(view->selectedRow(), 1);
    ASSERT_EQ(view->title(), "5 documents référencés");
    s->app.controller()->closeCurrentProject();
    EXPECT_EQ(view->numberOfRowsInTableView(), 0);
    EXPECT_EQ(table->model()->rowCount(), 0);
    EXPECT_TRUE(view->arrayOfPages().isEmpty());
    EXPECT_EQ(view->selectedRow(), -1);
    EXPECT_EQ(view->title(), "5 documents référencés");
}

} // namespace

TEST_F(DocumentsViewTest, FocusAloneSelectsNoPage)
{
    // Taking the focus makes a row current without selecting it: no links are shown until
    // the user picks a row.
    view->refreshTableViewWithFilter(0);
    s->app.window()->show();
    QApplication::setActiveWindow(s->app.window());
    ASSERT_TRUE(QTest::qWaitForWindowActive(s->app.window()));
    table->clearFocus();
    table->setFocus(Qt::TabFocusReason);
    QCoreApplication::processEvents();
    ASSERT_TRUE(table->hasFocus());
    ASSERT_TRUE(table->currentIndex().isValid());
    EXPECT_EQ(view->selectedRow(), -1);
    EXPECT_EQ(s->app.linksView()->numberOfRowsInTableView(), 0);
    QTest::keyClick(table, Qt::Key_Down);
    EXPECT_GE(view->selectedRow(), 0);
}
