// The headless crawl driver: one whole crawl through launchTestWithURL, and the record
// keeping it does for the crawler.

#include "CrawlTestSupport.h"

#include "crawler/DownloaderCmdLineTestController.h"

using namespace crawltest;

namespace {

class DownloaderCmdLineTestControllerTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(site.started());
        // Home links a.html twice and b.html; a.html links back three times.
        site.page("/", "Home", anchor("a.html", "A") + anchor("a.html", "A2") + anchor("b.html", "B"));
        site.page("/a.html", "A", anchor("/", "H1") + anchor("/", "H2") + anchor("/", "H3"));
        site.page("/b.html", "B", "");
    }

    void TearDown() override
    {
        if (controller && controller->project())
            controller->project()->closeSQLiteDatabase();
        controller.reset();
    }

    // Starts the crawl and runs the main event loop until it has ended.
    void launch()
    {
        controller = std::make_shared<DownloaderCmdLineTestController>();
        controller->launchTestWithURL(site.U("/"), QStringLiteral("headless"));
        ASSERT_TRUE(controller->project());
        ASSERT_TRUE(controller->downloaderOperation());
        auto operation = controller->downloaderOperation();
        ASSERT_TRUE(spinUntil([operation] { return operation->isFinished(); }, 30000));
        db = std::make_unique<Db>(controller->project(), site.base());
    }

    std::vector<std::string> projectState() const
    {
        const auto& p = controller->project();
        return {std::to_string(p->pages_count()), std::to_string(p->max_depth()),
                p->crawler_start_date().toString(Qt::ISODateWithMs).toStdString(),
                p->crawler_stop_date().toString(Qt::ISODateWithMs).toStdString()};
    }

    TestApp app;
    Site site;
    std::shared_ptr<DownloaderCmdLineTestController> controller;
    std::unique_ptr<Db> db;
};

TEST_F(DownloaderCmdLineTestControllerTest, LaunchCrawlsTheWholeSiteAndWeighsThePages)
{
    launch();

    const auto project = controller->project();
    EXPECT_EQ(project->name(), QStringLiteral("headless"));
    EXPECT_EQ(project->url(), site.U("/"));
    EXPECT_EQ(project->limit_depth(), -1);
    EXPECT_EQ(project->limit_page_count(), -1);
    // The driver keeps no running counts.
    EXPECT_EQ(project->pages_count(), 0);
    EXPECT_EQ(project->max_depth(), 0);
    EXPECT_TRUE(Project::getProjectWithName(QStringLiteral("headless")));
    EXPECT_EQ(controller->operationsQueue()->operationCount(), 0);

    const auto pages = db->pages();
    ASSERT_EQ(db->pageUrls(), lines("~/", "~/a.html", "~/b.html"));
    EXPECT_EQ(pages[0].title, "Home");
    EXPECT_EQ(pages[0].in, 3);
    EXPECT_EQ(pages[0].out, 3);
    EXPECT_DOUBLE_EQ(pages[0].weight, 3.0);
    EXPECT_EQ(pages[1].title, "A");
    EXPECT_EQ(pages[1].in, 2);
    EXPECT_EQ(pages[1].out, 3);
    EXPECT_EQ(pages[1].depth, 2);
    EXPECT_DOUBLE_EQ(pages[1].weight, 1.0);
    EXPECT_EQ(pages[2].title, "B");
    EXPECT_EQ(pages[2].in, 1);
    EXPECT_DOUBLE_EQ(pages[2].weight, 0.0);
    EXPECT_EQ(db->links(), rowsOf(LinkRow{"~/", "~/a.html", "A", 0}, LinkRow{"~/", "~/a.html", "A2", 0},
                                  LinkRow{"~/", "~/b.html", "B", 0}, LinkRow{"~/a.html", "~/", "H1", 2},
                                  LinkRow{"~/a.html", "~/", "H2", 2}, LinkRow{"~/a.html", "~/", "H3", 2}));
    EXPECT_TRUE(db->waitingUrls().empty());
    EXPECT_EQ(db->count("DownloaderQueue"), 3);
    EXPECT_EQ(site.hits("/"), 1);
    EXPECT_EQ(site.hits("/a.html"), 1);
    EXPECT_EQ(site.hits("/b.html"), 1);
}

TEST_F(DownloaderCmdLineTestControllerTest, LinkToAnUnseenURLCreatesTheTargetAndEachLinkCounts)
{
    launch();
    const QuillmerePagePtr source = controller->getPageFromURL(site.U("/a.html"));
    ASSERT_TRUE(source);
    ASSERT_EQ(source->inLinkCount(), 2);
    ASSERT_EQ(source->outLinkCount(), 3);

    EXPECT_TRUE(controller->foundLinkWithPath(QStringLiteral("/n"), QStringLiteral("new.html"), QStringLiteral("New"),
                                              site.U("/n/new.html"), 4, source));

    auto target = db->page("~/n/new.html");
    ASSERT_TRUE(target);
    EXPECT_EQ(target->title, "");
    EXPECT_EQ(target->path, "/n");
    EXPECT_EQ(target->page, "new.html");
    EXPECT_EQ(target->depth, 4);
    EXPECT_EQ(target->in, 1);
    EXPECT_EQ(target->out, 0);
    EXPECT_EQ(db->at("~/a.html").out, 4);
    EXPECT_EQ(db->at("~/a.html").in, 2);
    // The counter is the source's incoming count, not its outgoing one.
    EXPECT_EQ(lastOf(db->links()), (LinkRow{"~/a.html", "~/n/new.html", "New", 2}));

    // The same link again: a second record, both counts up once more.
    EXPECT_TRUE(controller->foundLinkWithPath(QStringLiteral("/n"), QStringLiteral("new.html"), QStringLiteral("New"),
                                              site.U("/n/new.html"), 4, source));

    EXPECT_EQ(db->at("~/n/new.html").in, 2);
    EXPECT_EQ(db->at("~/a.html").out, 5);
    const auto links = db->links();
    ASSERT_EQ(links.size(), 8u);
    EXPECT_EQ(links[6], (LinkRow{"~/a.html", "~/n/new.html", "New", 2}));
    EXPECT_EQ(links[7], (LinkRow{"~/a.html", "~/n/new.html", "New", 2}));
    EXPECT_EQ(db->count("Page"), 4);
}

TEST_F(DownloaderCmdLineTestControllerTest, FoundPageReturnsAnExistingRecordUnchanged)
{
    launch();
    const auto before = db->snapshot();
    const auto a = db->page("~/a.html");
    ASSERT_TRUE(a);

    const QuillmerePagePtr found = controller->foundPageWithPath(
        QStringLiteral("/elsewhere"), QStringLiteral("other.html"), QStringLiteral("Other title"), site.U("/a.html"), 9);

    ASSERT_TRUE(found);
    EXPECT_EQ(found->idt(), a->idt);
    EXPECT_EQ(found->title(), QStringLiteral("A"));
    EXPECT_EQ(found->path(), QStringLiteral("/"));
    EXPECT_EQ(found->page(), QStringLiteral("a.html"));
    EXPECT_EQ(found->depth(), 2);
    EXPECT_EQ(db->snapshot(), before);

    // An unseen URL is created from the arguments.
    const QuillmerePagePtr fresh = controller->foundPageWithPath(QStringLiteral("/f"), QStringLiteral("fresh.html"),
                                                                 QStringLiteral("Fresh"), site.U("/f/fresh.html"), 5);
    ASSERT_TRUE(fresh);
    const auto row = db->page("~/f/fresh.html");
    ASSERT_TRUE(row);
    EXPECT_EQ(row->idt, fresh->idt());
    EXPECT_EQ(row->title, "Fresh");
    EXPECT_EQ(row->path, "/f");
    EXPECT_EQ(row->depth, 5);
}

TEST_F(DownloaderCmdLineTestControllerTest, ErrorAndProgressMessagesChangeNothing)
{
    launch();
    const auto before = db->snapshot();
    const auto projectBefore = projectState();

    controller->downloaderEndWithError(DownloaderOperationLibXML::firstURLErrorMessage());
    controller->initLinkProgressWithMaxValue(7);
    controller->setLinkProgressWithValue(3, 7);
    controller->setWaitingQueueCount(12, 34);
    // Nor do the page messages: the driver keeps no page count or depth.
    controller->downloadPageDidStartWithURL(site.U("/zz.html"), 6);
    controller->downloadPageDidEndWithURL(site.U("/zz.html"), 6);

    EXPECT_EQ(db->snapshot(), before);
    EXPECT_EQ(projectState(), projectBefore);
}

} // namespace
