#include "app/ColumnMinimumWidth.h"

#include <QEvent>
#include <QHeaderView>
#include <QTableView>

ColumnMinimumWidth::ColumnMinimumWidth(QTableView* table, int column, int minimumWidth)
    : QObject(table), table_(table), viewport_(table->viewport()), column_(column), minimumWidth_(minimumWidth)
{
    viewport_->installEventFilter(this);
    connect(table->horizontalHeader(), &QHeaderView::sectionResized, this, [this](int logical) {
        if (logical != column_)
            apply();
    });
}

void ColumnMinimumWidth::keep(QTableView* table, int column, int minimumWidth)
{
    new ColumnMinimumWidth(table, column, minimumWidth);
}

bool ColumnMinimumWidth::eventFilter(QObject* watched, QEvent* event)
{
    // The viewport kept at the start: while the list is destroyed its viewport still sends
    // events, and the list is no longer a scroll area to ask for it.
    if (watched == viewport_ && event->type() == QEvent::Resize)
        apply();
    return QObject::eventFilter(watched, event);
}

void ColumnMinimumWidth::apply()
{
    if (applying_)
        return;
    applying_ = true;
    QHeaderView* header = table_->horizontalHeader();
    int others = 0;
    for (int c = 0; c < header->count(); ++c)
        if (c != column_ && !header->isSectionHidden(c))
            others += header->sectionSize(c);
    const bool roomy = table_->viewport()->width() - others >= minimumWidth_;
    if (roomy) {
        if (header->sectionResizeMode(column_) != QHeaderView::Stretch)
            header->setSectionResizeMode(column_, QHeaderView::Stretch);
    } else {
        if (header->sectionResizeMode(column_) != QHeaderView::Interactive)
            header->setSectionResizeMode(column_, QHeaderView::Interactive);
        if (header->sectionSize(column_) < minimumWidth_)
            header->resizeSection(column_, minimumWidth_);
    }
    applying_ = false;
}
