// A crawl database whose header reads but some of whose pages are garbage: every command
// that uses it ends at once, says the database is damaged and where it is, and leaves the
// file as it found it.

#include "support/CliRunner.h"
#include "support/DatabaseDamage.h"
#include "support/LocalHttpServer.h"

#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr int kSitePages = 120;
constexpr int kTimeoutMs = 20000;

std::string pagePath(int i)
{
    return i == 0 ? "/" : "/p" + std::to_string(i) + ".html";
}

// Every page links home and to the next few pages, with long anchors: each table of the crawl
// database spans several pages of its file.
void site(LocalHttpServer& server)
{
    for (int i = 0; i < kSitePages; ++i) {
        std::string body = "<a href=\"/\">home</a>";
        for (int k = 1; k <= 5; ++k) {
            const int target = (i + k) % kSitePages;
            body += "<a href=\"" + pagePath(target) + "\">A link to page number " + std::to_string(target) +
                    " of this little site</a>";
        }
        if (i == 0)
            for (int t = 1; t < kSitePages; ++t)
                body += "<a href=\"" + pagePath(t) + "\">" + std::to_string(t) + "</a>";
        server.setPage(pagePath(i), "<html><head><title>Page " + std::to_string(i) + "</title></head><body>" + body +
                                         "</body></html>");
    }
}

class DamagedCrawlDatabase : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(server.start());
        base = QString::fromStdString(server.baseUrl());
        site(server);
        ASSERT_EQ(run({"new", "site", base}).exitCode, 0);
        const CliResult crawl = run({"crawl", "site"});
        ASSERT_EQ(crawl.exitCode, 0) << crawl.err.toStdString();
        file = dir.path() + "/site.sqlite";
    }

    CliResult run(const QStringList& args) { return runCli(args, dir.path(), kTimeoutMs); }

    void expectRefusedAsDamaged(const QStringList& args)
    {
        const QByteArray before = DatabaseDamage::contents(file);
        const size_t requests = server.requestCount();
        const CliResult r = run(args);
        const std::string command = args.join(' ').toStdString();
        EXPECT_EQ(r.exitCode, 2) << command << ": " << r.err.toStdString();
        EXPECT_TRUE(r.err.contains("damaged")) << command << ": " << r.err.toStdString();
        EXPECT_TRUE(r.err.contains(file)) << command << ": " << r.err.toStdString();
        EXPECT_TRUE(r.out.isEmpty()) << command << ": " << r.out.left(500).toStdString();
        EXPECT_TRUE(DatabaseDamage::contents(file) == before) << command << " changed the file";
        EXPECT_FALSE(QFileInfo::exists(file + "-journal")) << command;
        EXPECT_EQ(server.requestCount(), requests) << command;
    }

    QTemporaryDir dir;
    LocalHttpServer server;
    QString base;
    QString file;
};

TEST_F(DamagedCrawlDatabase, DamagedPagesAreReportedByEveryCommandThatReadsThem)
{
    ASSERT_GT(DatabaseDamage::damageMiddleOf(file, "Page"), 0);
    for (const QStringList& args : QList<QStringList>{{"show", "site"},
                                                      {"pages", "site"},
                                                      {"pages", "site", "--filter", "404", "--format", "json"},
                                                      {"vacuum", "site"},
                                                      {"crawl", "site", "--restart"},
                                                      {"crawl", "site", "--continue"}})
        expectRefusedAsDamaged(args);
}

TEST_F(DamagedCrawlDatabase, DamagedLinksAreReportedByLinks)
{
    ASSERT_GT(DatabaseDamage::damageMiddleOf(file, "Links"), 0);
    expectRefusedAsDamaged({"links", "site", base + "/"});
    expectRefusedAsDamaged({"links", "site", base + "/p7.html", "--format", "csv"});
}

TEST_F(DamagedCrawlDatabase, ADamagedQueueIsReportedByCrawl)
{
    ASSERT_GT(DatabaseDamage::damageMiddleOf(file, "DownloaderQueue"), 0);
    expectRefusedAsDamaged({"crawl", "site", "--restart"});
    expectRefusedAsDamaged({"show", "site"});
}

} // namespace
