#pragma once

#include "app/SiteMapDrawState.h"
#include "store/SiteTree.h"

#include <QGraphicsView>
#include <QHash>
#include <QImage>
#include <QPoint>

#include <memory>

class Project;
class QGraphicsEllipseItem;
class QGraphicsScene;
class SiteMapEdgesItem;
class QLabel;

// The crawl map: the site's pages as their shortest-path tree, drawn in rings by depth
// around the start page. A page is coloured by its status and sized by the links it
// receives; the selected page is ringed. The wheel zooms, a drag pans, a click on a page
// asks for it to be selected. Only the tree's edges are drawn, from a grid that leaves out
// whatever is off screen; a large map shown whole is one picture made once, so no paint
// walks every page and edge.
class SiteMapView : public QGraphicsView {
    Q_OBJECT
public:
    explicit SiteMapView(QWidget* parent = nullptr);

    // Reads the project's pages and lays them out again; null empties the map.
    void load(const std::shared_ptr<Project>& project);
    // Rings the page (-1: none) and brings it into view.
    void highlightPage(qint64 idt);

    int nodeCount() const { return int(nodes_.size()); }
    int edgeCount() const;
    // The picture of the whole map drawn instead of its items when zoomed out (large maps only).
    const QImage& overview() const { return overview_; }
    bool overviewShown() const { return !overview_.isNull() && drawState_.overviewShown(transform().m11()); }
    QGraphicsEllipseItem* nodeItem(qint64 idt) const { return nodes_.value(idt, nullptr); }
    qint64 highlightedPage() const { return highlighted_; }
    QGraphicsEllipseItem* highlightItem() const { return highlight_; }
    QLabel* legend() const { return legend_; }
    // The page drawn at a point of the viewport, -1 when none.
    qint64 pageAt(const QPoint& viewportPoint) const;

Q_SIGNALS:
    void pageClicked(qint64 idt);

protected:
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void drawBackground(QPainter* painter, const QRectF& rect) override;

private:
    void layOut(const SiteTree& tree);
    void fitWhole();
    void makeOverview();

    QGraphicsScene* scene_;
    SiteMapDrawState drawState_;
    QImage overview_;
    SiteMapEdgesItem* edges_ = nullptr;
    QLabel* legend_;
    QHash<qint64, QGraphicsEllipseItem*> nodes_;
    QGraphicsEllipseItem* highlight_ = nullptr;
    qint64 highlighted_ = -1;
    QPoint pressPos_;
    qint64 pressedPage_ = -1;
    bool fitPending_ = false;
    // The whole site is kept in view as the pane is resized, until the user zooms or pans.
    bool autoFit_ = true;
};
