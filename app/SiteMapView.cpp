#include "app/SiteMapView.h"

#include "store/Localization.h"

#include <QGraphicsEllipseItem>
#include <QGraphicsLineItem>
#include <QGraphicsScene>
#include <QMouseEvent>
#include <QPen>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <numbers>

using Localization::localizedString;

namespace {

constexpr double kLeafSpacing = 16.0;
constexpr double kMinimumRing = 90.0;

QColor colourOf(const SiteTree::Node& node)
{
    if (!node.fetched)
        return QColor(0x9a, 0x9a, 0x9a);
    if (node.status >= 500)
        return QColor(0xd1, 0x2c, 0x2c);
    if (node.status >= 400)
        return QColor(0xe0, 0x8a, 0x00);
    if (node.status >= 300)
        return QColor(0x2f, 0x6f, 0xd6);
    if (node.status >= 200)
        return QColor(0x3a, 0x9d, 0x23);
    return QColor(0x8e, 0x3b, 0xb5);  // no answer: a failed transfer
}

double radiusOf(const SiteTree::Node& node)
{
    return std::min(30.0, 4.0 + 3.0 * std::log2(1.0 + double(std::max<qint64>(0, node.inLinkCount))));
}

} // namespace

SiteMapView::SiteMapView(QWidget* parent) : QGraphicsView(parent)
{
    setObjectName(QStringLiteral("siteMapView"));
    scene_ = new QGraphicsScene(this);
    scene_->setItemIndexMethod(QGraphicsScene::BspTreeIndex);
    setScene(scene_);
    setRenderHint(QPainter::Antialiasing, true);
    setDragMode(QGraphicsView::ScrollHandDrag);
    setTransformationAnchor(QGraphicsView::AnchorUnderMouse);
    setViewportUpdateMode(QGraphicsView::SmartViewportUpdate);
    setOptimizationFlags(QGraphicsView::DontSavePainterState | QGraphicsView::DontAdjustForAntialiasing);
    setBackgroundBrush(QColor(0xfb, 0xfb, 0xf8));
}

void SiteMapView::load(const std::shared_ptr<Project>& project)
{
    const qint64 kept = highlighted_;
    scene_->clear();
    nodes_.clear();
    highlight_ = nullptr;
    highlighted_ = -1;
    if (project)
        layOut(SiteTree::read(project));
    scene_->setSceneRect(scene_->itemsBoundingRect().adjusted(-40, -40, 40, 40));
    fitWhole();
    if (kept >= 0 && nodes_.contains(kept))
        highlightPage(kept);
}

// Leaves take the angles in turn, in tree order; a parent sits at the middle of its
// children's angles, on the ring of its depth.
void SiteMapView::layOut(const SiteTree& tree)
{
    const QList<SiteTree::Node>& nodes = tree.nodes();
    if (nodes.isEmpty())
        return;
    QList<double> slot(nodes.size(), 0.0);
    int leaves = 0;
    qint64 maxDepth = 1;
    // Depth-first, without recursion: a site may be thousands of levels deep.
    QList<std::pair<int, int>> stack;  // node, next child to visit
    for (int root : tree.roots()) {
        stack.append({root, 0});
        while (!stack.isEmpty()) {
            auto& [index, next] = stack.last();
            const SiteTree::Node& node = nodes.at(index);
            maxDepth = std::max(maxDepth, node.depth);
            if (node.children.isEmpty()) {
                slot[index] = leaves++;
                stack.removeLast();
            } else if (next < node.children.size()) {
                const int child = node.children.at(next++);
                stack.append({child, 0});
            } else {
                slot[index] = (slot.at(node.children.first()) + slot.at(node.children.last())) / 2.0;
                stack.removeLast();
            }
        }
    }
    const double ring = std::max(kMinimumRing, kLeafSpacing * leaves / (2.0 * std::numbers::pi * double(maxDepth)));
    QList<QPointF> position(nodes.size());
    for (int i = 0; i < nodes.size(); ++i) {
        const double angle = 2.0 * std::numbers::pi * slot.at(i) / std::max(1, leaves);
        const double radius = ring * double(std::max<qint64>(0, nodes.at(i).depth));
        position[i] = QPointF(radius * std::cos(angle), radius * std::sin(angle));
    }

    QPen edgePen(QColor(0xb8, 0xb8, 0xb8));
    edgePen.setCosmetic(true);
    for (int i = 0; i < nodes.size(); ++i)
        for (int child : nodes.at(i).children) {
            auto* edge = scene_->addLine(QLineF(position.at(i), position.at(child)), edgePen);
            edge->setZValue(-1);
        }
    const QString tip = localizedString("SiteMapNodeToolTip");
    for (int i = 0; i < nodes.size(); ++i) {
        const SiteTree::Node& node = nodes.at(i);
        const double r = radiusOf(node);
        auto* item = scene_->addEllipse(QRectF(-r, -r, 2 * r, 2 * r), Qt::NoPen, colourOf(node));
        item->setPos(position.at(i));
        item->setData(0, node.idt);
        item->setToolTip(tip.arg(node.url, node.fetched ? (node.status > 0 ? QString::number(node.status) : node.failure)
                                                        : QStringLiteral("—"))
                             .arg(node.inLinkCount));
        nodes_.insert(node.idt, item);
    }
}

void SiteMapView::highlightPage(qint64 idt)
{
    highlighted_ = nodes_.contains(idt) ? idt : -1;
    if (highlighted_ < 0) {
        if (highlight_)
            highlight_->hide();
        return;
    }
    QGraphicsEllipseItem* node = nodes_.value(idt);
    const QRectF around = node->rect().adjusted(-6, -6, 6, 6);
    if (!highlight_) {
        QPen pen(QColor(0x10, 0x10, 0x10));
        pen.setWidthF(3.0);
        pen.setCosmetic(true);
        highlight_ = scene_->addEllipse(around, pen, Qt::NoBrush);
        highlight_->setZValue(10);
        highlight_->setAcceptedMouseButtons(Qt::NoButton);
    }
    highlight_->setRect(around);
    highlight_->setPos(node->pos());
    highlight_->show();
    ensureVisible(highlight_, 20, 20);
}

qint64 SiteMapView::pageAt(const QPoint& viewportPoint) const
{
    for (QGraphicsItem* item : items(viewportPoint)) {
        const QVariant idt = item->data(0);
        if (idt.isValid())
            return idt.toLongLong();
    }
    return -1;
}

void SiteMapView::wheelEvent(QWheelEvent* event)
{
    const double factor = std::pow(1.0015, event->angleDelta().y());
    const double current = transform().m11();
    // From the whole site of 20,000 pages to a few pages filling the view.
    if ((factor > 1.0 && current > 8.0) || (factor < 1.0 && current < 0.002))
        return;
    scale(factor, factor);
    event->accept();
}

void SiteMapView::mousePressEvent(QMouseEvent* event)
{
    pressPos_ = event->position().toPoint();
    pressedPage_ = event->button() == Qt::LeftButton ? pageAt(pressPos_) : -1;
    QGraphicsView::mousePressEvent(event);
}

void SiteMapView::mouseReleaseEvent(QMouseEvent* event)
{
    QGraphicsView::mouseReleaseEvent(event);
    // A click, not the end of a drag.
    const QPoint at = event->position().toPoint();
    if (event->button() == Qt::LeftButton && pressedPage_ >= 0 && (at - pressPos_).manhattanLength() < 5
        && pageAt(at) == pressedPage_)
        Q_EMIT pageClicked(pressedPage_);
    pressedPage_ = -1;
}

void SiteMapView::resizeEvent(QResizeEvent* event)
{
    QGraphicsView::resizeEvent(event);
    if (fitPending_)
        fitWhole();
}

void SiteMapView::fitWhole()
{
    // Not shown yet: fitted when it gets a size.
    fitPending_ = viewport()->width() < 20 || viewport()->height() < 20;
    if (!fitPending_ && !scene_->sceneRect().isEmpty())
        fitInView(scene_->sceneRect(), Qt::KeepAspectRatio);
}
