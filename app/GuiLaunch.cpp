#include "app/GuiLaunch.h"

#include "app/MainViewController.h"
#include "app/ProjectRefusalAlert.h"
#include "app/StandardTranslations.h"
#include "demo/DemoProject.h"
#include "demo/DemoServer.h"
#include "store/Project.h"
#include "store/StringTable.h"

#include <QApplication>
#include <QMessageBox>

#include <cstdio>

#include <unistd.h>

namespace GuiLaunch {

void prepareProcess()
{
    if (geteuid() == 0 && qEnvironmentVariableIsEmpty("QTWEBENGINE_DISABLE_SANDBOX"))
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
}

void configureApplication()
{
    QApplication::setOrganizationName(QLatin1String(kOrganizationName));
    QApplication::setApplicationName(QLatin1String(kApplicationName));
    QApplication::setApplicationVersion(QStringLiteral(QUILLMERE_VERSION));
    StandardTranslations::install();
}

bool openDemo(DemoServer& server, MainViewController* controller)
{
    if (!server.start()) {
        QMessageBox::critical(nullptr, QStringLiteral("Quillmere"),
                              QStringLiteral("Le site de démonstration n'a pas pu être servi sur 127.0.0.1."));
        return false;
    }
    // The lock goes with the result: the window takes its own when a crawl starts.
    const ProjectCatalog::Result made = DemoProject::recreate(
        server.baseURL(), StringTable::forLanguage(StringTable::Language::French), QStringLiteral("quillmere-gui"));
    if (!made.done()) {
        // A store that cannot be opened has said so already.
        if (!made.why.isEmpty() || made.lockRefusal)
            ProjectRefusalAlert::show(made, nullptr);
        return false;
    }
    std::fprintf(stderr, "Demo site served at %s\n", qPrintable(server.baseURL()));
    controller->populateCurrentProject(made.project);
    return true;
}

} // namespace GuiLaunch
