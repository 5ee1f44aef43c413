#include "app/SiteMapNodeItem.h"

#include "app/SiteMapDrawState.h"

#include <QBrush>
#include <QFont>
#include <QPainter>
#include <QPen>
#include <QStyleOptionGraphicsItem>

#include <algorithm>

namespace {

// Room kept for the name at the right of the disc, in scene units at full size.
constexpr double kLabelWidth = 180.0;
constexpr double kLabelHeight = 14.0;
// The zoom from which names are drawn.
constexpr double kLabelZoom = 0.6;
constexpr double kOverviewRadiusPixels = 2.2;

} // namespace

SiteMapNodeItem::SiteMapNodeItem(qint64 idt, double radius, const QColor& colour, const QString& label,
                                 const SiteMapDrawState* state)
    : QGraphicsEllipseItem(-radius, -radius, 2 * radius, 2 * radius), idt_(idt), label_(label), state_(state)
{
    setPen(Qt::NoPen);
    setBrush(colour);
    setData(0, idt);
}

QRectF SiteMapNodeItem::boundingRect() const
{
    const QRectF disc = rect();
    return disc.united(QRectF(disc.right() + 2, -kLabelHeight / 2, kLabelWidth, kLabelHeight));
}

void SiteMapNodeItem::paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget)
{
    const double zoom = option->levelOfDetailFromTransform(painter->worldTransform());
    // The view's picture of the whole map shows it already.
    if (state_ && state_->overviewShown(zoom))
        return;
    painter->setPen(Qt::NoPen);
    painter->setBrush(brush());
    // In the picture of a whole large map a page keeps a few pixels, or only edges would show.
    if (state_ && state_->renderingOverview && zoom > 0) {
        const double r = std::max(rect().width() / 2, kOverviewRadiusPixels / zoom);
        painter->drawEllipse(QPointF(0, 0), r, r);
        return;
    }
    painter->drawEllipse(rect());
    if (zoom < kLabelZoom || label_.isEmpty())
        return;
    QFont font = widget ? widget->font() : painter->font();
    font.setPointSizeF(7.5);
    painter->setFont(font);
    painter->setPen(QColor(0x30, 0x30, 0x30));
    const QRectF area(rect().right() + 3, -kLabelHeight / 2, kLabelWidth, kLabelHeight);
    painter->drawText(area, Qt::AlignLeft | Qt::AlignVCenter,
                      painter->fontMetrics().elidedText(label_, Qt::ElideMiddle, int(kLabelWidth)));
}
