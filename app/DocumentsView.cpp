#include "app/DocumentsView.h"

#include "app/ColumnMinimumWidth.h"
#include "app/MainViewController.h"
#include "app/SystemBrowser.h"
#include "store/Localization.h"
#include "store/NumberDescription.h"
#include "store/PageFilter.h"
#include "store/PageListing.h"

#include <QFontMetrics>
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

const QStringList& DocumentsView::optionalColumnIdentifiers()
{
    static const QStringList ids = {QStringLiteral("IdtStatus"), QStringLiteral("IdtResponseTime")};
    return ids;
}

namespace {
// The report column an optional identifier shows.
QString reportColumnOf(const QString& identifier)
{
    return identifier == QLatin1String("IdtStatus") ? QStringLiteral("status") : QStringLiteral("responseMs");
}
} // namespace

void DocumentsTableModel::setOptionalColumns(const QStringList& identifiers)
{
    beginResetModel();
    optional_ = identifiers;
    endResetModel();
}

void DocumentsTableModel::setFetches(const QHash<QString, FetchLogPtr>& fetches)
{
    fetches_ = fetches;
    if (!pages_.isEmpty() && !optional_.isEmpty())
        Q_EMIT dataChanged(index(0, ColumnCount), index(int(pages_.size()) - 1, columnCount() - 1));
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
    return parent.isValid() ? 0 : ColumnCount + int(optional_.size());
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
    if (index.column() >= ColumnCount) {
        const QVariant value = PageListing::cellValue(reportColumnOf(optional_.value(index.column() - ColumnCount)),
                                                      {page, fetchOf(page)}, true);
        return value.isNull() ? QString() : value.toString();
    }
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
    if (section >= ColumnCount && section < columnCount())
        return localizedString(optional_.at(section - ColumnCount) == QLatin1String("IdtStatus") ? "CliColumnStatus"
                                                                                               : "CliColumnResponseMs");
    return section >= 0 && section < ColumnCount ? localizedString(keys[section]) : QVariant();
}

void DocumentsTableModel::sort(int column, Qt::SortOrder order)
{
    if (column < 0 || column >= columnCount())
        return;
    const QString optional = optional_.value(column - ColumnCount);
    auto fetchValue = [this, &optional](const QuillmerePagePtr& page) -> qint64 {
        const FetchLogPtr fetch = fetchOf(page);
        if (!fetch)
            return -2;
        return optional == QLatin1String("IdtStatus") ? fetch->status() : fetch->responseMs();
    };
    auto less = [column, &fetchValue](const QuillmerePagePtr& a, const QuillmerePagePtr& b) {
        if (column >= ColumnCount)
            return fetchValue(a) < fetchValue(b);
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
    // The number columns are as wide as their widest cell, worked out from every row when the
    // list is read: Qt's own fit to contents measures a thousand rows of each column on the
    // window's thread at every reset, which stalls it at twenty thousand pages.
    for (int c = ColDepth; c < ColumnCount; ++c)
        header->setSectionResizeMode(c, QHeaderView::Fixed);
    header->setResizeContentsPrecision(0);

    ColumnMinimumWidth::keep(documentsTableView_, ColURL);
    // Tab leaves the list for the next pane rather than moving from cell to cell.
    documentsTableView_->setTabKeyNavigation(false);

    loads_.setMaxThreadCount(1);
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
    fitNumberColumns({});
    setTitle(PageFilter::title(PageFilter::All, 0));
}

DocumentsView::~DocumentsView()
{
    // A read under way posts back to this view: it ends first.
    loads_.waitForDone();
}

void DocumentsView::awakeFromNib()
{
    // The headers come from the model, looked up by key.
    model_->headerDataChanged(Qt::Horizontal, 0, ColumnCount - 1);
}

void DocumentsView::refreshTableViewWithFilter(qint32 filter)
{
    ++generation_;
    const auto reader = reads_.readerFor(currentProject_);
    const QList<QuillmerePagePtr> pages = reader ? PageFilter::pages(filter, reader) : QList<QuillmerePagePtr>();
    if (!model_->optionalColumns().isEmpty())
        loadFetches();
    showPages(filter, pages, widestNumbers(pages));
}

void DocumentsView::refreshTableViewWithFilterInBackground(qint32 filter, std::function<void()> shown)
{
    auto connection = std::make_shared<ListReadConnection>();
    auto reader = connection->readerFor(currentProject_);
    if (!reader || reader == currentProject_) {
        // Not a database that can be read beside its writer: read here, as before.
        refreshTableViewWithFilter(filter);
        if (shown)
            shown();
        return;
    }
    const quint64 generation = ++generation_;
    const bool withFetches = !model_->optionalColumns().isEmpty();
    ++loading_;
    loads_.start([this, connection, reader, filter, generation, withFetches, shown = std::move(shown)]() mutable {
        QList<QuillmerePagePtr> pages = PageFilter::pages(filter, reader);
        QStringList widest = widestNumbers(pages);
        QHash<QString, FetchLogPtr> fetches;
        if (withFetches)
            fetches = fetchesOf(reader);
        // The connection is closed on this thread, not left to the window's.
        reader.reset();
        connection.reset();
        QMetaObject::invokeMethod(
            this,
            [this, filter, generation, withFetches, pages = std::move(pages), widest = std::move(widest),
             fetches = std::move(fetches), shown = std::move(shown)] {
                --loading_;
                if (generation == generation_) {
                    if (withFetches)
                        model_->setFetches(fetches);
                    showPages(filter, pages, widest);
                }
                if (shown)
                    shown();
            },
            Qt::QueuedConnection);
    });
}

QStringList DocumentsView::widestNumbers(const QList<QuillmerePagePtr>& pages)
{
    // Digits are as wide as one another in the list's font: the longest text is the widest.
    QStringList widest(ColumnCount - ColDepth);
    auto keep = [&widest](int column, const QString& text) {
        QString& kept = widest[column - ColDepth];
        if (text.size() > kept.size())
            kept = text;
    };
    qint64 most[3] = {0, 0, 0};
    for (const QuillmerePagePtr& page : pages) {
        most[0] = std::max(most[0], qint64(page->depth()));
        most[1] = std::max(most[1], qint64(page->inLinkCount()));
        most[2] = std::max(most[2], qint64(page->outLinkCount()));
        keep(ColWeight, NumberDescription::description(page->weight()));
    }
    if (!pages.isEmpty()) {
        keep(ColDepth, NumberDescription::description(most[0]));
        keep(ColReceived, NumberDescription::description(most[1]));
        keep(ColLinksOut, NumberDescription::description(most[2]));
    }
    return widest;
}

void DocumentsView::fitNumberColumns(const QStringList& widest)
{
    QHeaderView* header = documentsTableView_->horizontalHeader();
    const QFontMetrics metrics(documentsTableView_->font());
    for (int c = ColDepth; c < ColumnCount; ++c) {
        int width = header->sectionSizeHint(c);
        if (model_->rowCount() > 0) {
            // The cell's margins as the view draws them, taken from the first row.
            const QModelIndex first = model_->index(0, c);
            const int margins = documentsTableView_->sizeHintForIndex(first).width()
                                - metrics.horizontalAdvance(first.data().toString());
            // Two pixels for the rounding of a text's advance against its bounding box.
            width = std::max(width, metrics.horizontalAdvance(widest.value(c - ColDepth)) + margins + 2);
        }
        header->resizeSection(c, width);
    }
}

void DocumentsView::showPages(qint32 filter, const QList<QuillmerePagePtr>& pages, const QStringList& widest)
{
    model_->setPages(pages);
    fitNumberColumns(widest);
    setTitle(PageFilter::title(filter, quint64(pages.size())));
    // The rows stay in the store's order: a sort chosen before is not applied again.
    documentsTableView_->horizontalHeader()->blockSignals(true);
    documentsTableView_->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    documentsTableView_->horizontalHeader()->blockSignals(false);
    selectedRow_ = -1;
}

void DocumentsView::closeCurrentProject()
{
    ++generation_;
    reads_.close();
    model_->setPages({});
    fitNumberColumns({});
    selectedRow_ = -1;
}

QString DocumentsView::cellText(const QString& identifier, int row) const
{
    int column = int(columnIdentifiers().indexOf(identifier));
    if (column < 0 && model_->optionalColumns().contains(identifier))
        column = ColumnCount + int(model_->optionalColumns().indexOf(identifier));
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

void DocumentsView::loadFetches()
{
    // Through the list's own connection: a crawl may be writing meanwhile.
    const auto reader = reads_.readerFor(currentProject_);
    model_->setFetches(reader ? fetchesOf(reader) : QHash<QString, FetchLogPtr>());
}

QHash<QString, FetchLogPtr> DocumentsView::fetchesOf(const std::shared_ptr<Project>& reader)
{
    QHash<QString, FetchLogPtr> fetches;
    PageListing::forEachPage(PageFilter::All, QString(), false, reader, [&](const PageListing::Row& row) {
        if (row.fetch)
            fetches.insert(row.page->url(), row.fetch);
    });
    return fetches;
}

void DocumentsView::setOptionalColumnShown(const QString& identifier, bool shown)
{
    if (!optionalColumnIdentifiers().contains(identifier) || model_->optionalColumns().contains(identifier) == shown)
        return;
    QStringList columns;
    for (const auto& id : optionalColumnIdentifiers())
        if (id == identifier ? shown : model_->optionalColumns().contains(id))
            columns << id;
    if (shown && model_->optionalColumns().isEmpty())
        loadFetches();
    // The rows keep their order; a sort indicator on a column that moves is dropped.
    QHeaderView* header = documentsTableView_->horizontalHeader();
    header->blockSignals(true);
    header->setSortIndicator(-1, Qt::AscendingOrder);
    header->blockSignals(false);
    model_->setOptionalColumns(columns);
    for (int c = ColumnCount; c < model_->columnCount(); ++c)
        header->setSectionResizeMode(c, QHeaderView::ResizeToContents);
    selectedRow_ = -1;
}

FetchLogPtr DocumentsView::fetchOfRow(int row) const
{
    return row >= 0 && row < model_->pages().size() ? model_->fetchOf(model_->pages().at(row)) : nullptr;
}
