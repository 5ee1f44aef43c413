#include "app/SiteChartsView.h"

#include "store/Localization.h"
#include "store/SiteStatistics.h"

#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
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

// One bar per category, the counts as a whole-number axis.
void draw(QChartView* view, const QString& title, const QStringList& categories, const QList<qint64>& counts,
          const QColor& colour)
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
    auto* series = new QBarSeries;
    series->append(set);
    series->setLabelsVisible(true);
    series->setLabelsPosition(QAbstractBarSeries::LabelsOutsideEnd);
    chart->addSeries(series);
    auto* axisX = new QBarCategoryAxis;
    axisX->append(categories);
    chart->addAxis(axisX, Qt::AlignBottom);
    series->attachAxis(axisX);
    auto* axisY = new QValueAxis;
    axisY->setLabelFormat(QStringLiteral("%d"));
    axisY->setRange(0, double(std::max<qint64>(1, highest + highest / 8 + 1)));
    chart->addAxis(axisY, Qt::AlignLeft);
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
    draw(depthChart_, localizedString("ChartsPagesByDepthTitle"), categories, counts, QColor(0x2f, 0x6f, 0xd6));

    categories.clear();
    counts.clear();
    for (const auto& [code, count] : statistics.responseCodes()) {
        categories << code;
        counts << count;
    }
    draw(codesChart_, localizedString("ChartsResponseCodesTitle"), categories, counts, QColor(0x3a, 0x9d, 0x23));

    categories.clear();
    const QList<qint64>& bounds = SiteStatistics::responseTimeBounds();
    for (qint64 bound : bounds)
        categories << localizedString("ChartsTimeUnder").arg(bound);
    categories << localizedString("ChartsTimeOver").arg(bounds.last());
    QList<qint64> times = statistics.responseTimes();
    times.resize(categories.size());
    draw(timesChart_, localizedString("ChartsResponseTimesTitle"), categories, times, QColor(0xe0, 0x8a, 0x00));
}
