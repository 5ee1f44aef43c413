// A damaged registry is reported as damaged, naming its file: never read as an empty one
// ("No projects.") nor as a registry without the project asked for.

#include "support/CliRunner.h"
#include "support/DatabaseDamage.h"

#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace {

class DamagedRegistry : public ::testing::Test {
protected:
    void SetUp() override
    {
        registry = dir.path() + "/Quillmere.storedata";
        ASSERT_EQ(run({"new", "one", "http://example.com"}).exitCode, 0);
        ASSERT_EQ(run({"new", "two", "http://example.org"}).exitCode, 0);
    }

    CliResult run(const QStringList& args) { return runCli(args, dir.path(), 20000); }

    void expectReportedAsDamaged(const QStringList& args)
    {
        const QByteArray before = DatabaseDamage::contents(registry);
        const CliResult r = run(args);
        const std::string command = args.join(' ').toStdString();
        EXPECT_EQ(r.exitCode, 2) << command << ": " << r.out.toStdString();
        EXPECT_TRUE(r.err.contains("damaged")) << command << ": " << r.err.toStdString();
        EXPECT_TRUE(r.err.contains(registry)) << command << ": " << r.err.toStdString();
        EXPECT_FALSE(r.out.contains("No projects.")) << command;
        EXPECT_TRUE(DatabaseDamage::contents(registry) == before) << command << " changed the registry";
    }

    QTemporaryDir dir;
    QString registry;
};

TEST_F(DamagedRegistry, DamagedPagesBehindAValidHeader)
{
    ASSERT_GT(DatabaseDamage::damageMiddleOf(registry, "Project"), 0);
    for (const QStringList& args : QList<QStringList>{{"projects"}, {"show", "one"}, {"new", "three", "http://example.net"},
                                                      {"delete", "two"}})
        expectReportedAsDamaged(args);
    EXPECT_TRUE(QFileInfo::exists(dir.path() + "/one.sqlite"));
    EXPECT_TRUE(QFileInfo::exists(dir.path() + "/two.sqlite"));
    EXPECT_FALSE(QFileInfo::exists(dir.path() + "/three.sqlite"));
}

TEST_F(DamagedRegistry, AMissingProjectTable)
{
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(registry.toUtf8().constData(), &db), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(db, "drop table Project", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(db);
    expectReportedAsDamaged({"projects"});
    expectReportedAsDamaged({"show", "one"});
    expectReportedAsDamaged({"new", "three", "http://example.net"});
}

TEST_F(DamagedRegistry, GarbageInPlaceOfTheRegistry)
{
    QFile file(registry);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(QByteArray(8192, 'g'));
    file.close();
    expectReportedAsDamaged({"projects"});
    expectReportedAsDamaged({"delete", "one"});
    EXPECT_TRUE(QFileInfo::exists(dir.path() + "/one.sqlite"));
}

TEST_F(DamagedRegistry, AnEmptyRegistryFileIsANewRegistry)
{
    QFile file(registry);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.close();
    const CliResult r = run({"projects"});
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_EQ(r.out, "No projects.\n");
}

} // namespace
