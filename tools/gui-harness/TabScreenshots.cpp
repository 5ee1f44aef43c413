#include "TabScreenshots.h"

#include "app/AppDelegate.h"
#include "app/AuditTabWidget.h"
#include "app/MainViewController.h"
#include "app/MainWindow.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QPixmap>
#include <QScreen>

#include <cstdio>

namespace TabScreenshots {

void take(AppDelegate& delegate, const QString& dir, const std::function<void(int)>& end)
{
    QDir().mkpath(dir);
    AuditTabWidget* tabs = delegate.mainViewController()->auditTabs();
    MainWindow* window = delegate.window();
    int saved = 0;
    for (int i = 0; i < tabs->count(); ++i) {
        if (!tabs->isTabVisible(i))
            continue;
        tabs->setCurrentIndex(i);
        // Let the tab lay out and paint before the screen is read.
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < 300)
            QApplication::processEvents(QEventLoop::AllEvents, 20);
        QScreen* screen = window->screen() ? window->screen() : QGuiApplication::primaryScreen();
        const QPixmap shot = screen ? screen->grabWindow(window->winId()) : QPixmap();
        const QString file = QDir(dir).filePath(
            QStringLiteral("tab-%1-%2.png").arg(i).arg(tabs->widget(i)->objectName()));
        if (shot.isNull() || !shot.save(file, "PNG")) {
            std::fprintf(stderr, "quillmere-gui-harness: could not grab the window into %s\n", qPrintable(file));
            end(1);
            return;
        }
        ++saved;
        std::fprintf(stderr, "Screenshot of tab %d saved in %s\n", i, qPrintable(file));
    }
    end(saved > 0 ? 0 : 1);
}

} // namespace TabScreenshots
