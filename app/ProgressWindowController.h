#pragma once

#include "app/SheetWindowController.h"

#include <QElapsedTimer>
#include <QList>
#include <QTimer>

#include <memory>

class LevelIndicator;
class Project;
class ProgressControllerDelegate;
class QGroupBox;
class QLabel;
class QProgressBar;
class QPushButton;

// The crawl progress sheet, up while a crawl and the vacuum that follows it run: the URL in
// hand, the download queue's counters and gauge, the links of the page (or the vacuum's
// progress), and the stop button.
class ProgressWindowController : public SheetWindowController {
    Q_OBJECT
public:
    ProgressWindowController(ProgressControllerDelegate* delegate, std::shared_ptr<Project> project);
    static ProgressWindowController* initWithDelegate(ProgressControllerDelegate* delegate, std::shared_ptr<Project> project)
    {
        return new ProgressWindowController(delegate, std::move(project));
    }

    std::shared_ptr<Project> project() const { return project_; }

    void actionStop();
    void hideProgressWindow();
    // The sheet goes away and the crawl goes on: its progress shows in the window's panel and
    // status bar, and the window can be used meanwhile; bringBack shows the sheet again.
    void actionBackground();
    void bringBack();
    bool isInBackground() const { return inBackground_; }
    // Escape on the sheet stops the crawl, as the stop button does.
    void actionAnnuler() override { actionStop(); }

    void updatePageCount(qint32 count);
    void downloadPageInProgressWithURL(const QString& url, qint32 depth);
    void updateQueueWaiting(qint32 waiting, qint32 done);  // ...andQueueTotal:
    void startProgressIndicatorWithMaxValue(qint32 maxValue);
    void updateProgressIndicatorWithValue(qint32 value, qint32 maxValue);
    void vacuumPageInProgressWithURL(const QString& url);

    QLabel* textFieldPageAnalysees() const { return textFieldPageAnalysees_; }
    QLabel* textFieldDepth() const { return textFieldDepth_; }
    QLabel* textFieldQueueWaiting() const { return textFieldQueueWaiting_; }
    QLabel* textFieldQueueDone() const { return textFieldQueueDone_; }
    LevelIndicator* levelIndicatorQueue() const { return levelIndicatorQueue_; }
    QLabel* textFieldURLPageAnalysee() const { return textFieldURLPageAnalysee_; }
    QProgressBar* progressLinksIndicator() const { return progressLinksIndicator_; }
    QPushButton* buttonStop() const { return buttonStop_; }
    QPushButton* buttonBackground() const { return buttonBackground_; }
    // How many times the indicators were redrawn at once (between two event loop turns).
    int immediateRedrawCount() const { return immediateRedraws_; }

Q_SIGNALS:
    void sentToBackground();
    void broughtBack();

private:
    void windowDidLoad();
    // The main thread may be busy with the crawler's calls for a while: the indicators are
    // redrawn at once rather than at the next turn of the event loop, a few dozen times a
    // second at most.
    void redrawNow();
    // The indicators change many times a second: between two redraws they take their values
    // without painting (the event loop turns after every page), and are painted with the next
    // redraw or when the redraw interval has passed.
    void holdPaint(QWidget* field);
    void releaseHeldFields();
    void setProgressLinks(qint32 value, qint32 maxValue);

    ProgressControllerDelegate* delegate_;
    std::shared_ptr<Project> project_;
    QLabel* textFieldPageAnalysees_;
    QLabel* textFieldDepth_;
    QLabel* textFieldQueueWaiting_;
    QLabel* textFieldQueueDone_;
    LevelIndicator* levelIndicatorQueue_;
    QLabel* textFieldURLPageAnalysee_;
    QProgressBar* progressLinksIndicator_;
    QPushButton* buttonStop_;
    QPushButton* buttonBackground_;
    bool inBackground_ = false;
    QGroupBox* boxLocProgression_;
    QLabel* labelLocPagesAnalysees_;
    QLabel* labelLocProfondeurMaximum_;
    QLabel* labelLocURLEnAttente_;
    QLabel* labelLocURLEnCours_;
    QGroupBox* boxLocActions_;
    QElapsedTimer sinceRedraw_;
    QTimer releaseHeld_;
    QList<QWidget*> heldFields_;
    int immediateRedraws_ = 0;
};
