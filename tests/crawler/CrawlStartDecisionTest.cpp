#include "crawler/CrawlStartDecision.h"

#include "store/Project.h"
#include "store/QuillmereDownloaderQueue.h"
#include "store/QuillmerePage.h"
#include "support/TestApp.h"

#include <gtest/gtest.h>

namespace {

using CrawlStartDecision::Choice;
using CrawlStartDecision::Situation;

class CrawlStartDecisionTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        project = Project::createProjectWithName(QStringLiteral("p"), QStringLiteral("http://example.com"), -1, -1);
        ASSERT_TRUE(project);
        ASSERT_NE(project->sqlite3Database(), nullptr);
    }
    void TearDown() override { project->closeSQLiteDatabase(); }

    void addPage() { ASSERT_TRUE(QuillmerePage::createPageWithPath("/", "index.html", "Home", "http://example.com", 1, project)); }
    QuillmereDownloaderQueuePtr enqueue(const char* url)
    {
        return QuillmereDownloaderQueue::createDownloaderQueueWithURL(QString::fromUtf8(url), "/", "a.html", 2, project);
    }

    TestApp app;
    ProjectPtr project;
};

TEST_F(CrawlStartDecisionTest, AnEmptyDatabaseStartsWithoutLookingAtTheQueue)
{
    enqueue("http://example.com/a.html");
    qint64 waiting = -1;
    EXPECT_EQ(CrawlStartDecision::situationForProject(project, &waiting), Situation::Fresh);
    EXPECT_EQ(waiting, 0);
    for (int answer : {0, 1000, 1001, 1002})
        EXPECT_EQ(CrawlStartDecision::choiceForAlertAnswer(Situation::Fresh, answer), Choice::Start);
}

TEST_F(CrawlStartDecisionTest, PagesAndNothingWaitingIsAFinishedCrawl)
{
    addPage();
    enqueue("http://example.com/a.html")->updatePerformDoneWithBooleanValue(true);
    qint64 waiting = -1;
    EXPECT_EQ(CrawlStartDecision::situationForProject(project, &waiting), Situation::Finished);
    EXPECT_EQ(waiting, 0);
    EXPECT_EQ(CrawlStartDecision::choiceForAlertAnswer(Situation::Finished, 1000), Choice::Restart);
    EXPECT_EQ(CrawlStartDecision::choiceForAlertAnswer(Situation::Finished, 1001), Choice::Decline);
    EXPECT_EQ(CrawlStartDecision::choiceForAlertAnswer(Situation::Finished, 0), Choice::Decline);
}

TEST_F(CrawlStartDecisionTest, PagesAndEntriesWaitingIsAnInterruptedCrawl)
{
    addPage();
    enqueue("http://example.com/a.html");
    enqueue("http://example.com/b.html");
    qint64 waiting = -1;
    EXPECT_EQ(CrawlStartDecision::situationForProject(project, &waiting), Situation::Interrupted);
    EXPECT_EQ(waiting, 2);
    EXPECT_EQ(CrawlStartDecision::choiceForAlertAnswer(Situation::Interrupted, 1000), Choice::Decline);
    EXPECT_EQ(CrawlStartDecision::choiceForAlertAnswer(Situation::Interrupted, 1001), Choice::Continue);
    EXPECT_EQ(CrawlStartDecision::choiceForAlertAnswer(Situation::Interrupted, 1002), Choice::Restart);
    EXPECT_EQ(CrawlStartDecision::choiceForAlertAnswer(Situation::Interrupted, 1003), Choice::Decline);
}

TEST_F(CrawlStartDecisionTest, ARestartEmptiesTheDatabaseAndTheStoredCounters)
{
    addPage();
    enqueue("http://example.com/a.html");
    project->setPages_count(12);
    project->setMax_depth(4);
    EXPECT_TRUE(CrawlStartDecision::apply(Choice::Restart, project));
    EXPECT_EQ(QuillmerePage::countPagesForProject(project), 0);
    EXPECT_EQ(QuillmereDownloaderQueue::countWaitingDownloaderQueueForProject(project), 0);
    EXPECT_EQ(project->pages_count(), 0);
    EXPECT_EQ(project->max_depth(), 0);
    EXPECT_EQ(CrawlStartDecision::situationForProject(project), Situation::Fresh);
}

TEST_F(CrawlStartDecisionTest, ContinueStartAndDeclineChangeNothing)
{
    addPage();
    enqueue("http://example.com/a.html");
    project->setPages_count(7);
    EXPECT_TRUE(CrawlStartDecision::apply(Choice::Continue, project));
    EXPECT_TRUE(CrawlStartDecision::apply(Choice::Start, project));
    EXPECT_FALSE(CrawlStartDecision::apply(Choice::Decline, project));
    EXPECT_EQ(QuillmerePage::countPagesForProject(project), 1);
    EXPECT_EQ(QuillmereDownloaderQueue::countWaitingDownloaderQueueForProject(project), 1);
    EXPECT_EQ(project->pages_count(), 7);
}

} // namespace
