#include "app/WindowCommands.h"

#include "app/AboutBox.h"
#include "app/AppDelegate.h"
#include "app/AppSettings.h"
#include "app/CrawlStatusBar.h"
#include "app/HelpDialog.h"
#include "app/MainWindow.h"
#include "app/TableCopier.h"

#include <QAction>
#include <QApplication>
#include <QMenu>

WindowCommands::WindowCommands(AppDelegate* app, MainWindow* window) : QObject(app), app_(app), window_(window)
{
    connect(window->menuItemLocCopy, &QAction::triggered, this, [] { TableCopier::copyFromFocus(QApplication::focusWidget()); });
    connect(window->menuItemLocAbout, &QAction::triggered, this, [this] { AboutBox::showFor(window_); });
    connect(window->menuItemLocHelp, &QAction::triggered, this, [this] { HelpDialog::showFor(window_); });
    connect(window->menuLocOpenRecent, &QMenu::aboutToShow, this, [this] { fillRecentMenu(); });
    connect(window->crawlStatusBar(), &CrawlStatusBar::busyChanged, this, [this](bool busy) {
        busy_ = busy;
        refreshRecentProjects();
    });
    refreshRecentProjects();
}

void WindowCommands::refreshRecentProjects()
{
    // The menu's items are made as it opens (one of them may be the sender of this call).
    window_->menuItemLocOpenRecent->setEnabled(!busy_ && !AppSettings::recentProjects().isEmpty());
}

void WindowCommands::fillRecentMenu()
{
    QMenu* menu = window_->menuLocOpenRecent;
    menu->clear();
    for (const QString& name : AppSettings::recentProjects()) {
        QAction* item = menu->addAction(name);
        item->setEnabled(!busy_);
        connect(item, &QAction::triggered, this, [this, name] { app_->openRecentProject(name); });
    }
}
