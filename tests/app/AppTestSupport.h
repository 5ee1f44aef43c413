#pragma once
// Shared pieces of the desktop program's tests: a launched application over a temporary
// data directory whose alerts, browser and termination are in the test's hands, and a way
// to wait for a crawl started from the window.

#include "app/Alert.h"
#include "app/AppDelegate.h"
#include "app/DocumentsView.h"
#include "app/LinksView.h"
#include "app/MainViewController.h"
#include "app/MainWindow.h"
#include "app/ProgressView.h"
#include "app/SystemBrowser.h"
#include "store/DataModelManager.h"
#include "store/Project.h"
#include "support/LocalHttpServer.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QDir>
#include <QSettings>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTemporaryDir>
#include <QTimer>
#include <QUrl>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

namespace apptest {

inline QString q(const std::string& s)
{
    return QString::fromStdString(s);
}

// Runs the event loop until done() holds or the time runs out; answers done().
inline bool waitUntil(const std::function<bool()>& done, int timeoutMs = 20000)
{
    QElapsedTimer timer;
    timer.start();
    while (!done() && timer.elapsed() < timeoutMs)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    return done();
}

// The launched application: the shared delegate with its registry in a temporary data
// directory, its main window (not shown unless asked), every URL given to the system
// browser recorded instead of opened, alerts answered from the queue the test fills, and
// a termination that only records that it happened.
class LaunchedApp {
public:
    LaunchedApp() : LaunchedApp(QString()) {}
    // A launch over the data and settings kept in `home` (a program started again on them)
    // rather than in fresh temporary directories.
    explicit LaunchedApp(const QString& home)
    {
        const QString data = home.isEmpty() ? dir.path() : home + QStringLiteral("/data");
        const QString settings = home.isEmpty() ? settingsDir.path() : home + QStringLiteral("/settings");
        QDir().mkpath(data);
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings);
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings);
        DataModelManager::setDataDirectoryOverride(data);
        Alert::clearForTesting();
        SystemBrowser::setOpenerForTesting([this](const QUrl& url) { openedURLs.push_back(url); });
        delegate = std::make_unique<AppDelegate>();
        delegate->setTerminateHandler([this] { ++terminations; });
        delegate->applicationDidFinishLaunching();
    }
    ~LaunchedApp()
    {
        delegate.reset();
        SystemBrowser::setOpenerForTesting(nullptr);
        Alert::clearForTesting();
        DataModelManager::setDataDirectoryOverride(QString());
    }

    AppDelegate* app() const { return delegate.get(); }
    MainWindow* window() const { return delegate->window(); }
    MainViewController* controller() const { return delegate->mainViewController(); }
    ProgressView* progressView() const { return controller()->progressView(); }
    DocumentsView* documentsView() const { return controller()->documentsView(); }
    LinksView* linksView() const { return controller()->linksView(); }

    // A project saved in the registry and shown in the window.
    ProjectPtr createAndShowProject(const QString& name, const QString& url, qint32 limitDepth = -1,
                                    qint32 limitPageCount = -1)
    {
        ProjectPtr project = Project::createProjectWithName(name, url, limitDepth, limitPageCount);
        delegate->saveContext();
        controller()->populateCurrentProject(project);
        return project;
    }

    // Presses the start button and waits until the crawl and its vacuum have ended (the
    // window idle again). False when it did not end in time or was not started.
    bool crawlThroughStartButton(int timeoutMs = 60000)
    {
        bool finished = false;
        auto connection = QObject::connect(controller(), &MainViewController::crawlFinished, [&] { finished = true; });
        progressView()->buttonLancer()->click();
        const bool started = controller()->isBusy() || finished;
        const bool ok = started && waitUntil([&] { return finished && !controller()->isBusy(); }, timeoutMs);
        QObject::disconnect(connection);
        return ok;
    }

    QTemporaryDir dir;
    QTemporaryDir settingsDir;
    std::unique_ptr<AppDelegate> delegate;
    std::vector<QUrl> openedURLs;
    int terminations = 0;
};

} // namespace apptest
