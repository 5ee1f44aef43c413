#include "app/ReportListView.h"

#include "app/CsvExport.h"
#include "app/ListToolBar.h"
#include "app/ReportTableModel.h"
#include "app/TableCopier.h"

#include <QAction>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QSortFilterProxyModel>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>

ReportListView::ReportListView(const QString& name, QWidget* parent) : QWidget(parent)
{
    setObjectName(name);
    toolBar_ = new ListToolBar;
    model_ = new ReportTableModel(this);
    proxy_ = new QSortFilterProxyModel(this);
    proxy_->setSourceModel(model_);
    proxy_->setSortRole(ReportTableModel::ValueRole);
    proxy_->setFilterKeyColumn(-1);
    proxy_->setFilterCaseSensitivity(Qt::CaseInsensitive);

    tableView_ = new QTableView;
    tableView_->setObjectName(QStringLiteral("reportTableView"));
    tableView_->setModel(proxy_);
    tableView_->setSelectionBehavior(QAbstractItemView::SelectRows);
    tableView_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    tableView_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tableView_->setAlternatingRowColors(true);
    tableView_->setWordWrap(false);
    tableView_->verticalHeader()->hide();
    tableView_->verticalHeader()->setDefaultSectionSize(20);
    // The rows come in the report's order until a header is clicked.
    tableView_->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    tableView_->setSortingEnabled(true);
    tableView_->horizontalHeader()->setSectionsMovable(true);
    tableView_->horizontalHeader()->setStretchLastSection(true);
    tableView_->horizontalHeader()->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(tableView_->horizontalHeader(), &QWidget::customContextMenuRequested, this, [this](const QPoint& pos) {
        toolBar_->columnsMenu()->exec(tableView_->horizontalHeader()->mapToGlobal(pos));
    });
    new TableCopier(tableView_);

    connect(toolBar_->searchField(), &QLineEdit::textChanged, proxy_,
            [this](const QString& text) { proxy_->setFilterFixedString(text); });
    connect(toolBar_->exportButton(), &QToolButton::clicked, this, &ReportListView::exportRequested);
    connect(tableView_, &QAbstractItemView::clicked, this,
            [this](const QModelIndex& index) { Q_EMIT rowActivated(proxy_->mapToSource(index).row()); });

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(toolBar_);
    layout->addWidget(tableView_);
}

void ReportListView::setColumns(const QStringList& keys, const QStringList& headers)
{
    model_->setColumns(keys, headers);
    QMenu* menu = toolBar_->columnsMenu();
    menu->clear();
    QHeaderView* header = tableView_->horizontalHeader();
    for (int c = 0; c < keys.size(); ++c) {
        header->setSectionHidden(c, false);
        header->setSectionResizeMode(c, QHeaderView::Interactive);
        QAction* item = toolBar_->addColumnChoice(headers.value(c), true);
        connect(item, &QAction::toggled, this, [header, c](bool shown) { header->setSectionHidden(c, !shown); });
    }
}

void ReportListView::setStretchColumn(int column)
{
    stretchColumn_ = column;
    QHeaderView* header = tableView_->horizontalHeader();
    header->setStretchLastSection(false);
    header->setSectionResizeMode(column, QHeaderView::Stretch);
}

void ReportListView::setRows(const QList<QList<QVariant>>& rows)
{
    model_->setRows(rows);
    QHeaderView* header = tableView_->horizontalHeader();
    // Long URLs and chains are cut at a width that leaves the other columns in sight.
    const int sized = stretchColumn_ >= 0 ? model_->columnCount() : model_->columnCount() - 1;
    for (int c = 0; c < sized; ++c) {
        if (c == stretchColumn_)
            continue;
        tableView_->resizeColumnToContents(c);
        header->resizeSection(c, qMin(header->sectionSize(c), 420));
    }
}

int ReportListView::shownRowCount() const
{
    return proxy_->rowCount();
}

QStringList ReportListView::shownKeys() const
{
    QStringList keys;
    const QHeaderView* header = tableView_->horizontalHeader();
    for (int visual = 0; visual < header->count(); ++visual) {
        const int column = header->logicalIndex(visual);
        if (!header->isSectionHidden(column))
            keys << model_->keys().value(column);
    }
    return keys;
}

QList<QList<QVariant>> ReportListView::shownRows() const
{
    const QHeaderView* header = tableView_->horizontalHeader();
    QList<int> columns;
    for (int visual = 0; visual < header->count(); ++visual) {
        const int column = header->logicalIndex(visual);
        if (!header->isSectionHidden(column))
            columns << column;
    }
    QList<QList<QVariant>> rows;
    for (int r = 0; r < proxy_->rowCount(); ++r) {
        const QList<QVariant>& source = model_->rows().at(proxy_->mapToSource(proxy_->index(r, 0)).row());
        QList<QVariant> row;
        for (int c : columns)
            row << source.value(c);
        rows << row;
    }
    return rows;
}

bool ReportListView::exportCsv(const QString& path, QString* reason) const
{
    return CsvExport::write(path, shownKeys(), shownRows(), reason);
}
