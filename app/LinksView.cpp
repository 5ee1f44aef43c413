#include "app/LinksView.h"

#include "app/ColumnMinimumWidth.h"

#include "app/SystemBrowser.h"
#include "store/Localization.h"
#include "store/NumberDescription.h"
#include "store/PageFilter.h"
#include "store/QuillmereLink.h"
#include "store/QuillmerePage.h"

#include <QHeaderView>
#include <QMenu>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>

using Localization::localizedString;

namespace {
enum Column { ColAnchor, ColPage, ColDepth, ColLinksOut, ColumnCount };
}

const QStringList& LinksView::columnIdentifiers()
{
    static const QStringList ids = {QStringLiteral("IdtAnchor"), QStringLiteral("IdtPage"), QStringLiteral("IdtDepth"),
                                    QStringLiteral("IdtOutputs")};
    return ids;
}

void LinksTableModel::setLinks(const QList<QuillmereLinkPagePtr>& links)
{
    beginResetModel();
    links_ = links;
    endResetModel();
}

int LinksTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(links_.size());
}

int LinksTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant LinksTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= links_.size())
        return {};
    if (role == Qt::TextAlignmentRole && index.column() >= ColDepth)
        return int(Qt::AlignRight | Qt::AlignVCenter);
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return {};
    const QuillmereLinkPagePtr& row = links_.at(index.row());
    const auto link = row->quillmereLink();
    const auto page = row->quillmerePage();
    switch (index.column()) {
    case ColAnchor:
        return link ? link->anchor() : QString();
    case ColPage:
        return page ? page->url() : QString();
    case ColDepth:
        return page ? NumberDescription::description(page->depth()) : QString();
    case ColLinksOut:
        return page ? NumberDescription::description(page->outLinkCount()) : QString();
    default:
        return {};
    }
}

QVariant LinksTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    static const char* const keys[] = {"LinkViewColumnAnchor", "LinkViewColumnURL", "LinkViewColumnDepth",
                                       "LinkViewColumnLinksOut"};
    return section >= 0 && section < ColumnCount ? localizedString(keys[section]) : QVariant();
}

void LinksTableModel::sort(int column, Qt::SortOrder order)
{
    if (column < 0 || column >= ColumnCount)
        return;
    auto less = [column](const QuillmereLinkPagePtr& a, const QuillmereLinkPagePtr& b) {
        const auto pa = a->quillmerePage();
        const auto pb = b->quillmerePage();
        switch (column) {
        case ColAnchor:
            return QString::localeAwareCompare(a->quillmereLink() ? a->quillmereLink()->anchor() : QString(),
                                               b->quillmereLink() ? b->quillmereLink()->anchor() : QString())
                   < 0;
        case ColPage:
            return (pa ? pa->url() : QString()) < (pb ? pb->url() : QString());
        case ColDepth:
            return (pa ? pa->depth() : 0) < (pb ? pb->depth() : 0);
        default:
            return (pa ? pa->outLinkCount() : 0) < (pb ? pb->outLinkCount() : 0);
        }
    };
    beginResetModel();
    if (order == Qt::AscendingOrder)
        std::stable_sort(links_.begin(), links_.end(), less);
    else
        std::stable_sort(links_.begin(), links_.end(), [&](const auto& a, const auto& b) { return less(b, a); });
    endResetModel();
}

LinksView::LinksView(QWidget* parent) : QGroupBox(parent)
{
    setObjectName(QStringLiteral("LinksView"));
    model_ = new LinksTableModel(this);
    linksTableView_ = new QTableView;
    linksTableView_->setObjectName(QStringLiteral("linksTableView"));
    linksTableView_->setModel(model_);
    linksTableView_->setSelectionBehavior(QAbstractItemView::SelectRows);
    linksTableView_->setSelectionMode(QAbstractItemView::SingleSelection);
    linksTableView_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    linksTableView_->setAlternatingRowColors(true);
    linksTableView_->setWordWrap(false);
    linksTableView_->verticalHeader()->hide();
    linksTableView_->verticalHeader()->setDefaultSectionSize(20);
    linksTableView_->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    linksTableView_->setSortingEnabled(true);
    linksTableView_->setContextMenuPolicy(Qt::CustomContextMenu);
    QFont small = linksTableView_->font();
    small.setPointSizeF(11.0);
    linksTableView_->setFont(small);
    QHeaderView* header = linksTableView_->horizontalHeader();
    // As in the documents list: the linking page's URL takes the room left.
    header->setSectionResizeMode(ColAnchor, QHeaderView::Interactive);
    header->resizeSection(ColAnchor, 240);
    header->setSectionResizeMode(ColPage, QHeaderView::Stretch);
    header->setSectionResizeMode(ColDepth, QHeaderView::ResizeToContents);
    header->setSectionResizeMode(ColLinksOut, QHeaderView::ResizeToContents);

    ColumnMinimumWidth::keep(linksTableView_, ColPage);
    // Tab leaves the list for the next pane rather than moving from cell to cell.
    linksTableView_->setTabKeyNavigation(false);

    menuAction_ = new QMenu(this);
    menuAction_->addAction(QString(), this, [this] { openURLAction(); });
    connect(linksTableView_, &QWidget::customContextMenuRequested, this, [this](const QPoint& pos) {
        menuNeedsUpdate(linksTableView_->indexAt(pos).row())->exec(linksTableView_->viewport()->mapToGlobal(pos));
    });
    // A row selected with the mouse or the keyboard; not the row made current without a
    // selection when the table takes the focus.
    connect(linksTableView_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this](const QItemSelection& selected) {
                if (!selected.indexes().isEmpty())
                    tableViewShouldSelectRow(selected.indexes().first().row());
            });

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(linksTableView_);
    setTitle(PageFilter::sourcesTitle(0));
}

void LinksView::selectPage(const std::shared_ptr<QuillmerePage>& page)
{
    const auto reader = page ? reads_.readerFor(currentProject_) : nullptr;
    const QList<QuillmereLinkPagePtr> links =
        reader ? QuillmereLinkPage::getSourcesLinksFromPage(page, reader) : QList<QuillmereLinkPagePtr>();
    model_->setLinks(links);
    linksTableView_->horizontalHeader()->blockSignals(true);
    linksTableView_->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    linksTableView_->horizontalHeader()->blockSignals(false);
    setTitle(PageFilter::sourcesTitle(quint64(links.size())));
    selectedRow_ = -1;
}

void LinksView::refreshTableView()
{
    model_->setLinks({});
    selectedRow_ = -1;
}

void LinksView::closeCurrentProject()
{
    reads_.close();
    refreshTableView();
}

QString LinksView::cellText(const QString& identifier, int row) const
{
    const int column = int(columnIdentifiers().indexOf(identifier));
    if (column < 0)
        return QString();
    return model_->data(model_->index(row, column), Qt::DisplayRole).toString();
}

bool LinksView::tableViewShouldSelectRow(int row)
{
    selectedRow_ = row;
    return true;
}

QMenu* LinksView::menuNeedsUpdate(int clickedRow)
{
    clickedRow_ = (clickedRow >= 0 && clickedRow < model_->links().size()) ? clickedRow : -1;
    QAction* item = menuAction_->actions().value(0);
    const QString text = localizedString("LinkViewOpenURL");
    const auto page = clickedRow_ >= 0 ? model_->links().at(clickedRow_)->quillmerePage() : nullptr;
    item->setText(page ? QStringLiteral("%1 %2").arg(text, page->url()) : text);
    item->setEnabled(clickedRow_ >= 0);
    return menuAction_;
}

void LinksView::openURLAction()
{
    if (clickedRow_ < 0 || clickedRow_ >= model_->links().size())
        return;
    if (const auto page = model_->links().at(clickedRow_)->quillmerePage())
        SystemBrowser::openURL(QUrl(page->url()));
}
