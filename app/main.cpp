// quillmere-gui: the desktop program.
//   quillmere-gui [--data-dir DIR] [--demo]
// --demo serves the built-in demo site on 127.0.0.1 and opens the project 'demo' on it,
// ready for its start button.
#include "app/AppDelegate.h"
#include "app/MainViewController.h"
#include "app/MainWindow.h"
#include "app/StandardTranslations.h"
#include "demo/DemoProject.h"
#include "demo/DemoServer.h"
#include "store/DataModelManager.h"
#include "store/Project.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QMessageBox>

#include <cstdio>

#include <unistd.h>

int main(int argc, char** argv)
{
    // Chromium's sandbox cannot run as root: the preview goes without it there.
    if (geteuid() == 0 && qEnvironmentVariableIsEmpty("QTWEBENGINE_DISABLE_SANDBOX"))
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Quillmere"));
    QApplication::setApplicationVersion(QStringLiteral(QUILLMERE_VERSION));
    StandardTranslations::install();

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Quillmere, site crawler and link auditor"));
    parser.addHelpOption();
    parser.addVersionOption();
    QCommandLineOption dataDir(QStringLiteral("data-dir"), QStringLiteral("where the projects live"), QStringLiteral("DIR"));
    QCommandLineOption demo(QStringLiteral("demo"), QStringLiteral("serve the built-in demo site and open its project"));
    parser.addOption(dataDir);
    parser.addOption(demo);
    parser.process(app);
    if (parser.isSet(dataDir))
        DataModelManager::setDataDirectoryOverride(parser.value(dataDir));

    AppDelegate delegate;
    delegate.applicationDidFinishLaunching();

    DemoServer server;
    if (parser.isSet(demo)) {
        ProjectPtr project;
        if (server.start())
            project = DemoProject::recreate(server.baseURL());
        if (!project) {
            QMessageBox::critical(nullptr, QStringLiteral("Quillmere"),
                                  QStringLiteral("Le site de démonstration n'a pas pu être servi sur 127.0.0.1."));
            return 1;
        }
        std::fprintf(stderr, "Demo site served at %s\n", qPrintable(server.baseURL()));
        delegate.mainViewController()->populateCurrentProject(project);
    }
    delegate.window()->show();
    const int status = QApplication::exec();
    server.stop();
    return status;
}
