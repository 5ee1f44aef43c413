#pragma once

#include <QObject>

class AppDelegate;
class MainWindow;

// The menu commands that are not about the project's life: Édition > Copier, À propos, Aide,
// and Fichier > Ouvrir récent, filled from the settings each time it opens.
class WindowCommands : public QObject {
    Q_OBJECT
public:
    WindowCommands(AppDelegate* app, MainWindow* window);

    // Enables Ouvrir récent when there is a project to offer and no crawl is running.
    void refreshRecentProjects();
    void fillRecentMenu();

private:
    AppDelegate* app_;
    MainWindow* window_;
    bool busy_ = false;
};
