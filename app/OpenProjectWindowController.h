#pragma once

#include "app/SheetWindowController.h"

#include <QAbstractTableModel>
#include <QList>

#include <memory>

class OpenProjectControllerDelegate;
class Project;
class QMenu;
class QPushButton;
class QTableView;

// The projects of the registry as the open sheet lists them: name, URL, creation date.
class ProjectsTableModel : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit ProjectsTableModel(QObject* parent = nullptr) : QAbstractTableModel(parent) {}
    void setProjects(const QList<std::shared_ptr<Project>>& projects);
    const QList<std::shared_ptr<Project>>& projects() const { return projects_; }

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override;

private:
    QList<std::shared_ptr<Project>> projects_;
};

// The open-project sheet: pick a project of the registry, or delete one from the context
// menu (at once, without a confirmation).
class OpenProjectWindowController : public SheetWindowController {
    Q_OBJECT
public:
    enum Column { IdtProjectName = 0, IdtURL = 1, IdtCreationDate = 2 };

    explicit OpenProjectWindowController(OpenProjectControllerDelegate* delegate);
    static OpenProjectWindowController* initWithDelegate(OpenProjectControllerDelegate* delegate)
    {
        return new OpenProjectWindowController(delegate);
    }

    const QList<std::shared_ptr<Project>>& arrayOfProjects() const { return model_->projects(); }
    std::shared_ptr<Project> selectedProject() const { return selectedProject_; }

    // The table's rows and cells; an unknown column gets no cell.
    int numberOfRowsInTableView() const;
    QString cellText(int column, int row) const;
    // Selecting a row makes its project the selected one.
    bool tableViewShouldSelectRow(int row);

    void actionValider();
    void actionAnnuler() override;

    // The context menu for a click on a row (-1: outside every row), as it is about to open.
    QMenu* menuNeedsUpdate(int clickedRow);
    QMenu* menuAction() const { return menuAction_; }
    void actionDeleteProject();

    QTableView* projectsTableView() const { return projectsTableView_; }
    QPushButton* buttonLocValider() const { return buttonLocValider_; }
    QPushButton* buttonLocAnnuler() const { return buttonLocAnnuler_; }

private:
    void windowDidLoad();
    void reloadFromRegistry();

    OpenProjectControllerDelegate* delegate_;
    ProjectsTableModel* model_;
    QTableView* projectsTableView_;
    QMenu* menuAction_;
    QPushButton* buttonLocValider_;
    QPushButton* buttonLocAnnuler_;
    std::shared_ptr<Project> selectedProject_;
    int clickedRow_ = -1;
};
