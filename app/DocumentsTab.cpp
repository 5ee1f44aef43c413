#include "app/DocumentsTab.h"

#include "app/CsvExport.h"
#include "app/DocumentsView.h"
#include "app/ListToolBar.h"
#include "app/TableCopier.h"
#include "store/Localization.h"
#include "store/PageListing.h"

#include <QAction>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>

using Localization::localizedString;

namespace {
// The pages report's column for each identifier of the documents list.
QString reportColumn(const QString& identifier)
{
    static const QHash<QString, QString> columns{
        {QStringLiteral("IdtURL"), QStringLiteral("url")},
        {QStringLiteral("IdtTitle"), QStringLiteral("title")},
        {QStringLiteral("IdtDepth"), QStringLiteral("depth")},
        {QStringLiteral("IdtInputs"), QStringLiteral("inLinkCount")},
        {QStringLiteral("IdtOutputs"), QStringLiteral("outLinkCount")},
        {QStringLiteral("IdtWeight"), QStringLiteral("weight")},
        {QStringLiteral("IdtStatus"), QStringLiteral("status")},
        {QStringLiteral("IdtResponseTime"), QStringLiteral("responseMs")},
    };
    return columns.value(identifier);
}
} // namespace

DocumentsTab::DocumentsTab(DocumentsView* documentsView, QWidget* parent)
    : QWidget(parent), documentsView_(documentsView)
{
    setObjectName(QStringLiteral("DocumentsTab"));
    toolBar_ = new ListToolBar;
    QTableView* table = documentsView_->documentsTableView();
    QHeaderView* header = table->horizontalHeader();
    static const char* const captions[] = {"DocumentViewColumnURL",      "DocumentViewColumnTitle",
                                           "DocumentViewColumnDepth",    "DocumentViewColumnReceived",
                                           "DocumentViewColumnLinksOut", "DocumentViewColumnWeight"};
    for (int c = 0; c < DocumentsView::columnIdentifiers().size(); ++c) {
        QAction* item = toolBar_->addColumnChoice(localizedString(captions[c]), true);
        connect(item, &QAction::toggled, this, [header, c](bool shown) { header->setSectionHidden(c, !shown); });
    }
    for (const auto& id : DocumentsView::optionalColumnIdentifiers()) {
        QAction* item = toolBar_->addColumnChoice(
            localizedString(id == QLatin1String("IdtStatus") ? "CliColumnStatus" : "CliColumnResponseMs"), false);
        item->setObjectName(id);
        connect(item, &QAction::toggled, this, [this, id](bool shown) {
            documentsView_->setOptionalColumnShown(id, shown);
            applySearch();
        });
    }
    header->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(header, &QWidget::customContextMenuRequested, this,
            [this, header](const QPoint& pos) { toolBar_->columnsMenu()->exec(header->mapToGlobal(pos)); });
    new TableCopier(table);

    connect(toolBar_->searchField(), &QLineEdit::textChanged, this, [this] { applySearch(); });
    // Every reload or sort of the list resets its model: the search applies again.
    connect(table->model(), &QAbstractItemModel::modelReset, this, [this] { applySearch(); });
    connect(toolBar_->exportButton(), &QToolButton::clicked, this, &DocumentsTab::exportRequested);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 4, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(toolBar_);
    layout->addWidget(documentsView_);
}

void DocumentsTab::applySearch()
{
    QTableView* table = documentsView_->documentsTableView();
    QAbstractItemModel* model = table->model();
    const QString text = toolBar_->searchField()->text();
    // A list of many pages reloaded with no search: no row to show or hide.
    if (text.isEmpty() && !rowsHidden_)
        return;
    rowsHidden_ = !text.isEmpty();
    for (int row = 0; row < model->rowCount(); ++row) {
        bool match = text.isEmpty();
        for (int column = 0; !match && column < model->columnCount(); ++column)
            match = !table->isColumnHidden(column)
                    && model->index(row, column).data(Qt::DisplayRole).toString().contains(text, Qt::CaseInsensitive);
        table->setRowHidden(row, !match);
    }
}

int DocumentsTab::shownRowCount() const
{
    QTableView* table = documentsView_->documentsTableView();
    int n = 0;
    for (int row = 0; row < table->model()->rowCount(); ++row)
        n += table->isRowHidden(row) ? 0 : 1;
    return n;
}

QStringList DocumentsTab::shownColumnIdentifiers() const
{
    QTableView* table = documentsView_->documentsTableView();
    const QHeaderView* header = table->horizontalHeader();
    const QStringList ids = DocumentsView::columnIdentifiers() + documentsView_->shownOptionalColumns();
    QStringList shown;
    for (int visual = 0; visual < header->count(); ++visual) {
        const int column = header->logicalIndex(visual);
        if (!header->isSectionHidden(column))
            shown << ids.value(column);
    }
    return shown;
}

QStringList DocumentsTab::shownKeys() const
{
    QStringList keys;
    for (const auto& id : shownColumnIdentifiers())
        keys << reportColumn(id);
    return keys;
}

QList<QList<QVariant>> DocumentsTab::shownRows() const
{
    QTableView* table = documentsView_->documentsTableView();
    const QStringList keys = shownKeys();
    QList<QList<QVariant>> rows;
    for (int row = 0; row < documentsView_->arrayOfPages().size(); ++row) {
        if (table->isRowHidden(row))
            continue;
        const PageListing::Row page{documentsView_->arrayOfPages().at(row), documentsView_->fetchOfRow(row)};
        QList<QVariant> values;
        for (const auto& key : keys)
            values << PageListing::cellValue(key, page, false);
        rows << values;
    }
    return rows;
}

bool DocumentsTab::exportCsv(const QString& path, QString* reason) const
{
    return CsvExport::write(path, shownKeys(), shownRows(), reason);
}
