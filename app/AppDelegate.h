#pragma once

#include "app/NewProjectControllerDelegate.h"
#include "app/OpenProjectControllerDelegate.h"
#include "app/PagesFilterDelegate.h"
#include "store/ApplicationDelegate.h"

#include <QObject>

#include <functional>
#include <memory>

class DataModelManager;
class MainViewController;
class MainWindow;
class Project;
class QWidget;
class WindowCommands;

// The application's delegate and its one shared entry point: it owns the project registry,
// localises the menus and the toolbar, answers their commands, hears the three dialogs'
// decisions and decides whether the application may quit.
class AppDelegate : public QObject,
                    public ApplicationDelegate,
                    public NewProjectControllerDelegate,
                    public OpenProjectControllerDelegate,
                    public PagesFilterDelegate {
    Q_OBJECT
public:
    enum class TerminateReply { TerminateCancel, TerminateNow };

    AppDelegate();
    ~AppDelegate() override;

    static AppDelegate* sharedAppDelegate();

    // Start-up: the registry, the date format, the filter, the localised menus and toolbar.
    void applicationDidFinishLaunching();

    qint32 currentFilter() const { return currentFilter_; }
    MainWindow* window() const { return window_.get(); }
    MainViewController* mainViewController() const;

    // ApplicationDelegate
    DataModelManager* dataModelManager() override { return dataModelManager_.get(); }
    // An alert with the error's description and reason.
    void presentError(const AppError& error) override;

    void createProject();
    void openProject();
    void closeProject();
    // Fichier > Ouvrir récent: shows the project of that name; one that no longer exists is
    // taken off the list, with an alert. Answers whether it was shown.
    bool openRecentProject(const QString& name);
    void quit();
    void actionDoFilters();
    // The application really quits (tests replace this to stay alive).
    void setTerminateHandler(std::function<void()> handler) { terminateHandler_ = std::move(handler); }
    bool isTerminating() const { return terminating_; }
    TerminateReply applicationShouldTerminate();

    // PagesFilterDelegate
    void doFilterNone() override;
    void doFilter404All() override;
    void doFilter404OnlyHTML() override;
    void doFilter404NotHTML() override;
    void doFilterNoIndex() override;
    void doFilterCanonical() override;

    // NewProjectControllerDelegate
    void createProjectValidateWithController(NewProjectWindowController* controller, const QString& projectName,
                                             const QString& projectURL, qint32 limitDepth, qint32 limitPageCount) override;
    void createProjectCancelWithController(NewProjectWindowController* controller) override;

    // OpenProjectControllerDelegate
    void openProjectValidateWithController(OpenProjectWindowController* controller,
                                           const std::shared_ptr<Project>& project) override;
    void openProjectCancelWithController(OpenProjectWindowController* controller) override;
    void openProjectDidDeleteProject(OpenProjectWindowController* controller,
                                     const std::shared_ptr<Project>& project) override;

    // Kept for the tools that trace URLs: "[url] --> [url cut before its #]".
    static QString urlWithoutDieseFromURL(const QString& url);

private:
    void localizeMenus();
    // The project now shown becomes the last one and heads Ouvrir récent.
    void noteProjectShown(const std::shared_ptr<Project>& project);
    void applyFilter(qint32 filter);
    void terminate();

    qint32 currentFilter_ = 0;
    std::unique_ptr<DataModelManager> dataModelManager_;
    std::unique_ptr<MainWindow> window_;
    WindowCommands* windowCommands_ = nullptr;
    std::function<void()> terminateHandler_;
    bool terminating_ = false;
};
