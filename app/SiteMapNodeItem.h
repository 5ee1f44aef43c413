#pragma once

#include <QGraphicsEllipseItem>

struct SiteMapDrawState;

// A page on the crawl map: a disc, and beside it the page's name once the map is zoomed in far
// enough for it to be read (the name costs nothing when the whole site is shown).
class SiteMapNodeItem : public QGraphicsEllipseItem {
public:
    SiteMapNodeItem(qint64 idt, double radius, const QColor& colour, const QString& label,
                    const SiteMapDrawState* state = nullptr);

    qint64 idt() const { return idt_; }
    QString label() const { return label_; }

    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

private:
    qint64 idt_;
    QString label_;
    const SiteMapDrawState* state_;
};
