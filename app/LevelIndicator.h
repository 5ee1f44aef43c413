#pragma once

#include <QWidget>

// A discrete level gauge: how full the download queue still is (waiting against total).
class LevelIndicator : public QWidget {
    Q_OBJECT
public:
    explicit LevelIndicator(QWidget* parent = nullptr);

    double minValue() const { return minValue_; }
    double maxValue() const { return maxValue_; }
    double doubleValue() const { return value_; }
    void setMinValue(double v);
    void setMaxValue(double v);
    void setDoubleValue(double v);
    // The share of the gauge lit, 0 to 1 (0 when the range is empty).
    double fillRatio() const;

    QSize sizeHint() const override { return {200, 16}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double minValue_ = 0;
    double maxValue_ = 0;
    double value_ = 0;
};
