// A page read ahead of its analysis: its anchors, and for each the link the analysis would
// make, or none for an anchor it does not follow; a fault kept for the anchor that made it.
#include "crawler/PageReading.h"

#include <gtest/gtest.h>

namespace {

const QString kSite = QStringLiteral("http://127.0.0.1:8080");

PageReadingPtr readBody(const std::string& body, const QString& path = QStringLiteral("/"), bool followNofollow = false)
{
    const QByteArray html = QByteArray::fromStdString("<html><head><title>T</title></head><body>" + body + "</body></html>");
    return PageReading::read(html, kSite + path + QStringLiteral("page.html"), path, kSite, followNofollow);
}

QStringList hrefsOf(const PageReading& reading)
{
    QStringList out;
    for (const HTMLLinkPtr& link : reading.links)
        out << (link ? link->fullHref() : QStringLiteral("-"));
    return out;
}

TEST(PageReading, NoDataIsNoReading)
{
    EXPECT_EQ(PageReading::read(QByteArray(), kSite, QStringLiteral("/"), kSite, false), nullptr);
}

TEST(PageReading, EveryAnchorHasItsLinkOrNoneForOneNotFollowed)
{
    const PageReadingPtr reading = readBody("<a href=\"a.html\">A</a><a name=\"x\">no href</a>"
                                            "<a href=\"mailto:me@example.org\">mail</a>"
                                            "<a href=\" JavaScript:go()\">script</a>"
                                            "<a href=\"b.html\" rel=\"nofollow\">B</a><a href=\"/c.html\">C</a>",
                                            QStringLiteral("/dir/"));
    ASSERT_TRUE(reading);
    EXPECT_EQ(reading->facts.anchors.size(), 6);
    EXPECT_EQ(hrefsOf(*reading), QStringList({kSite + "/dir/a.html", "-", "-", "-", "-", kSite + "/c.html"}));
    EXPECT_FALSE(reading->fault);
    EXPECT_EQ(reading->url, kSite + "/dir/page.html");
    EXPECT_EQ(reading->path, "/dir/");
}

TEST(PageReading, NofollowAnchorsAreReadWhenTheProjectFollowsThem)
{
    const PageReadingPtr reading = readBody("<a href=\"b.html\" rel=\"nofollow\">B</a>", QStringLiteral("/"), true);
    ASSERT_TRUE(reading);
    EXPECT_EQ(hrefsOf(*reading), QStringList({kSite + "/b.html"}));
}

TEST(PageReading, AFaultIsKeptForTheAnchorThatMadeItAndNoLinkIsReadPastIt)
{
    const PageReadingPtr reading = readBody("<a href=\"a.html\">A</a><a href=\"../../../x\">Up</a><a href=\"d.html\">D</a>");
    ASSERT_TRUE(reading);
    ASSERT_TRUE(reading->fault);
    EXPECT_EQ(reading->faultIndex, 1);
    EXPECT_EQ(hrefsOf(*reading), QStringList({kSite + "/a.html", "-", "-"}));
    EXPECT_ANY_THROW(std::rethrow_exception(reading->fault));
}

} // namespace
