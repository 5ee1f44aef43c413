#pragma once

#include "app/MainViewController.h"

#include <QPointer>
#include <QStatusBar>
#include <QTimer>

class QLabel;

// The main window's status bar. While a crawl runs in the background (its progress sheet sent
// away) it says how far the crawl has gone; a click on it brings the sheet back.
class CrawlStatusBar : public QStatusBar {
    Q_OBJECT
public:
    explicit CrawlStatusBar(MainViewController* controller, QWidget* parent = nullptr);

    bool isCrawlInBackground() const { return inBackground_; }
    bool isBusy() const { return busy_; }
    QLabel* progressLabel() const { return progressLabel_; }
    // Shows the progress sheet of the crawl running in the background again.
    void bringBackProgressSheet();
    // Reads the crawl's state now rather than at the next tick.
    void refresh();

Q_SIGNALS:
    void crawlInBackgroundChanged(bool inBackground);
    void busyChanged(bool busy);

protected:
    void mousePressEvent(QMouseEvent* event) override;

private:
    // The window's central widget goes first when the window is destroyed.
    QPointer<MainViewController> controller_;
    QLabel* progressLabel_;
    QTimer tick_;
    bool inBackground_ = false;
    bool busy_ = false;
};
