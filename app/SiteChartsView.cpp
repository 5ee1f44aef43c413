#include "app/SiteChartsView.h"

#include "store/Localization.h"
#include "store/SiteStatistics.h"

#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QHorizontalBarSeries>
#include <QChart>
#include <QChartView>
#include <QHBoxLayout>
#include <QValueAxis>

#include <algorithm>

using Localization::localizedString;

namespace {

QChartView* chartView(const QString& name)
{
    auto* view = new QChartView;
    view->setObjectName(name);
    view->setRenderHint(QPainter::Antialiasing);
    view->setMinimumSize(220, 160);
    return view;
}

// One bar per category, the counts as a whole-number axis. Lying bars leave room for long
// category names.
void draw(QChartView* view, const QString& title, const QString& axisTitle, const QStringList& categories,
          const QList<qint64>& counts, const QColor& colour, bool lying = false)
{
    auto* chart = new QChart;
    chart->setTitle(title);
    chart->legend()->hide();
    chart->setAnimationOptions(QChart::NoAnimation);
    auto* set = new QBarSet(localizedString("ChartsPagesSeries"));
    set->setColor(colour);
    qint64 highest = 0;
    for (qint64 count : counts) {
        *set << double(count);
        highest = std::max(highest, count);
    }
    QAbstractBarSeries* series = lying ? static_cast<QAbstractBarSeries*>(new QHorizontalBarSeries)
                                       : static_cast<QAbstractBarSeries*>(new QBarSeries);
    series->append(set);
    series->setLabelsVisible(true);
    series->setLabelsPosition(QAbstractBarSeries::LabelsInsideEnd);
    series->setLabelsPrecision(12);
    chart->addSeries(series);
    auto* axisX = new QBarCategoryAxis;
    axisX->append(categories);
    axisX->setTitleText(axisTitle);
    // Many codes are slanted to stay whole.
    if (!lying && categories.size() > 4)
        axisX->setLabelsAngle(-40);
    chart->addAxis(axisX, lying ? Qt::AlignLeft : Qt::AlignBottom);
    series->attachAxis(axisX);
    auto* axisY = new QValueAxis;
    axisY->setLabelFormat(QStringLiteral("%d"));
    axisY->setRange(0, double(std::max<qint64>(4, highest)));
    axisY->applyNiceNumbers();
    chart->addAxis(axisY, lying ? Qt::AlignBottom : Qt::AlignLeft);
    series->attachAxis(axisY);
    QChart* old = view->chart();
    view->setChart(chart);
    delete old;
}

} // namespace

SiteChartsView::SiteChartsView(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("siteChartsView"));
    depthChart_ = chartView(QStringLiteral("chartPagesByDepth"));
    codesChart_ = chartView(QStringLiteral("chartResponseCodes"));
    timesChart_ = chartView(QStringLiteral("chartResponseTimes"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->addWidget(depthChart_);
    layout->addWidget(codesChart_);
    layout->addWidget(timesChart_);
    load(nullptr);
}

void SiteChartsView::load(const std::shared_ptr<Project>& project)
{
    const SiteStatistics statistics = project ? SiteStatistics::read(project) : SiteStatistics();
    QStringList categories;
    QList<qint64> counts;
    for (const auto& [depth, count] : statistics.pagesByDepth()) {
        categories << depth;
        counts << count;
    }
    draw(depthChart_, localizedString("ChartsPagesByDepthTitle"), localizedString("ChartsDepthAxis"), categories, counts, QColor(0x2f, 0x6f, 0xd6));

    categories.clear();
    counts.clear();
    for (const auto& [code, count] : statistics.responseCodes()) {
        categories << code;
        counts << count;
    }
    draw(codesChart_, localizedString("ChartsResponseCodesTitle"), localizedString("ChartsCodeAxis"), categories, counts, QColor(0x3a, 0x9d, 0x23));

    categories.clear();
    const QList<qint64>& bounds = SiteStatistics::responseTimeBounds();
    // Ranges in whole milliseconds ("0–99", "100–249"...): the axis reads its labels as rich
    // text, where a "<" would start a tag.
    qint64 low = 0;
    for (qint64 bound : bounds) {
        categories << localizedString("ChartsTimeRange").arg(low).arg(bound - 1);
        low = bound;
    }
    categories << localizedString("ChartsTimeOver").arg(bounds.last());
    QList<qint64> times = statistics.responseTimes();
    times.resize(categories.size());
    draw(timesChart_, localizedString("ChartsResponseTimesTitle"), localizedString("ChartsTimeAxis"), categories, times, QColor(0xe0, 0x8a, 0x00),
         true);
}
