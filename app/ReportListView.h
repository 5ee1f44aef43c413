#pragma once

#include <QList>
#include <QStringList>
#include <QVariant>
#include <QWidget>

class ListToolBar;
class QSortFilterProxyModel;
class QTableView;
class ReportTableModel;

// One audit list: its rows sorted by any column (a header click), filtered as one types in
// the search box (any cell holding the text, case aside), columns shown or hidden from the
// chooser, the shown rows and columns exported to CSV, the selected rows copied.
class ReportListView : public QWidget {
    Q_OBJECT
public:
    explicit ReportListView(const QString& name, QWidget* parent = nullptr);

    void setColumns(const QStringList& keys, const QStringList& headers);
    void setRows(const QList<QList<QVariant>>& rows);
    // The column that takes the room left (the last one unless told).
    void setStretchColumn(int column);

    ListToolBar* toolBar() const { return toolBar_; }
    QTableView* tableView() const { return tableView_; }
    ReportTableModel* model() const { return model_; }
    // Rows shown, in the order shown.
    int shownRowCount() const;

    // The keys of the shown columns, in their order, and the shown rows' values under them.
    QStringList shownKeys() const;
    QList<QList<QVariant>> shownRows() const;
    bool exportCsv(const QString& path, QString* reason) const;

Q_SIGNALS:
    // A click on a row: its index among the rows given to setRows.
    void rowActivated(int row);
    void exportRequested();

private:
    ListToolBar* toolBar_;
    QTableView* tableView_;
    ReportTableModel* model_;
    QSortFilterProxyModel* proxy_;
    int stretchColumn_ = -1;
};
