// The data directory fails under a running crawl: the disk fills up, or the directory can
// no longer be written. The crawl stops with a clear message, the database stays sound, and
// a later --continue finishes with the pages and links of an uninterrupted crawl.
#include "SlowTestSite.h"
#include "support/CliRunner.h"
#include "support/CrawlDatabaseSnapshot.h"
#include "support/LocalHttpServer.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <thread>

#include <sys/stat.h>
#include <unistd.h>

namespace {

std::string page(const std::string& title, const std::string& body)
{
    return "<html><head><title>" + title + "</title></head><body>" + body + "</body></html>";
}

// Thirty pages, each linking to all the others with long anchors: about 100 KB of links a page.
void heavySite(LocalHttpServer& server)
{
    const std::string filler(2500, 'x');
    std::string links;
    for (int i = 1; i <= 30; ++i)
        links += "<a href=\"/h" + std::to_string(i) + ".html\">" + filler + std::to_string(i) + "</a>";
    server.setPage("/", page("Home", links));
    for (int i = 1; i <= 30; ++i)
        server.setPage("/h" + std::to_string(i) + ".html", page("H" + std::to_string(i), links));
}

// A tmpfs of its own; skipped where mounting is not allowed.
class SmallTmpfs {
public:
    explicit SmallTmpfs(const QString& size)
    {
        path = dir.path() + "/disk";
        QDir().mkpath(path);
        mounted = QProcess::execute("mount", {"-t", "tmpfs", "-o", "size=" + size, "tmpfs", path}) == 0;
    }
    ~SmallTmpfs()
    {
        if (mounted)
            QProcess::execute("umount", {path});
    }
    bool resize(const QString& size) { return QProcess::execute("mount", {"-o", "remount,size=" + size, path}) == 0; }

    QTemporaryDir dir;
    QString path;
    bool mounted = false;
};

TEST(DataDirectoryFaults, AFullDiskStopsTheCrawlSoundAndContinueFinishesIt)
{
    SmallTmpfs disk("512k");
    if (!disk.mounted)
        GTEST_SKIP() << "mounting a small tmpfs is not permitted here";
    LocalHttpServer server;
    heavySite(server);
    ASSERT_TRUE(server.start());
    const QString url = QString::fromStdString(server.baseUrl());

    QTemporaryDir elsewhere;
    ASSERT_EQ(runCli({"new", "reference", url}, elsewhere.path()).exitCode, 0);
    ASSERT_EQ(runCli({"crawl", "reference"}, elsewhere.path()).exitCode, 0);
    const CrawlDatabaseSnapshot reference = CrawlDatabaseSnapshot::read(elsewhere.path() + "/reference.sqlite");
    ASSERT_EQ(reference.pages.size(), 31);

    const QString data = disk.path + "/data";
    ASSERT_EQ(runCli({"new", "big", url}, data).exitCode, 0);
    CliResult r = runCli({"crawl", "big"}, data);
    EXPECT_EQ(r.exitCode, 1) << r.out.toStdString() << r.err.toStdString();
    EXPECT_TRUE(r.err.contains("could not be written")) << r.err.toStdString();
    EXPECT_TRUE(r.err.contains("the disk is full")) << r.err.toStdString();
    EXPECT_TRUE(r.err.contains("'crawl big --continue'")) << r.err.toStdString();
    const CrawlDatabaseSnapshot stopped = CrawlDatabaseSnapshot::read(data + "/big.sqlite");
    ASSERT_TRUE(stopped.readable);
    EXPECT_GT(stopped.waiting, 0);

    r = runCli({"check", "big"}, data);
    EXPECT_EQ(r.exitCode, 0) << r.out.toStdString() << r.err.toStdString();

    ASSERT_TRUE(disk.resize("64m"));
    r = runCli({"crawl", "big", "--continue"}, data);
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    const CrawlDatabaseSnapshot finished = CrawlDatabaseSnapshot::read(data + "/big.sqlite");
    EXPECT_EQ(finished.pages, reference.pages);
    EXPECT_EQ(finished.links, reference.links);
    EXPECT_EQ(finished.waiting, 0);
    r = runCli({"check", "big"}, data);
    EXPECT_EQ(r.exitCode, 0) << r.out.toStdString();
}

// Runs the program as `nobody` when the test runs as root, whom permissions do not stop.
CliResult runUnprivileged(const QStringList& arguments, const QString& dataDir)
{
    if (getuid() != 0)
        return runCli(arguments, dataDir);
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("QUILLMERE_TRACE", "0");
    process.setProcessEnvironment(env);
    process.start("setpriv", QStringList{"--reuid=65534", "--regid=65534", "--clear-groups", QUILLMERE_CLI_PATH,
                                         "--data-dir", dataDir} + arguments);
    CliResult result;
    if (!process.waitForStarted() || !process.waitForFinished(60000))
        return result;
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    result.out = QString::fromUtf8(process.readAllStandardOutput());
    result.err = QString::fromUtf8(process.readAllStandardError());
    return result;
}

// A data directory that stops being writable during a crawl. A read-only remount is refused
// while the crawl holds its files open for writing, so the directory's permissions are taken
// away instead. The crawl database's write-ahead log is open already and goes on taking the
// pages; what cannot be made any more is a new file (the registry's journal). Either way the
// crawl database stays sound and a continued crawl ends where an uninterrupted one does.
TEST(DataDirectoryFaults, ADirectoryThatTurnsReadOnlyStopsTheCrawlSoundAndContinueFinishesIt)
{
    if (getuid() == 0 && QStandardPaths::findExecutable("setpriv").isEmpty())
        GTEST_SKIP() << "running as root without setpriv to drop the privileges that ignore permissions";
    LocalHttpServer server;
    SlowTestSite::serve(server, 20);
    ASSERT_TRUE(server.start());
    const QString url = QString::fromStdString(server.baseUrl());

    QTemporaryDir dir;
    ASSERT_TRUE(QFile::setPermissions(dir.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadGroup
                                                      | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther));
    const QString data = dir.path() + "/data";
    ASSERT_TRUE(QDir().mkpath(data));
    if (getuid() == 0)
        ASSERT_EQ(chown(QFile::encodeName(data).constData(), 65534, 65534), 0);
    CliResult r = runUnprivileged({"new", "reference", url}, data);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    ASSERT_EQ(runUnprivileged({"crawl", "reference"}, data).exitCode, 0);
    const CrawlDatabaseSnapshot reference = CrawlDatabaseSnapshot::read(data + "/reference.sqlite");
    ASSERT_TRUE(reference.readable);
    ASSERT_EQ(runUnprivileged({"new", "site", url}, data).exitCode, 0);

    // Take the directory's write permission away once the crawl is under way.
    server.clearRequests();
    std::thread revoke([&] {
        // A slow build (sanitizers) takes a while to start: wait for the crawl's requests.
        for (int i = 0; i < 15000 && server.requestCount() < 6; ++i)
            QThread::msleep(2);
        chmod(QFile::encodeName(data).constData(), 0555);
    });
    r = runUnprivileged({"crawl", "site"}, data);
    revoke.join();
    EXPECT_TRUE(r.exitCode == 0 || r.exitCode == 1) << r.out.toStdString() << r.err.toStdString();
    if (r.exitCode == 1) {
        // SQLite says "readonly database" or "disk I/O error", depending on the moment.
        EXPECT_TRUE(r.err.contains("site.sqlite could not be written (")) << r.err.toStdString();
        EXPECT_TRUE(r.err.contains("'crawl site --continue'")) << r.err.toStdString();
    }

    // Once the directory can be written again (a journal left in it may need rolling back
    // first, which a read-only directory forbids), the database is sound.
    chmod(QFile::encodeName(data).constData(), 0755);
    r = runUnprivileged({"check", "site"}, data);
    EXPECT_EQ(r.exitCode, 0) << r.out.toStdString() << r.err.toStdString();

    const bool stopped = r.exitCode == 1;
    if (stopped) {
        r = runUnprivileged({"crawl", "site", "--continue"}, data);
        EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    }
    const CrawlDatabaseSnapshot finished = CrawlDatabaseSnapshot::read(data + "/site.sqlite");
    EXPECT_EQ(finished.pages, reference.pages);
    EXPECT_EQ(finished.links, reference.links);
    EXPECT_EQ(finished.waiting, 0);
    r = runUnprivileged({"check", "site"}, data);
    EXPECT_EQ(r.exitCode, 0) << r.out.toStdString();
}

} // namespace
