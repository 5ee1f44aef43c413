// What the crawl asks for robots.txt: the project URL joined with "robots.txt" by the path
// join, which folds the scheme's "//". The address has no host, so nothing reaches the
// server and its Disallow rules never act; the FetchLog keeps the address as bad-url.

#include "support/CliRunner.h"
#include "support/LocalHttpServer.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sqlite3.h>

namespace {

QString fetchFailure(const QString& databaseFile, const QString& url)
{
    sqlite3* db = nullptr;
    QString failure = QStringLiteral("(no row)");
    if (sqlite3_open_v2(databaseFile.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
        sqlite3_stmt* stmt = nullptr;
        if (sqlite3_prepare_v2(db, "select failure from FetchLog where url = ?", -1, &stmt, nullptr) == SQLITE_OK) {
            const QByteArray u = url.toUtf8();
            sqlite3_bind_text(stmt, 1, u.constData(), -1, SQLITE_TRANSIENT);
            if (sqlite3_step(stmt) == SQLITE_ROW)
                failure = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0)));
        }
        sqlite3_finalize(stmt);
    }
    sqlite3_close(db);
    return failure;
}

TEST(RobotsAddress, TheAddressLosesItsHostAndNothingIsAsked)
{
    LocalHttpServer server;
    ASSERT_TRUE(server.start());
    server.setPage("/robots.txt", "User-agent: *\nDisallow: /private.html\n", "text/plain");
    server.setPage("/", "<html><head><title>Home</title></head><body><a href=\"/private.html\">p</a></body></html>");
    server.setPage("/private.html", "<html><head><title>Private</title></head><body></body></html>");
    server.setPage("/docs/", "<html><head><title>Docs</title></head><body></body></html>");
    QTemporaryDir dir;

    for (const std::string& start : {std::string("/"), std::string("/docs/")}) {
        const QString name = start == "/" ? "root" : "docs";
        server.clearRequests();
        ASSERT_EQ(runCli({"new", name, QString::fromStdString(server.url(start))}, dir.path()).exitCode, 0);
        const CliResult r = runCli({"crawl", name}, dir.path());
        ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
        for (const auto& request : server.requests())
            EXPECT_NE(request.path, "/robots.txt") << "robots.txt was asked for from " << start;
        // The address formed: "http://127.0.0.1:PORT/docs" gives "http:/127.0.0.1:PORT/docs/robots.txt".
        QString formed = QString::fromStdString(server.url(start));
        if (formed.endsWith('/'))
            formed.chop(1);
        formed.replace("http://", "http:/");
        EXPECT_EQ(fetchFailure(dir.path() + "/" + name + ".sqlite", formed + "/robots.txt"), "bad-url");
    }
    // The rules never act: the disallowed page was fetched.
    bool privateAsked = false;
    runCli({"crawl", "root", "--restart"}, dir.path());
    for (const auto& request : server.requests())
        privateAsked = privateAsked || request.path == "/private.html";
    EXPECT_TRUE(privateAsked);
}

} // namespace
