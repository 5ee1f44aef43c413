#include "app/DocumentsView.h"

#include "app/MainViewController.h"
#include "app/SystemBrowser.h"
#include "store/Localization.h"
#include "store/NumberDescription.h"
#include "store/PageFilter.h"

#include <QHeaderView>
#include <QMenu>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>

using Localization::localizedString;

namespace {
enum Column { ColURL, ColTitle, ColDepth, ColReceived, ColLinksOut, ColWeight, ColumnCount };
}

const QStringList& DocumentsView::columnIdentifiers()
{
    static const QStringList ids = {QStringLiteral("IdtURL"),    QStringLiteral("IdtTitle"),
                                    QStringLiteral("IdtDepth"),  QStringLiteral("IdtInputs"),
                                    QStringLiteral("IdtOutputs"), QStringLiteral("IdtWeight")};
    return ids;
}

void DocumentsTableModel::setPages(const QList<QuillmerePagePtr>& pages)
{
    beginResetModel();
    pages_ = pages;
    endResetModel();
}

int DocumentsTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(pages_.size());
}

int DocumentsTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant DocumentsTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= pages_.size())
        return {};
    if (role == Qt::TextAlignmentRole && index.column() >= ColDepth)
        return int(Qt::AlignRight | Qt::AlignVCenter);
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return {};
    const QuillmerePagePtr& page = pages_.at(index.row());
    switch (index.column()) {
    case ColURL:
        return page->url();
    case ColTitle:
        return page->title();
    case ColDepth:
        return NumberDescription::description(page->depth());
    case ColReceived:
        return NumberDescription::description(page->inLinkCount());
    case ColLinksOut:
        return NumberDescription::description(page->outLinkCount());
    case ColWeight:
        return NumberDescription::description(page->weight());
    default:
        return {};
    }
}

QVariant DocumentsTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    static const char* const keys[] = {"DocumentViewColumnURL",      "DocumentViewColumnTitle",
                                       "DocumentViewColumnDepth",    "DocumentViewColumnReceived",
                                       "DocumentViewColumnLinksOut", "DocumentViewColumnWeight"};
    return section >= 0 && section < ColumnCount ? localizedString(keys[section]) : QVariant();
}

void DocumentsTableModel::sort(int column, Qt::SortOrder order)
{
    if (column < 0 || column >= ColumnCount)
        return;
    auto less = [column](const QuillmerePagePtr& a, const QuillmerePagePtr& b) {
        switch (column) {
        case ColURL:
            return a->url() < b->url();
        case ColTitle:
            return QString::localeAwareCompare(a->title(), b->title()) < 0;
        case ColDepth:
            return a->depth() < b->depth();
        case ColReceived:
            return a->inLinkCount() < b->inLinkCount();
        case ColLinksOut:
            return a->outLinkCount() < b->outLinkCount();
        default:
            return a->weight() < b->weight();
        }
    };
    beginResetModel();
    if (order == Qt::AscendingOrder)
        std::stable_sort(pages_.begin(), pages_.end(), less);
    else
        std::stable_sort(pages_.begin(), pages_.end(), [&](const auto& a, const auto& b) { return less(b, a); });
    endResetModel();
}

DocumentsView::DocumentsView(QWidget* parent) : QGroupBox(parent)
{
    setObjectName(QStringLiteral("DocumentsView"));
    model_ = new DocumentsTableModel(this);
    documentsTableView_ = new QTableView;
    documentsTableView_->setObjectName(QStringLiteral("documentsTableView"));
    documentsTableView_->setModel(model_);
    documentsTableView_->setSelectionBehavior(QAbstractItemView::SelectRows);
    documentsTableView_->setSelectionMode(QAbstractItemView::SingleSelection);
    documentsTableView_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    documentsTableView_->setAlternatingRowColors(true);
    documentsTableView_->setWordWrap(false);
    documentsTableView_->verticalHeader()->hide();
    documentsTableView_->verticalHeader()->setDefaultSectionSize(20);
    documentsTableView_->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    documentsTableView_->setSortingEnabled(true);
    documentsTableView_->setContextMenuPolicy(Qt::CustomContextMenu);
    QFont small = documentsTableView_->font();
    small.setPointSizeF(11.0);
    documentsTableView_->setFont(small);
    QHeaderView* header = documentsTableView_->horizontalHeader();
    // The URL takes the room left; the title starts at a width of its own (and can be
    // dragged), so that the URLs of a site's deeper pages are not cut at the default size.
    header->setSectionResizeMode(ColURL, QHeaderView::Stretch);
    header->setSectionResizeMode(ColTitle, QHeaderView::Interactive);
    header->resizeSection(ColTitle, 280);
    for (int c = ColDepth; c < ColumnCount; ++c)
        header->setSectionResizeMode(c, QHeaderView::ResizeToContents);

    menuAction_ = new QMenu(this);
    menuAction_->addAction(QString(), this, [this] { openURLAction(); });
    connect(documentsTableView_, &QWidget::customContextMenuRequested, this, [this](const QPoint& pos) {
        menuNeedsUpdate(documentsTableView_->indexAt(pos).row())->exec(documentsTableView_->viewport()->mapToGlobal(pos));
    });
    // A row selected with the mouse or the keyboard; not the row made current without a
    // selection when the table takes the focus.
    connect(documentsTableView_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this](const QItemSelection& selected) {
                if (!selected.indexes().isEmpty())
                    tableViewShouldSelectRow(selected.indexes().first().row());
            });

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(documentsTableView_);
    awakeFromNib();
    setTitle(PageFilter::title(PageFilter::All, 0));
}

void DocumentsView::awakeFromNib()
{
    // The headers come from the model, looked up by key.
    model_->headerDataChanged(Qt::Horizontal, 0, ColumnCount - 1);
}

void DocumentsView::refreshTableViewWithFilter(qint32 filter)
{
    const auto reader = reads_.readerFor(currentProject_);
    const QList<QuillmerePagePtr> pages = reader ? PageFilter::pages(filter, reader) : QList<QuillmerePagePtr>();
    model_->setPages(pages);
    setTitle(PageFilter::title(filter, quint64(pages.size())));
    // The rows stay in the store's order: a sort chosen before is not applied again.
    documentsTableView_->horizontalHeader()->blockSignals(true);
    documentsTableView_->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    documentsTableView_->horizontalHeader()->blockSignals(false);
    selectedRow_ = -1;
}

void DocumentsView::closeCurrentProject()
{
    reads_.close();
    model_->setPages({});
    selectedRow_ = -1;
}

QString DocumentsView::cellText(const QString& identifier, int row) const
{
    const int column = int(columnIdentifiers().indexOf(identifier));
    if (column < 0)
        return QString();
    return model_->data(model_->index(row, column), Qt::DisplayRole).toString();
}

bool DocumentsView::tableViewShouldSelectRow(int row)
{
    selectedRow_ = row;
    if (mainViewController_ && row >= 0 && row < model_->pages().size())
        mainViewController_->selectPage(model_->pages().at(row));
    return true;
}

QMenu* DocumentsView::menuNeedsUpdate(int clickedRow)
{
    clickedRow_ = (clickedRow >= 0 && clickedRow < model_->pages().size()) ? clickedRow : -1;
    QAction* item = menuAction_->actions().value(0);
    const QString text = localizedString("DocumentViewOpenURL");
    item->setText(clickedRow_ >= 0 ? QStringLiteral("%1 %2").arg(text, model_->pages().at(clickedRow_)->url()) : text);
    item->setEnabled(clickedRow_ >= 0);
    return menuAction_;
}

void DocumentsView::openURLAction()
{
    if (clickedRow_ >= 0 && clickedRow_ < model_->pages().size())
        SystemBrowser::openURL(QUrl(model_->pages().at(clickedRow_)->url()));
}
