#pragma once

#include <QObject>

class QTableView;

// Keeps a list's stretching column (its URLs) readable when the window is narrow: it takes
// the room left while there is enough, and below its minimum it keeps that width and the list
// scrolls sideways instead of cutting every URL to "h...".
class ColumnMinimumWidth : public QObject {
    Q_OBJECT
public:
    static constexpr int readableWidth = 220;
    static void keep(QTableView* table, int column, int minimumWidth = readableWidth);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    ColumnMinimumWidth(QTableView* table, int column, int minimumWidth);
    void apply();

    QTableView* table_;
    QObject* viewport_;
    int column_;
    int minimumWidth_;
    bool applying_ = false;
};
