#pragma once

#include <QObject>
#include <QString>

class QTableView;

// Ctrl+C in a list copies its selected rows: the shown columns in their order, cells apart by
// tabs, one line a row, as a spreadsheet pastes them. The list takes the key before the
// window's own shortcuts do.
class TableCopier : public QObject {
    Q_OBJECT
public:
    explicit TableCopier(QTableView* table);
    static QString selectedRowsText(QTableView* table);
    // Puts the text of the selected rows on the clipboard; false when none is selected.
    static bool copySelectedRows(QTableView* table);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QTableView* table_;
};
