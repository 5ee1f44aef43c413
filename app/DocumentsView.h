#pragma once

#include "store/FetchLog.h"
#include "store/QuillmerePage.h"

#include "app/ListReadConnection.h"

#include <QAbstractTableModel>
#include <QGroupBox>
#include <QHash>
#include <QList>
#include <QThreadPool>

#include <functional>
#include <memory>

class MainViewController;
class Project;
class QMenu;
class QTableView;

// The pages of the documents list, in display order; a header click sorts them in memory.
class DocumentsTableModel : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit DocumentsTableModel(QObject* parent = nullptr) : QAbstractTableModel(parent) {}
    void setPages(const QList<QuillmerePagePtr>& pages);
    const QList<QuillmerePagePtr>& pages() const { return pages_; }

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override;

    // Columns beyond the described six, by identifier, in order (none unless chosen), and the
    // last fetch of each page that they read.
    void setOptionalColumns(const QStringList& identifiers);
    const QStringList& optionalColumns() const { return optional_; }
    void setFetches(const QHash<QString, FetchLogPtr>& fetches);
    FetchLogPtr fetchOf(const QuillmerePagePtr& page) const { return fetches_.value(page->url()); }

private:
    QList<QuillmerePagePtr> pages_;
    QStringList optional_;
    QHash<QString, FetchLogPtr> fetches_;
};

// The pane that lists the pages of the project shown, under the filter chosen; its title
// says how many there are. Selecting a row shows the links to that page.
class DocumentsView : public QGroupBox {
    Q_OBJECT
public:
    // The columns by identifier, in order.
    static const QStringList& columnIdentifiers();

    // The columns a user may add from the column chooser: the status and the response time.
    static const QStringList& optionalColumnIdentifiers();

    explicit DocumentsView(QWidget* parent = nullptr);
    ~DocumentsView() override;

    void setMainViewController(MainViewController* controller) { mainViewController_ = controller; }
    void setCurrentProject(const std::shared_ptr<Project>& project)
    {
        if (project != currentProject_) {
            reads_.close();
            ++generation_;
        }
        currentProject_ = project;
    }
    std::shared_ptr<Project> currentProject() const { return currentProject_; }

    void refreshTableViewWithFilter(qint32 filter);
    // The same list read on a worker thread, through a connection of its own, so that a list
    // of many thousand pages does not hold the window up; `shown` runs on this thread once the
    // rows are in (at once when the database can only be read here). A later refresh, or
    // another project, wins over a read still under way.
    void refreshTableViewWithFilterInBackground(qint32 filter, std::function<void()> shown = {});
    bool isLoading() const { return loading_ > 0; }
    void closeCurrentProject();

    const QList<QuillmerePagePtr>& arrayOfPages() const { return model_->pages(); }
    qint64 selectedRow() const { return selectedRow_; }
    int numberOfRowsInTableView() const { return model_->rowCount(); }
    // The text of a cell by column identifier; an unknown identifier gets no cell.
    QString cellText(const QString& identifier, int row) const;
    bool tableViewShouldSelectRow(int row);

    // Shows or hides an optional column; shown, it is read from each page's last fetch.
    void setOptionalColumnShown(const QString& identifier, bool shown);
    QStringList shownOptionalColumns() const { return model_->optionalColumns(); }
    FetchLogPtr fetchOfRow(int row) const;

    // The context menu for a click on a row (-1: outside every row), as it is about to open.
    QMenu* menuNeedsUpdate(int clickedRow);
    QMenu* menuAction() const { return menuAction_; }
    void openURLAction();

    QTableView* documentsTableView() const { return documentsTableView_; }

private:
    void awakeFromNib();
    void loadFetches();
    static QHash<QString, FetchLogPtr> fetchesOf(const std::shared_ptr<Project>& reader);
    static QStringList widestNumbers(const QList<QuillmerePagePtr>& pages);
    void fitNumberColumns(const QStringList& widest);
    void showPages(qint32 filter, const QList<QuillmerePagePtr>& pages, const QStringList& widest);

    MainViewController* mainViewController_ = nullptr;
    std::shared_ptr<Project> currentProject_;
    // The list is read through a connection of its own, beside a running crawl.
    ListReadConnection reads_;
    DocumentsTableModel* model_;
    QTableView* documentsTableView_;
    QMenu* menuAction_;
    qint64 selectedRow_ = -1;
    int clickedRow_ = -1;
    // Background reads, one at a time, in order; the newest generation is the one shown.
    QThreadPool loads_;
    quint64 generation_ = 0;
    int loading_ = 0;
};
