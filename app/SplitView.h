#pragma once

#include <QSplitter>

#include <functional>

// The vertical split of the main window's panes. Its dividers are dragged within the limits
// that its owner gives: a proposed position comes back clamped between them.
class SplitView : public QSplitter {
    Q_OBJECT
public:
    using Constraint = std::function<double(QSplitter* splitView, double proposed, int dividerIndex)>;

    explicit SplitView(QWidget* parent = nullptr);
    void setConstraints(Constraint minCoordinate, Constraint maxCoordinate);

    // Where a divider dragged to proposed stops; moves it there.
    int dragDivider(int dividerIndex, int proposed);
    int constrainedPosition(int dividerIndex, int proposed);

protected:
    QSplitterHandle* createHandle() override;

private:
    Constraint minCoordinate_;
    Constraint maxCoordinate_;
};
