#include "support/CliRunner.h"
#include "support/UnprivilegedRun.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <unistd.h>

namespace {

class ProjectCommands : public ::testing::Test {
protected:
    QTemporaryDir dir;
    CliResult run(const QStringList& args) { return runCli(args, dir.path()); }
    QStringList projectLines()
    {
        const CliResult r = run({"projects"});
        QStringList lines = r.out.split('\n', Qt::SkipEmptyParts);
        if (!lines.isEmpty() && lines.first().startsWith("NAME"))
            lines.removeFirst();
        return lines;
    }
};

TEST_F(ProjectCommands, NewCreatesAndProjectsLists)
{
    CliResult r = run({"new", "site", "  http://example.com/  ", "--depth", "3", "--pages", "100"});
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("site"));
    EXPECT_TRUE(QFileInfo::exists(dir.path() + "/site.sqlite"));
    EXPECT_TRUE(QFileInfo::exists(dir.path() + "/Quillmere.storedata"));

    r = run({"new", "other", "https://other.example/blog//"});
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();

    r = run({"projects"});
    ASSERT_EQ(r.exitCode, 0);
    const QStringList lines = r.out.split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 3) << r.out.toStdString();
    EXPECT_TRUE(lines[0].startsWith("NAME"));
    // Blanks trimmed, exactly one trailing slash dropped, creation date in the usual format.
    const QStringList first = lines[1].split(QRegularExpression("\\s{2,}"));
    ASSERT_GE(first.size(), 7) << lines[1].toStdString();
    EXPECT_EQ(first[0], "site");
    EXPECT_EQ(first[1], "http://example.com");
    EXPECT_TRUE(QRegularExpression("^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d$").match(first[2]).hasMatch()) << first[2].toStdString();
    EXPECT_EQ(first[3], "3");
    EXPECT_EQ(first[4], "100");
    EXPECT_EQ(first[5], "0");
    EXPECT_EQ(first[6], "0");
    const QStringList second = lines[2].split(QRegularExpression("\\s{2,}"));
    EXPECT_EQ(second[0], "other");
    EXPECT_EQ(second[1], "https://other.example/blog/");
    EXPECT_EQ(second[3], "-");  // no limit given: -1
    EXPECT_EQ(second[4], "-");
}

TEST_F(ProjectCommands, BadInputIsRefusedAndNothingIsCreated)
{
    const QList<QStringList> cases{
        {"new", "a", ""},
        {"new", "a", "   "},
        {"new", "a", "ftp://example.com"},
        {"new", "a", "example.com"},
        {"new", "a", "http://"},
        {"new", "a/b", "http://example.com"},
        {"new", "..", "http://example.com"},
        {"new", ".", "http://example.com"},
        {"new", "", "http://example.com"},
        {"new", "a\\b", "http://example.com"},
        {"new", "a", "http://example.com", "--depth", "deep"},
        {"new", "a", "http://example.com", "--pages", "-5"},
    };
    for (const auto& args : cases) {
        const CliResult r = run(args);
        EXPECT_EQ(r.exitCode, 2) << args.join(' ').toStdString();
        EXPECT_TRUE(r.err.startsWith("quillmere: ")) << r.err.toStdString();
    }
    EXPECT_EQ(run({"projects"}).out, "No projects.\n");
    const QStringList files = QDir(dir.path()).entryList(QDir::Files);
    for (const auto& f : files)
        EXPECT_FALSE(f.endsWith(".sqlite")) << f.toStdString();
    EXPECT_FALSE(QFileInfo::exists(QFileInfo(dir.path()).dir().path() + "/b.sqlite"));
}

TEST_F(ProjectCommands, ADuplicateNameIsRefused)
{
    ASSERT_EQ(run({"new", "twice", "http://example.com"}).exitCode, 0);
    const CliResult r = run({"new", "twice", "http://example.org"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(r.err.contains("exists already"));
    EXPECT_EQ(projectLines().size(), 1);
}

TEST_F(ProjectCommands, DeleteRemovesTheProjectAndItsFiles)
{
    ASSERT_EQ(run({"new", "gone", "http://example.com"}).exitCode, 0);
    ASSERT_EQ(run({"new", "kept", "http://example.org"}).exitCode, 0);
    QFile log(dir.path() + "/Logs/gone.log");
    ASSERT_TRUE(log.open(QIODevice::WriteOnly));
    log.close();
    QFile errors(dir.path() + "/gone_errors.log");
    ASSERT_TRUE(errors.open(QIODevice::WriteOnly));
    errors.close();
    CliResult r = run({"delete", "gone"});
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_FALSE(QFileInfo::exists(dir.path() + "/gone.sqlite"));
    EXPECT_FALSE(QFileInfo::exists(log.fileName()));
    EXPECT_FALSE(QFileInfo::exists(errors.fileName()));
    EXPECT_TRUE(QFileInfo::exists(dir.path() + "/kept.sqlite"));
    const QStringList lines = projectLines();
    ASSERT_EQ(lines.size(), 1);
    EXPECT_TRUE(lines[0].startsWith("kept"));

    r = run({"delete", "gone"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(r.err.contains("no project named 'gone'"));
}

TEST_F(ProjectCommands, EmptyRegistry)
{
    const CliResult r = run({"projects"});
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.out, "No projects.\n");
}

TEST_F(ProjectCommands, HelpEverywhere)
{
    CliResult r = run({"--help"});
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.out.contains("Usage: quillmere"));
    for (const char* command : {"new", "projects", "delete"}) {
        r = run({command, "--help"});
        EXPECT_EQ(r.exitCode, 0) << command;
        EXPECT_TRUE(r.out.contains(QStringLiteral("Usage: quillmere [--data-dir DIR] %1").arg(command))) << r.out.toStdString();
    }
    EXPECT_FALSE(QFileInfo::exists(dir.path() + "/Quillmere.storedata"));  // help touches nothing
}

TEST_F(ProjectCommands, UnknownCommandsAndOptionsAreUsageErrors)
{
    for (const QStringList& args : QList<QStringList>{{"frobnicate"}, {"projects", "--bogus"}, {"new", "a"},
                                                      {"delete"}, {}, {"new", "a", "http://x.example", "--depth"}}) {
        const CliResult r = run(args);
        EXPECT_EQ(r.exitCode, 2) << args.join(' ').toStdString();
        EXPECT_FALSE(r.err.isEmpty());
    }
}

TEST(ProjectCommandsDataDir, AFileInPlaceOfTheDataDirectory)
{
    QTemporaryDir dir;
    const QString path = dir.path() + "/file";
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.close();
    const CliResult r = runCli({"new", "a", "http://example.com"}, path);
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(r.err.contains(QStringLiteral("Expected a folder to store application data, found a file (%1).").arg(path)))
        << r.err.toStdString();
    EXPECT_TRUE(QFileInfo(path).isFile());
}

TEST(ProjectCommandsDataDir, AnUnwritableDataDirectory)
{
    // /proc refuses new files even to root.
    const CliResult r = runCli({"new", "a", "http://example.com"}, "/proc/quillmere-test-data");
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(r.err.contains("/proc/quillmere-test-data")) << r.err.toStdString();
}

TEST(ProjectCommandsDataDir, AReadOnlyDataDirectory)
{
    QTemporaryDir dir;
    ASSERT_EQ(runCli({"new", "a", "http://example.com"}, dir.path()).exitCode, 0);
    // Permissions do not stop root: as root the program runs as a user who may only read.
    if (::geteuid() == 0)
        openTo(dir.path(), false);
    else
        QFile::setPermissions(dir.path(), QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    const CliResult r = runUnprivileged({"new", "b", "http://example.org"}, dir.path());
    QFile::setPermissions(dir.path(), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_FALSE(QFileInfo::exists(dir.path() + "/b.sqlite"));
}

TEST(ProjectCommandsDataDir, ARegistryThatIsNotADatabase)
{
    QTemporaryDir dir;
    QFile store(dir.path() + "/Quillmere.storedata");
    ASSERT_TRUE(store.open(QIODevice::WriteOnly));
    store.write(QByteArray(2048, 'q'));
    store.close();
    const CliResult r = runCli({"projects"}, dir.path());
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(r.err.contains("registry")) << r.err.toStdString();
    EXPECT_EQ(QFileInfo(store.fileName()).size(), 2048);
}

TEST(ProjectCommandsDataDir, TheEnvironmentVariableChoosesTheDirectory)
{
    QTemporaryDir dir;
    qputenv("QUILLMERE_DATA_DIR", dir.path().toUtf8());
    const CliResult r = runCli({"new", "env", "http://example.com"});
    qunsetenv("QUILLMERE_DATA_DIR");
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(QFileInfo::exists(dir.path() + "/env.sqlite"));
}

} // namespace
