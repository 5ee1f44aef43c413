#include "store/DataModelManager.h"
#include "store/ProjectFilePaths.h"
#include "support/TestApp.h"

#include <gtest/gtest.h>

namespace {

QString escaping(TestApp& app, const QString& name, const QString& sqliteName)
{
    return ProjectFilePaths::escapingPath(*app.manager(), name, sqliteName);
}

TEST(ProjectFilePaths, ProjectsMadeByTheProgramStayInside)
{
    TestApp app;
    EXPECT_TRUE(escaping(app, "site", "site.sqlite").isNull());
    EXPECT_TRUE(escaping(app, "a..b", "a..b.sqlite").isNull());
    EXPECT_TRUE(escaping(app, "..site", "..site.sqlite").isNull());
    // A name with a separator makes files in a sub-folder, still inside.
    EXPECT_TRUE(escaping(app, "sub/site", "sub/site.sqlite").isNull());
}

TEST(ProjectFilePaths, NamesThatClimbOutAreCaught)
{
    TestApp app;
    EXPECT_EQ(escaping(app, "../x", "x.sqlite"), app.path() + "/../x_errors.log");
    EXPECT_EQ(escaping(app, "x", "../x.sqlite"), app.path() + "/../x.sqlite");
    EXPECT_EQ(escaping(app, "a/../../x", "x.sqlite"), app.path() + "/a/../../x_errors.log");
    // The saved pages folder of these is the log folder or the data directory itself.
    EXPECT_EQ(escaping(app, "..", "d.sqlite"), app.manager()->defaultLogFolder() + "/..");
    EXPECT_EQ(escaping(app, ".", "d.sqlite"), app.manager()->defaultLogFolder() + "/.");
    EXPECT_EQ(escaping(app, "", "d.sqlite"), app.manager()->defaultLogFolder() + "/");
    // A database file name that is the registry or the log folder.
    EXPECT_EQ(escaping(app, "x", "Quillmere.storedata"), app.path() + "/Quillmere.storedata");
    EXPECT_EQ(escaping(app, "x", "Logs"), app.path() + "/Logs");
    EXPECT_EQ(escaping(app, "x", ""), app.path() + "/");
}

TEST(ProjectFilePaths, BelowMeansStrictlyInside)
{
    EXPECT_TRUE(ProjectFilePaths::isBelow("/d/x", "/d"));
    EXPECT_TRUE(ProjectFilePaths::isBelow("/d/x/../y", "/d/"));
    EXPECT_FALSE(ProjectFilePaths::isBelow("/d", "/d"));
    EXPECT_FALSE(ProjectFilePaths::isBelow("/d/.", "/d"));
    EXPECT_FALSE(ProjectFilePaths::isBelow("/dx/y", "/d"));
    EXPECT_FALSE(ProjectFilePaths::isBelow("/d/../e", "/d"));
}

} // namespace
