#include "app/TableCopier.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QTableView>

#include <algorithm>

TableCopier::TableCopier(QTableView* table) : QObject(table), table_(table)
{
    table->installEventFilter(this);
}

QString TableCopier::selectedRowsText(QTableView* table)
{
    if (!table->selectionModel())
        return QString();
    QList<int> rows;
    for (const QModelIndex& index : table->selectionModel()->selectedRows())
        if (!table->isRowHidden(index.row()))
            rows << index.row();
    std::sort(rows.begin(), rows.end());
    QHeaderView* header = table->horizontalHeader();
    QStringList lines;
    for (int row : rows) {
        QStringList cells;
        for (int visual = 0; visual < header->count(); ++visual) {
            const int column = header->logicalIndex(visual);
            if (header->isSectionHidden(column))
                continue;
            QString text = table->model()->index(row, column).data(Qt::DisplayRole).toString();
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
