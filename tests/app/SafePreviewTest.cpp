// The preview without scripts: the selected page of the crawl, loaded with JavaScript off and
// no request to any server but the site's; the described preview keeps its own page.
#include "PicturesTestSupport.h"

#include "app/SafePreviewPage.h"
#include "app/SameSiteRequestInterceptor.h"
#include "app/WebPreviewPage.h"

#include <QTabBar>
#include <QWebEngineScript>
#include <QWebEngineView>

using namespace apptest;

namespace {

class SafePreviewTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        s = std::make_unique<CrawledPicturesSite>();
        ASSERT_TRUE(s->site.started);
        ASSERT_TRUE(s->crawled);
        page = s->tabs()->safePreviewPage();
        QObject::connect(page, &QWebEnginePage::loadFinished, [this](bool ok) {
            ++loads;
            lastLoadOk = ok;
        });
    }

    void showTab()
    {
        QTabBar* bar = s->tabs()->tabBar();
        QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, bar->tabRect(PreviewTabs::SafePreviewTab).center());
        ASSERT_EQ(s->tabs()->currentWidget(), static_cast<QWidget*>(s->tabs()->safePreview()));
    }

    // Runs a script in the program's own world, which works with the page's scripts off.
    QVariant evaluate(const QString& script)
    {
        bool done = false;
        QVariant result;
        page->runJavaScript(script, QWebEngineScript::ApplicationWorld, [&](const QVariant& value) {
            result = value;
            done = true;
        });
        EXPECT_TRUE(waitUntil([&] { return done; }, 10000)) << script.toStdString();
        return result;
    }

    std::unique_ptr<CrawledPicturesSite> s;
    SafePreviewPage* page = nullptr;
    int loads = 0;
    bool lastLoadOk = false;
};

TEST_F(SafePreviewTest, LoadsTheSelectedPageWithoutScriptsOrOtherHosts)
{
    const size_t pageBefore = PicturesSite::requestsFor(s->site.server, "/safe.html");
    const size_t localBefore = PicturesSite::requestsFor(s->site.server, "/local.png");
    const size_t otherBefore = s->site.other.requestCount();
    const size_t scriptBefore = PicturesSite::requestsFor(s->site.server, "/script-ran.png");

    ASSERT_TRUE(s->selectDocument(s->site.U("/safe.html")));
    showTab();
    ASSERT_TRUE(waitUntil([&] { return loads > 0; }, 20000));
    EXPECT_TRUE(lastLoadOk);
    EXPECT_EQ(page->url(), QUrl(s->site.U("/safe.html")));
    // The page and its image of the site came from the site...
    EXPECT_EQ(PicturesSite::requestsFor(s->site.server, "/safe.html"), pageBefore + 1);
    EXPECT_TRUE(waitUntil([&] { return PicturesSite::requestsFor(s->site.server, "/local.png") > localBefore; }, 10000));
    EXPECT_EQ(evaluate(QStringLiteral("document.images.length")).toInt(), 2);
    waitUntil([] { return false; }, 500);
    // ...the other host saw nothing, and the script did not run.
    EXPECT_EQ(s->site.other.requestCount(), otherBefore);
    EXPECT_GE(page->interceptor()->blockedCount(), 1);
    EXPECT_EQ(PicturesSite::requestsFor(s->site.server, "/script-ran.png"), scriptBefore);
    EXPECT_EQ(evaluate(QStringLiteral("document.title")).toString(), "Sûre");
    // The described preview keeps its own page.
    EXPECT_EQ(s->app.controller()->webPage()->url(), WebPreviewPage::promotionalPageURL());
}

TEST_F(SafePreviewTest, FollowsTheSelectionOnlyWhileShown)
{
    const size_t before = PicturesSite::requestsFor(s->site.server, "/a.html");
    ASSERT_TRUE(s->selectDocument(s->site.U("/a.html")));
    waitUntil([] { return false; }, 300);
    // Hidden, it loads nothing.
    EXPECT_EQ(loads, 0);
    EXPECT_EQ(PicturesSite::requestsFor(s->site.server, "/a.html"), before);
    showTab();
    ASSERT_TRUE(waitUntil([&] { return loads > 0; }, 20000));
    EXPECT_EQ(page->url(), QUrl(s->site.U("/a.html")));
    EXPECT_EQ(evaluate(QStringLiteral("document.title")).toString(), "Alpha");

    ASSERT_TRUE(s->selectDocument(s->site.U("/b.html")));
    ASSERT_TRUE(waitUntil([&] { return loads > 1; }, 20000));
    EXPECT_EQ(page->url(), QUrl(s->site.U("/b.html")));
}

TEST_F(SafePreviewTest, TheInterceptorTellsTheSiteFromOtherOrigins)
{
    SameSiteRequestInterceptor interceptor;
    interceptor.setSite(QUrl(s->site.base()));
    EXPECT_TRUE(interceptor.isSameSite(QUrl(s->site.U("/x.png"))));
    EXPECT_FALSE(interceptor.isSameSite(QUrl(s->site.other.url("/x.png").c_str())));
    EXPECT_FALSE(interceptor.isSameSite(QUrl("https://127.0.0.1:" + QString::number(s->site.server.port()) + "/")));
    EXPECT_FALSE(interceptor.isSameSite(QUrl("http://127.0.0.1:" + QString::number(s->site.server.port() + 1) + "/")));
    EXPECT_TRUE(interceptor.isSameSite(QUrl("data:image/png;base64,AAAA")));
}

} // namespace
