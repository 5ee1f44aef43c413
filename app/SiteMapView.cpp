#include "app/SiteMapView.h"

#include "app/SiteMapEdgesItem.h"
#include "app/SiteMapNodeItem.h"
#include "store/Localization.h"

#include <QGraphicsEllipseItem>
#include <QGraphicsLineItem>
#include <QGraphicsScene>
#include <QMouseEvent>
#include <QLabel>
#include <QPainter>
#include <QPen>
#include <QUrl>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <numbers>

using Localization::localizedString;

namespace {

constexpr double kLeafSpacing = 16.0;
constexpr double kMinimumRing = 90.0;
// From this many pages the whole map is shown as one picture, of at most this many pixels a side.
constexpr int kOverviewPages = 1500;
constexpr int kOverviewSide = 2560;

const QColor kNotFetched(0x9a, 0x9a, 0x9a);
const QColor kServerError(0xd1, 0x2c, 0x2c);
const QColor kClientError(0xe0, 0x8a, 0x00);
const QColor kRedirect(0x2f, 0x6f, 0xd6);
const QColor kSuccess(0x3a, 0x9d, 0x23);
const QColor kNoAnswer(0x8e, 0x3b, 0xb5);  // a failed transfer

QColor colourOf(const SiteTree::Node& node)
{
    if (!node.fetched)
        return kNotFetched;
    if (node.status >= 500)
        return kServerError;
    if (node.status >= 400)
        return kClientError;
    if (node.status >= 300)
        return kRedirect;
    if (node.status >= 200)
        return kSuccess;
    return kNoAnswer;
}

QString legendText()
{
    const QList<std::pair<QColor, QString>> keys{
        {kSuccess, QStringLiteral("2xx")},
        {kRedirect, QStringLiteral("3xx")},
        {kClientError, QStringLiteral("4xx")},
        {kServerError, QStringLiteral("5xx")},
        {kNoAnswer, localizedString("SiteMapLegendNoAnswer")},
        {kNotFetched, localizedString("SiteMapLegendNotFetched")},
    };
    QString html;
    for (const auto& [colour, text] : keys)
        html += QStringLiteral("<span style='color:%1'>&#9679;</span>&nbsp;%2&nbsp;&nbsp; ").arg(colour.name(), text.toHtmlEscaped());
    return html + localizedString("SiteMapLegendSize").toHtmlEscaped();
}

// The last part of the URL's path, enough to tell pages apart on the map.
QString labelOf(const SiteTree::Node& node)
{
    const QUrl url(node.url);
    QString path = url.path();
    if (path.endsWith(QLatin1Char('/')))
        path.chop(1);
    const QString name = path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
    if (name.isEmpty())
        return url.host();
    return url.hasQuery() ? name + QLatin1Char('?') + url.query() : name;
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
    legend_ = new QLabel(legendText(), this);
    legend_->setObjectName(QStringLiteral("siteMapLegend"));
    legend_->setTextFormat(Qt::RichText);
    legend_->setStyleSheet(QStringLiteral("QLabel { background: rgba(255,255,255,210); padding: 2px 6px; }"));
    legend_->adjustSize();
    legend_->move(6, 6);
}

void SiteMapView::load(const std::shared_ptr<Project>& project)
{
    const qint64 kept = highlighted_;
    autoFit_ = true;
    scene_->clear();
    nodes_.clear();
    edges_ = nullptr;
    overview_ = QImage();
    drawState_.overviewScale = 0.0;
    highlight_ = nullptr;
    highlighted_ = -1;
    if (project)
        layOut(SiteTree::read(project));
    scene_->setSceneRect(scene_->itemsBoundingRect().adjusted(-40, -40, 40, 40));
    if (nodes_.size() >= kOverviewPages)
        makeOverview();
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
    // The start page's depth (0 or 1 as the crawl counts) is the centre.
    const qint64 centreDepth = nodes.at(tree.roots().first()).depth;
    qint64 maxDepth = centreDepth + 1;
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
    const double ring = std::max(kMinimumRing, kLeafSpacing * leaves / (2.0 * std::numbers::pi * double(maxDepth - centreDepth)));
    QList<QPointF> position(nodes.size());
    for (int i = 0; i < nodes.size(); ++i) {
        const double angle = 2.0 * std::numbers::pi * slot.at(i) / std::max(1, leaves);
        const double radius = ring * double(std::max<qint64>(0, nodes.at(i).depth - centreDepth));
        position[i] = QPointF(radius * std::cos(angle), radius * std::sin(angle));
    }

    QList<QLineF> lines;
    for (int i = 0; i < nodes.size(); ++i)
        for (int child : nodes.at(i).children)
            lines.append(QLineF(position.at(i), position.at(child)));
    edges_ = new SiteMapEdgesItem(lines, &drawState_);
    scene_->addItem(edges_);
    const QString tip = localizedString("SiteMapNodeToolTip");
    for (int i = 0; i < nodes.size(); ++i) {
        const SiteTree::Node& node = nodes.at(i);
        auto* item = new SiteMapNodeItem(node.idt, radiusOf(node), colourOf(node), labelOf(node), &drawState_);
        scene_->addItem(item);
        item->setPos(position.at(i));
        item->setToolTip(tip.arg(node.url, node.fetched ? (node.status > 0 ? QString::number(node.status) : node.failure)
                                                        : QStringLiteral("—"))
                             .arg(node.inLinkCount));
        nodes_.insert(node.idt, item);
    }
}

int SiteMapView::edgeCount() const
{
    return edges_ ? edges_->edgeCount() : 0;
}

// The whole map drawn once into a picture, shown while the view is zoomed out far enough for
// its pixels to be no larger than the screen's.
void SiteMapView::makeOverview()
{
    const QRectF area = scene_->sceneRect();
    if (area.isEmpty())
        return;
    const double scale = kOverviewSide / std::max(area.width(), area.height());
    QImage picture(QSize(int(area.width() * scale), int(area.height() * scale)), QImage::Format_RGB32);
    picture.fill(backgroundBrush().color());
    {
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing, true);
        drawState_.renderingOverview = true;
        scene_->render(&painter, QRectF(picture.rect()), area, Qt::IgnoreAspectRatio);
        drawState_.renderingOverview = false;
    }
    overview_ = picture;
    drawState_.overviewScale = scale;
}

void SiteMapView::drawBackground(QPainter* painter, const QRectF& rect)
{
    QGraphicsView::drawBackground(painter, rect);
    if (overviewShown()) {
        painter->setRenderHint(QPainter::SmoothPixmapTransform, true);
        painter->drawImage(scene_->sceneRect(), overview_);
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
    autoFit_ = false;
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
    if ((at - pressPos_).manhattanLength() >= 5)
        autoFit_ = false;
    if (event->button() == Qt::LeftButton && pressedPage_ >= 0 && (at - pressPos_).manhattanLength() < 5
        && pageAt(at) == pressedPage_)
        Q_EMIT pageClicked(pressedPage_);
    pressedPage_ = -1;
}

void SiteMapView::resizeEvent(QResizeEvent* event)
{
    QGraphicsView::resizeEvent(event);
    if (fitPending_ || autoFit_)
        fitWhole();
}

void SiteMapView::fitWhole()
{
    // Not shown yet: fitted when it gets a size.
    fitPending_ = viewport()->width() < 20 || viewport()->height() < 20;
    if (!fitPending_ && !scene_->sceneRect().isEmpty())
        fitInView(scene_->sceneRect(), Qt::KeepAspectRatio);
}
