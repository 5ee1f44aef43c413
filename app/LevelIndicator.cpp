#include "app/LevelIndicator.h"

#include <QPainter>

LevelIndicator::LevelIndicator(QWidget* parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setMinimumHeight(14);
}

void LevelIndicator::setMinValue(double v)
{
    minValue_ = v;
    update();
}

void LevelIndicator::setMaxValue(double v)
{
    maxValue_ = v;
    update();
}

void LevelIndicator::setDoubleValue(double v)
{
    value_ = v;
    update();
}

double LevelIndicator::fillRatio() const
{
    if (maxValue_ <= minValue_)
        return 0.0;
    return qBound(0.0, (value_ - minValue_) / (maxValue_ - minValue_), 1.0);
}

void LevelIndicator::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    constexpr int segments = 20;
    const QRectF area = rect().adjusted(0, 1, -1, -1);
    const double width = area.width() / segments;
    const int lit = int(fillRatio() * segments + 0.5);
    for (int i = 0; i < segments; ++i) {
        const QRectF cell(area.left() + i * width + 1, area.top(), width - 2, area.height());
        painter.setPen(palette().color(QPalette::Mid));
        painter.setBrush(i < lit ? QColor(0x2e, 0x8b, 0x57) : palette().color(QPalette::Base));
        painter.drawRect(cell);
    }
}
