#include "app/TableCopier.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QTableView>
#include <QTextEdit>

#include <algorithm>

namespace TableCopier {

QString selectedRowsText(const QAbstractItemView* view)
{
    if (!view || !view->model() || !view->selectionModel())
        return QString();
    const QAbstractItemModel* model = view->model();
    QModelIndexList rows;
    for (const QModelIndex& index : view->selectionModel()->selectedIndexes())
        if (std::none_of(rows.cbegin(), rows.cend(), [&](const QModelIndex& r) { return r.row() == index.row(); }))
            rows << index;
    std::sort(rows.begin(), rows.end(), [](const QModelIndex& a, const QModelIndex& b) { return a.row() < b.row(); });
    QList<int> columns;
    const auto* table = qobject_cast<const QTableView*>(view);
    const QHeaderView* header = table ? table->horizontalHeader() : nullptr;
    for (int visual = 0; visual < model->columnCount(); ++visual) {
        const int logical = header ? header->logicalIndex(visual) : visual;
        if (!header || !header->isSectionHidden(logical))
            columns << logical;
    }
    QStringList lines;
    for (const QModelIndex& row : std::as_const(rows)) {
        QStringList cells;
        for (int column : std::as_const(columns))
            cells << model->index(row.row(), column, row.parent()).data(Qt::DisplayRole).toString();
        lines << cells.join(QLatin1Char('\t'));
    }
    return lines.join(QLatin1Char('\n'));
}

bool copyFromFocus(QWidget* focus)
{
    if (auto* field = qobject_cast<QLineEdit*>(focus)) {
        if (!field->hasSelectedText())
            return false;
        field->copy();
        return true;
    }
    if (auto* text = qobject_cast<QTextEdit*>(focus)) {
        text->copy();
        return true;
    }
    for (QWidget* w = focus; w; w = w->parentWidget()) {
        if (auto* view = qobject_cast<QAbstractItemView*>(w)) {
            const QString rows = selectedRowsText(view);
            if (rows.isEmpty())
                return false;
            QGuiApplication::clipboard()->setText(rows);
            return true;
        }
    }
    return false;
}

} // namespace TableCopier
