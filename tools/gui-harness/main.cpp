// quillmere-gui-harness: drives the desktop program's real window for pictures and timings;
// it is a tool of the project, not part of the shipped program.
//   quillmere-gui-harness [--data-dir DIR] --screenshot FILE
//   quillmere-gui-harness [--data-dir DIR] --bench-crawl NAME
//   quillmere-gui-harness [--data-dir DIR] --screenshot-new-project FILE
//   quillmere-gui-harness [--data-dir DIR] --screenshot-tabs DIR
//   quillmere-gui-harness [--data-dir DIR] --screenshot-background FILE --project NAME
//   quillmere-gui-harness [--data-dir DIR] --screenshot-map FILE
//   quillmere-gui-harness [--data-dir DIR] --screenshot-charts FILE
//   quillmere-gui-harness [--data-dir DIR] --screenshot-page FILE
// --screenshot FILE serves the built-in demo site, presses the start button, waits for the
// crawl and the vacuum that follows it to end (two minutes at most), selects the page that
// receives the most links so that the links list has rows, lets the preview finish loading,
// then saves a PNG of the main window as the screen shows it and quits. Status 0 when the file
// is written, 1 with a message otherwise. The picture comes from the screen, not from the
// widgets, so that it shows the preview: it needs a display, xvfb-run's will do.
// --screenshot-map FILE, --screenshot-charts FILE and --screenshot-page FILE do the same with
// the crawl map's, the charts' or the page panel's tab shown in a pane made taller for them.
// --screenshot-new-project FILE opens the new-project sheet, fills it in with the web rules
// chosen and saves a PNG of the sheet as its widgets draw it.
// --screenshot-tabs DIR crawls the demo site as --screenshot does, then saves one PNG of the
// window per tab of the audit's tab bar in DIR (tab-N-NAME.png).
// --screenshot-background FILE --project NAME crawls the project NAME from scratch, sends the
// crawl to the background from its sheet, and two seconds later saves a PNG of the main window
// with its status bar (from the screen), then stops the crawl and quits.
// The harness's settings live in a temporary directory: what a user's window remembers never
// changes its pictures or timings.
// --bench-crawl NAME opens the project NAME, crawls it from scratch from the start button
// and quits, printing on standard output one line:
//   bench-crawl pages=P seconds=S max_paint_gap_ms=G max_tick_gap_ms=T
// P is the pages analysed, S the time from the button press to the end of the vacuum, G the
// longest time between two paint events of the program's windows during it, T the longest
// time between two ticks of a 5 ms timer (how long the event loop went without a turn).
#include "ScriptedCrawl.h"
#include "TabScreenshots.h"

#include "app/AppDelegate.h"
#include "app/CrawlStatusBar.h"
#include "app/DocumentsView.h"
#include "app/GuiLaunch.h"
#include "app/MainViewController.h"
#include "app/MainWindow.h"
#include "app/NewProjectWindowController.h"
#include "app/ProgressView.h"
#include "app/ProgressWindowController.h"
#include "app/PreviewTabs.h"
#include "app/SplitView.h"
#include "app/WebPreviewPage.h"
#include "crawler/CrawlStartDecision.h"
#include "demo/DemoServer.h"
#include "store/DataModelManager.h"
#include "store/Project.h"

#include <QApplication>
#include <QComboBox>
#include <QCommandLineParser>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QTableView>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <limits>
#include <memory>

namespace {

// Once the demo crawl is over: select the most linked page, let the preview load, grab the
// window. Calls `end` with the status.
void takeScreenshot(AppDelegate& delegate, const bool& previewLoaded, const QString& file, int tab,
                    std::function<void(int)> end)
{
    MainViewController* controller = delegate.mainViewController();
    if (tab > 0) {
        // The picture's tab in a pane as tall as the lists above it.
        controller->previewTabs()->setCurrentIndex(tab);
        controller->splitView()->setSizes({110, 220, 120, 600});
    }
    DocumentsView* documents = controller->documentsView();
    const int row = ScriptedCrawl::rowWithMostIncomingLinks(documents);
    if (row >= 0) {
        documents->documentsTableView()->selectRow(row);
        documents->documentsTableView()->scrollTo(documents->documentsTableView()->model()->index(row, 0));
    }
    ScriptedCrawl::whenPreviewLoaded(previewLoaded, 10000, 1500, [&delegate, file, end] {
        MainWindow* window = delegate.window();
        QScreen* screen = window->screen() ? window->screen() : QGuiApplication::primaryScreen();
        const QPixmap shot = screen ? screen->grabWindow(window->winId()) : QPixmap();
        if (shot.isNull() || !shot.save(file, "PNG")) {
            std::fprintf(stderr, "quillmere-gui-harness: could not grab the window into %s\n", qPrintable(file));
            end(1);
            return;
        }
        std::fprintf(stderr, "Screenshot (%dx%d) saved in %s\n", shot.width(), shot.height(), qPrintable(file));
        end(0);
    });
}

} // namespace

int main(int argc, char** argv)
{
    GuiLaunch::prepareProcess();
    QApplication app(argc, argv);
    GuiLaunch::configureApplication();

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Drives the Quillmere window for a picture or a timing"));
    parser.addHelpOption();
    QCommandLineOption dataDir(QStringLiteral("data-dir"), QStringLiteral("where the projects live"), QStringLiteral("DIR"));
    QCommandLineOption screenshot(QStringLiteral("screenshot"),
                                  QStringLiteral("serve the demo site, crawl it, select a page, save the window as a PNG and quit"),
                                  QStringLiteral("FILE"));
    QCommandLineOption benchCrawl(QStringLiteral("bench-crawl"),
                                  QStringLiteral("crawl the project from scratch, print the time taken and quit"),
                                  QStringLiteral("NAME"));
    QCommandLineOption sheetShot(QStringLiteral("screenshot-new-project"),
                                 QStringLiteral("open the new-project sheet, save it as a PNG and quit"), QStringLiteral("FILE"));
    QCommandLineOption backgroundShot(QStringLiteral("screenshot-background"),
                                      QStringLiteral("crawl --project in the background, save the window as a PNG and quit"),
                                      QStringLiteral("FILE"));
    QCommandLineOption projectName(QStringLiteral("project"), QStringLiteral("the project to crawl"), QStringLiteral("NAME"));
    parser.addOption(backgroundShot);
    parser.addOption(projectName);
    QCommandLineOption mapShot(QStringLiteral("screenshot-map"),
                               QStringLiteral("as --screenshot, with the crawl map shown"), QStringLiteral("FILE"));
    QCommandLineOption chartsShot(QStringLiteral("screenshot-charts"),
                                  QStringLiteral("as --screenshot, with the charts shown"), QStringLiteral("FILE"));
    QCommandLineOption pageShot(QStringLiteral("screenshot-page"),
                                QStringLiteral("as --screenshot, with the page panel shown"), QStringLiteral("FILE"));
    parser.addOption(pageShot);
    parser.addOption(mapShot);
    parser.addOption(chartsShot);
    parser.addOption(sheetShot);
    QCommandLineOption tabsShot(QStringLiteral("screenshot-tabs"),
                                QStringLiteral("crawl the demo site, save one PNG per tab of the audit in DIR and quit"),
                                QStringLiteral("DIR"));
    parser.addOption(tabsShot);
    parser.addOption(dataDir);
    parser.addOption(screenshot);
    parser.addOption(benchCrawl);
    parser.process(app);
    if (parser.isSet(dataDir))
        DataModelManager::setDataDirectoryOverride(parser.value(dataDir));
    QTemporaryDir settings;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
    if (parser.isSet(backgroundShot)) {
        AppDelegate delegate;
        delegate.applicationDidFinishLaunching();
        ProjectPtr project = Project::getProjectWithName(parser.value(projectName));
        if (!project) {
            std::fprintf(stderr, "quillmere-gui-harness: no project named '%s'\n", qPrintable(parser.value(projectName)));
            return 2;
        }
        if (CrawlStartDecision::situationForProject(project) != CrawlStartDecision::Situation::Fresh)
            CrawlStartDecision::apply(CrawlStartDecision::Choice::Restart, project);
        MainViewController* controller = delegate.mainViewController();
        controller->populateCurrentProject(project);
        delegate.window()->show();
        int status = 1;
        QTimer::singleShot(200, [&] {
            controller->progressView()->buttonLancer()->click();
            ProgressWindowController* sheet = controller->progressWindowController();
            if (sheet)
                QTimer::singleShot(300, sheet, [sheet] { sheet->buttonBackground()->click(); });
            QTimer::singleShot(2500, [&] {
                MainWindow* window = delegate.window();
                QScreen* screen = window->screen() ? window->screen() : QGuiApplication::primaryScreen();
                const QPixmap shot = screen ? screen->grabWindow(window->winId()) : QPixmap();
                const QString file = parser.value(backgroundShot);
                status = !shot.isNull() && shot.save(file, "PNG") ? 0 : 1;
                std::fprintf(stderr, "%s %s (status bar: %s)\n", status == 0 ? "Screenshot saved in" : "could not save",
                             qPrintable(file), qPrintable(window->crawlStatusBar()->progressLabel()->text()));
                delegate.quit();
            });
        });
        QApplication::exec();
        return status;
    }
    if (parser.isSet(sheetShot)) {
        AppDelegate delegate;
        delegate.applicationDidFinishLaunching();
        delegate.window()->show();
        delegate.createProject();
        NewProjectWindowController* sheet = delegate.mainViewController()->projectWindowController();
        if (!sheet)
            return 1;
        sheet->textFieldName()->setText(QStringLiteral("manuel"));
        sheet->textFieldURL()->setText(QStringLiteral("https://www.example.org/docs/"));
        sheet->popUpLinkRules()->setCurrentIndex(1);
        QApplication::processEvents();
        const bool saved = sheet->grab().save(parser.value(sheetShot), "PNG");
        std::fprintf(stderr, "%s %s\n", saved ? "Sheet saved in" : "could not save", qPrintable(parser.value(sheetShot)));
        return saved ? 0 : 1;
    }
    // Which tab of the preview's pane a picture shows, and where it goes.
    int shotTab = PreviewTabs::PreviewTab;
    QString shotFile = parser.value(screenshot);
    if (parser.isSet(mapShot)) {
        shotTab = PreviewTabs::MapTab;
        shotFile = parser.value(mapShot);
    } else if (parser.isSet(chartsShot)) {
        shotTab = PreviewTabs::ChartsTab;
        shotFile = parser.value(chartsShot);
    } else if (parser.isSet(pageShot)) {
        shotTab = PreviewTabs::PageTab;
        shotFile = parser.value(pageShot);
    }
    const bool picture = !shotFile.isEmpty();
    const bool pictures = picture || parser.isSet(tabsShot);
    if (pictures == parser.isSet(benchCrawl)) {
        std::fprintf(stderr, "quillmere-gui-harness: give one of --screenshot FILE (or --screenshot-map, --screenshot-charts) and --bench-crawl NAME\n");
        return 2;
    }

    AppDelegate delegate;
    delegate.applicationDidFinishLaunching();
    MainViewController* controller = delegate.mainViewController();

    DemoServer server;
    if (pictures && !GuiLaunch::openDemo(server, controller))
        return 1;
    if (parser.isSet(benchCrawl)) {
        ProjectPtr project = Project::getProjectWithName(parser.value(benchCrawl));
        if (!project) {
            std::fprintf(stderr, "quillmere-gui-harness: no project named '%s'\n", qPrintable(parser.value(benchCrawl)));
            return 2;
        }
        // From scratch: no alert about an earlier crawl.
        if (CrawlStartDecision::situationForProject(project) != CrawlStartDecision::Situation::Fresh)
            CrawlStartDecision::apply(CrawlStartDecision::Choice::Restart, project);
        controller->populateCurrentProject(project);
    }

    int scriptedStatus = -1;
    auto endScriptedRun = [&](int status) {
        scriptedStatus = status;
        delegate.quit();
    };
    bool previewLoaded = false;
    QObject::connect(controller->webPage(), &QWebEnginePage::loadFinished, [&] { previewLoaded = true; });

    std::unique_ptr<ScriptedCrawl> scripted;
    if (parser.isSet(tabsShot)) {
        const QString dir = parser.value(tabsShot);
        scripted = std::make_unique<ScriptedCrawl>(delegate, 120000, [&, dir](bool ended) {
            if (!ended) {
                std::fprintf(stderr, "quillmere-gui-harness: the demo crawl did not end within 120 s\n");
                endScriptedRun(1);
                return;
            }
            TabScreenshots::take(delegate, dir, endScriptedRun);
        });
    } else if (picture) {
        const QString file = shotFile;
        scripted = std::make_unique<ScriptedCrawl>(delegate, 120000, [&, file, shotTab](bool ended) {
            if (!ended) {
                std::fprintf(stderr, "quillmere-gui-harness: the demo crawl did not end within 120 s\n");
                endScriptedRun(1);
                return;
            }
            takeScreenshot(delegate, previewLoaded, file, shotTab, endScriptedRun);
        });
    } else {
        scripted = std::make_unique<ScriptedCrawl>(delegate, std::numeric_limits<qint64>::max(), [&](bool) {
            std::printf("bench-crawl pages=%d seconds=%.3f max_paint_gap_ms=%lld max_tick_gap_ms=%lld\n",
                        controller->currentProject() ? controller->currentProject()->pages_count() : 0, scripted->seconds(),
                        static_cast<long long>(scripted->maxPaintGapMs()),
                        static_cast<long long>(scripted->maxTickGapMs()));
            std::fflush(stdout);
            endScriptedRun(0);
        });
    }

    delegate.window()->show();
    QTimer::singleShot(0, scripted.get(), [&] { scripted->start(); });
    const int status = QApplication::exec();
    server.stop();
    return scriptedStatus >= 0 ? scriptedStatus : status;
}
