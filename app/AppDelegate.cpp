#include "app/AppDelegate.h"

#include "app/Alert.h"
#include "app/AppSettings.h"
#include "app/MainViewController.h"
#include "app/MainWindow.h"
#include "app/NewProjectWindowController.h"
#include "app/OpenProjectWindowController.h"
#include "app/PagesFilterWindowController.h"
#include "app/ProjectRefusalAlert.h"
#include "app/WindowCommands.h"
#include "store/DataModelManager.h"
#include "store/DateFormatter.h"
#include "base/DebugTrace.h"
#include "store/Localization.h"
#include "store/ManagedObjectContext.h"
#include "store/PageFilter.h"
#include "store/Project.h"
#include "store/ProjectCatalog.h"
#include "store/StringTable.h"

#include <QAction>
#include <QCoreApplication>
#include <QMenu>

using Localization::localizedString;

AppDelegate::AppDelegate()
{
    setSharedAppDelegate(this);
    // The window as its layout describes it; the registry comes with the launch.
    window_ = std::make_unique<MainWindow>();
    MainWindow* w = window_.get();
    connect(w->toolBarItemLocNewProject, &QAction::triggered, this, [this] { createProject(); });
    connect(w->toolBarItemLocOpenProject, &QAction::triggered, this, [this] { openProject(); });
    connect(w->menuItemLocNew, &QAction::triggered, this, [this] { createProject(); });
    connect(w->menuItemLocOpen, &QAction::triggered, this, [this] { openProject(); });
    connect(w->menuItemLocClose, &QAction::triggered, this, [this] { closeProject(); });
    connect(w->menuItemLocQuitQuillmere, &QAction::triggered, this, [this] { quit(); });
    windowCommands_ = new WindowCommands(this, w);
}

AppDelegate::~AppDelegate()
{
    window_.reset();
    dataModelManager_.reset();
    if (ApplicationDelegate::sharedAppDelegate() == this)
        setSharedAppDelegate(nullptr);
}

AppDelegate* AppDelegate::sharedAppDelegate()
{
    return dynamic_cast<AppDelegate*>(ApplicationDelegate::sharedAppDelegate());
}

MainViewController* AppDelegate::mainViewController() const
{
    return window_ ? window_->mainViewController() : nullptr;
}

void AppDelegate::applicationDidFinishLaunching()
{
    dataModelManager_ = std::make_unique<DataModelManager>(this);
    // The one date format ("yyyy-MM-dd HH:mm:ss") exists from the start; nothing to make.
    Q_UNUSED(DateFormatter::format());
    currentFilter_ = PageFilter::All;
    localizeMenus();
    // The window as it was left, with the project it showed.
    AppSettings::restoreWindow(window_.get());
    const QString last = AppSettings::lastProject();
    if (!last.isEmpty()) {
        if (ProjectPtr project = Project::getProjectWithName(last))
            mainViewController()->populateCurrentProject(project);
        else
            AppSettings::forgetProject(last);
    }
    windowCommands_->refreshRecentProjects();
}

void AppDelegate::noteProjectShown(const std::shared_ptr<Project>& project)
{
    if (!project)
        return;
    AppSettings::noteProjectShown(project->name());
    windowCommands_->refreshRecentProjects();
}

bool AppDelegate::openRecentProject(const QString& name)
{
    DebugTrace("openRecentProject");
    currentFilter_ = PageFilter::All;
    ProjectPtr project = Project::getProjectWithName(name);
    if (!project) {
        AppSettings::forgetProject(name);
        windowCommands_->refreshRecentProjects();
        Alert alert;
        alert.setMessageText(localizedString("RecentProjectGoneMessage").arg(name));
        alert.setInformativeText(QString());
        alert.addButtonWithTitle(localizedString("AppDelegateErrorButtonOK"));
        alert.runModal(window_.get());
        return false;
    }
    mainViewController()->populateCurrentProject(project);
    saveContext();
    noteProjectShown(project);
    return true;
}

void AppDelegate::localizeMenus()
{
    MainWindow* w = window_.get();
    w->toolBarItemLocNewProject->setText(localizedString("AppDelegateNewProject"));
    w->toolBarItemLocOpenProject->setText(localizedString("AppDelegateOpenProject"));
    w->menuItemLocAbout->setText(localizedString("AppDelegateMenuItemAbout"));
    w->menuItemLocHideQuillmere->setText(localizedString("AppDelegateMenuItemHideQuillmere"));
    w->menuItemLocHideOthers->setText(localizedString("AppDelegateMenuItemHideOthers"));
    w->menuItemLocShowAll->setText(localizedString("AppDelegateMenuItemShowAll"));
    w->menuItemLocQuitQuillmere->setText(localizedString("AppDelegateMenuItemQuitQuillmere"));
    w->menuItemLocFile->setText(localizedString("AppDelegateMenuFile"));
    w->menuLocFile->setTitle(localizedString("AppDelegateMenuFile"));
    w->menuItemLocNew->setText(localizedString("AppDelegateMenuItemNew"));
    w->menuItemLocOpen->setText(localizedString("AppDelegateMenuItemOpen"));
    w->menuItemLocOpenRecent->setText(localizedString("AppDelegateMenuItemOpenRecent"));
    w->menuItemLocClose->setText(localizedString("AppDelegateMenuItemClose"));
    w->menuItemLocEdit->setText(localizedString("AppDelegateMenuEdit"));
    w->menuLocEdit->setTitle(localizedString("AppDelegateMenuEdit"));
    w->menuItemLocCut->setText(localizedString("AppDelegateMenuItemCut"));
    w->menuItemLocCopy->setText(localizedString("AppDelegateMenuItemCopy"));
    w->menuItemLocPaste->setText(localizedString("AppDelegateMenuItemPaste"));
    w->menuItemLocWindow->setText(localizedString("AppDelegateMenuWindow"));
    w->menuLocWindow->setTitle(localizedString("AppDelegateMenuWindow"));
    w->menuItemLocMinimize->setText(localizedString("AppDelegateMenuItemMinimize"));
    w->menuItemLocZoom->setText(localizedString("AppDelegateMenuItemZoom"));
    w->menuItemLocBringAllToFront->setText(localizedString("AppDelegateMenuItemBringAllToFront"));
    w->menuItemLocMenuHelp->setText(localizedString("AppDelegateMenuHelp"));
    w->menuLocMenuHelp->setTitle(localizedString("AppDelegateMenuHelp"));
    w->menuItemLocHelp->setText(localizedString("AppDelegateMenuItemHelp"));
    w->menuItemLocShowProgress->setText(localizedString("AppDelegateMenuItemShowProgress"));
}

void AppDelegate::presentError(const AppError& error)
{
    Alert alert;
    alert.setMessageText(error.localizedDescription);
    alert.setInformativeText(error.localizedFailureReason);
    alert.addButtonWithTitle(localizedString("AppDelegateErrorButtonOK"));
    alert.runModal(window_.get());
}

void AppDelegate::createProject()
{
    DebugTrace("createProject");
    currentFilter_ = PageFilter::All;
    auto* sheet = NewProjectWindowController::initWithDelegate(this);
    mainViewController()->setProjectWindowController(sheet);
    sheet->displaySheetInWindow(window_.get());
}

void AppDelegate::openProject()
{
    DebugTrace("openProject");
    currentFilter_ = PageFilter::All;
    auto* sheet = OpenProjectWindowController::initWithDelegate(this);
    mainViewController()->setOpenProjectWindowController(sheet);
    sheet->displaySheetInWindow(window_.get());
}

void AppDelegate::closeProject()
{
    DebugTrace("closeProject");
    currentFilter_ = PageFilter::All;
    mainViewController()->closeCurrentProject();
    // Closed by hand: the next start shows no project.
    AppSettings::setLastProject(QString());
}

void AppDelegate::quit()
{
    DebugTrace("quit");
    // A crawl still running is stopped and ends as a stopped crawl does, records saved.
    mainViewController()->stopAndWaitForOperations();
    mainViewController()->closeCurrentProject();
    terminate();
}

void AppDelegate::terminate()
{
    if (applicationShouldTerminate() != TerminateReply::TerminateNow)
        return;
    terminating_ = true;
    AppSettings::saveWindow(window_.get());
    if (terminateHandler_)
        terminateHandler_();
    else
        QCoreApplication::quit();
}

AppDelegate::TerminateReply AppDelegate::applicationShouldTerminate()
{
    DebugTrace("applicationShouldTerminate");
    ManagedObjectContext* context = dataModelManager_ ? dataModelManager_->managedObjectContext() : nullptr;
    if (!context)
        return TerminateReply::TerminateNow;
    // Pending edits always commit here: the registry has no editors of its own.
    if (!context->hasChanges())
        return TerminateReply::TerminateNow;
    AppError error;
    if (context->save(&error))
        return TerminateReply::TerminateNow;
    // The error alert has no way to recover from the failure: go on to the question.
    presentError(error);
    Alert alert;
    alert.setMessageText(localizedString("Could not save changes while quitting. Quit anyway?"));
    alert.setInformativeText(localizedString("Quitting now will lose any changes you have made since the last successful save"));
    alert.addButtonWithTitle(localizedString("Quit anyway"));
    alert.addButtonWithTitle(localizedString("Cancel"));
    // Escape keeps the application running: the first button's answer, whatever its title.
    alert.setCancelButton(0);
    // The first button keeps the application running and any other answer quits: the two
    // buttons answer the other way round from their titles, as this program always has.
    if (alert.runModal(window_.get()) == Alert::FirstButtonReturn)
        return TerminateReply::TerminateCancel;
    return TerminateReply::TerminateNow;
}

void AppDelegate::actionDoFilters()
{
    auto* sheet = PagesFilterWindowController::initWithDelegate(this, currentFilter_);
    mainViewController()->setPageFilterWindowController(sheet);
    sheet->displaySheetInWindow(window_.get());
}

void AppDelegate::applyFilter(qint32 filter)
{
    currentFilter_ = filter;
    mainViewController()->applyFilter(filter);
}

void AppDelegate::doFilterNone()
{
    applyFilter(PageFilter::All);
}

void AppDelegate::doFilter404All()
{
    applyFilter(PageFilter::Error404AllTypes);
}

void AppDelegate::doFilter404OnlyHTML()
{
    applyFilter(PageFilter::Error404OnlyHTML);
}

void AppDelegate::doFilter404NotHTML()
{
    applyFilter(PageFilter::Error404NotHTML);
}

void AppDelegate::doFilterNoIndex()
{
    applyFilter(PageFilter::NoIndex);
}

void AppDelegate::doFilterCanonical()
{
    applyFilter(PageFilter::Canonical);
}

void AppDelegate::createProjectValidateWithController(NewProjectWindowController* controller, const QString& projectName,
                                                      const QString& projectURL, qint32 limitDepth, qint32 limitPageCount)
{
    DebugTrace("createProjectValidateWithController");
    DebugTrace("projectName %s", qPrintable(projectName));
    DebugTrace("projectURL  %s", qPrintable(projectURL));
    if (!dataModelManager_)
        return;
    // The command line's rules: a name already used, or not fit for file names, and a URL the
    // crawl cannot use are refused; the URL is kept in the form the crawl compares links with.
    ProjectCatalog catalog(*dataModelManager_, StringTable::forLanguage(StringTable::Language::French));
    const ProjectCatalog::Result created =
        catalog.create(projectName, projectURL, limitDepth, limitPageCount, QStringLiteral("quillmere-gui"), {},
                       controller ? controller->linkRules() : LinkRules::Classic);
    if (!created.done()) {
        if (created.outcome != ProjectCatalog::Outcome::StoreUnavailable)
            ProjectRefusalAlert::show(created, window_.get());
        return;
    }
    mainViewController()->populateCurrentProject(created.project);
    saveContext();
    noteProjectShown(created.project);
}

void AppDelegate::createProjectCancelWithController(NewProjectWindowController*)
{
    DebugTrace("createProjectCancelWithController");
}

void AppDelegate::openProjectValidateWithController(OpenProjectWindowController*, const std::shared_ptr<Project>& project)
{
    DebugTrace("openProjectValidateWithController");
    DebugTrace("projectName %s", project ? qPrintable(project->name()) : "");
    DebugTrace("projectURL  %s", project ? qPrintable(project->url()) : "");
    mainViewController()->populateCurrentProject(project);
    saveContext();
    noteProjectShown(project);
}

void AppDelegate::openProjectCancelWithController(OpenProjectWindowController*)
{
    DebugTrace("openProjectCancelWithController");
}

void AppDelegate::openProjectDidDeleteProject(OpenProjectWindowController*, const std::shared_ptr<Project>& project)
{
    DebugTrace("openProjectDidDeleteProject");
    mainViewController()->projectWasDeleted(project);
    if (project) {
        AppSettings::forgetProject(project->name());
        windowCommands_->refreshRecentProjects();
    }
}

QString AppDelegate::urlWithoutDieseFromURL(const QString& url)
{
    const qsizetype diese = url.indexOf(QLatin1Char('#'));
    const QString cut = diese < 0 ? url : url.left(diese);
    return QStringLiteral("[%1] --> [%2]").arg(url, cut);
}
