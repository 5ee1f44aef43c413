// Fetching the next pages while one is analysed must change nothing the crawl records nor
// ask the site for anything a one-at-a-time crawl would not, and must leave no thread or
// transfer behind. Also: a delegate that takes its calls on the crawler's thread, and the
// cap on requests per second.

#include "CrawlTestSupport.h"

#include "crawler/RecordKeepingDelegate.h"
#include "fetch/URLConnection.h"
#include "support/StallingSite.h"

#include <QThread>

#include <dirent.h>

#include <chrono>
#include <set>

using namespace crawltest;

namespace {

using Snapshot = std::vector<std::vector<std::string>>;

int threadCount()
{
    int count = 0;
    if (DIR* dir = ::opendir("/proc/self/task")) {
        while (dirent* entry = ::readdir(dir))
            if (entry->d_name[0] != '.')
                ++count;
        ::closedir(dir);
    }
    return count;
}

// Records like the window's delegate, but takes the per-page calls on the crawler's thread;
// notes which thread each call came on.
class CrawlerThreadDelegate : public RecordKeepingDelegate {
public:
    explicit CrawlerThreadDelegate(std::shared_ptr<Project> project) { setProject(std::move(project)); }

    bool takesCallsOnCrawlerThread() const override { return true; }

    void downloaderDidStart() override
    {
        startOnMain = MainThread::isMainThread();
        keeper().crawlDidStart();
    }
    void downloaderDidEnd() override
    {
        endOnMain = MainThread::isMainThread();
        keeper().crawlDidEnd(nullptr, nullptr);
    }
    void downloaderEndWithError(const QString&) override { note(); }
    void downloadPageDidStartWithURL(const QString& url, qint32 depth) override
    {
        note();
        keeper().pageDidStart(url, depth);
    }
    void downloadPageDidEndWithURL(const QString&, qint32) override { note(); }
    QuillmerePagePtr foundPageWithPath(const QString& path, const QString& name, const QString& title,
                                       const QString& url, qint32 depth) override
    {
        note();
        return RecordKeepingDelegate::foundPageWithPath(path, name, title, url, depth);
    }
    bool foundLinkWithPath(const QString& path, const QString& name, const QString& anchor, const QString& url,
                           qint32 depth, const QuillmerePagePtr& page) override
    {
        note();
        return RecordKeepingDelegate::foundLinkWithPath(path, name, anchor, url, depth, page);
    }
    void initLinkProgressWithMaxValue(qint32) override { note(); }
    void setLinkProgressWithValue(qint32, qint32) override { note(); }
    void setWaitingQueueCount(qint32, qint32) override { note(); }

    std::atomic<bool> startOnMain{false};
    std::atomic<bool> endOnMain{false};
    std::atomic<int> perPageCalls{0};
    std::atomic<int> perPageCallsOnMain{0};

private:
    void note()
    {
        ++perPageCalls;
        if (MainThread::isMainThread() || QThread::currentThread() == QCoreApplication::instance()->thread())
            ++perPageCallsOnMain;
    }
};

class CrawlFetchAheadTest : public CrawlFixture {
protected:
    void TearDown() override
    {
        CrawlFixture::TearDown();
        for (auto& other : projects)
            other->closeSQLiteDatabase();
    }

    // About thirty pages in several depths, with the cases the crawler treats apart.
    void buildSite()
    {
        std::string home = anchor("old.html", "Old") + anchor("missing.html", "Missing")
            + anchor("img/logo.png", "Logo") + anchor("hidden.html", "Hidden") + anchor("dup.html", "Dup");
        for (int section = 1; section <= 5; ++section) {
            const std::string dir = "/sec" + std::to_string(section) + "/";
            home += anchor(dir + "index.html", "Section " + std::to_string(section));
            std::string index = anchor("/", "Home");
            for (int n = 1; n <= 4; ++n) {
                const std::string name = "p" + std::to_string(n) + ".html";
                index += anchor(name, "Page " + std::to_string(n));
                std::string body = anchor("index.html", "Up") + anchor("/", "Home");
                if (n < 4)
                    body += anchor("p" + std::to_string(n + 1) + ".html", "Next");
                else
                    body += anchor("/deep/d" + std::to_string(section) + ".html", "Deeper");
                if (n == 2)
                    body += anchor("/missing.html", "Missing again");
                site.page(dir + name, "S" + std::to_string(section) + " P" + std::to_string(n), body);
            }
            site.page(dir + "index.html", "Section " + std::to_string(section), index);
            site.page("/deep/d" + std::to_string(section) + ".html", "Deep " + std::to_string(section),
                      anchor("/sec1/p1.html", "Back") + anchor("/dup.html", "Dup"));
        }
        site.page("/", "Home", home);
        site.redirect("/old.html", "/older.html");
        site.redirect("/older.html", "/new.html", 302);
        site.page("/new.html", "New", anchor("/", "Home"));
        site.raw("/missing.html", "<html><body>not here</body></html>", "text/html", 404);
        site.raw("/img/logo.png", std::string("\x89PNG\r\n\x1a\n", 8) + std::string(200, 'x'), "image/png");
        site.page("/hidden.html", "Hidden", anchor("/sec2/p3.html", "S2P3"),
                  "<meta name=\"robots\" content=\"noindex\">");
        site.page("/dup.html", "Dup", anchor("/canon.html", "Canon"),
                  "<link rel=\"canonical\" href=\"" + site.base() + "/canon.html\">");
        site.page("/canon.html", "Canon", anchor("/", "Home"));
    }

    // Every table of the crawl database; of the fetch log, the columns that do not depend on
    // the clock.
    Snapshot snapshotOf(const Db& database) const
    {
        Snapshot all = database.snapshot();
        if (!database.rows("select name from sqlite_master where name = 'FetchLog'").empty()) {
            for (auto& r : database.rows("select url, final_url, status, failure, redirect_count, redirect_chain "
                                         "from FetchLog order by url"))
                all.push_back(r);
        }
        return all;
    }

    // A new project on the site, crawled to its end with that many fetches in flight.
    Snapshot crawlNewProject(const std::string& name, int parallel, qint32 limitDepth = -1,
                             qint32 limitPageCount = -1)
    {
        if (project)
            projects.push_back(project);
        project = Project::createProjectWithName(q(name), site.U("/"), limitDepth, limitPageCount);
        EXPECT_TRUE(project);
        if (!project)
            return {};
        newDelegate();
        db = std::make_unique<Db>(project, site.base());
        parallelFetches = parallel;
        crawl();
        return snapshotOf(*db);
    }

    std::set<std::string> requestedPathSet() const
    {
        const auto paths = site.requestedPaths();
        return std::set<std::string>(paths.begin(), paths.end());
    }

    std::vector<std::shared_ptr<Project>> projects;
};

TEST_F(CrawlFetchAheadTest, ParallelCrawlsRecordExactlyWhatTheOneAtATimeCrawlRecords)
{
    buildSite();
    const Snapshot one = crawlNewProject("one", 1);
    ASSERT_GE(db->count("Page"), 30);
    EXPECT_EQ(db->at("~/sec3/p4.html").title, "S3 P4");
    EXPECT_EQ(db->at("~/hidden.html").noIndex, 1);
    EXPECT_EQ(operation->parallelFetches(), 1);

    const Snapshot four = crawlNewProject("four", 4);
    EXPECT_EQ(operation->parallelFetches(), 4);
    EXPECT_EQ(four, one);

    const Snapshot eight = crawlNewProject("eight", 8);
    EXPECT_EQ(eight, one);
}

// The links of a page fetched ahead are read on the thread that fetched it: every kind of
// anchor the analysis tells apart is read there as it is in turn, with and without the
// project following nofollow links.
TEST_F(CrawlFetchAheadTest, AnchorsReadAheadAreTheAnchorsReadInTurn)
{
    buildSite();
    const std::string odd = anchor("sub/rel.html", "Relative") + anchor("../sec2/p1.html", "Up a level")
        + anchor("nf.html", "Nofollow", "rel=\"nofollow\"") + anchor("mailto:a@example.org", "Mail")
        + anchor("  JavaScript:void(0)", "Script") + anchor("http://elsewhere.invalid/x.html", "Out")
        + anchor("#top", "Top") + "<a name=\"no-href\">None</a>" + anchor(" p2.html ", "Blanks");
    // An href that climbs above the site's root is a fault that ends the page's analysis
    // there, on whichever thread it was read.
    site.page("/sec4/fault.html", "Fault", anchor("p1.html", "P1") + anchor("../../../../x", "Too far") + anchor("z.html", "Z"));
    site.page("/sec4/index.html", "Section 4", anchor("fault.html", "Fault") + anchor("/", "Home"));
    site.page("/sec3/odd.html", "Odd", odd);
    site.page("/sec3/sub/rel.html", "Rel", anchor("../odd.html", "Back"));
    site.page("/sec3/nf.html", "NF", anchor("/", "Home"));
    site.page("/sec3/index.html", "Section 3", anchor("odd.html", "Odd") + anchor("/", "Home"));
    for (const bool followNofollow : {false, true}) {
        const std::string suffix = followNofollow ? "-nf" : "";
        auto crawlWith = [&](const std::string& name, int parallel) {
            if (project)
                projects.push_back(project);
            project = Project::createProjectWithName(q(name + suffix), site.U("/"), -1, -1);
            EXPECT_TRUE(project);
            project->setExplore_no_follow(followNofollow);
            newDelegate();
            db = std::make_unique<Db>(project, site.base());
            parallelFetches = parallel;
            crawl();
            return snapshotOf(*db);
        };
        const Snapshot one = crawlWith("odd-one", 1);
        EXPECT_TRUE(db->page("~/sec3/sub/rel.html").has_value());
        EXPECT_EQ(db->page("~/sec3/nf.html").has_value(), followNofollow);
        EXPECT_EQ(db->at("~/sec4/fault.html").title, "Fault");
        EXPECT_FALSE(db->page("~/sec4/z.html").has_value());
        const Snapshot four = crawlWith("odd-four", 4);
        EXPECT_EQ(four, one) << "following nofollow: " << followNofollow;
    }
}

TEST_F(CrawlFetchAheadTest, APageLimitIsKeptAndNothingMoreIsAsked)
{
    buildSite();
    const Snapshot one = crawlNewProject("one", 1, -1, 5);
    const auto askedByOne = requestedPathSet();
    // The limit stopped the crawl with pages still waiting, which the parallel crawl could
    // have fetched ahead.
    EXPECT_FALSE(db->waitingUrls().empty());
    EXPECT_FALSE(askedByOne.count("/sec5/index.html"));
    site.server.clearRequests();

    const Snapshot four = crawlNewProject("four", 4, -1, 5);
    EXPECT_EQ(four, one);
    for (const auto& path : requestedPathSet())
        EXPECT_TRUE(askedByOne.count(path)) << path << " was asked only by the parallel crawl";
}

TEST_F(CrawlFetchAheadTest, ADepthLimitIsKeptAndNothingMoreIsAsked)
{
    buildSite();
    const Snapshot one = crawlNewProject("one", 1, 2);
    const auto askedByOne = requestedPathSet();
    EXPECT_TRUE(askedByOne.count("/sec1/index.html"));
    EXPECT_FALSE(askedByOne.count("/sec1/p2.html"));
    site.server.clearRequests();

    const Snapshot four = crawlNewProject("four", 4, 2);
    EXPECT_EQ(four, one);
    for (const auto& path : requestedPathSet())
        EXPECT_TRUE(askedByOne.count(path)) << path << " was asked only by the parallel crawl";
}

TEST_F(CrawlFetchAheadTest, NoThreadNorTransferIsLeftBehind)
{
    buildSite();
    // The queue's worker and anything a first crawl sets up for good are there before
    // the count is taken.
    crawlNewProject("warm", 1);
    spinUntil([] { return false; }, 200);
    const int before = threadCount();

    crawlNewProject("four", 4);
    EXPECT_EQ(URLConnection::idleTransferCount(), 0);
    // The site's connection threads end once their answers are sent.
    EXPECT_TRUE(spinUntil([&] { return threadCount() <= before; }, 5000))
        << threadCount() << " threads after the crawl, " << before << " before";
}

TEST_F(CrawlFetchAheadTest, AStoppedParallelCrawlResumedEndsLikeAnUninterruptedOne)
{
    StallingSite stalling;
    ASSERT_TRUE(stalling.start());
    stalling.page("/", "Home",
                  anchor("a.html", "A") + anchor("stall.html", "Stall") + anchor("b.html", "B") + anchor("c.html", "C")
                      + anchor("d.html", "D") + anchor("e.html", "E"));
    stalling.page("/a.html", "A", anchor("a2.html", "A2"));
    stalling.page("/a2.html", "A2", "");
    stalling.page("/stall.html", "Stall", anchor("s2.html", "S2"));
    stalling.page("/s2.html", "S2", anchor("/", "Home"));
    for (const char* name : {"b", "c", "d", "e"})
        stalling.page(std::string("/") + name + ".html", name, anchor(std::string(name) + "2.html", "Next"));
    for (const char* name : {"b2", "c2", "d2", "e2"})
        stalling.page(std::string("/") + name + ".html", name, anchor("/a.html", "A"));

    auto makeStallingProject = [&](const char* name) {
        if (project)
            projects.push_back(project);
        project = Project::createProjectWithName(QString::fromLatin1(name), q(stalling.base() + "/"), -1, -1);
        ASSERT_TRUE(project);
        delegate = std::make_shared<RecordingDelegate>(project, stalling.base());
        db = std::make_unique<Db>(project, stalling.base());
    };
    parallelFetches = 4;

    makeStallingProject("stopped");
    operation = DownloaderOperationLibXML::initWithProject(project, delegate);
    operation->setParallelFetches(4);
    auto finished = std::make_shared<std::atomic<bool>>(false);
    operation->setCompletionBlock([finished] { finished->store(true); });
    queue->addOperation(operation);
    ASSERT_TRUE(spinUntil([&] { return stalling.hits("/stall.html") == 1; }, 10000));
    spinUntil([] { return false; }, 300);
    operation->setCanContinue(false);
    ASSERT_TRUE(spinUntil([&] { return finished->load(); }, 5000));
    EXPECT_FALSE(db->waitingUrls().empty());
    EXPECT_FALSE(db->header("~/stall.html"));

    stalling.release();
    delegate = std::make_shared<RecordingDelegate>(project, stalling.base());
    resume();
    EXPECT_TRUE(db->waitingUrls().empty());
    const Snapshot resumed = snapshotOf(*db);
    const qint32 resumedCount = project->pages_count();

    makeStallingProject("whole");
    crawl();
    EXPECT_EQ(resumed, snapshotOf(*db));
    EXPECT_EQ(resumedCount, project->pages_count());
    EXPECT_EQ(db->at("~/s2.html").title, "S2");
}

TEST_F(CrawlFetchAheadTest, ADelegateOnTheCrawlerThreadRecordsTheSameDatabase)
{
    buildSite();
    const Snapshot onMain = crawlNewProject("main", 4);

    projects.push_back(project);
    project = Project::createProjectWithName(QStringLiteral("direct"), site.U("/"), -1, -1);
    ASSERT_TRUE(project);
    db = std::make_unique<Db>(project, site.base());
    auto direct = std::make_shared<CrawlerThreadDelegate>(project);
    operation = DownloaderOperationLibXML::initWithProject(project, direct);
    operation->setParallelFetches(4);
    ASSERT_TRUE(runOperation(*queue, operation));

    EXPECT_TRUE(direct->startOnMain.load());
    EXPECT_TRUE(direct->endOnMain.load());
    EXPECT_GT(direct->perPageCalls.load(), 30);
    EXPECT_EQ(direct->perPageCallsOnMain.load(), 0);
    EXPECT_EQ(snapshotOf(*db), onMain);
}

TEST_F(CrawlFetchAheadTest, ACapOnRequestsPerSecondSpacesThemAndChangesNoRecord)
{
    std::mutex mutex;
    std::vector<std::chrono::steady_clock::time_point> arrivals;
    auto timedPage = [&](const std::string& path, const std::string& title, const std::string& body) {
        const std::string html = "<html><head><title>" + title + "</title></head><body>" + body + "</body></html>";
        site.server.route(path, [&mutex, &arrivals, html](const HttpRequest&, HttpResponse& response) {
            {
                std::lock_guard lock(mutex);
                arrivals.push_back(std::chrono::steady_clock::now());
            }
            response.setContent(html, "text/html; charset=utf-8");
        });
    };
    std::string home;
    for (int n = 1; n <= 7; ++n) {
        home += anchor("p" + std::to_string(n) + ".html", "P" + std::to_string(n));
        timedPage("/p" + std::to_string(n) + ".html", "P" + std::to_string(n), anchor("/", "Home"));
    }
    timedPage("/", "Home", home);

    const Snapshot free = crawlNewProject("free", 4);
    {
        std::lock_guard lock(mutex);
        arrivals.clear();
    }

    projects.push_back(project);
    project = Project::createProjectWithName(QStringLiteral("paced"), site.U("/"), -1, -1);
    ASSERT_TRUE(project);
    newDelegate();
    db = std::make_unique<Db>(project, site.base());
    operation = DownloaderOperationLibXML::initWithProject(project, delegate);
    operation->setParallelFetches(4);
    operation->setMaxRequestsPerSecond(10);
    EXPECT_EQ(operation->maxRequestsPerSecond(), 10);
    ASSERT_TRUE(runOperation(*queue, operation));
    EXPECT_EQ(snapshotOf(*db), free);

    std::lock_guard lock(mutex);
    ASSERT_EQ(arrivals.size(), 8u);
    std::sort(arrivals.begin(), arrivals.end());
    using std::chrono::milliseconds;
    for (size_t i = 1; i < arrivals.size(); ++i) {
        const auto gap = std::chrono::duration_cast<milliseconds>(arrivals[i] - arrivals[i - 1]).count();
        // A tenth of a second apart at the start; arrival may shift a little either way.
        EXPECT_GE(gap, 70) << "between requests " << i - 1 << " and " << i;
    }
    EXPECT_GE(std::chrono::duration_cast<milliseconds>(arrivals.back() - arrivals.front()).count(), 630);
}

} // namespace
