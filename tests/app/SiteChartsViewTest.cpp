// The charts: pages by depth, by response code and by response time, each a bar series whose
// categories and values are the core's counts, which are those of the crawl's records.
#include "PicturesTestSupport.h"

#include "app/SiteChartsView.h"
#include "store/FetchLog.h"
#include "store/SiteStatistics.h"

#include <QBarCategoryAxis>
#include <QAbstractBarSeries>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QMap>
#include <QTabBar>

using namespace apptest;

namespace {

struct Bars {
    QString title;
    QStringList categories;
    QList<qint64> values;
};

Bars barsOf(QChartView* view)
{
    Bars bars;
    QChart* chart = view->chart();
    bars.title = chart->title();
    const auto series = chart->series();
    if (series.size() != 1)
        return bars;
    auto* bar = qobject_cast<QAbstractBarSeries*>(series.first());
    if (!bar || bar->barSets().size() != 1)
        return bars;
    for (int i = 0; i < bar->barSets().first()->count(); ++i)
        bars.values << qint64(bar->barSets().first()->at(i));
    // Standing bars name their categories below, lying ones on the left.
    const auto axes = chart->axes(bar->type() == QAbstractSeries::SeriesTypeHorizontalBar ? Qt::Vertical : Qt::Horizontal);
    if (!axes.isEmpty())
        if (auto* categories = qobject_cast<QBarCategoryAxis*>(axes.first()))
            bars.categories = categories->categories();
    return bars;
}

class SiteChartsViewTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        s = std::make_unique<CrawledPicturesSite>();
        ASSERT_TRUE(s->site.started);
        ASSERT_TRUE(s->crawled);
        charts = s->tabs()->charts();
        QTabBar* bar = s->tabs()->tabBar();
        QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, bar->tabRect(PreviewTabs::ChartsTab).center());
        ASSERT_EQ(s->tabs()->currentWidget(), static_cast<QWidget*>(charts));
    }

    QString U(const std::string& path) const { return s->site.U(path); }

    // The pages of the crawl with their last fetch, read one by one through the records.
    QList<std::pair<QuillmerePagePtr, FetchLogPtr>> pagesWithFetch() const
    {
        QList<std::pair<QuillmerePagePtr, FetchLogPtr>> pages;
        for (const QString& url : {s->site.base(), U("/a.html"), U("/b.html"), U("/old.html"), U("/new.html"),
                                   U("/missing.html"), U("/safe.html")}) {
            const QuillmerePagePtr page = QuillmerePage::getPageFromURL(url, s->project);
            pages.append({page, page ? FetchLog::getFetchLogWithURL(page->url(), s->project) : nullptr});
        }
        return pages;
    }

    std::unique_ptr<CrawledPicturesSite> s;
    SiteChartsView* charts = nullptr;
};

TEST_F(SiteChartsViewTest, PagesByDepth)
{
    const Bars bars = barsOf(charts->depthChart());
    EXPECT_EQ(bars.title, "Pages par profondeur");
    const SiteStatistics statistics = SiteStatistics::read(s->project);
    QStringList categories;
    QList<qint64> values;
    for (const auto& [depth, count] : statistics.pagesByDepth()) {
        categories << depth;
        values << count;
    }
    EXPECT_EQ(bars.categories, categories);
    EXPECT_EQ(bars.values, values);
    // The same counts from the page records themselves.
    ASSERT_EQ(QuillmerePage::countPagesForProject(s->project), 7);
    QMap<qint64, qint64> byDepth;
    for (const auto& [page, fetch] : pagesWithFetch()) {
        ASSERT_TRUE(page);
        ++byDepth[page->depth()];
    }
    QStringList expectedCategories;
    QList<qint64> expectedValues;
    for (auto it = byDepth.cbegin(); it != byDepth.cend(); ++it) {
        expectedCategories << QString::number(it.key());
        expectedValues << it.value();
    }
    EXPECT_EQ(bars.categories, expectedCategories);
    EXPECT_EQ(bars.values, expectedValues);
}

TEST_F(SiteChartsViewTest, ResponseCodes)
{
    const Bars bars = barsOf(charts->codesChart());
    EXPECT_EQ(bars.title, "Codes de réponse");
    const SiteStatistics statistics = SiteStatistics::read(s->project);
    QStringList categories;
    QList<qint64> values;
    for (const auto& [code, count] : statistics.responseCodes()) {
        categories << code;
        values << count;
    }
    EXPECT_EQ(bars.categories, categories);
    EXPECT_EQ(bars.values, values);
    // Every page was fetched: one answered 404, the others 200 (old.html after its redirect).
    QMap<QString, qint64> byCode;
    for (const auto& [page, fetch] : pagesWithFetch()) {
        ASSERT_TRUE(fetch) << qPrintable(page->url());
        ++byCode[fetch->statusText()];
    }
    EXPECT_EQ(byCode, (QMap<QString, qint64>{{"200", 6}, {"404", 1}}));
    EXPECT_EQ(bars.categories, QStringList({"200", "404"}));
    EXPECT_EQ(bars.values, QList<qint64>({6, 1}));
}

TEST_F(SiteChartsViewTest, ResponseTimes)
{
    const Bars bars = barsOf(charts->timesChart());
    EXPECT_EQ(bars.title, "Temps de réponse");
    EXPECT_EQ(bars.categories, QStringList({"0–99", "100–249", "250–499", "500–999", "1000–1999", "≥ 2000"}));
    EXPECT_EQ(bars.values, SiteStatistics::read(s->project).responseTimes());
    // The same classes counted from each page's fetch.
    QList<qint64> expected(6, 0);
    const QList<qint64> bounds{100, 250, 500, 1000, 2000};
    for (const auto& [page, fetch] : pagesWithFetch()) {
        ASSERT_TRUE(fetch);
        const qint64 ms = fetch->responseMs();
        if (ms < 0)
            continue;
        int index = 0;
        while (index < bounds.size() && ms >= bounds.at(index))
            ++index;
        ++expected[index];
    }
    EXPECT_EQ(bars.values, expected);
    qint64 total = 0;
    for (qint64 v : bars.values)
        total += v;
    EXPECT_EQ(total, 7);
}

TEST_F(SiteChartsViewTest, ClosingTheProjectEmptiesTheCharts)
{
    ASSERT_FALSE(barsOf(charts->depthChart()).values.isEmpty());
    s->app.controller()->closeCurrentProject();
    EXPECT_TRUE(barsOf(charts->depthChart()).values.isEmpty());
    EXPECT_TRUE(barsOf(charts->codesChart()).values.isEmpty());
    EXPECT_EQ(barsOf(charts->timesChart()).values, QList<qint64>(6, 0));
}

} // namespace
