// Only web addresses reach the system browser: a page URL of another scheme, left in a crawl
// database by a hostile redirect, opens nothing from the documents list.
#include "ListsTestSupport.h"

#include "store/LinkHeaders.h"
#include "store/PageFilter.h"

using namespace apptest;

namespace {

TEST(SystemBrowserTest, OnlyHttpAndHttpsAreHandedOn)
{
    LaunchedApp app;
    for (const char* refused : {"file:///etc/passwd", "smb://server/share", "javascript:alert(1)", "FILE:///x",
                                "ftp://example.org/", "data:text/html,hi", "http:/no-host", ""}) {
        EXPECT_FALSE(SystemBrowser::openURL(QUrl(QString::fromLatin1(refused)))) << refused;
    }
    EXPECT_TRUE(app.openedURLs.empty());
    EXPECT_TRUE(SystemBrowser::openURL(QUrl("http://127.0.0.1/a.html")));
    EXPECT_TRUE(SystemBrowser::openURL(QUrl("HTTPS://example.org/")));
    ASSERT_EQ(app.openedURLs.size(), 2u);
    EXPECT_EQ(app.openedURLs.at(0), QUrl("http://127.0.0.1/a.html"));
}

TEST(SystemBrowserTest, TheDocumentsListOpensNoFileURL)
{
    CrawledSite s;
    ASSERT_TRUE(s.crawled);
    // What a crawl that followed a redirect to file: would have left.
    ASSERT_TRUE(QuillmerePage::createPageWithPath("/etc/", "passwd", "Passwd", "file:///etc/passwd", 2, s.project));
    ASSERT_TRUE(LinkHeaders::createLinkHeadersWithURL("file:///etc/passwd", "text/html", 10, 10, s.project));
    DocumentsView* view = s.app.documentsView();
    view->refreshTableViewWithFilter(PageFilter::All);
    const int row = rowOfURL(view->arrayOfPages(), "file:///etc/passwd");
    ASSERT_GE(row, 0);
    view->menuNeedsUpdate(row);
    view->openURLAction();
    EXPECT_TRUE(s.app.openedURLs.empty());

    // An ordinary row still opens.
    const int start = rowOfURL(view->arrayOfPages(), s.site.base());
    ASSERT_GE(start, 0);
    view->menuNeedsUpdate(start);
    view->openURLAction();
    ASSERT_EQ(s.app.openedURLs.size(), 1u);
    EXPECT_EQ(s.app.openedURLs.at(0), QUrl(s.site.base()));
}

} // namespace
