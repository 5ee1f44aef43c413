#include "app/GuiLaunch.h"

#include "app/MainViewController.h"
#include "app/StandardTranslations.h"
#include "demo/DemoProject.h"
#include "demo/DemoServer.h"
#include "store/Project.h"

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
    QApplication::setApplicationName(QStringLiteral("Quillmere"));
    QApplication::setApplicationVersion(QStringLiteral(QUILLMERE_VERSION));
    StandardTranslations::install();
}

bool openDemo(DemoServer& server, MainViewController* controller)
{
    ProjectPtr project;
    if (server.start())
        project = DemoProject::recreate(server.baseURL());
    if (!project) {
        QMessageBox::critical(nullptr, QStringLiteral("Quillmere"),
                              QStringLiteral("Le site de démonstration n'a pas pu être servi sur 127.0.0.1."));
        return false;
    }
    std::fprintf(stderr, "Demo site served at %s\n", qPrintable(server.baseURL()));
    controller->populateCurrentProject(project);
    return true;
}

} // namespace GuiLaunch
