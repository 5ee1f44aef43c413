// The project's counters reach the registry on disk while the crawl runs (about once a
// second), not only when it ends: a crawl killed outright continues from true counts.

#include "CrawlTestSupport.h"

#include <QDir>

#include <thread>

using namespace crawltest;

namespace {

class CrawlProgressSaveTest : public CrawlFixture {
protected:
    // pages_count of the project as the registry file holds it, read through a connection of
    // its own; -1 when it cannot be read.
    qint64 storedPagesCount() const
    {
        const QByteArray file = QDir(app.path()).filePath(QStringLiteral("Quillmere.storedata")).toUtf8();
        sqlite3* registry = nullptr;
        qint64 count = -1;
        if (sqlite3_open_v2(file.constData(), &registry, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
            sqlite3_stmt* stmt = nullptr;
            if (sqlite3_prepare_v2(registry, "select pages_count from Project where name='site'", -1, &stmt, nullptr)
                    == SQLITE_OK
                && sqlite3_step(stmt) == SQLITE_ROW)
                count = sqlite3_column_int64(stmt, 0);
            sqlite3_finalize(stmt);
        }
        sqlite3_close(registry);
        return count;
    }
};

TEST_F(CrawlProgressSaveTest, ThePagesDoneSoFarAreOnDiskWhenTheNextPageStartsASecondLater)
{
    site.page("/", "Home", anchor("slow.html", "Slow") + anchor("next.html", "Next"));
    site.server.route("/slow.html", [](const HttpRequest&, HttpResponse& response) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1100));
        response.setContent("<html><head><title>Slow</title></head><body></body></html>", "text/html");
    });
    site.page("/next.html", "Next", "");
    makeProject("/");
    ASSERT_TRUE(app.manager()->saveContext());
    ASSERT_EQ(storedPagesCount(), 0);

    qint64 storedAtNext = -2;
    qint64 doneAtNext = -2;
    delegate->onCall = [&](const std::string& line) {
        if (line == "downloadPageDidStart(~/next.html, 2)") {
            storedAtNext = storedPagesCount();
            doneAtNext = std::stoll(db->rows("select count(*) from DownloaderQueue where perform_done=1")[0][0]);
        }
    };

    crawl();

    // When next.html starts, the home page and the slow page are done, and saved as such.
    EXPECT_EQ(doneAtNext, 2);
    EXPECT_EQ(storedAtNext, 2);
    EXPECT_EQ(storedPagesCount(), 3);
}

} // namespace
