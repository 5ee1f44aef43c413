// quillmere-gui: the desktop program.
//   quillmere-gui [--data-dir DIR] [--demo]
// --demo serves the built-in demo site on 127.0.0.1 and opens the project 'demo' on it,
// ready for its start button.
#include "app/AppDelegate.h"
#include "app/GuiLaunch.h"
#include "app/MainWindow.h"
#include "demo/DemoServer.h"
#include "store/DataModelManager.h"

#include <QApplication>
#include <QCommandLineParser>

int main(int argc, char** argv)
{
    GuiLaunch::prepareProcess();
    QApplication app(argc, argv);
    GuiLaunch::configureApplication();

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
    if (parser.isSet(demo) && !GuiLaunch::openDemo(server, delegate.mainViewController()))
        return 1;
    delegate.window()->show();
    const int status = QApplication::exec();
    server.stop();
    return status;
}
