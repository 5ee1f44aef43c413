#include "app/TableCopier.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTableView>
#include <QTextEdit>

#include <algorithm>

TableCopier::TableCopier(QTableView* table) : QObject(table), table_(table)
{
    table->installEventFilter(this);
}

QString TableCopier::selectedRowsText(const QAbstractItemView* view)
{
    if (!view || !view->model() || !view->selectionModel())
        return QString();
    const QAbstractItemModel* model = view->model();
    const auto* table = qobject_cast<const QTableView*>(view);
    QList<int> rows;
    for (const QModelIndex& index : view->selectionModel()->selectedIndexes())
        if (!rows.contains(index.row()) && !(table && table->isRowHidden(index.row())))
            rows << index.row();
    std::sort(rows.begin(), rows.end());
    const QHeaderView* header = table ? table->horizontalHeader() : nullptr;
    QList<int> columns;
    for (int visual = 0; visual < model->columnCount(); ++visual) {
        const int logical = header ? header->logicalIndex(visual) : visual;
        if (!header || !header->isSectionHidden(logical))
            columns << logical;
    }
    QStringList lines;
    for (int row : std::as_const(rows)) {
        QStringList cells;
        for (int column : std::as_const(columns)) {
            QString text = model->index(row, column).data(Qt::DisplayRole).toString();
            text.replace(QLatin1Char('\t'), QLatin1Char(' ')).replace(QLatin1Char('\n'), QLatin1Char(' '));
            cells << text;
        }
        lines << cells.join(QLatin1Char('\t'));
    }
    return lines.join(QLatin1Char('\n'));
}

bool TableCopier::copySelectedRows(QTableView* table)
{
    const QString text = selectedRowsText(table);
    if (text.isEmpty())
        return false;
    QApplication::clipboard()->setText(text);
    return true;
}

bool TableCopier::copyFromFocus(QWidget* focus)
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

bool TableCopier::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == table_ && (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress)) {
        auto* key = static_cast<QKeyEvent*>(event);
        if (key->matches(QKeySequence::Copy)) {
            if (event->type() == QEvent::ShortcutOverride)
                event->accept();
            else
                copySelectedRows(table_);
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}
