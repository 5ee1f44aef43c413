// A registry row whose name or database file name would put the project's files outside the
// data directory (a damaged or tampered registry): every command refuses it, says the registry
// is damaged, and touches no file.

#include "support/CliRunner.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <string>

namespace {

bool writeFile(const QString& path, const QByteArray& contents)
{
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly))
        return false;
    return f.write(contents) == contents.size();
}

QByteArray readFile(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

class RegistryPaths : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(root.isValid());
        data = root.path() + "/data";
        ASSERT_EQ(run({"new", "kept", "http://example.com"}).exitCode, 0);
    }

    CliResult run(const QStringList& args) { return runCli(args, data, 20000); }

    // A row written straight into the registry, as a damaged or edited file would hold it.
    void addRow(const std::string& name, const std::string& sqliteName)
    {
        sqlite3* db = nullptr;
        ASSERT_EQ(sqlite3_open((data + "/Quillmere.storedata").toUtf8().constData(), &db), SQLITE_OK);
        const std::string sql =
            "insert into Project(name,url,creation_date,limit_depth,limit_page_count,sqlite_name,explore_no_index) "
            "values('" + name + "','http://example.com',1700000000000,-1,-1,'" + sqliteName + "',1)";
        char* error = nullptr;
        EXPECT_EQ(sqlite3_exec(db, sql.c_str(), nullptr, nullptr, &error), SQLITE_OK) << (error ? error : "");
        sqlite3_free(error);
        sqlite3_close(db);
    }

    void expectRefused(const QStringList& args)
    {
        const CliResult r = run(args);
        const std::string command = args.join(' ').toStdString();
        EXPECT_EQ(r.exitCode, 2) << command << ": " << r.err.toStdString();
        EXPECT_TRUE(r.err.contains("registry")) << command << ": " << r.err.toStdString();
        EXPECT_TRUE(r.err.contains("damaged")) << command << ": " << r.err.toStdString();
        EXPECT_TRUE(r.err.contains(data + "/Quillmere.storedata")) << command << ": " << r.err.toStdString();
    }

    void expectKeptProjectIntact()
    {
        EXPECT_TRUE(QFileInfo::exists(data + "/kept.sqlite"));
        EXPECT_TRUE(QFileInfo::exists(data + "/Quillmere.storedata"));
        EXPECT_TRUE(QFileInfo(data + "/Logs").isDir());
        EXPECT_EQ(run({"show", "kept"}).exitCode, 0);
    }

    QTemporaryDir root;
    QString data;
};

TEST_F(RegistryPaths, ANameThatClimbsOutIsRefusedAndItsFilesOutsideSurvive)
{
    addRow("../outside", "../outside.sqlite");
    const QString outsideDb = root.path() + "/outside.sqlite";
    const QString outsideErrors = root.path() + "/outside_errors.log";
    ASSERT_TRUE(writeFile(outsideDb, "not ours"));
    ASSERT_TRUE(writeFile(outsideErrors, "not ours either"));

    for (const QStringList& args : QList<QStringList>{{"delete", "../outside"},
                                                      {"show", "../outside"},
                                                      {"pages", "../outside"},
                                                      {"links", "../outside", "http://example.com/"},
                                                      {"vacuum", "../outside"},
                                                      {"crawl", "../outside"}})
        expectRefused(args);
    EXPECT_EQ(readFile(outsideDb), "not ours");
    EXPECT_EQ(readFile(outsideErrors), "not ours either");
    // The row is still there: the registry was not saved.
    EXPECT_TRUE(run({"projects"}).out.contains("../outside"));
    expectKeptProjectIntact();
}

TEST_F(RegistryPaths, TheParentFolderAsANameIsRefusedAndTheDataDirectorySurvives)
{
    // Its saved pages folder would be Logs/.., the data directory itself.
    addRow("..", "dotdot.sqlite");
    expectRefused({"delete", ".."});
    expectRefused({"show", ".."});
    expectKeptProjectIntact();

    addRow(".", "dot.sqlite");
    expectRefused({"delete", "."});
    expectKeptProjectIntact();
}

TEST_F(RegistryPaths, ADatabaseFileNameThatClimbsOutIsRefusedAndNothingIsCreated)
{
    addRow("fine", "../elsewhere.sqlite");
    const QString elsewhere = root.path() + "/elsewhere.sqlite";
    for (const QStringList& args : QList<QStringList>{{"crawl", "fine"}, {"show", "fine"}, {"delete", "fine"}})
        expectRefused(args);
    EXPECT_FALSE(QFileInfo::exists(elsewhere));
    // A database file name that is the registry itself is no project file either.
    addRow("registry", "Quillmere.storedata");
    expectRefused({"delete", "registry"});
    expectKeptProjectIntact();
}

} // namespace
