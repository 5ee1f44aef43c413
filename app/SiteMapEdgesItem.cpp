#include "app/SiteMapEdgesItem.h"

#include "app/SiteMapDrawState.h"

#include <QPainter>
#include <QPen>
#include <QStyleOptionGraphicsItem>

#include <algorithm>
#include <cmath>

SiteMapEdgesItem::SiteMapEdgesItem(const QList<QLineF>& edges, const SiteMapDrawState* state)
    : edges_(edges), state_(state), drawnIn_(edges.size(), 0)
{
    setZValue(-1);
    setAcceptedMouseButtons(Qt::NoButton);
    // The part of the item to paint comes with each paint.
    setFlag(QGraphicsItem::ItemUsesExtendedStyleOption);
    for (const QLineF& edge : edges_)
        bounds_ = bounds_.united(QRectF(edge.p1(), edge.p2()).normalized().adjusted(-1, -1, 1, 1));
    // About a hundred cells across, whatever the map's size.
    cellSize_ = std::max(200.0, std::max(bounds_.width(), bounds_.height()) / 100.0);
    for (int i = 0; i < edges_.size(); ++i) {
        const QRectF box = QRectF(edges_.at(i).p1(), edges_.at(i).p2()).normalized();
        // Every cell the edge's box covers; tree edges are short next to the map, so few.
        const int x0 = int(std::floor(box.left() / cellSize_));
        const int x1 = int(std::floor(box.right() / cellSize_));
        const int y0 = int(std::floor(box.top() / cellSize_));
        const int y1 = int(std::floor(box.bottom() / cellSize_));
        for (int x = x0; x <= x1; ++x)
            for (int y = y0; y <= y1; ++y)
                cells_[cellKey(x, y)].append(i);
    }
}

void SiteMapEdgesItem::paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget*)
{
    if (state_ && state_->overviewShown(option->levelOfDetailFromTransform(painter->worldTransform())))
        return;
    // Lighter in the picture of a whole large map, where they crowd; the pages stand out.
    QPen pen(state_ && state_->renderingOverview ? QColor(0xb8, 0xb8, 0xb8, 70) : QColor(0xb8, 0xb8, 0xb8));
    pen.setCosmetic(true);
    painter->setPen(pen);
    const QRectF area = option->exposedRect.isEmpty() ? bounds_ : option->exposedRect.intersected(bounds_);
    const int x0 = int(std::floor(area.left() / cellSize_));
    const int x1 = int(std::floor(area.right() / cellSize_));
    const int y0 = int(std::floor(area.top() / cellSize_));
    const int y1 = int(std::floor(area.bottom() / cellSize_));
    ++paintCount_;
    QList<QLineF> lines;
    for (int x = x0; x <= x1; ++x)
        for (int y = y0; y <= y1; ++y) {
            const auto cell = cells_.constFind(cellKey(x, y));
            if (cell == cells_.cend())
                continue;
            for (int i : *cell) {
                if (drawnIn_.at(i) == paintCount_)
                    continue;
                drawnIn_[i] = paintCount_;
                lines.append(edges_.at(i));
            }
        }
    painter->drawLines(lines);
}
