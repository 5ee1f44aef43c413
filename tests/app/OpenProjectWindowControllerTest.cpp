// The open-project sheet: the registry's projects as rows, choosing one by mouse or
// keyboard, sorting, deleting from the context menu, and how the sheet ends.
#include "AppTestSupport.h"

#include "app/OpenProjectControllerDelegate.h"
#include "app/OpenProjectWindowController.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>
#include <QTableView>
#include <QTest>

#include <memory>

using namespace apptest;

namespace {

class RecordingOpenProjectDelegate : public OpenProjectControllerDelegate {
public:
    void openProjectValidateWithController(OpenProjectWindowController* controller,
                                           const std::shared_ptr<Project>& project) override
    {
        validations.push_back({controller, project});
    }
    void openProjectCancelWithController(OpenProjectWindowController* controller) override
    {
        cancels.push_back(controller);
    }
    std::vector<std::pair<OpenProjectWindowController*, ProjectPtr>> validations;
    std::vector<OpenProjectWindowController*> cancels;
};

QDateTime localDate(int y, int mo, int d, int h, int mi, int s)
{
    return QDateTime(QDate(y, mo, d), QTime(h, mi, s));
}

// Three saved projects whose registry order (by creation date) is neither their name order
// nor their URL order: beta, gamma, alpha.
void addThreeProjects(LaunchedApp& app)
{
    struct Row { const char* name; const char* url; QDateTime created; };
    const Row rows[] = {{"beta", "http://c.example", localDate(2020, 1, 1, 10, 0, 0)},
                        {"gamma", "http://a.example", localDate(2021, 6, 15, 8, 30, 45)},
                        {"alpha", "http://b.example", localDate(2022, 12, 31, 23, 59, 59)}};
    for (const Row& row : rows) {
        ProjectPtr p = Project::createProjectWithName(row.name, row.url, -1, -1);
        ASSERT_TRUE(p);
        p->setCreation_date(row.created);
    }
    ASSERT_TRUE(app.app()->saveContext());
}

QStringList rowNames(const OpenProjectWindowController* sheet)
{
    QStringList names;
    for (int row = 0; row < sheet->numberOfRowsInTableView(); ++row)
        names << sheet->cellText(OpenProjectWindowController::IdtProjectName, row);
    return names;
}

QStringList registryNames()
{
    QStringList names;
    for (const auto& p : Project::getAllProjects())
        names << p->name();
    return names;
}

int rowOf(const OpenProjectWindowController* sheet, const QString& name)
{
    return int(rowNames(sheet).indexOf(name));
}

void clickRow(OpenProjectWindowController* sheet, int row)
{
    QTableView* view = sheet->projectsTableView();
    const QRect rect = view->visualRect(view->model()->index(row, OpenProjectWindowController::IdtProjectName));
    ASSERT_TRUE(rect.isValid());
    QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, rect.center());
}

void clickHeader(OpenProjectWindowController* sheet, int column)
{
    QHeaderView* header = sheet->projectsTableView()->horizontalHeader();
    const QPoint at(header->sectionViewportPosition(column) + header->sectionSize(column) / 2, header->height() / 2);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier, at);
}

// A sheet on the shown main window, with a recording delegate.
struct OpenSheet {
    explicit OpenSheet(LaunchedApp& app) : sheet(OpenProjectWindowController::initWithDelegate(&delegate))
    {
        app.window()->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(app.window()));
        app.controller()->setOpenProjectWindowController(sheet);
        sheet->displaySheetInWindow(app.window());
        EXPECT_TRUE(sheet->isVisible());
    }
    OpenProjectWindowController* operator->() const { return sheet; }

    RecordingOpenProjectDelegate delegate;
    OpenProjectWindowController* sheet;  // owned by the main view controller
};

} // namespace

TEST(OpenProjectSheet, RowsAreTheRegistryProjects)
{
    LaunchedApp app;
    addThreeProjects(app);
    OpenSheet s(app);
    EXPECT_EQ(s->numberOfRowsInTableView(), 3);
    EXPECT_EQ(s->projectsTableView()->model()->rowCount(), 3);
    EXPECT_EQ(rowNames(s.sheet), registryNames());
    EXPECT_EQ(rowNames(s.sheet), (QStringList{"beta", "gamma", "alpha"}));
    EXPECT_FALSE(s->selectedProject());
}

TEST(OpenProjectSheet, CellsShowNameURLAndCreationDate)
{
    LaunchedApp app;
    addThreeProjects(app);
    OpenSheet s(app);
    using C = OpenProjectWindowController;
    EXPECT_EQ(s->cellText(C::IdtProjectName, 1), "gamma");
    EXPECT_EQ(s->cellText(C::IdtURL, 1), "http://a.example");
    EXPECT_EQ(s->cellText(C::IdtCreationDate, 1), "2021-06-15 08:30:45");
    EXPECT_EQ(s->cellText(C::IdtCreationDate, 2), "2022-12-31 23:59:59");
    EXPECT_EQ(s->cellText(3, 0), "");
    // What the table itself shows.
    QAbstractItemModel* model = s->projectsTableView()->model();
    EXPECT_EQ(model->data(model->index(0, C::IdtCreationDate)).toString(), "2020-01-01 10:00:00");
    EXPECT_EQ(model->data(model->index(0, C::IdtURL)).toString(), "http://c.example");
}

TEST(OpenProjectSheet, HeadersAndButtonsAreFrench)
{
    LaunchedApp app;
    OpenSheet s(app);
    QAbstractItemModel* model = s->projectsTableView()->model();
    EXPECT_EQ(model->headerData(0, Qt::Horizontal).toString(), "Projet");
    EXPECT_EQ(model->headerData(1, Qt::Horizontal).toString(), "URL");
    EXPECT_EQ(model->headerData(2, Qt::Horizontal).toString(), QString::fromUtf8("Date de création"));
    EXPECT_EQ(s->buttonLocValider()->text(), "Ouvrir");
    EXPECT_EQ(s->buttonLocAnnuler()->text(), "Annuler");
    EXPECT_EQ(s->windowTitle(), "Ouvrir un projet");
}

TEST(OpenProjectSheet, OpenDoesNothingWithoutASelection)
{
    LaunchedApp app;
    addThreeProjects(app);
    OpenSheet s(app);
    s->buttonLocValider()->click();
    QTest::keyClick(s.sheet, Qt::Key_Return);
    EXPECT_TRUE(s->isVisible());
    EXPECT_TRUE(s.delegate.validations.empty());
    EXPECT_TRUE(s.delegate.cancels.empty());
    EXPECT_FALSE(s->selectedProject());
}

TEST(OpenProjectSheet, FocusOnTheTableSelectsNothing)
{
    LaunchedApp app;
    addThreeProjects(app);
    OpenSheet s(app);
    s->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(s.sheet));
    s->projectsTableView()->setFocus(Qt::TabFocusReason);
    QCoreApplication::processEvents();
    EXPECT_TRUE(s->projectsTableView()->hasFocus());
    EXPECT_FALSE(s->selectedProject());
    QTest::keyClick(s.sheet, Qt::Key_Return);
    EXPECT_TRUE(s->isVisible());
    EXPECT_TRUE(s.delegate.validations.empty());
}

TEST(OpenProjectSheet, AClickedRowIsOpened)
{
    LaunchedApp app;
    addThreeProjects(app);
    OpenSheet s(app);
    clickRow(s.sheet, 1);
    ASSERT_TRUE(s->selectedProject());
    EXPECT_EQ(s->selectedProject()->name(), "gamma");
    s->buttonLocValider()->click();
    ASSERT_EQ(s.delegate.validations.size(), 1u);
    EXPECT_EQ(s.delegate.validations[0].first, s.sheet);
    EXPECT_EQ(s.delegate.validations[0].second->name(), "gamma");
    EXPECT_EQ(s->result(), 1);
    EXPECT_FALSE(s->isVisible());
}

TEST(OpenProjectSheet, ADoubleClickedRowIsOpened)
{
    LaunchedApp app;
    addThreeProjects(app);
    OpenSheet s(app);
    QTableView* view = s->projectsTableView();
    const QPoint at = view->visualRect(view->model()->index(rowOf(s.sheet, "alpha"), 0)).center();
    // A double click as the platform delivers it: press, release, double click, release.
    QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, at);
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, at);
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, Qt::NoModifier, at);
    ASSERT_EQ(s.delegate.validations.size(), 1u);
    EXPECT_EQ(s.delegate.validations[0].second->name(), "alpha");
    EXPECT_EQ(s->result(), 1);
    EXPECT_FALSE(s->isVisible());
}

TEST(OpenProjectSheet, ResortingByHeaderKeepsTheSelectedProject)
{
    LaunchedApp app;
    addThreeProjects(app);
    OpenSheet s(app);
    clickRow(s.sheet, rowOf(s.sheet, "gamma"));
    ASSERT_TRUE(s->selectedProject());
    ASSERT_EQ(s->selectedProject()->name(), "gamma");

    clickHeader(s.sheet, OpenProjectWindowController::IdtProjectName);
    EXPECT_EQ(rowNames(s.sheet), (QStringList{"alpha", "beta", "gamma"}));
    ASSERT_TRUE(s->selectedProject());
    EXPECT_EQ(s->selectedProject()->name(), "gamma");
    clickHeader(s.sheet, OpenProjectWindowController::IdtProjectName);
    EXPECT_EQ(rowNames(s.sheet), (QStringList{"gamma", "beta", "alpha"}));
    clickHeader(s.sheet, OpenProjectWindowController::IdtURL);
    EXPECT_EQ(rowNames(s.sheet), (QStringList{"gamma", "alpha", "beta"}));
    ASSERT_TRUE(s->selectedProject());
    EXPECT_EQ(s->selectedProject()->name(), "gamma");

    s->buttonLocValider()->click();
    ASSERT_EQ(s.delegate.validations.size(), 1u);
    EXPECT_EQ(s.delegate.validations[0].second->name(), "gamma");
}

TEST(OpenProjectSheet, ResortingThroughTheModelKeepsTheSelectedProject)
{
    LaunchedApp app;
    addThreeProjects(app);
    OpenSheet s(app);
    s->tableViewShouldSelectRow(rowOf(s.sheet, "alpha"));
    s->projectsTableView()->model()->sort(OpenProjectWindowController::IdtCreationDate, Qt::DescendingOrder);
    EXPECT_EQ(rowNames(s.sheet), (QStringList{"alpha", "gamma", "beta"}));
    s->projectsTableView()->sortByColumn(OpenProjectWindowController::IdtURL, Qt::AscendingOrder);
    EXPECT_EQ(rowNames(s.sheet), (QStringList{"gamma", "alpha", "beta"}));
    ASSERT_TRUE(s->selectedProject());
    EXPECT_EQ(s->selectedProject()->name(), "alpha");
}

TEST(OpenProjectSheet, TheContextMenuNamesTheClickedProject)
{
    LaunchedApp app;
    addThreeProjects(app);
    OpenSheet s(app);
    QMenu* menu = s->menuNeedsUpdate(rowOf(s.sheet, "gamma"));
    ASSERT_TRUE(menu);
    ASSERT_EQ(menu->actions().size(), 1);
    EXPECT_EQ(menu->actions()[0]->text(), "Supprimer le projet gamma");
    EXPECT_TRUE(menu->actions()[0]->isEnabled());

    menu = s->menuNeedsUpdate(-1);
    EXPECT_EQ(menu->actions()[0]->text(), "Supprimer le projet");
    EXPECT_FALSE(menu->actions()[0]->isEnabled());
    // A disabled item deletes nothing.
    menu->actions()[0]->trigger();
    EXPECT_EQ(Project::countProjects(), 3);
}

TEST(OpenProjectSheet, DeletingReloadsInRegistryOrderAndClearsTheSelection)
{
    LaunchedApp app;
    addThreeProjects(app);
    OpenSheet s(app);
    clickHeader(s.sheet, OpenProjectWindowController::IdtProjectName);
    ASSERT_EQ(rowNames(s.sheet), (QStringList{"alpha", "beta", "gamma"}));
    clickRow(s.sheet, rowOf(s.sheet, "gamma"));
    ASSERT_TRUE(s->selectedProject());

    s->menuNeedsUpdate(rowOf(s.sheet, "beta"))->actions()[0]->trigger();
    EXPECT_FALSE(Project::getProjectWithName("beta"));
    EXPECT_EQ(Project::countProjects(), 2);
    EXPECT_EQ(rowNames(s.sheet), registryNames());
    EXPECT_EQ(rowNames(s.sheet), (QStringList{"gamma", "alpha"}));
    EXPECT_FALSE(s->selectedProject());
    EXPECT_FALSE(s->projectsTableView()->selectionModel()->hasSelection());
    EXPECT_TRUE(Alert::shownAlerts().isEmpty());  // no confirmation
    EXPECT_TRUE(s->isVisible());

    // With the selection gone, opening does nothing again.
    s->buttonLocValider()->click();
    EXPECT_TRUE(s.delegate.validations.empty());
}

TEST(OpenProjectSheet, ARightClickDeletesTheProjectUnderIt)
{
    LaunchedApp app;
    addThreeProjects(app);
    OpenSheet s(app);
    QTableView* view = s->projectsTableView();
    const QPoint at = view->visualRect(view->model()->index(rowOf(s.sheet, "alpha"), 0)).center();
    QString shownTitle;
    // The menu runs its own loop: read it and choose its item from inside.
    QTimer::singleShot(0, [&] {
        QMenu* menu = s->menuAction();
        if (!menu->isVisible())
            return;
        shownTitle = menu->actions()[0]->text();
        menu->actions()[0]->trigger();
        menu->close();
    });
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, view->viewport()->mapToGlobal(at));
    QApplication::sendEvent(view->viewport(), &event);
    EXPECT_EQ(shownTitle, "Supprimer le projet alpha");
    EXPECT_FALSE(Project::getProjectWithName("alpha"));
    EXPECT_EQ(rowNames(s.sheet), (QStringList{"beta", "gamma"}));
}

TEST(OpenProjectSheet, TheProjectShownInTheWindowCanBeDeleted)
{
    LaunchedApp app;
    addThreeProjects(app);
    app.controller()->populateCurrentProject(Project::getProjectWithName("beta"));
    OpenSheet s(app);
    s->menuNeedsUpdate(rowOf(s.sheet, "beta"))->actions()[0]->trigger();
    EXPECT_FALSE(Project::getProjectWithName("beta"));
    EXPECT_EQ(rowNames(s.sheet), (QStringList{"gamma", "alpha"}));
}

TEST(OpenProjectSheet, ArrowKeysSelectAProject)
{
    LaunchedApp app;
    addThreeProjects(app);
    OpenSheet s(app);
    QTableView* view = s->projectsTableView();
    view->setFocus();
    clickRow(s.sheet, 0);
    ASSERT_EQ(s->selectedProject()->name(), "beta");
    QTest::keyClick(view, Qt::Key_Down);
    ASSERT_TRUE(s->selectedProject());
    EXPECT_EQ(s->selectedProject()->name(), "gamma");
    QTest::keyClick(view, Qt::Key_Down);
    EXPECT_EQ(s->selectedProject()->name(), "alpha");
    QTest::keyClick(view, Qt::Key_Up);
    EXPECT_EQ(s->selectedProject()->name(), "gamma");
    QTest::keyClick(s.sheet, Qt::Key_Return);
    ASSERT_EQ(s.delegate.validations.size(), 1u);
    EXPECT_EQ(s.delegate.validations[0].second->name(), "gamma");
    EXPECT_EQ(s->result(), 1);
}

TEST(OpenProjectSheet, ReturnOpensAndEscapeCancels)
{
    LaunchedApp app;
    addThreeProjects(app);
    OpenSheet s(app);
    clickRow(s.sheet, rowOf(s.sheet, "alpha"));
    QTest::keyClick(s.sheet, Qt::Key_Return);
    EXPECT_FALSE(s->isVisible());
    EXPECT_EQ(s->result(), 1);
    ASSERT_EQ(s.delegate.validations.size(), 1u);
    EXPECT_EQ(s.delegate.validations[0].second->name(), "alpha");

    OpenSheet c(app);
    clickRow(c.sheet, 0);
    QTest::keyClick(c.sheet, Qt::Key_Escape);
    EXPECT_FALSE(c->isVisible());
    EXPECT_EQ(c->result(), 0);
    EXPECT_TRUE(c.delegate.validations.empty());
    ASSERT_EQ(c.delegate.cancels.size(), 1u);
    EXPECT_EQ(c.delegate.cancels[0], c.sheet);
}

TEST(OpenProjectSheet, OpeningThroughTheApplicationShowsTheProject)
{
    LaunchedApp app;
    addThreeProjects(app);
    app.window()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(app.window()));
    app.app()->openProject();
    OpenProjectWindowController* sheet = app.controller()->openProjectWindowController();
    ASSERT_TRUE(sheet);
    ASSERT_TRUE(sheet->isVisible());
    clickRow(sheet, rowOf(sheet, "gamma"));
    sheet->buttonLocValider()->click();
    EXPECT_FALSE(sheet->isVisible());
    ASSERT_TRUE(app.documentsView()->currentProject());
    EXPECT_EQ(app.documentsView()->currentProject()->name(), "gamma");
}
