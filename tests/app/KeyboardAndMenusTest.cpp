// The keyboard and the menus: Tab between the panes, Escape on alerts, copy of the selected
// rows, À propos, Aide, and the lists' URL column at the window's smallest.
#include "CrawlWindowSupport.h"

#include "app/AboutBox.h"
#include "app/ColumnMinimumWidth.h"
#include "app/HelpDialog.h"

#include <QAction>
#include <QClipboard>
#include <QHeaderView>
#include <QAbstractButton>
#include <QMessageBox>
#include <QPointer>
#include <QTableView>
#include <QTest>
#include <QTextBrowser>

using namespace apptest;
using crawltest::anchor;

namespace {

// Answers the alert that will be up at the next turn of the event loop with a key.
void pressOnTheNextAlert(Qt::Key key, bool* seen)
{
    QTimer::singleShot(0, [key, seen] {
        QWidget* box = nullptr;
        waitUntil([&] { return (box = QApplication::activeModalWidget()) != nullptr; }, 5000);
        *seen = qobject_cast<QMessageBox*>(box) != nullptr;
        if (!box)
            return;
        QTest::keyClick(box, key);
        // An alert the key did not close is closed without an answer, so that the test fails
        // rather than waits.
        QPointer<QWidget> open(box);
        QTimer::singleShot(1000, [open] {
            if (auto* dialog = qobject_cast<QDialog*>(open.data()); dialog && dialog->isVisible())
                dialog->done(0);
        });
    });
}

class CrawledWindowTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(site.started());
        // "/" -> a, b; a -> b.
        site.page("/", "Home", anchor("a.html", "A") + anchor("b.html", "B"));
        site.page("/a.html", "A", anchor("b.html", "B again"));
        site.page("/b.html", "B", "");
        app.window()->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(app.window()));
        project = app.createAndShowProject(QStringLiteral("site"), q(site.base() + "/"));
        ASSERT_TRUE(app.crawlThroughStartButton());
        ASSERT_EQ(app.documentsView()->numberOfRowsInTableView(), 3);
    }

    int rowOf(const std::string& path) const
    {
        for (int row = 0; row < app.documentsView()->numberOfRowsInTableView(); ++row)
            if (app.documentsView()->cellText("IdtURL", row) == q(site.base() + path))
                return row;
        return -1;
    }

    crawltest::Site site;
    LaunchedApp app;
    ProjectPtr project;
};

} // namespace

TEST_F(CrawledWindowTest, TabAndShiftTabMoveBetweenThePanes)
{
    QTableView* documents = app.documentsView()->documentsTableView();
    QTableView* links = app.linksView()->linksTableView();
    app.window()->activateWindow();
    documents->setFocus();
    ASSERT_TRUE(waitUntil([&] { return documents->hasFocus(); }, 2000));
    documents->selectRow(rowOf("/b.html"));
    QTest::keyClick(documents, Qt::Key_Tab);
    EXPECT_TRUE(links->hasFocus()) << qPrintable(QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : "none");
    QTest::keyClick(links, Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(documents->hasFocus()) << qPrintable(QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : "none");
    // Within a list the arrows still move the selection.
    QTest::keyClick(documents, Qt::Key_Down);
    EXPECT_TRUE(documents->hasFocus());
}

TEST_F(CrawledWindowTest, ControlCCopiesTheSelectedRowsAsText)
{
    QTableView* documents = app.documentsView()->documentsTableView();
    app.window()->activateWindow();
    documents->setFocus();
    ASSERT_TRUE(waitUntil([&] { return documents->hasFocus(); }, 2000));
    const int b = rowOf("/b.html");
    documents->selectRow(b);
    QGuiApplication::clipboard()->clear();
    QTest::keyClick(documents, Qt::Key_C, Qt::ControlModifier);
    const QString expected = QStringList{q(site.base() + "/b.html"), "B", "2", "2", "0", "1"}.join('\t');
    EXPECT_EQ(QGuiApplication::clipboard()->text(), expected);

    // The links list: its selected row, through Édition > Copier.
    QTableView* links = app.linksView()->linksTableView();
    ASSERT_EQ(app.linksView()->numberOfRowsInTableView(), 2);
    links->setFocus();
    ASSERT_TRUE(waitUntil([&] { return links->hasFocus(); }, 2000));
    links->selectRow(0);
    QStringList cells;
    for (int c = 0; c < links->model()->columnCount(); ++c)
        cells << links->model()->index(0, c).data().toString();
    QGuiApplication::clipboard()->clear();
    app.window()->menuItemLocCopy->trigger();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), cells.join('\t'));
    EXPECT_TRUE(cells.join('\t').contains(q(site.base())));
}

TEST(KeyboardAndMenus, EscapeClosesAnAlertWithItsCancelAnswer)
{
    LaunchedApp app;
    app.window()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(app.window()));
    struct Case { QStringList buttons; int cancel; int expected; };
    const Case cases[] = {
        {{"Recommencer", "Annuler"}, 1, Alert::FirstButtonReturn + 1},
        {{"Annuler", "Reprendre", "Recommencer"}, 0, Alert::FirstButtonReturn},
        {{"OK"}, -1, Alert::FirstButtonReturn},
    };
    for (const Case& c : cases) {
        Alert alert;
        alert.setMessageText("Question");
        for (const QString& title : c.buttons)
            alert.addButtonWithTitle(title);
        if (c.cancel >= 0)
            alert.setCancelButton(c.cancel);
        bool seen = false;
        pressOnTheNextAlert(Qt::Key_Escape, &seen);
        EXPECT_EQ(alert.runModal(app.window()), c.expected) << qPrintable(c.buttons.join(','));
        EXPECT_TRUE(seen);
    }
}

TEST(KeyboardAndMenus, EscapeOnTheRestartQuestionLeavesTheFinishedCrawlAlone)
{
    crawltest::Site site;
    ASSERT_TRUE(site.started());
    site.page("/", "Home", "");
    LaunchedApp app;
    app.window()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(app.window()));
    ProjectPtr project = app.createAndShowProject(QStringLiteral("site"), q(site.base() + "/"));
    ASSERT_TRUE(app.crawlThroughStartButton());
    const QDateTime stopped = project->crawler_stop_date();
    bool seen = false;
    pressOnTheNextAlert(Qt::Key_Escape, &seen);
    app.progressView()->buttonLancer()->click();
    EXPECT_TRUE(seen);
    ASSERT_EQ(Alert::shownAlerts().size(), 1);
    EXPECT_EQ(Alert::shownAlerts()[0].answer, Alert::FirstButtonReturn + 1);
    EXPECT_FALSE(app.controller()->isBusy());
    EXPECT_EQ(project->crawler_stop_date(), stopped);
    EXPECT_EQ(project->pages_count(), 1);
}

TEST(KeyboardAndMenus, AboutShowsTheVersionAndTheLicences)
{
    LaunchedApp app;
    app.window()->show();
    app.window()->menuItemLocAbout->trigger();
    auto* box = app.window()->findChild<AboutBox*>();
    ASSERT_TRUE(box);
    EXPECT_TRUE(box->isVisible());
    EXPECT_EQ(box->windowTitle(), QString::fromUtf8("À propos de Quillmere"));
    EXPECT_TRUE(box->text().startsWith(QStringLiteral("Quillmere " QUILLMERE_VERSION "\n"))) << qPrintable(box->text());
    for (const char* part : {"Qt ", "LGPL", "SQLite", "libxml2", "libcurl", "licence MIT"})
        EXPECT_TRUE(box->informativeText().contains(QString::fromUtf8(part))) << part;
    // Qt's own button, in French.
    ASSERT_TRUE(box->button(QMessageBox::Close));
    EXPECT_EQ(box->button(QMessageBox::Close)->text(), "Fermer");
    // A second time raises the same box.
    app.window()->menuItemLocAbout->trigger();
    EXPECT_EQ(app.window()->findChildren<AboutBox*>().size(), 1);
    box->close();
}

TEST(KeyboardAndMenus, HelpAndF1ShowTheReadme)
{
    LaunchedApp app;
    app.window()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(app.window()));
    app.window()->activateWindow();
    ASSERT_TRUE(waitUntil([&] { return app.window()->isActiveWindow(); }, 2000));
    QTest::keyClick(app.window(), Qt::Key_F1);
    auto* help = app.window()->findChild<HelpDialog*>();
    ASSERT_TRUE(help);
    EXPECT_TRUE(help->isVisible());
    EXPECT_EQ(help->windowTitle(), "Aide de Quillmere");
    EXPECT_TRUE(help->browser()->toPlainText().contains("Quillmere is a site crawler and link auditor"));
    help->close();
    app.window()->menuItemLocHelp->trigger();
    EXPECT_TRUE(help->isVisible());
    EXPECT_EQ(app.window()->findChildren<HelpDialog*>().size(), 1);
}

TEST(KeyboardAndMenus, TheURLColumnStaysReadableAtTheWindowsSmallestSize)
{
    LaunchedApp app;
    app.createAndShowProject(QStringLiteral("site"), QStringLiteral("http://127.0.0.1:9"));
    app.window()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(app.window()));
    app.window()->resize(app.window()->minimumSizeHint());
    waitUntil([] { return false; }, 100);
    QHeaderView* documents = app.documentsView()->documentsTableView()->horizontalHeader();
    QHeaderView* links = app.linksView()->linksTableView()->horizontalHeader();
    EXPECT_GE(documents->sectionSize(0), ColumnMinimumWidth::readableWidth) << app.window()->width();
    EXPECT_GE(links->sectionSize(1), ColumnMinimumWidth::readableWidth) << app.window()->width();
    // Given room again, the URL takes what is left.
    app.window()->resize(1400, 900);
    waitUntil([] { return false; }, 100);
    EXPECT_EQ(documents->sectionResizeMode(0), QHeaderView::Stretch);
    EXPECT_GT(documents->sectionSize(0), ColumnMinimumWidth::readableWidth);
}
