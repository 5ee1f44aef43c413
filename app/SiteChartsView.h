#pragma once

#include <QWidget>

#include <memory>

class Project;
class QChartView;

// The charts of a crawl, side by side: pages by depth, pages by response code, pages by
// response time. Each is one bar series whose categories and values are the core's counts.
class SiteChartsView : public QWidget {
    Q_OBJECT
public:
    explicit SiteChartsView(QWidget* parent = nullptr);

    // Reads the project's counts and draws them again; null empties the charts.
    void load(const std::shared_ptr<Project>& project);

    QChartView* depthChart() const { return depthChart_; }
    QChartView* codesChart() const { return codesChart_; }
    QChartView* timesChart() const { return timesChart_; }

private:
    QChartView* depthChart_;
    QChartView* codesChart_;
    QChartView* timesChart_;
};
