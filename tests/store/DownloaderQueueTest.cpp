#include "store/QuillmereDownloaderQueue.h"

#include "QuillmereRecordsTestSupport.h"

namespace {

using Queue = QuillmereDownloaderQueue;

class DownloaderQueueTest : public RecordsFixture {
protected:
    QuillmereDownloaderQueuePtr enqueue(const QString& url, qint32 depth = 1)
    {
        return Queue::createDownloaderQueueWithURL(url, QStringLiteral("/dir"), QStringLiteral("doc.html"), depth, project);
    }
};

TEST_F(DownloaderQueueTest, CreateAddsAWaitingEntryWithTheNewRowIdentifier)
{
    auto first = enqueue(QStringLiteral("http://example.com/"));
    auto entry = Queue::createDownloaderQueueWithURL(QStringLiteral("http://example.com/x/a.html"), QStringLiteral("/x"),
                                                     QStringLiteral("a.html"), 3, project);
    ASSERT_TRUE(first && entry);
    EXPECT_EQ(first->idt(), 1);
    EXPECT_EQ(entry->idt(), *queryInt("select max(idt) from DownloaderQueue"));
    EXPECT_EQ(entry->url(), QStringLiteral("http://example.com/x/a.html"));
    EXPECT_EQ(entry->path(), QStringLiteral("/x"));
    EXPECT_EQ(entry->documentName(), QStringLiteral("a.html"));
    EXPECT_EQ(entry->depth(), 3);
    EXPECT_FALSE(entry->performDone());
    EXPECT_EQ(entry->project().lock(), project);
    const std::string row = " from DownloaderQueue where idt=" + std::to_string(entry->idt());
    EXPECT_EQ(queryText("select url" + row), QStringLiteral("http://example.com/x/a.html"));
    EXPECT_EQ(queryText("select path" + row), QStringLiteral("/x"));
    EXPECT_EQ(queryText("select document_name" + row), QStringLiteral("a.html"));
    EXPECT_EQ(queryInt("select depth" + row), 3);
    EXPECT_EQ(queryInt("select perform_done" + row), 0);
}

TEST_F(DownloaderQueueTest, CreateDoesNotCheckForDuplicates)
{
    ASSERT_TRUE(enqueue(QStringLiteral("http://example.com/a")));
    ASSERT_TRUE(enqueue(QStringLiteral("http://example.com/a")));
    EXPECT_EQ(Queue::countWaitingDownloaderQueueForProject(project), 2);
}

TEST_F(DownloaderQueueTest, ANullStringAnswersNilWithoutTrace)
{
    TraceCapture trace;
    EXPECT_FALSE(enqueue(QString()));
    EXPECT_FALSE(Queue::createDownloaderQueueWithURL(QStringLiteral("u"), QString(), QStringLiteral("d"), 1, project));
    EXPECT_FALSE(Queue::createDownloaderQueueWithURL(QStringLiteral("u"), QStringLiteral("p"), QString(), 1, project));
    EXPECT_TRUE(trace.lines().empty());
    EXPECT_EQ(queryInt("select count(*) from DownloaderQueue"), 0);
}

TEST_F(DownloaderQueueTest, BatchesOfAHundredInIdentifierOrder)
{
    exec("begin");
    for (int i = 0; i < 250; ++i)
        ASSERT_TRUE(enqueue(QStringLiteral("http://example.com/%1").arg(i), 2));
    exec("commit");

    QList<int> sizes;
    qint64 lastIdt = 0;
    for (int batchNumber = 0; batchNumber < 3; ++batchNumber) {
        const auto batch = Queue::getAllWaitingDownloaderQueueForProject(project);
        sizes.append(int(batch.size()));
        for (const auto& entry : batch) {
            EXPECT_GT(entry->idt(), lastIdt);
            lastIdt = entry->idt();
            EXPECT_FALSE(entry->performDone());
            EXPECT_EQ(entry->url(), QStringLiteral("http://example.com/%1").arg(entry->idt() - 1));
            EXPECT_EQ(entry->depth(), 2);
            EXPECT_EQ(entry->project().lock(), project);
            entry->updatePerformDoneWithBooleanValue(true);
        }
    }
    EXPECT_EQ(sizes, (QList<int>{100, 100, 50}));
    EXPECT_EQ(lastIdt, 250);
    EXPECT_TRUE(Queue::getAllWaitingDownloaderQueueForProject(project).isEmpty());
    EXPECT_EQ(Queue::countDoneDownloaderQueueForProject(project), 250);
    EXPECT_EQ(Queue::countWaitingDownloaderQueueForProject(project), 0);
}

TEST_F(DownloaderQueueTest, EntriesAddedDuringABatchComeInALaterOne)
{
    ASSERT_TRUE(enqueue(QStringLiteral("http://example.com/a")));
    const auto batch = Queue::getAllWaitingDownloaderQueueForProject(project);
    ASSERT_EQ(batch.size(), 1);
    ASSERT_TRUE(enqueue(QStringLiteral("http://example.com/b")));
    EXPECT_EQ(batch.size(), 1);
    batch.first()->updatePerformDoneWithBooleanValue(true);
    const auto next = Queue::getAllWaitingDownloaderQueueForProject(project);
    ASSERT_EQ(next.size(), 1);
    EXPECT_EQ(next.first()->url(), QStringLiteral("http://example.com/b"));
}

TEST_F(DownloaderQueueTest, MarkingDoneLeavesTheEntryObjectAsItWas)
{
    auto a = enqueue(QStringLiteral("http://example.com/a"));
    auto b = enqueue(QStringLiteral("http://example.com/b"));
    ASSERT_TRUE(a && b);
    a->updatePerformDoneWithBooleanValue(true);
    EXPECT_FALSE(a->performDone());
    EXPECT_EQ(queryInt("select perform_done from DownloaderQueue where idt=" + std::to_string(a->idt())), 1);
    auto batch = Queue::getAllWaitingDownloaderQueueForProject(project);
    ASSERT_EQ(batch.size(), 1);
    EXPECT_EQ(batch.first()->idt(), b->idt());

    // And back to waiting.
    a->updatePerformDoneWithBooleanValue(false);
    EXPECT_EQ(queryInt("select perform_done from DownloaderQueue where idt=" + std::to_string(a->idt())), 0);
    batch = Queue::getAllWaitingDownloaderQueueForProject(project);
    ASSERT_EQ(batch.size(), 2);
    EXPECT_EQ(batch.first()->idt(), a->idt());
}

TEST_F(DownloaderQueueTest, ADoneURLIsStillInTheQueue)
{
    auto entry = enqueue(QStringLiteral("http://example.com/a"));
    ASSERT_TRUE(entry);
    EXPECT_TRUE(Queue::pageURLIsAlreadyInQueue(QStringLiteral("http://example.com/a"), project));
    entry->updatePerformDoneWithBooleanValue(true);
    EXPECT_TRUE(Queue::pageURLIsAlreadyInQueue(QStringLiteral("http://example.com/a"), project));
    EXPECT_FALSE(Queue::pageURLIsAlreadyInQueue(QStringLiteral("http://example.com/b"), project));
}

TEST_F(DownloaderQueueTest, MembershipComparesTheExactText)
{
    ASSERT_TRUE(enqueue(QStringLiteral("http://example.com/dir")));
    EXPECT_TRUE(Queue::pageURLIsAlreadyInQueue(QStringLiteral("http://example.com/dir"), project));
    EXPECT_FALSE(Queue::pageURLIsAlreadyInQueue(QStringLiteral("http://example.com/dir/"), project));
    EXPECT_FALSE(Queue::pageURLIsAlreadyInQueue(QStringLiteral("http://example.com/DIR"), project));
    ASSERT_TRUE(enqueue(QStringLiteral("http://example.com/dir/")));
    EXPECT_TRUE(Queue::pageURLIsAlreadyInQueue(QStringLiteral("http://example.com/dir/"), project));
    EXPECT_EQ(Queue::countWaitingDownloaderQueueForProject(project), 2);
}

TEST_F(DownloaderQueueTest, MembershipNeedsAPositiveIdentifier)
{
    exec("insert into DownloaderQueue(idt,url,path,document_name,depth,perform_done) values(0,'zero','/','d',1,0)");
    EXPECT_FALSE(Queue::pageURLIsAlreadyInQueue(QStringLiteral("zero"), project));
}

TEST_F(DownloaderQueueTest, CountsOfWaitingAndDoneEntries)
{
    QList<QuillmereDownloaderQueuePtr> entries;
    for (int i = 0; i < 5; ++i) {
        entries.append(enqueue(QStringLiteral("http://example.com/%1").arg(i)));
        ASSERT_TRUE(entries.last());
    }
    entries[1]->updatePerformDoneWithBooleanValue(true);
    entries[3]->updatePerformDoneWithBooleanValue(true);
    EXPECT_EQ(Queue::countWaitingDownloaderQueueForProject(project), 3);
    EXPECT_EQ(Queue::countDoneDownloaderQueueForProject(project), 2);
    // Only 0 and 1 count as states.
    exec("update DownloaderQueue set perform_done=2 where idt=" + std::to_string(entries[0]->idt()));
    EXPECT_EQ(Queue::countWaitingDownloaderQueueForProject(project), 2);
    EXPECT_EQ(Queue::countDoneDownloaderQueueForProject(project), 2);
}

TEST_F(DownloaderQueueTest, AnEmptyTableGivesZeroCountsAndAnEmptyBatch)
{
    TraceCapture trace;
    EXPECT_EQ(Queue::countWaitingDownloaderQueueForProject(project), 0);
    EXPECT_EQ(Queue::countDoneDownloaderQueueForProject(project), 0);
    EXPECT_TRUE(Queue::getAllWaitingDownloaderQueueForProject(project).isEmpty());
    EXPECT_FALSE(Queue::pageURLIsAlreadyInQueue(QStringLiteral("http://example.com/"), project));
    EXPECT_TRUE(trace.lines().empty());
}

TEST_F(DownloaderQueueTest, AMissingTableGivesZeroCountsAndAnEmptyBatchWithTraces)
{
    replaceDatabaseWithTablesOnly({"Page", "Links", "LinkHeaders"});
    auto stale = std::make_shared<Queue>(1, QStringLiteral("u"), QStringLiteral("p"), QStringLiteral("d"), 1, false, project);
    {
        TraceCapture trace;
        EXPECT_EQ(Queue::countWaitingDownloaderQueueForProject(project), 0);
        EXPECT_TRUE(traced(trace, "countWaitingDownloaderQueueForProject Error::no such table: DownloaderQueue"));
    }
    {
        // The done count reports itself under the waiting count's name.
        TraceCapture trace;
        EXPECT_EQ(Queue::countDoneDownloaderQueueForProject(project), 0);
        if (kDebugTraceEnabled) {
            EXPECT_EQ(trace.lines(), (std::vector<std::string>{
                                         "countWaitingDownloaderQueueForProject Error::no such table: DownloaderQueue"}));
        }
    }
    TraceCapture trace;
    EXPECT_TRUE(Queue::getAllWaitingDownloaderQueueForProject(project).isEmpty());
    EXPECT_FALSE(enqueue(QStringLiteral("http://example.com/")));
    EXPECT_FALSE(Queue::pageURLIsAlreadyInQueue(QStringLiteral("http://example.com/"), project));
    stale->updatePerformDoneWithBooleanValue(true);
    stale->updatePerformDoneWithBooleanValue(false);
    EXPECT_FALSE(stale->performDone());
    EXPECT_TRUE(traced(trace, "getAllWaitingDownloaderQueueForProject Error::no such table: DownloaderQueue"));
    EXPECT_TRUE(traced(trace, "createDownloaderQueueWithURL Error::no such table: DownloaderQueue"));
    EXPECT_TRUE(traced(trace, "pageURLIsAlreadyInQueue Error::no such table: DownloaderQueue"));
    EXPECT_TRUE(traced(trace, "updatePerformDoneWithBooleanValue Error::no such table: DownloaderQueue"));
}

TEST_F(DownloaderQueueTest, AFileThatIsNotADatabaseOrANullHandleGivesNothingWithTraces)
{
    auto entry = enqueue(QStringLiteral("http://example.com/a"));
    ASSERT_TRUE(entry);
    replaceDatabaseWithGarbage();
    {
        TraceCapture trace;
        EXPECT_FALSE(enqueue(QStringLiteral("http://example.com/b")));
        EXPECT_TRUE(Queue::getAllWaitingDownloaderQueueForProject(project).isEmpty());
        EXPECT_EQ(Queue::countWaitingDownloaderQueueForProject(project), 0);
        EXPECT_EQ(Queue::countDoneDownloaderQueueForProject(project), 0);
        EXPECT_FALSE(Queue::pageURLIsAlreadyInQueue(QStringLiteral("http://example.com/a"), project));
        entry->updatePerformDoneWithBooleanValue(true);
        EXPECT_TRUE(traced(trace, "createDownloaderQueueWithURL Error::file is not a database"));
        EXPECT_TRUE(traced(trace, "getAllWaitingDownloaderQueueForProject Error::file is not a database"));
        EXPECT_TRUE(traced(trace, "countWaitingDownloaderQueueForProject Error::file is not a database"));
        EXPECT_TRUE(traced(trace, "pageURLIsAlreadyInQueue Error::file is not a database"));
        EXPECT_TRUE(traced(trace, "updatePerformDoneWithBooleanValue Error::file is not a database"));
    }
    useNullHandle();
    {
        TraceCapture trace;
        EXPECT_TRUE(Queue::getAllWaitingDownloaderQueueForProject(project).isEmpty());
        EXPECT_EQ(Queue::countDoneDownloaderQueueForProject(project), 0);
        EXPECT_TRUE(traced(trace, "getAllWaitingDownloaderQueueForProject Error::"));
        EXPECT_TRUE(traced(trace, "countWaitingDownloaderQueueForProject Error::"));
    }
}

TEST_F(DownloaderQueueTest, DownloaderQueueFromStatementTakesDoneAsExactlyOne)
{
    exec("insert into DownloaderQueue(url,path,document_name,depth,perform_done) values('a','/p','d',4,1)");
    exec("insert into DownloaderQueue(url,path,document_name,depth,perform_done) values('b','/p','d',5,2)");
    sqlite3_stmt* stmt = nullptr;
    ASSERT_EQ(sqlite3_prepare_v2(db(), "select idt,url,path,document_name,depth,perform_done from DownloaderQueue order by idt",
                                 -1, &stmt, nullptr),
              SQLITE_OK);
    ASSERT_EQ(sqlite3_step(stmt), SQLITE_ROW);
    auto done = Queue::downloaderQueueFromStatement(stmt, project);
    ASSERT_EQ(sqlite3_step(stmt), SQLITE_ROW);
    auto two = Queue::downloaderQueueFromStatement(stmt, project);
    sqlite3_finalize(stmt);
    ASSERT_TRUE(done && two);
    EXPECT_EQ(done->idt(), 1);
    EXPECT_EQ(done->url(), QStringLiteral("a"));
    EXPECT_EQ(done->path(), QStringLiteral("/p"));
    EXPECT_EQ(done->documentName(), QStringLiteral("d"));
    EXPECT_EQ(done->depth(), 4);
    EXPECT_TRUE(done->performDone());
    EXPECT_FALSE(two->performDone());
}

TEST_F(DownloaderQueueTest, DescriptionPrintsTheFields)
{
    Queue entry(12, QStringLiteral("http://example.com/a"), QStringLiteral("/"), QStringLiteral("a"), 2, true, project);
    EXPECT_EQ(entry.description(), QStringLiteral("QuillmereDownloaderQueue (idt::12) (url::http://example.com/a) (path::/) "
                                                  "(documentName::a) (depth::2) (performDone::1)"));
    Queue bare(1, QString(), QString(), QString(), 0, false, nullptr);
    EXPECT_EQ(bare.description(), QStringLiteral("QuillmereDownloaderQueue (idt::1) (url::(null)) (path::(null)) "
                                                 "(documentName::(null)) (depth::0) (performDone::0)"));
}

} // namespace
