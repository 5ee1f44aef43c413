// Crawl databases whose header and schema read but some of whose pages are garbage: every
// query ends where it meets the damage, and the failure is noted on the project's database
// for the commands to report.

#include "store/LinkHeaders.h"
#include "store/Localization.h"
#include "store/QuillmereDownloaderQueue.h"
#include "store/QuillmereLink.h"
#include "store/QuillmereLinkPage.h"
#include "store/QuillmerePage.h"
#include "support/DatabaseDamage.h"

#include "QuillmereRecordsTestSupport.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <future>

namespace {

constexpr int kPages = 400;

// A query that never ends would take the whole suite with it (and its memory): give up on the
// process after a while instead.
template <class F>
auto withinSeconds(int seconds, F operation, const char* what)
{
    auto result = std::async(std::launch::async, operation);
    if (result.wait_for(std::chrono::seconds(seconds)) == std::future_status::timeout) {
        std::fprintf(stderr, "%s did not end within %d s\n", what, seconds);
        std::fflush(stderr);
        std::_Exit(1);
    }
    return result.get();
}

class DamagedDatabaseTest : public RecordsFixture {
protected:
    void SetUp() override
    {
        RecordsFixture::SetUp();
        const std::string title404 = Localization::localizedString("Error404").toStdString();
        exec("begin");
        for (int i = 1; i <= kPages; ++i) {
            const std::string n = std::to_string(i);
            const std::string url = "http://example.com/" + n + "/" + std::string(150, 'u');
            const std::string title = i % 2 ? title404 : "Title " + n + std::string(100, 't');
            exec("insert into Page(path,page,title,url,is_no_index,is_no_follow,is_canonical,in_link_count,"
                 "out_link_count,depth,weight) values('/" + n + "','doc.html','" + title + "','" + url + "'," +
                 (i % 10 == 1 ? "1" : "0") + ",0," + (i % 10 == 2 ? "1" : "0") + ",3,3,2,1.5)");
            exec("insert into LinkHeaders(url,content_type,content_length,downloaded_length) values('" + url + "','" +
                 (i % 3 ? "text/html" : "image/png") + "',10,10)");
            exec("insert into Links(idt_page,idt_source,anchor,counter) values(1," + n + ",'to home " + n + "'," + n + ")");
            exec("insert into Links(idt_page,idt_source,anchor,counter) values(" + std::to_string(i * 7 % kPages + 1) +
                 "," + n + ",'" + std::string(60, 'a') + "'," + n + ")");
            exec("insert into DownloaderQueue(url,path,document_name,depth,perform_done) values('" + url + "','/" + n +
                 "','doc.html',2," + std::to_string(i % 2) + ")");
        }
        exec("commit");
        file = project->full_sqlite_name();
        project->closeSQLiteDatabase();
    }

    // Garbage over the middle page of each table or index named.
    void damageMiddleOf(std::initializer_list<const char*> names)
    {
        for (const char* name : names)
            ASSERT_GT(DatabaseDamage::damageMiddleOf(file, QString::fromLatin1(name)), 0) << name;
    }

    void damageAllOf(const char* name)
    {
        const QList<int> pages = DatabaseDamage::pagesOf(file, QString::fromLatin1(name));
        ASSERT_FALSE(pages.isEmpty()) << name;
        for (int page : pages)
            ASSERT_TRUE(DatabaseDamage::overwritePage(file, page)) << name;
    }

    // The project's database as the next operation opens it: no failure noted yet.
    void reopen()
    {
        project->closeSQLiteDatabase();
        ASSERT_NE(project->sqlite3Database(), nullptr);
        ASSERT_FALSE(project->database()->hasStepFailure());
    }

    void expectDamageNoted(const char* what)
    {
        ASSERT_TRUE(project->database());
        EXPECT_TRUE(project->database()->hasStepFailure()) << what;
        EXPECT_EQ(project->database()->stepFailureCode() & 0xff, SQLITE_CORRUPT) << what;
        EXPECT_FALSE(project->database()->stepFailureMessage().isEmpty()) << what;
    }

    QString file;
};

TEST_F(DamagedDatabaseTest, PageListsAndCountsEndAtTheDamageAndNoteIt)
{
    damageMiddleOf({"Page", "PAGE_URL_IDX"});
    using Lister = std::function<QList<QuillmerePagePtr>(const ProjectPtr&)>;
    const std::pair<const char*, Lister> lists[] = {
        {"getAllPagesForProject", [](const ProjectPtr& p) { return QuillmerePage::getAllPagesForProject(p); }},
        {"getPages404AllTypesMimeForProject", [](const ProjectPtr& p) { return QuillmerePage::getPages404AllTypesMimeForProject(p); }},
        {"getPages404OnlyHTMLForProject", [](const ProjectPtr& p) { return QuillmerePage::getPages404OnlyHTMLForProject(p); }},
        {"getPages404AllNotHTMLForProject", [](const ProjectPtr& p) { return QuillmerePage::getPages404AllNotHTMLForProject(p); }},
        {"getPagesNoIndexForProject", [](const ProjectPtr& p) { return QuillmerePage::getPagesNoIndexForProject(p); }},
        {"getPagesCanonicalForProject", [](const ProjectPtr& p) { return QuillmerePage::getPagesCanonicalForProject(p); }},
        {"getAllVacuumPagesForProject", [](const ProjectPtr& p) { return QuillmerePage::getAllVacuumPagesForProject(p); }},
    };
    for (const auto& [name, list] : lists) {
        reopen();
        const auto pages = withinSeconds(20, [&] { return list(project); }, name);
        EXPECT_LT(pages.size(), kPages) << name;
        expectDamageNoted(name);
    }
    reopen();
    EXPECT_LT(withinSeconds(20, [&] { return QuillmerePage::countPagesForProject(project); }, "countPagesForProject"), kPages);
    expectDamageNoted("countPagesForProject");
    reopen();
    EXPECT_LT(withinSeconds(20, [&] { return QuillmerePage::countVacuumPagesForProject(project); }, "countVacuumPagesForProject"),
              kPages);
    expectDamageNoted("countVacuumPagesForProject");
}

TEST_F(DamagedDatabaseTest, LinkListsEndAtTheDamageAndNoteIt)
{
    damageMiddleOf({"Links"});
    const auto home = std::make_shared<QuillmerePage>(1, QStringLiteral("/1"), QStringLiteral("doc.html"), QStringLiteral("T"),
                                                      QStringLiteral("http://example.com/1"), 0, 0, 0, 0, 0, 1, 0.0, project);
    reopen();
    const auto links = withinSeconds(20, [&] { return QuillmereLink::getSourcesLinksFromPage(home, project); },
                                     "QuillmereLink::getSourcesLinksFromPage");
    EXPECT_LT(links.size(), kPages);
    expectDamageNoted("QuillmereLink::getSourcesLinksFromPage");
    reopen();
    const auto pairs = withinSeconds(20, [&] { return QuillmereLinkPage::getSourcesLinksFromPage(home, project); },
                                     "QuillmereLinkPage::getSourcesLinksFromPage");
    EXPECT_LT(pairs.size(), kPages);
    expectDamageNoted("QuillmereLinkPage::getSourcesLinksFromPage");
}

TEST_F(DamagedDatabaseTest, QueueReadsEndAtTheDamageAndNoteIt)
{
    damageAllOf("DownloaderQueue");
    damageAllOf("DOWNLOADER_QUEUE_DONE");
    damageAllOf("DOWNLOADER_QUEUE_URL");  // the URL look-up reads its index only
    reopen();
    const auto waiting = withinSeconds(
        20, [&] { return QuillmereDownloaderQueue::getAllWaitingDownloaderQueueForProject(project); }, "getAllWaiting");
    EXPECT_LT(waiting.size(), 100);
    expectDamageNoted("getAllWaitingDownloaderQueueForProject");
    reopen();
    EXPECT_LT(withinSeconds(20, [&] { return QuillmereDownloaderQueue::countWaitingDownloaderQueueForProject(project); },
                            "countWaiting"),
              kPages);
    expectDamageNoted("countWaitingDownloaderQueueForProject");
    reopen();
    EXPECT_LT(withinSeconds(20, [&] { return QuillmereDownloaderQueue::countDoneDownloaderQueueForProject(project); },
                            "countDone"),
              kPages);
    expectDamageNoted("countDoneDownloaderQueueForProject");
    reopen();
    QuillmereDownloaderQueue::pageURLIsAlreadyInQueue(QStringLiteral("http://example.com/1/") + QString(150, 'u'), project);
    expectDamageNoted("pageURLIsAlreadyInQueue");
}

TEST_F(DamagedDatabaseTest, SingleRowReadsAndUpdatesNoteTheDamage)
{
    damageAllOf("Page");
    damageAllOf("LinkHeaders");
    reopen();
    QuillmerePage::getPageFromIdentifier(1, project);
    expectDamageNoted("getPageFromIdentifier");
    reopen();
    LinkHeaders::getLinkHeadersWithURL(QStringLiteral("http://example.com/2/") + QString(150, 'u'), project);
    expectDamageNoted("getLinkHeadersWithURL");
    reopen();
    QuillmerePage page(2, QStringLiteral("/2"), QStringLiteral("doc.html"), QStringLiteral("T"), QStringLiteral("u"), 0, 0,
                       0, 0, 0, 1, 0.0, project);
    page.updatePageTitle(QStringLiteral("New"));
    expectDamageNoted("updatePageTitle");
    EXPECT_EQ(page.title(), QStringLiteral("T"));
}

TEST_F(DamagedDatabaseTest, AHealthyDatabaseNotesNothing)
{
    reopen();
    EXPECT_EQ(QuillmerePage::getPages404AllTypesMimeForProject(project).size(), kPages / 2);
    EXPECT_EQ(QuillmerePage::countPagesForProject(project), kPages);
    EXPECT_EQ(QuillmereDownloaderQueue::getAllWaitingDownloaderQueueForProject(project).size(), 100);
    EXPECT_EQ(QuillmereDownloaderQueue::countDoneDownloaderQueueForProject(project), kPages / 2);
    const auto home = QuillmerePage::getPageFromIdentifier(1, project);
    ASSERT_TRUE(home);
    EXPECT_GE(QuillmereLinkPage::getSourcesLinksFromPage(home, project).size(), kPages);
    EXPECT_FALSE(QuillmerePage::getPageFromURL(QStringLiteral("http://nowhere.example/"), project));
    home->incInLinkCount();
    // A row the table refuses (a null path) is not a fault of the file.
    EXPECT_FALSE(QuillmerePage::createPageWithPath(QString(), QStringLiteral("x"), QStringLiteral("t"),
                                                   QStringLiteral("http://example.com/x"), 1, project));
    EXPECT_FALSE(project->database()->hasStepFailure());
}

} // namespace
