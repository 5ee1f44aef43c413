#include "app/CrawlStatusBar.h"

#include "app/MainViewController.h"
#include "app/ProgressWindowController.h"
#include "store/Localization.h"
#include "store/PluralText.h"

#include <QLabel>
#include <QMouseEvent>

using Localization::localizedString;

namespace {
// A few times a second is enough for counters read at a glance.
constexpr int kTickMs = 200;
} // namespace

CrawlStatusBar::CrawlStatusBar(MainViewController* controller, QWidget* parent)
    : QStatusBar(parent), controller_(controller)
{
    setObjectName(QStringLiteral("statusBar"));
    progressLabel_ = new QLabel;
    progressLabel_->setObjectName(QStringLiteral("statusBarProgress"));
    progressLabel_->setTextFormat(Qt::PlainText);
    addWidget(progressLabel_, 1);
    tick_.setInterval(kTickMs);
    connect(&tick_, &QTimer::timeout, this, [this] { refresh(); });
    tick_.start();
}

void CrawlStatusBar::refresh()
{
    const bool busy = controller_ && controller_->isBusy();
    ProgressWindowController* sheet = controller_ ? controller_->progressWindowController() : nullptr;
    const bool inBackground = busy && sheet && sheet->isInBackground();
    if (inBackground) {
        // The sheet's fields keep their values while it is away: the status bar repeats them.
        const qint64 pages = sheet->textFieldPageAnalysees()->text().toLongLong();
        const QString depth = sheet->textFieldDepth()->text();
        const QString url = sheet->textFieldURLPageAnalysee()->text();
        const QString text = localizedString("StatusBarCrawlInBackground")
                                 .arg(PluralText::count("StatusBarPagesOne", "StatusBarPages", quint64(qMax<qint64>(0, pages))),
                                      depth.isEmpty() ? QStringLiteral("0") : depth, url);
        if (progressLabel_->text() != text)
            progressLabel_->setText(text);
        setToolTip(localizedString("StatusBarClickToShowProgress"));
        setCursor(Qt::PointingHandCursor);
    } else if (inBackground_) {
        progressLabel_->clear();
        setToolTip(QString());
        unsetCursor();
    }
    if (busy != busy_) {
        busy_ = busy;
        Q_EMIT busyChanged(busy);
    }
    if (inBackground != inBackground_) {
        inBackground_ = inBackground;
        Q_EMIT crawlInBackgroundChanged(inBackground);
    }
}

void CrawlStatusBar::bringBackProgressSheet()
{
    ProgressWindowController* sheet = controller_ ? controller_->progressWindowController() : nullptr;
    if (sheet && sheet->isInBackground())
        sheet->bringBack();
    refresh();
}

void CrawlStatusBar::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && inBackground_) {
        bringBackProgressSheet();
        event->accept();
        return;
    }
    QStatusBar::mousePressEvent(event);
}
