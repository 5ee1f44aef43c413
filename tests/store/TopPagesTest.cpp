#include "store/LinkHeaders.h"
#include "store/QuillmerePage.h"

#include "QuillmereRecordsTestSupport.h"

#include <algorithm>

namespace {

using TopPagesTest = RecordsFixture;

TEST_F(TopPagesTest, TheHeaviestListedPagesInStoreOrderForTies)
{
    // Weights with ties, and pages that the list leaves out (noindex, not HTML).
    const double weights[] = {1, 3, 2, 3, 0.5, 3, 7, 2};
    for (int i = 0; i < 8; ++i) {
        const QString url = QStringLiteral("http://example.com/p%1.html").arg(i);
        ASSERT_TRUE(QuillmerePage::createPageWithPath("/", QStringLiteral("p%1.html").arg(i), "T", url, 1, project));
        LinkHeaders::createLinkHeadersWithURL(url, QString::fromUtf8(i == 6 ? "image/png" : "text/html"), 10, 10, project);
        exec("update Page set weight=" + std::to_string(weights[i]) + " where url='" + url.toStdString() + "'");
    }
    exec("update Page set is_no_index=1 where url='http://example.com/p3.html'");

    QList<QuillmerePagePtr> expected = QuillmerePage::getAllPagesForProject(project);
    std::stable_sort(expected.begin(), expected.end(), [](const auto& a, const auto& b) { return a->weight() > b->weight(); });
    expected.resize(4);
    const QList<QuillmerePagePtr> top = QuillmerePage::getTopPagesByWeightForProject(project, 4);
    ASSERT_EQ(top.size(), 4);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(top[i]->url(), expected[i]->url()) << i;
    EXPECT_EQ(top[0]->url(), "http://example.com/p1.html");
    EXPECT_EQ(top[1]->url(), "http://example.com/p5.html");
    EXPECT_EQ(QuillmerePage::getTopPagesByWeightForProject(project, 100).size(), 6);
}

} // namespace
