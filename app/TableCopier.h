#pragma once

#include <QString>

class QAbstractItemView;
class QWidget;

// Copy of a list's selected rows as text: one line a row, its cells as the list shows them
// (columns in their visual order, hidden ones left out) separated by tabs.
namespace TableCopier {
QString selectedRowsText(const QAbstractItemView* view);
// Edit > Copy: the text field with the focus copies its selection; a list with the focus (or
// holding the widget that has it) copies its selected rows. False when nothing was copied.
bool copyFromFocus(QWidget* focus);
} // namespace TableCopier
