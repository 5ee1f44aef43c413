#pragma once

#include "store/QuillmereLinkPage.h"

#include "app/ListReadConnection.h"

#include <QAbstractTableModel>
#include <QGroupBox>
#include <QList>

#include <memory>

class MainViewController;
class Project;
class QuillmerePage;
class QMenu;
class QTableView;

// The links to the selected page, each with the page that carries it.
class LinksTableModel : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit LinksTableModel(QObject* parent = nullptr) : QAbstractTableModel(parent) {}
    void setLinks(const QList<QuillmereLinkPagePtr>& links);
    const QList<QuillmereLinkPagePtr>& links() const { return links_; }

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override;

private:
    QList<QuillmereLinkPagePtr> links_;
};

// The pane that lists the links pointing to the page selected in the documents list; its
// title keeps the last count until another page is selected.
class LinksView : public QGroupBox {
    Q_OBJECT
public:
    static const QStringList& columnIdentifiers();

    explicit LinksView(QWidget* parent = nullptr);

    void setMainViewController(MainViewController* controller) { mainViewController_ = controller; }
    void setCurrentProject(const std::shared_ptr<Project>& project)
    {
        if (project != currentProject_)
            reads_.close();
        currentProject_ = project;
    }
    std::shared_ptr<Project> currentProject() const { return currentProject_; }

    void selectPage(const std::shared_ptr<QuillmerePage>& page);
    void refreshTableView();
    void closeCurrentProject();

    const QList<QuillmereLinkPagePtr>& arrayOfLinks() const { return model_->links(); }
    qint64 selectedRow() const { return selectedRow_; }
    int numberOfRowsInTableView() const { return model_->rowCount(); }
    QString cellText(const QString& identifier, int row) const;
    bool tableViewShouldSelectRow(int row);

    QMenu* menuNeedsUpdate(int clickedRow);
    QMenu* menuAction() const { return menuAction_; }
    void openURLAction();

    QTableView* linksTableView() const { return linksTableView_; }

private:
    MainViewController* mainViewController_ = nullptr;
    std::shared_ptr<Project> currentProject_;
    // The list is read through a connection of its own, beside a running crawl.
    ListReadConnection reads_;
    LinksTableModel* model_;
    QTableView* linksTableView_;
    QMenu* menuAction_;
    qint64 selectedRow_ = -1;
    int clickedRow_ = -1;
};
