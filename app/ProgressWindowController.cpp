#include "app/ProgressWindowController.h"

#include "app/LevelIndicator.h"
#include "app/ProgressControllerDelegate.h"
#include "store/Localization.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

using Localization::localizedString;

namespace {
constexpr qint64 kRedrawIntervalMs = 30;

QLabel* valueField(const char* name)
{
    auto* field = new QLabel;
    field->setObjectName(QLatin1String(name));
    field->setMinimumWidth(60);
    return field;
}
} // namespace

ProgressWindowController::ProgressWindowController(ProgressControllerDelegate* delegate, std::shared_ptr<Project> project)
    : SheetWindowController(QStringLiteral("ProgressWindowController")), delegate_(delegate), project_(std::move(project))
{
    textFieldPageAnalysees_ = valueField("textFieldPageAnalysees");
    textFieldDepth_ = valueField("textFieldDepth");
    textFieldQueueWaiting_ = valueField("textFieldQueueWaiting");
    textFieldQueueDone_ = valueField("textFieldQueueDone");
    textFieldURLPageAnalysee_ = valueField("textFieldURLPageAnalysee");
    textFieldURLPageAnalysee_->setMinimumWidth(480);
    textFieldURLPageAnalysee_->setTextFormat(Qt::PlainText);
    levelIndicatorQueue_ = new LevelIndicator;
    levelIndicatorQueue_->setObjectName(QStringLiteral("levelIndicatorQueue"));
    progressLinksIndicator_ = new QProgressBar;
    progressLinksIndicator_->setObjectName(QStringLiteral("progressLinksIndicator"));
    progressLinksIndicator_->setRange(0, 1);
    progressLinksIndicator_->setValue(0);
    progressLinksIndicator_->setTextVisible(false);
    buttonStop_ = new QPushButton;
    buttonStop_->setObjectName(QStringLiteral("buttonStop"));
    // Return must not stop hours of crawling by accident: only a click or Escape does.
    buttonStop_->setAutoDefault(false);
    connect(buttonStop_, &QPushButton::clicked, this, [this] { actionStop(); });
    buttonBackground_ = new QPushButton;
    buttonBackground_->setObjectName(QStringLiteral("buttonBackground"));
    buttonBackground_->setAutoDefault(false);
    connect(buttonBackground_, &QPushButton::clicked, this, [this] { actionBackground(); });

    boxLocProgression_ = new QGroupBox;
    labelLocPagesAnalysees_ = new QLabel;
    labelLocProfondeurMaximum_ = new QLabel;
    labelLocURLEnAttente_ = new QLabel;
    labelLocURLEnCours_ = new QLabel;
    auto* grid = new QGridLayout(boxLocProgression_);
    grid->addWidget(labelLocPagesAnalysees_, 0, 0, Qt::AlignRight);
    grid->addWidget(textFieldPageAnalysees_, 0, 1);
    grid->addWidget(labelLocProfondeurMaximum_, 0, 2, Qt::AlignRight);
    grid->addWidget(textFieldDepth_, 0, 3);
    auto* queue = new QHBoxLayout;
    queue->addWidget(textFieldQueueWaiting_);
    queue->addWidget(new QLabel(QStringLiteral("/")));
    queue->addWidget(textFieldQueueDone_);
    queue->addWidget(levelIndicatorQueue_, 1);
    grid->addWidget(labelLocURLEnAttente_, 1, 0, Qt::AlignRight);
    grid->addLayout(queue, 1, 1, 1, 3);
    grid->addWidget(labelLocURLEnCours_, 2, 0, Qt::AlignRight);
    grid->addWidget(textFieldURLPageAnalysee_, 2, 1, 1, 3);
    grid->addWidget(progressLinksIndicator_, 3, 0, 1, 4);
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(3, 1);

    boxLocActions_ = new QGroupBox;
    auto* actions = new QHBoxLayout(boxLocActions_);
    actions->addWidget(buttonBackground_);
    actions->addStretch();
    actions->addWidget(buttonStop_);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(boxLocProgression_);
    layout->addWidget(boxLocActions_);
    releaseHeld_.setSingleShot(true);
    releaseHeld_.setInterval(int(kRedrawIntervalMs));
    connect(&releaseHeld_, &QTimer::timeout, this, [this] { releaseHeldFields(); });
    windowDidLoad();
}

void ProgressWindowController::windowDidLoad()
{
    setWindowTitle(localizedString("ProgressBoxProgression"));
    boxLocProgression_->setTitle(localizedString("ProgressBoxProgression"));
    labelLocPagesAnalysees_->setText(localizedString("ProgressLabelPagesAnalysees"));
    labelLocProfondeurMaximum_->setText(localizedString("ProgressLabelProfondeurMax"));
    labelLocURLEnAttente_->setText(localizedString("ProgressLabelURLAttente"));
    labelLocURLEnCours_->setText(localizedString("ProgressLabelURLEnCours"));
    boxLocActions_->setTitle(localizedString("ProgressBoxActions"));
    buttonStop_->setText(localizedString("ProgressButtonStop"));
    buttonBackground_->setText(localizedString("ProgressButtonBackground"));
    buttonBackground_->setToolTip(localizedString("ProgressButtonBackgroundToolTip"));
}

void ProgressWindowController::actionStop()
{
    if (delegate_)
        delegate_->stopIndexer();
    inBackground_ = false;
    endSheet(ValidateCode);
}

void ProgressWindowController::actionBackground()
{
    if (!isVisible())
        return;
    releaseHeldFields();
    inBackground_ = true;
    hide();
    Q_EMIT sentToBackground();
}

void ProgressWindowController::bringBack()
{
    if (!inBackground_)
        return;
    inBackground_ = false;
    displaySheetInWindow(parentWindow());
    Q_EMIT broughtBack();
}

void ProgressWindowController::hideProgressWindow()
{
    actionStop();
}

void ProgressWindowController::updatePageCount(qint32 count)
{
    holdPaint(textFieldPageAnalysees_);
    textFieldPageAnalysees_->setText(QString::number(count));
}

void ProgressWindowController::downloadPageInProgressWithURL(const QString& url, qint32 depth)
{
    holdPaint(textFieldURLPageAnalysee_);
    textFieldURLPageAnalysee_->setText(url);
    holdPaint(textFieldDepth_);
    textFieldDepth_->setText(QString::number(depth));
}

void ProgressWindowController::updateQueueWaiting(qint32 waiting, qint32 done)
{
    // The second count is the queue's done entries; the sheet shows and scales against the
    // total of both.
    const qint32 total = waiting + done;
    for (QWidget* field : std::initializer_list<QWidget*>{textFieldQueueWaiting_, textFieldQueueDone_, levelIndicatorQueue_})
        holdPaint(field);
    textFieldQueueWaiting_->setText(QString::number(waiting));
    textFieldQueueDone_->setText(QString::number(total));
    levelIndicatorQueue_->setMinValue(0);
    levelIndicatorQueue_->setMaxValue(total);
    levelIndicatorQueue_->setDoubleValue(waiting);
    redrawNow();
}

void ProgressWindowController::startProgressIndicatorWithMaxValue(qint32 maxValue)
{
    setProgressLinks(0, maxValue);
    redrawNow();
}

void ProgressWindowController::updateProgressIndicatorWithValue(qint32 value, qint32 maxValue)
{
    setProgressLinks(value, maxValue);
    redrawNow();
}

void ProgressWindowController::setProgressLinks(qint32 value, qint32 maxValue)
{
    // A progress bar otherwise repaints itself at once for every value that moves it by a
    // pixel: for a page's links that is every link.
    holdPaint(progressLinksIndicator_);
    progressLinksIndicator_->setRange(0, qMax(0, maxValue));
    progressLinksIndicator_->setValue(value);
}

void ProgressWindowController::vacuumPageInProgressWithURL(const QString& url)
{
    holdPaint(textFieldURLPageAnalysee_);
    textFieldURLPageAnalysee_->setText(url);
}

void ProgressWindowController::holdPaint(QWidget* field)
{
    if (!isVisible())
        return;
    if (field->updatesEnabled()) {
        field->setUpdatesEnabled(false);
        heldFields_.append(field);
    }
    if (!releaseHeld_.isActive())
        releaseHeld_.start();
}

void ProgressWindowController::releaseHeldFields()
{
    releaseHeld_.stop();
    for (QWidget* field : std::as_const(heldFields_))
        field->setUpdatesEnabled(true);
    heldFields_.clear();
}

void ProgressWindowController::redrawNow()
{
    if (!isVisible())
        return;
    if (sinceRedraw_.isValid() && sinceRedraw_.elapsed() < kRedrawIntervalMs)
        return;
    sinceRedraw_.start();
    ++immediateRedraws_;
    releaseHeldFields();
    repaint();
}
