#pragma once

#include <QGraphicsItem>
#include <QHash>
#include <QList>
#include <QLineF>

struct SiteMapDrawState;

// The edges of the crawl map's tree in one item: they are kept in a grid of cells so that a
// paint draws only the edges of the cells in view, whatever the size of the site.
class SiteMapEdgesItem : public QGraphicsItem {
public:
    SiteMapEdgesItem(const QList<QLineF>& edges, const SiteMapDrawState* state);

    int edgeCount() const { return int(edges_.size()); }
    const QList<QLineF>& edges() const { return edges_; }

    QRectF boundingRect() const override { return bounds_; }
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

private:
    static quint64 cellKey(int x, int y) { return (quint64(quint32(x)) << 32) | quint32(y); }

    QList<QLineF> edges_;
    const SiteMapDrawState* state_;
    QRectF bounds_;
    double cellSize_ = 400.0;
    QHash<quint64, QList<int>> cells_;
    // The paint that last drew each edge, so that an edge crossing several cells is drawn once.
    mutable QList<quint32> drawnIn_;
    mutable quint32 paintCount_ = 0;
};
