// `new` answers success only when the project's files can really be made: its crawl database
// with its tables and its log files. Otherwise it says so and leaves nothing behind.

#include "support/CliRunner.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class NewProjectFiles : public ::testing::Test {
protected:
    CliResult run(const QStringList& args) { return runCli(args, dir.path(), 20000); }

    // Every file and folder under the data directory, but the registry (and the file its
    // writers lock) and the log folder.
    QStringList leftovers()
    {
        QStringList found;
        for (const QString& entry : QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden))
            if (entry != "Quillmere.storedata" && entry != "Quillmere.storedata-lock" && entry != "Logs")
                found << entry;
        for (const QString& entry : QDir(dir.path() + "/Logs").entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden))
            found << "Logs/" + entry;
        return found;
    }

    QTemporaryDir dir;
};

TEST_F(NewProjectFiles, ANameTooLongForItsFilesIsRefusedAndLeavesNothing)
{
    // NAME.sqlite fits in a file name, but neither its journal nor NAME_errors.log does.
    const QString name(248, QLatin1Char('n'));
    const CliResult r = run({"new", name, "http://example.com"});
    EXPECT_EQ(r.exitCode, 2) << r.out.toStdString();
    EXPECT_TRUE(r.err.startsWith("quillmere: cannot create")) << r.err.toStdString();
    EXPECT_TRUE(r.out.isEmpty()) << r.out.toStdString();
    EXPECT_EQ(leftovers(), QStringList()) << leftovers().join(", ").toStdString();
    EXPECT_EQ(run({"projects"}).out, "No projects.\n");
}

TEST_F(NewProjectFiles, TheLongestNameWhoseFilesFitIsAccepted)
{
    // NAME.sqlite-journal is the longest file name a project needs.
    const QString name(255 - int(sizeof(".sqlite-journal") - 1), QLatin1Char('m'));
    CliResult r = run({"new", name, "http://example.com"});
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(QFileInfo::exists(dir.path() + "/" + name + ".sqlite"));
    EXPECT_EQ(leftovers(), QStringList{name + ".sqlite"});
    r = run({"show", name});
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();

    const QString tooLong = name + "m";
    r = run({"new", tooLong, "http://example.com"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_FALSE(QFileInfo::exists(dir.path() + "/" + tooLong + ".sqlite"));
    EXPECT_EQ(leftovers(), QStringList{name + ".sqlite"});
}

} // namespace
