#include "html/PathOperations.h"

#include <gtest/gtest.h>

#include <ostream>

using namespace PathOperations;

namespace {

struct PathCase {
    const char* input;
    const char* expected;
};

void PrintTo(const PathCase& c, std::ostream* os)
{
    *os << "\"" << c.input << "\"";
}

class StandardizeTest : public ::testing::TestWithParam<PathCase> {};

TEST_P(StandardizeTest, Standardizes)
{
    EXPECT_EQ(Standardize(QString::fromUtf8(GetParam().input)), QString::fromUtf8(GetParam().expected))
        << "input: " << GetParam().input;
}

INSTANTIATE_TEST_SUITE_P(Paths, StandardizeTest,
                         ::testing::Values(PathCase{"", ""}, PathCase{"/", "/"}, PathCase{"//", "/"},
                                           PathCase{"///a", "/a"}, PathCase{"/a//b///c", "/a/b/c"},
                                           PathCase{"/a/b/", "/a/b"}, PathCase{"a/b//", "a/b"},
                                           PathCase{"/a/./b", "/a/b"}, PathCase{"/./", "/"},
                                           PathCase{"./e.html", "e.html"}, PathCase{"a/./b/.", "a/b"},
                                           PathCase{".", ""}, PathCase{"/a/b/../c", "/a/c"},
                                           PathCase{"/a/../../b", "/b"}, PathCase{"/..", "/"},
                                           PathCase{"/../../x", "/x"}, PathCase{"/a/b/..", "/a"},
                                           PathCase{"../c/d.html", "../c/d.html"}, PathCase{"a/../b", "a/../b"},
                                           PathCase{"../", ".."}, PathCase{"/x/y/", "/x/y"},
                                           PathCase{"#top", "#top"}, PathCase{"ftp:x", "ftp:x"},
                                           PathCase{"/go?u=http://x.org/", "/go?u=http:/x.org"},
                                           PathCase{"/caf\xc3\xa9//d\xc3\xa9j\xc3\xa0/", "/caf\xc3\xa9/d\xc3\xa9j\xc3\xa0"}));

TEST(ComponentsTest, AbsolutePathStartsWithRootComponent)
{
    EXPECT_EQ(Components(QStringLiteral("/a/b")), (QStringList{"/", "a", "b"}));
}

TEST(ComponentsTest, RelativePath)
{
    EXPECT_EQ(Components(QStringLiteral("a/b")), (QStringList{"a", "b"}));
}

TEST(ComponentsTest, EmptyStringHasNoComponents)
{
    EXPECT_TRUE(Components(QString()).isEmpty());
    EXPECT_TRUE(Components(QStringLiteral("")).isEmpty());
}

TEST(ComponentsTest, RootAlone)
{
    EXPECT_EQ(Components(QStringLiteral("/")), (QStringList{"/"}));
}

TEST(ComponentsTest, RunsOfSlashesGiveNoEmptyComponents)
{
    EXPECT_EQ(Components(QStringLiteral("//a///b//")), (QStringList{"/", "a", "b"}));
    EXPECT_EQ(Components(QStringLiteral("..")), (QStringList{".."}));
}

struct JoinCase {
    const char* path;
    const char* component;
    const char* expected;
};

void PrintTo(const JoinCase& c, std::ostream* os)
{
    *os << "\"" << c.path << "\" + \"" << c.component << "\"";
}

class JoinTest : public ::testing::TestWithParam<JoinCase> {};

TEST_P(JoinTest, Joins)
{
    const JoinCase& c = GetParam();
    EXPECT_EQ(Join(QString::fromUtf8(c.path), QString::fromUtf8(c.component)), QString::fromUtf8(c.expected))
        << c.path << " + " << c.component;
}

INSTANTIATE_TEST_SUITE_P(
    Paths, JoinTest,
    ::testing::Values(JoinCase{"/tmp", "scratch.tiff", "/tmp/scratch.tiff"},
                      JoinCase{"/tmp/", "scratch.tiff", "/tmp/scratch.tiff"},
                      JoinCase{"/", "scratch.tiff", "/scratch.tiff"}, JoinCase{"", "scratch.tiff", "scratch.tiff"},
                      JoinCase{"/a", "", "/a"}, JoinCase{"/a/", "", "/a"}, JoinCase{"/", "", "/"},
                      JoinCase{"", "", ""}, JoinCase{"/a", "/b/", "/a/b"}, JoinCase{"a//b", "c//d", "a/b/c/d"},
                      // The scheme's double slash collapses too.
                      JoinCase{"http://www.example.com", "dir", "http:/www.example.com/dir"},
                      JoinCase{"http://www.example.com/", "/a/b", "http:/www.example.com/a/b"},
                      JoinCase{"http://www.example.com/", "", "http:/www.example.com"},
                      JoinCase{"http://www.example.com", "robots.txt", "http:/www.example.com/robots.txt"}));

using ParentCase = PathCase;

class ParentTest : public ::testing::TestWithParam<ParentCase> {};

TEST_P(ParentTest, DeletesLastComponent)
{
    EXPECT_EQ(Parent(QString::fromUtf8(GetParam().input)), QString::fromUtf8(GetParam().expected))
        << "input: " << GetParam().input;
}

INSTANTIATE_TEST_SUITE_P(Paths, ParentTest,
                         ::testing::Values(ParentCase{"/a/b.html", "/a"}, ParentCase{"/b.html", "/"},
                                           ParentCase{"b.html", ""}, ParentCase{"/", "/"}, ParentCase{"", ""},
                                           ParentCase{"/tmp/lock/", "/tmp"}, ParentCase{"/tmp/", "/"},
                                           ParentCase{"a/b", "a"}, ParentCase{"b/z.html", "b"},
                                           ParentCase{"/a//b", "/a"}, ParentCase{"//a", "/"},
                                           ParentCase{"/..", "/"}, ParentCase{"/index.html", "/"}));

TEST(ParentTest, NullStaysNullAndEmptyStaysEmpty)
{
    EXPECT_TRUE(Parent(QString()).isNull());
    const QString parentOfEmpty = Parent(QStringLiteral(""));
    EXPECT_TRUE(parentOfEmpty.isEmpty());
    EXPECT_FALSE(parentOfEmpty.isNull());
    EXPECT_FALSE(Parent(QStringLiteral("b.html")).isNull());
}

} // namespace
