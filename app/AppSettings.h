#pragma once

#include "store/LinkRules.h"

#include <QString>
#include <QStringList>

class MainWindow;

// What the window remembers between runs, kept with QSettings under the program's names:
// its geometry, the dividers, the lists' columns (widths and order), the last project shown
// and the recent ones, and the link rules last chosen for a new project.
namespace AppSettings {
void saveWindow(MainWindow* window);
void restoreWindow(MainWindow* window);

// The project shown when the program last quit; empty after it was closed.
QString lastProject();
void setLastProject(const QString& name);
// The projects last opened, the most recent first, at most maxRecentProjects.
constexpr int maxRecentProjects = 10;
QStringList recentProjects();
// The project shown now: it becomes the last project and heads the recent ones.
void noteProjectShown(const QString& name);
void forgetProject(const QString& name);

LinkRules lastLinkRules();
void setLastLinkRules(LinkRules rules);
} // namespace AppSettings
