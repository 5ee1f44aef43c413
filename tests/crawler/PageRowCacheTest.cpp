// The page records a crawl looks up by URL are answered from memory: checked here against the
// database on every look-up, over crawls that meet every kind of write the records get.
#include "CrawlTestSupport.h"

#include "crawler/CrawlRecordKeeper.h"
#include "store/PageRowCache.h"

using namespace crawltest;

namespace {

class PageRowCacheTest : public CrawlFixture {
protected:
    void SetUp() override
    {
        CrawlFixture::SetUp();
        PageRowCache::setChecking(true);
        answersBefore = PageRowCache::answersFromMemory();
        mismatchesBefore = PageRowCache::mismatches();
    }
    void TearDown() override
    {
        PageRowCache::setChecking(false);
        CrawlFixture::TearDown();
    }

    qint64 answers() const { return PageRowCache::answersFromMemory() - answersBefore; }
    qint64 mismatches() const { return PageRowCache::mismatches() - mismatchesBefore; }

    // Redirects, a missing page, a picture, noindex and canonical pages, slash twins, links to
    // the page itself and to pages analysed before, several links to one target.
    void buildSite()
    {
        site.page("/", "Home",
                  anchor("a.html", "A") + anchor("a.html", "A again") + anchor("dir", "Dir") + anchor("dir/", "Dir/")
                      + anchor("old.html", "Old") + anchor("missing.html", "Missing") + anchor("pic.png", "Pic")
                      + anchor("hidden.html", "Hidden") + anchor("dup.html", "Dup") + anchor("/", "Self"));
        site.page("/a.html", "A", anchor("/", "Home") + anchor("a.html", "Self") + anchor("b.html", "B"));
        site.page("/b.html", "B", anchor("a.html", "A") + anchor("c.html", "C") + anchor("dir/", "Dir"));
        site.page("/c.html", "C", anchor("b.html", "B") + anchor("/", "Home"));
        site.page("/dir", "Dir bare", anchor("/c.html", "C"));
        site.page("/dir/", "Dir", anchor("../a.html", "A") + anchor("x.html", "X"));
        site.page("/dir/x.html", "X", anchor("/dir", "Dir bare"));
        site.redirect("/old.html", "/new.html");
        site.page("/new.html", "New", anchor("/a.html", "A"));
        site.raw("/missing.html", "<html><body>gone</body></html>", "text/html", 404);
        site.raw("/pic.png", std::string("\x89PNG\r\n\x1a\n", 8), "image/png");
        site.page("/hidden.html", "Hidden", anchor("/b.html", "B"), "<meta name=\"robots\" content=\"noindex,nofollow\">");
        site.page("/dup.html", "Dup", anchor("/c.html", "C"),
                  "<link rel=\"canonical\" href=\"" + site.base() + "/c.html\">");
    }

    qint64 answersBefore = 0;
    qint64 mismatchesBefore = 0;
};

TEST_F(PageRowCacheTest, EveryAnswerFromMemoryIsTheDatabasesOneTimeByTime)
{
    buildSite();
    std::vector<std::shared_ptr<Project>> done;
    for (const int parallel : {1, 4}) {
        parallelFetches = parallel;
        if (project)
            done.push_back(project);
        project = Project::createProjectWithName(QStringLiteral("site%1").arg(parallel), site.U("/"), -1, -1);
        ASSERT_TRUE(project);
        newDelegate();
        db = std::make_unique<Db>(project, site.base());
        crawl();
        EXPECT_GE(db->count("Page"), 10) << "parallel " << parallel;
    }
    EXPECT_GT(answers(), 50);
    EXPECT_EQ(mismatches(), 0);
}

TEST_F(PageRowCacheTest, ARunOverRecordsOfAnEarlierRunAnswersWhatTheyHoldNow)
{
    buildSite();
    // A page limit stops the first run with entries waiting; the continued run finds the
    // records the first one left, then a restart empties them.
    makeProject("/", -1, 4);
    crawl();
    ASSERT_FALSE(db->waitingUrls().empty());
    project->setLimit_page_count(-1);
    newDelegate();
    resume();
    EXPECT_TRUE(db->waitingUrls().empty());
    CrawlRecordKeeper::restartProject(project);
    newDelegate();
    crawl();
    EXPECT_GE(db->count("Page"), 10);
    EXPECT_GT(answers(), 50);
    EXPECT_EQ(mismatches(), 0);
}

TEST_F(PageRowCacheTest, NothingIsKeptOutsideACrawlNorForAnotherConnection)
{
    buildSite();
    makeProject("/");
    crawl();
    sqlite3* db = project->sqlite3Database();
    EXPECT_FALSE(PageRowCache::isEnabled(db));
    const qint64 before = PageRowCache::answersFromMemory();
    EXPECT_TRUE(QuillmerePage::getPageFromURL(site.U("/a.html"), project));
    EXPECT_TRUE(QuillmerePage::getPageFromURL(site.U("/a.html"), project));
    EXPECT_EQ(PageRowCache::answersFromMemory(), before);
}

TEST(PageRowCacheStoredForm, TextsComeBackAsTheDatabaseGivesThem)
{
    EXPECT_EQ(PageRowCache::storedForm(QStringLiteral("Titre é")), QStringLiteral("Titre é"));
    EXPECT_FALSE(PageRowCache::storedForm(QString()).isNull());
    EXPECT_TRUE(PageRowCache::storedForm(QString()).isEmpty());
    EXPECT_EQ(PageRowCache::storedForm(QStringLiteral("ab") + QChar(0) + QStringLiteral("cd")), QStringLiteral("ab"));
}

} // namespace
