#pragma once

#include <QMainWindow>

class CrawlStatusBar;
class MainViewController;
class QAction;
class QMenu;
class QToolBar;

// The main window as its layout describes it: the toolbar (new, open), the menus, and the
// main view controller's panes. Its controls' titles are set by the application delegate.
class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit MainWindow(QWidget* parent = nullptr);

    MainViewController* mainViewController() const { return mainViewController_; }
    QToolBar* toolBar() const { return toolBar_; }
    CrawlStatusBar* crawlStatusBar() const { return crawlStatusBar_; }

    // The toolbar items and the menus, under the names the application delegate localises.
    QAction* toolBarItemLocNewProject;
    QAction* toolBarItemLocOpenProject;
    QAction* menuItemLocAbout;
    QAction* menuItemLocHideQuillmere;
    QAction* menuItemLocHideOthers;
    QAction* menuItemLocShowAll;
    QAction* menuItemLocQuitQuillmere;
    QAction* menuItemLocFile;
    QMenu* menuLocFile;
    QAction* menuItemLocNew;
    QAction* menuItemLocOpen;
    QAction* menuItemLocOpenRecent;
    QAction* menuItemLocClose;
    QAction* menuItemLocEdit;
    QMenu* menuLocEdit;
    QAction* menuItemLocCut;
    QAction* menuItemLocCopy;
    QAction* menuItemLocPaste;
    QAction* menuItemLocWindow;
    QMenu* menuLocWindow;
    QAction* menuItemLocMinimize;
    QAction* menuItemLocZoom;
    QAction* menuItemLocBringAllToFront;
    QAction* menuItemLocMenuHelp;
    QMenu* menuLocMenuHelp;
    QAction* menuItemLocHelp;
    QMenu* menuLocApplication;
    QMenu* menuLocOpenRecent;
    // Shows the progress sheet of a crawl sent to the background.
    QAction* menuItemLocShowProgress;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    MainViewController* mainViewController_;
    QToolBar* toolBar_;
    CrawlStatusBar* crawlStatusBar_;
};
