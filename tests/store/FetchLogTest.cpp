#include "store/FetchLog.h"
#include "store/QuillmereLink.h"
#include "store/QuillmerePage.h"

#include "QuillmereRecordsTestSupport.h"


namespace {

FetchOutcome outcome(const QString& url, int status, FetchOutcome::Failure failure = FetchOutcome::Failure::None)
{
    FetchOutcome o;
    o.requestedURL = url;
    o.finalURL = url;
    o.status = status;
    o.failure = failure;
    o.responseMs = 12;
    o.fetchedAt = QDateTime(QDate(2024, 5, 6), QTime(7, 8, 9, 10), Qt::UTC);
    return o;
}

class FetchLogTest : public RecordsFixture {
protected:
    // A page that links to `target`, both recorded as the crawl records them.
    void linkTo(const QString& source, const QString& target)
    {
        auto s = QuillmerePage::getPageFromURL(source, project);
        if (!s)
            s = QuillmerePage::createPageWithPath("/", source, "S", source, 1, project);
        auto t = QuillmerePage::getPageFromURL(target, project);
        if (!t)
            t = QuillmerePage::createPageWithPath("/", target, "", target, 2, project);
        ASSERT_TRUE(s && t);
        ASSERT_TRUE(QuillmereLink::createLinkWithPageSource(s, t, "anchor", 1, project));
    }
};

TEST_F(FetchLogTest, ARecordedFetchReadsBackWithItsChain)
{
    FetchOutcome o = outcome("http://example.com/a", 200);
    o.finalURL = "http://example.com/c";
    o.redirectChain = {{"http://example.com/a", 301}, {"http://example.com/b", 302}};
    ASSERT_TRUE(FetchLog::recordFetch(o, project));
    const FetchLogPtr row = FetchLog::getFetchLogWithURL("http://example.com/a", project);
    ASSERT_TRUE(row);
    EXPECT_EQ(row->finalUrl(), "http://example.com/c");
    EXPECT_EQ(row->status(), 200);
    EXPECT_EQ(row->failure(), "");
    EXPECT_EQ(row->responseMs(), 12);
    ASSERT_EQ(row->redirectChain().size(), 2);
    EXPECT_EQ(row->redirectChain()[1].url, "http://example.com/b");
    EXPECT_EQ(row->redirectChain()[1].status, 302);
    EXPECT_EQ(row->fetchedAt(), o.fetchedAt);
    EXPECT_EQ(queryText("select fetched_at from FetchLog"), "2024-05-06T07:08:09.010Z");
    EXPECT_EQ(queryInt("select redirect_count from FetchLog"), 2);
}

TEST_F(FetchLogTest, TheLastFetchOfAURLWins)
{
    ASSERT_TRUE(FetchLog::recordFetch(outcome("http://example.com/a", 500), project));
    ASSERT_TRUE(FetchLog::recordFetch(outcome("http://example.com/a", 200), project));
    EXPECT_EQ(queryInt("select count(*) from FetchLog"), 1);
    EXPECT_EQ(FetchLog::getFetchLogWithURL("http://example.com/a", project)->status(), 200);
}

TEST_F(FetchLogTest, AnAbandonedTransferIsNotKept)
{
    EXPECT_FALSE(FetchLog::recordFetch(outcome("http://example.com/a", 0, FetchOutcome::Failure::Abandoned), project));
    EXPECT_FALSE(FetchLog::recordFetch(FetchOutcome(), project));
    EXPECT_EQ(queryInt("select count(*) from FetchLog"), 0);
}

TEST_F(FetchLogTest, FailuresAreKeptByName)
{
    FetchOutcome o = outcome("http://example.com/t", 0, FetchOutcome::Failure::TimedOut);
    o.failureText = "The request timed out.";
    ASSERT_TRUE(FetchLog::recordFetch(o, project));
    const FetchLogPtr row = FetchLog::getFetchLogWithURL("http://example.com/t", project);
    EXPECT_EQ(row->failure(), "timeout");
    EXPECT_EQ(row->failureText(), "The request timed out.");
    EXPECT_EQ(row->statusText(), "timeout");
    EXPECT_TRUE(row->isBroken());
}

TEST_F(FetchLogTest, BrokenMeansAnErrorStatusOrAFailedTransfer)
{
    const struct {
        int status;
        FetchOutcome::Failure failure;
        bool broken;
    } cases[] = {
        {200, FetchOutcome::Failure::None, false},          {404, FetchOutcome::Failure::None, true},
        {500, FetchOutcome::Failure::None, true},           {0, FetchOutcome::Failure::Refused, true},
        {0, FetchOutcome::Failure::HostNotFound, true},     {0, FetchOutcome::Failure::TimedOut, true},
        {200, FetchOutcome::Failure::WrongType, false},     {200, FetchOutcome::Failure::TooLarge, false},
        {404, FetchOutcome::Failure::WrongType, true},      {0, FetchOutcome::Failure::OtherHost, false},
        {301, FetchOutcome::Failure::TooManyRedirects, true},
    };
    int n = 0;
    for (const auto& c : cases) {
        const QString target = QStringLiteral("http://example.com/t%1").arg(++n);
        linkTo("http://example.com/", target);
        ASSERT_TRUE(FetchLog::recordFetch(outcome(target, c.status, c.failure), project));
        EXPECT_EQ(FetchLog::getFetchLogWithURL(target, project)->isBroken(), c.broken) << n;
    }
    linkTo("http://example.com/other", "http://example.com/t2");
    // Targets 2, 3, 4, 5, 6, 9 and 11 are broken; the second link to t2 counts too.
    EXPECT_EQ(FetchLog::countBrokenTargets(project), 7);
    EXPECT_EQ(FetchLog::countBrokenLinks(project), 8);
}

TEST_F(FetchLogTest, TruncateEmptiesTheLog)
{
    ASSERT_TRUE(FetchLog::recordFetch(outcome("http://example.com/a", 200), project));
    project->truncateSQLiteDatabase();
    EXPECT_EQ(queryInt("select count(*) from FetchLog"), 0);
}

TEST_F(FetchLogTest, ADatabaseMadeBeforeTheLogGetsIt)
{
    replaceDatabaseWithTablesOnly({"Page", "Links", "DownloaderQueue", "LinkHeaders"});
    exec("select 1");  // opens it again
    EXPECT_TRUE(FetchLog::hasTable(db()));
    EXPECT_TRUE(FetchLog::recordFetch(outcome("http://example.com/a", 200), project));
    // The four tables are as the older version made them.
    int count = 0;
    const char* const* schema = DataModelManager::crawlDatabaseSchema(&count);
    for (const char* name : {"Page", "Links", "DownloaderQueue", "LinkHeaders"}) {
        const QString sql = queryText(std::string("select sql from sqlite_master where type='table' and name='") + name + "'");
        bool found = false;
        for (int i = 0; i < count; ++i)
            // The library writes the leading keywords in capitals.
            found = found || (sql.mid(12) == QString::fromUtf8(schema[i]).mid(12) && sql.startsWith("CREATE TABLE"));
        EXPECT_TRUE(found) << name << ": " << sql.toStdString();
    }
}

TEST_F(FetchLogTest, AFileThatIsNotACrawlDatabaseIsLeftAlone)
{
    replaceDatabaseWithTablesOnly({"Page"});
    exec("select 1");
    EXPECT_FALSE(FetchLog::hasTable(db()));
    EXPECT_FALSE(FetchLog::recordFetch(outcome("http://example.com/a", 200), project));
}

} // namespace
