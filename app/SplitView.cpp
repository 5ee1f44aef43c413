#include "app/SplitView.h"

#include <QMouseEvent>
#include <QSplitterHandle>

namespace {
// A divider handle whose drags go through the split view's limits.
class SplitViewHandle : public QSplitterHandle {
public:
    SplitViewHandle(Qt::Orientation orientation, SplitView* parent) : QSplitterHandle(orientation, parent), view_(parent) {}

protected:
    void mousePressEvent(QMouseEvent* event) override
    {
        if (event->button() == Qt::LeftButton)
            offset_ = pick(event->position().toPoint());
        QSplitterHandle::mousePressEvent(event);
    }
    void mouseMoveEvent(QMouseEvent* event) override
    {
        if (!(event->buttons() & Qt::LeftButton))
            return;
        const int pos = pick(parentWidget()->mapFromGlobal(event->globalPosition().toPoint())) - offset_;
        view_->dragDivider(view_->indexOf(this), pos);
    }

private:
    int pick(const QPoint& p) const { return orientation() == Qt::Horizontal ? p.x() : p.y(); }

    SplitView* view_;
    int offset_ = 0;
};
} // namespace

SplitView::SplitView(QWidget* parent) : QSplitter(Qt::Vertical, parent)
{
    setChildrenCollapsible(false);
    setOpaqueResize(true);
}

void SplitView::setConstraints(Constraint minCoordinate, Constraint maxCoordinate)
{
    minCoordinate_ = std::move(minCoordinate);
    maxCoordinate_ = std::move(maxCoordinate);
}

int SplitView::constrainedPosition(int dividerIndex, int proposed)
{
    double pos = proposed;
    if (minCoordinate_)
        pos = qMax(pos, minCoordinate_(this, proposed, dividerIndex));
    if (maxCoordinate_)
        pos = qMin(pos, maxCoordinate_(this, proposed, dividerIndex));
    return int(pos);
}

int SplitView::dragDivider(int dividerIndex, int proposed)
{
    moveSplitter(constrainedPosition(dividerIndex, proposed), dividerIndex);
    return handle(dividerIndex) ? handle(dividerIndex)->geometry().top() : -1;
}

QSplitterHandle* SplitView::createHandle()
{
    return new SplitViewHandle(orientation(), this);
}
