#include "app/OpenProjectWindowController.h"

#include "app/OpenProjectControllerDelegate.h"
#include "app/ProjectRefusalAlert.h"
#include "store/ApplicationDelegate.h"
#include "store/DataModelManager.h"
#include "store/DateFormatter.h"
#include "base/DebugTrace.h"
#include "store/Localization.h"
#include "store/Project.h"
#include "store/ProjectCatalog.h"
#include "store/StringTable.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QMenu>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>

using Localization::localizedString;

void ProjectsTableModel::setProjects(const QList<std::shared_ptr<Project>>& projects)
{
    beginResetModel();
    projects_ = projects;
    endResetModel();
}

int ProjectsTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(projects_.size());
}

int ProjectsTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : 3;
}

QVariant ProjectsTableModel::data(const QModelIndex& index, int role) const
{
    if (role != Qt::DisplayRole || !index.isValid() || index.row() >= projects_.size())
        return {};
    const auto& project = projects_.at(index.row());
    switch (index.column()) {
    case OpenProjectWindowController::IdtProjectName:
        return project->name();
    case OpenProjectWindowController::IdtURL:
        return project->url();
    case OpenProjectWindowController::IdtCreationDate:
        return DateFormatter::stringFromDate(project->creation_date());
    default:
        return {};
    }
}

QVariant ProjectsTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    switch (section) {
    case OpenProjectWindowController::IdtProjectName:
        return localizedString("OpenProjectColumnProjectName");
    case OpenProjectWindowController::IdtURL:
        return localizedString("OpenProjectColumnURL");
    case OpenProjectWindowController::IdtCreationDate:
        return localizedString("OpenProjectColumnCreationDate");
    default:
        return {};
    }
}

void ProjectsTableModel::sort(int column, Qt::SortOrder order)
{
    if (column < 0 || column > 2)
        return;
    auto key = [column](const std::shared_ptr<Project>& p) -> QVariant {
        if (column == OpenProjectWindowController::IdtCreationDate)
            return p->creation_date();
        return column == OpenProjectWindowController::IdtProjectName ? p->name() : p->url();
    };
    beginResetModel();
    std::stable_sort(projects_.begin(), projects_.end(), [&](const auto& a, const auto& b) {
        const QVariant ka = key(a);
        const QVariant kb = key(b);
        const int c = QVariant::compare(ka, kb) == QPartialOrdering::Less ? -1 : (ka == kb ? 0 : 1);
        return order == Qt::AscendingOrder ? c < 0 : c > 0;
    });
    endResetModel();
}

OpenProjectWindowController::OpenProjectWindowController(OpenProjectControllerDelegate* delegate)
    : SheetWindowController(QStringLiteral("OpenProjectWindowController")), delegate_(delegate)
{
    model_ = new ProjectsTableModel(this);
    projectsTableView_ = new QTableView;
    projectsTableView_->setObjectName(QStringLiteral("projectsTableView"));
    projectsTableView_->setModel(model_);
    projectsTableView_->setSelectionBehavior(QAbstractItemView::SelectRows);
    projectsTableView_->setSelectionMode(QAbstractItemView::SingleSelection);
    projectsTableView_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    projectsTableView_->verticalHeader()->hide();
    projectsTableView_->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    projectsTableView_->setSortingEnabled(true);
    projectsTableView_->horizontalHeader()->setStretchLastSection(true);
    projectsTableView_->setContextMenuPolicy(Qt::CustomContextMenu);
    QFont small = projectsTableView_->font();
    small.setPointSizeF(11.0);
    projectsTableView_->setFont(small);
    projectsTableView_->setMinimumSize(620, 260);

    menuAction_ = new QMenu(this);
    menuAction_->addAction(QString(), this, [this] { actionDeleteProject(); });
    connect(projectsTableView_, &QWidget::customContextMenuRequested, this, [this](const QPoint& pos) {
        menuNeedsUpdate(projectsTableView_->indexAt(pos).row())->exec(projectsTableView_->viewport()->mapToGlobal(pos));
    });
    // The selected project follows the row the user selects, by mouse or keyboard. Not the
    // current row: the table makes its first row current when it takes the focus, which
    // selects nothing.
    connect(projectsTableView_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this](const QItemSelection& selected) {
                if (!selected.indexes().isEmpty())
                    tableViewShouldSelectRow(selected.indexes().first().row());
            });
    connect(projectsTableView_, &QTableView::doubleClicked, this, [this](const QModelIndex& index) {
        tableViewShouldSelectRow(index.row());
        actionValider();
    });

    QHBoxLayout* buttons = buttonRow(&buttonLocAnnuler_, &buttonLocValider_, [this] { actionValider(); });
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(projectsTableView_);
    layout->addLayout(buttons);

    reloadFromRegistry();
    for (const auto& project : model_->projects())
        DebugTrace("%s", qPrintable(project->description()));
    windowDidLoad();
    projectsTableView_->resizeColumnToContents(IdtProjectName);
    projectsTableView_->setColumnWidth(IdtURL, qMax(240, projectsTableView_->columnWidth(IdtURL)));
}

void OpenProjectWindowController::windowDidLoad()
{
    setWindowTitle(localizedString("OpenProjectWindowTitle"));
    buttonLocValider_->setText(localizedString("OpenProjectButtonValider"));
    buttonLocAnnuler_->setText(localizedString("OpenProjectButtonAnnuler"));
}

void OpenProjectWindowController::reloadFromRegistry()
{
    model_->setProjects(Project::getAllProjects());
}

int OpenProjectWindowController::numberOfRowsInTableView() const
{
    return model_->rowCount();
}

QString OpenProjectWindowController::cellText(int column, int row) const
{
    return model_->data(model_->index(row, column), Qt::DisplayRole).toString();
}

bool OpenProjectWindowController::tableViewShouldSelectRow(int row)
{
    if (row >= 0 && row < model_->projects().size())
        selectedProject_ = model_->projects().at(row);
    return true;
}

void OpenProjectWindowController::actionValider()
{
    if (!selectedProject_)
        return;
    if (delegate_)
        delegate_->openProjectValidateWithController(this, selectedProject_);
    endSheet(ValidateCode);
}

void OpenProjectWindowController::actionAnnuler()
{
    if (delegate_)
        delegate_->openProjectCancelWithController(this);
    endSheet(CancelCode);
}

QMenu* OpenProjectWindowController::menuNeedsUpdate(int clickedRow)
{
    clickedRow_ = (clickedRow >= 0 && clickedRow < model_->projects().size()) ? clickedRow : -1;
    QAction* item = menuAction_->actions().value(0);
    const QString text = localizedString("OpenProjectDeleteProject");
    item->setText(clickedRow_ >= 0 ? QStringLiteral("%1 %2").arg(text, model_->projects().at(clickedRow_)->name()) : text);
    item->setEnabled(clickedRow_ >= 0);
    return menuAction_;
}

void OpenProjectWindowController::actionDeleteProject()
{
    if (clickedRow_ < 0 || clickedRow_ >= model_->projects().size())
        return;
    const auto project = model_->projects().at(clickedRow_);
    ApplicationDelegate* app = ApplicationDelegate::sharedAppDelegate();
    DataModelManager* manager = app ? app->dataModelManager() : nullptr;
    if (!manager)
        return;
    // Under the project's lock, as the command line deletes: a project that another program
    // crawls or changes is refused, and nothing of it is removed.
    ProjectCatalog catalog(*manager, StringTable::forLanguage(StringTable::Language::French));
    const ProjectCatalog::Result removed = catalog.remove(project, QStringLiteral("quillmere-gui"));
    if (!removed.done()) {
        if (removed.outcome != ProjectCatalog::Outcome::StoreUnavailable)
            ProjectRefusalAlert::show(removed, this);
        return;
    }
    if (delegate_)
        delegate_->openProjectDidDeleteProject(this, project);
    // Back to the registry's order; the sort chosen before is gone with the selection.
    projectsTableView_->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    reloadFromRegistry();
    selectedProject_.reset();
    projectsTableView_->clearSelection();
    clickedRow_ = -1;
}
