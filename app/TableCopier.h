#pragma once

#include <QObject>
#include <QString>

class QAbstractItemView;
class QTableView;
class QWidget;

// Copy of a list's selected rows as text: one line a row, its cells as the list shows them
// (columns in their visual order, hidden columns and rows left out) separated by tabs, as a
// spreadsheet pastes them. Installed on a list, Ctrl+C copies its rows before the window's
// own shortcuts see the key; Édition > Copier asks the widget with the focus.
class TableCopier : public QObject {
    Q_OBJECT
public:
    explicit TableCopier(QTableView* table);

    static QString selectedRowsText(const QAbstractItemView* view);
    // Puts the text of the selected rows on the clipboard; false when none is selected.
    static bool copySelectedRows(QTableView* table);
    // Edit > Copy: the text field with the focus copies its selection; a list with the focus (or
    // holding the widget that has it) copies its selected rows. False when nothing was copied.
    static bool copyFromFocus(QWidget* focus);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QTableView* table_;
};
