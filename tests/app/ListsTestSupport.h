#pragma once
// Pieces shared by the documents list and links list tests: a small site of known shape,
// crawled through the window, and the mouse and keyboard gestures on a table.

#include "AppTestSupport.h"

#include "store/Localization.h"
#include "store/QuillmereLink.h"
#include "store/QuillmereLinkPage.h"
#include "store/QuillmerePage.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>
#include <QTableView>
#include <QTest>

#include <string>

namespace apptest {

// A site where every page is told apart by its title and its links:
//   /            "Accueil"  -> a "Alpha", b "Bravo", c "Charlie", missing.html "Perdu",
//                              missing.png "Image perdue", hidden.html "Cachée", canon.html "Canon"
//   /a.html      "Zulu"     -> b "B depuis A", c "C depuis A"
//   /b.html      "Mike"     -> c "C depuis B"
//   /c.html      "Echo"     -> a "A depuis C"
//   /hidden.html "Cachée"   (noindex) -> a "A depuis la page cachée"
//   /canon.html  "Canon"    (canonical: /a.html)
//   /missing.html answered 404 as HTML, /missing.png answered 404 as an image.
// Nothing links back to the start page.
class ListsSite {
public:
    ListsSite()
    {
        page("/", "Accueil",
             "<a href='a.html'>Alpha</a> <a href='b.html'>Bravo</a> <a href='c.html'>Charlie</a>"
             " <a href='missing.html'>Perdu</a> <a href='missing.png'>Image perdue</a>"
             " <a href='hidden.html'>Cachée</a> <a href='canon.html'>Canon</a>");
        page("/a.html", "Zulu", "<a href='b.html'>B depuis A</a> <a href='c.html'>C depuis A</a>");
        page("/b.html", "Mike", "<a href='c.html'>C depuis B</a>");
        page("/c.html", "Echo", "<a href='a.html'>A depuis C</a>");
        page("/hidden.html", "Cachée", "<a href='a.html'>A depuis la page cachée</a>",
             "<meta name='robots' content='noindex'>");
        page("/canon.html", "Canon", "<p>copie</p>", "<link rel='canonical' href='/a.html'>");
        server.setPage("/missing.html", "<html><body>Not here</body></html>", "text/html; charset=utf-8", 404);
        server.setPage("/missing.png", "not an image", "image/png", 404);
        started = server.start();
    }

    // The start URL of the project ("http://127.0.0.1:<port>") and the URL of a path.
    QString base() const { return q(server.baseUrl()); }
    QString U(const std::string& path) const { return q(server.url(path)); }

    LocalHttpServer server;
    bool started = false;

private:
    void page(const std::string& path, const std::string& title, const std::string& body, const std::string& head = "")
    {
        server.setPage(path, "<html><head><title>" + title + "</title>" + head + "</head><body>" + body
                                 + "</body></html>");
    }
};

// The launched application with the site crawled through the start button, its window
// shown at a size where every row of the lists is visible.
struct CrawledSite {
    ListsSite site;
    LaunchedApp app;
    ProjectPtr project;
    bool crawled = false;

    CrawledSite()
    {
        if (!site.started)
            return;
        app.window()->resize(1200, 1000);
        app.window()->show();
        project = app.createAndShowProject("lists", site.base());
        crawled = app.crawlThroughStartButton(20000);
    }
};

inline QString L(const char* key)
{
    return Localization::localizedString(key);
}

// The URLs of a list of pages, in order.
inline QStringList urlsOf(const QList<QuillmerePagePtr>& pages)
{
    QStringList urls;
    for (const auto& page : pages)
        urls << page->url();
    return urls;
}

// The row of a list whose page has that URL, -1 when none.
inline int rowOfURL(const QList<QuillmerePagePtr>& pages, const QString& url)
{
    for (int i = 0; i < pages.size(); ++i)
        if (pages.at(i)->url() == url)
            return i;
    return -1;
}

// The text that the table shows in a cell.
inline QString shown(QTableView* table, int row, int column)
{
    return table->model()->index(row, column).data(Qt::DisplayRole).toString();
}

// The header captions of a table, in order.
inline QStringList headerCaptions(QTableView* table)
{
    QStringList captions;
    for (int c = 0; c < table->model()->columnCount(); ++c)
        captions << table->model()->headerData(c, Qt::Horizontal, Qt::DisplayRole).toString();
    return captions;
}

// A left click in the middle of a header section.
inline void clickHeader(QTableView* table, int section)
{
    QHeaderView* header = table->horizontalHeader();
    const QPoint at(header->sectionViewportPosition(section) + header->sectionSize(section) / 2, header->height() / 2);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier, at);
}

// A left click in the middle of a row's first cell.
inline void clickRow(QTableView* table, int row)
{
    QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier,
                      table->visualRect(table->model()->index(row, 0)).center());
}

// A point of the table's viewport below its last row (the table must be taller than its rows).
inline QPoint pointBelowLastRow(QTableView* table)
{
    const int rows = table->model()->rowCount();
    const int bottom = rows > 0 ? table->visualRect(table->model()->index(rows - 1, 0)).bottom() : 0;
    return QPoint(20, bottom + 10);
}

// What the context menu showed when it opened.
struct MenuSeen {
    bool opened = false;
    QMenu* menu = nullptr;
    QString title;
    bool enabled = false;
};

// A right click at a point of the table's viewport: the context menu opens there; once it is
// up, its first item is read and, when `choose` is set and the item is enabled, chosen, and
// the menu is closed.
inline MenuSeen rightClick(QTableView* table, const QPoint& at, bool choose = false)
{
    auto seen = std::make_shared<MenuSeen>();
    QTimer::singleShot(0, table, [seen, choose] {
        // The menu's event loop is running by now.
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu)
            return;
        seen->opened = true;
        seen->menu = menu;
        QAction* item = menu->actions().value(0);
        seen->title = item ? item->text() : QString();
        seen->enabled = item && item->isEnabled();
        if (choose && seen->enabled) {
            menu->setActiveAction(item);
            QTest::keyClick(menu, Qt::Key_Return);
        } else {
            menu->close();
        }
    });
    QWidget* viewport = table->viewport();
    QTest::mousePress(viewport, Qt::RightButton, Qt::NoModifier, at);
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, viewport->mapToGlobal(at));
    QApplication::sendEvent(viewport, &event);
    QTest::mouseRelease(viewport, Qt::RightButton, Qt::NoModifier, at);
    QCoreApplication::processEvents();
    return *seen;
}

} // namespace apptest
