#include "app/MainWindow.h"

#include "app/AppDelegate.h"
#include "app/AuditTabWidget.h"
#include "app/CrawlStatusBar.h"
#include "app/MainViewController.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMenuBar>
#include <QStyle>
#include <QToolBar>

MainWindow::MainWindow(QWidget* parent) : QMainWindow(parent)
{
    setObjectName(QStringLiteral("MainWindow"));
    setWindowTitle(QStringLiteral("Quillmere"));
    mainViewController_ = new MainViewController;
    setCentralWidget(mainViewController_);
    resize(1180, 860);

    toolBar_ = addToolBar(QStringLiteral("toolbar"));
    toolBar_->setObjectName(QStringLiteral("toolBar"));
    toolBar_->setMovable(false);
    toolBar_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    toolBarItemLocNewProject = toolBar_->addAction(style()->standardIcon(QStyle::SP_FileIcon), QString());
    toolBarItemLocNewProject->setObjectName(QStringLiteral("toolBarItemLocNewProject"));
    toolBarItemLocOpenProject = toolBar_->addAction(style()->standardIcon(QStyle::SP_DialogOpenButton), QString());
    toolBarItemLocOpenProject->setObjectName(QStringLiteral("toolBarItemLocOpenProject"));

    QMenuBar* bar = menuBar();
    // The application menu of the desktop this program comes from: about, hide, quit.
    menuLocApplication = bar->addMenu(QStringLiteral("Quillmere"));
    menuItemLocAbout = menuLocApplication->addAction(QString());
    menuLocApplication->addSeparator();
    menuItemLocHideQuillmere = menuLocApplication->addAction(QString());
    menuItemLocHideQuillmere->setShortcut(QKeySequence(QStringLiteral("Ctrl+H")));
    menuItemLocHideOthers = menuLocApplication->addAction(QString());
    menuItemLocShowAll = menuLocApplication->addAction(QString());
    menuLocApplication->addSeparator();
    menuItemLocQuitQuillmere = menuLocApplication->addAction(QString());
    menuItemLocQuitQuillmere->setShortcut(QKeySequence::Quit);

    menuLocFile = bar->addMenu(QString());
    menuItemLocFile = menuLocFile->menuAction();
    menuItemLocNew = menuLocFile->addAction(QString());
    menuItemLocNew->setShortcut(QKeySequence::New);
    menuItemLocOpen = menuLocFile->addAction(QString());
    menuItemLocOpen->setShortcut(QKeySequence::Open);
    menuLocOpenRecent = menuLocFile->addMenu(QString());
    menuItemLocOpenRecent = menuLocOpenRecent->menuAction();
    menuItemLocOpenRecent->setEnabled(false);
    menuLocFile->addSeparator();
    menuItemLocClose = menuLocFile->addAction(QString());
    menuItemLocClose->setShortcut(QKeySequence::Close);
    mainViewController_->auditTabs()->addFileMenuItems(menuLocFile);

    menuLocEdit = bar->addMenu(QString());
    menuItemLocEdit = menuLocEdit->menuAction();
    menuItemLocCut = menuLocEdit->addAction(QString());
    menuItemLocCut->setShortcut(QKeySequence::Cut);
    menuItemLocCopy = menuLocEdit->addAction(QString());
    menuItemLocCopy->setShortcut(QKeySequence::Copy);
    menuItemLocPaste = menuLocEdit->addAction(QString());
    menuItemLocPaste->setShortcut(QKeySequence::Paste);

    menuLocWindow = bar->addMenu(QString());
    menuItemLocWindow = menuLocWindow->menuAction();
    menuItemLocMinimize = menuLocWindow->addAction(QString());
    menuItemLocMinimize->setShortcut(QKeySequence(QStringLiteral("Ctrl+M")));
    menuItemLocZoom = menuLocWindow->addAction(QString());
    menuLocWindow->addSeparator();
    menuItemLocBringAllToFront = menuLocWindow->addAction(QString());
    menuLocWindow->addSeparator();
    menuItemLocShowProgress = menuLocWindow->addAction(QString());
    menuItemLocShowProgress->setObjectName(QStringLiteral("menuItemLocShowProgress"));
    menuItemLocShowProgress->setEnabled(false);

    menuLocMenuHelp = bar->addMenu(QString());
    menuItemLocMenuHelp = menuLocMenuHelp->menuAction();
    menuItemLocHelp = menuLocMenuHelp->addAction(QString());
    menuItemLocHelp->setShortcut(QKeySequence::HelpContents);

    // The window's own commands; the project commands are wired by the application delegate.
    connect(menuItemLocHideQuillmere, &QAction::triggered, this, &QWidget::showMinimized);
    connect(menuItemLocMinimize, &QAction::triggered, this, &QWidget::showMinimized);
    connect(menuItemLocZoom, &QAction::triggered, this, [this] { isMaximized() ? showNormal() : showMaximized(); });
    connect(menuItemLocShowAll, &QAction::triggered, this, [this] { showNormal(); });
    connect(menuItemLocBringAllToFront, &QAction::triggered, this, [this] {
        raise();
        activateWindow();
    });
    // No other application windows to hide here.
    menuItemLocHideOthers->setEnabled(false);

    // A crawl sent to the background shows in the status bar; the menu item and a click on
    // the bar bring its sheet back. The project commands wait for the crawl's end: the
    // project being crawled stays open under it.
    crawlStatusBar_ = new CrawlStatusBar(mainViewController_);
    setStatusBar(crawlStatusBar_);
    connect(menuItemLocShowProgress, &QAction::triggered, crawlStatusBar_, &CrawlStatusBar::bringBackProgressSheet);
    connect(crawlStatusBar_, &CrawlStatusBar::crawlInBackgroundChanged, menuItemLocShowProgress, &QAction::setEnabled);
    connect(crawlStatusBar_, &CrawlStatusBar::busyChanged, this, [this](bool busy) {
        for (QAction* command : {toolBarItemLocNewProject, toolBarItemLocOpenProject, menuItemLocNew, menuItemLocOpen,
                                 menuItemLocClose})
            command->setEnabled(!busy);
    });
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    // Closing the main window quits the application; if quitting is refused the window stays.
    if (!mainViewController_->windowShouldClose()) {
        event->ignore();
        return;
    }
    mainViewController_->windowWillClose();
    AppDelegate* app = AppDelegate::sharedAppDelegate();
    if (app && !app->isTerminating())
        event->ignore();
    else
        event->accept();
}
