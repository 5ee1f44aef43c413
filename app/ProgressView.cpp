#include "app/ProgressView.h"

#include "app/AppDelegate.h"
#include "app/MainViewController.h"
#include "store/DateFormatter.h"
#include "base/DebugTrace.h"
#include "store/Localization.h"
#include "store/Project.h"
#include "store/QuillmerePage.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTimer>

using Localization::localizedString;

namespace {
QLabel* valueField(const char* name)
{
    auto* field = new QLabel;
    field->setObjectName(QLatin1String(name));
    field->setTextInteractionFlags(Qt::TextSelectableByMouse);
    field->setMinimumWidth(60);
    return field;
}
} // namespace

ProgressView::ProgressView(QWidget* parent) : QGroupBox(parent)
{
    setObjectName(QStringLiteral("ProgressView"));
    labelLocNomProject_ = new QLabel;
    labelLocUrlSite_ = new QLabel;
    textFieldProjectName_ = valueField("textFieldProjectName");
    textFieldProjectURL_ = valueField("textFieldProjectURL");
    textFieldProjectURL_->setMinimumWidth(260);
    labelPagesAnalysees_ = new QLabel;
    textFieldPageAnalysees_ = valueField("textFieldPageAnalysees");
    labelDepth_ = new QLabel;
    textFieldDepth_ = valueField("textFieldDepth");
    labelStartDate_ = new QLabel;
    textFieldStartDate_ = valueField("textFieldStartDate");
    labelEndDate_ = new QLabel;
    textFieldEndDate_ = valueField("textFieldEndDate");
    labelVersion_ = valueField("labelVersion");
    labelVersion_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    buttonLancer_ = new QPushButton;
    buttonLancer_->setObjectName(QStringLiteral("buttonLancer"));
    buttonFiltres_ = new QPushButton;
    buttonFiltres_->setObjectName(QStringLiteral("buttonFiltres"));
    connect(buttonLancer_, &QPushButton::clicked, this, [this] { actionLancer(); });
    connect(buttonFiltres_, &QPushButton::clicked, this, [] {
        if (AppDelegate* app = AppDelegate::sharedAppDelegate())
            app->actionDoFilters();
    });

    // The counters change with every page of a crawl. Each paint of the main window is a
    // composition of the whole window with the preview's surface, which costs far more than
    // the page itself without a graphics card: they are painted four times a second at most.
    paintCounters_ = new QTimer(this);
    paintCounters_->setSingleShot(true);
    paintCounters_->setInterval(250);
    connect(paintCounters_, &QTimer::timeout, this, [this] {
        textFieldPageAnalysees_->setUpdatesEnabled(true);
        textFieldDepth_->setUpdatesEnabled(true);
    });

    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(10);
    grid->addWidget(labelLocNomProject_, 0, 0, Qt::AlignRight);
    grid->addWidget(textFieldProjectName_, 0, 1);
    grid->addWidget(labelPagesAnalysees_, 0, 2, Qt::AlignRight);
    grid->addWidget(textFieldPageAnalysees_, 0, 3);
    grid->addWidget(labelStartDate_, 0, 4, Qt::AlignRight);
    grid->addWidget(textFieldStartDate_, 0, 5);
    grid->addWidget(labelLocUrlSite_, 1, 0, Qt::AlignRight);
    grid->addWidget(textFieldProjectURL_, 1, 1);
    grid->addWidget(labelDepth_, 1, 2, Qt::AlignRight);
    grid->addWidget(textFieldDepth_, 1, 3);
    grid->addWidget(labelEndDate_, 1, 4, Qt::AlignRight);
    grid->addWidget(textFieldEndDate_, 1, 5);
    grid->setColumnStretch(1, 3);
    grid->setColumnStretch(5, 1);
    auto* buttons = new QVBoxLayout;
    buttons->addWidget(buttonLancer_);
    buttons->addWidget(buttonFiltres_);
    buttons->addWidget(labelVersion_);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 4, 8, 4);
    layout->addLayout(grid, 1);
    layout->addSpacing(12);
    layout->addLayout(buttons);
    awakeFromNib();
    closeCurrentProject();
}

void ProgressView::awakeFromNib()
{
    labelVersion_->setText(QStringLiteral("V Beta-1"));
    setTitle(localizedString("ProgressViewBoxProgression"));
    labelLocNomProject_->setText(localizedString("ProgressViewLabelNomProjet"));
    labelLocUrlSite_->setText(localizedString("ProgressViewLabelURLSite"));
    labelStartDate_->setText(localizedString("ProgressViewLabelStartDate"));
    labelEndDate_->setText(localizedString("ProgressViewLabelEndDate"));
    labelPagesAnalysees_->setText(localizedString("ProgressViewLabelPageAnalysees"));
    labelDepth_->setText(localizedString("ProgressViewLabelDepth"));
    buttonLancer_->setText(localizedString("ProgressViewButtonLancer"));
    buttonFiltres_->setText(localizedString("ProgressViewButtonFiltres"));
}

void ProgressView::showFilterButton()
{
    buttonFiltres_->setVisible(true);
    buttonFiltres_->setEnabled(internalCurrentProject_ && QuillmerePage::countPagesForProject(internalCurrentProject_) >= 1);
}

void ProgressView::setCurrentProject(const std::shared_ptr<Project>& project)
{
    internalCurrentProject_ = project;
    if (!project)
        return;
    textFieldProjectName_->setText(project->name());
    textFieldProjectURL_->setText(project->url());
    labelPagesAnalysees_->setVisible(true);
    textFieldPageAnalysees_->setVisible(true);
    textFieldPageAnalysees_->setText(QString::number(project->pages_count()));
    labelDepth_->setVisible(true);
    textFieldDepth_->setVisible(true);
    textFieldDepth_->setText(QString::number(project->max_depth()));
    labelStartDate_->setVisible(true);
    textFieldStartDate_->setVisible(true);
    if (project->crawler_start_date().isValid())
        textFieldStartDate_->setText(DateFormatter::stringFromDate(project->crawler_start_date()));
    labelEndDate_->setVisible(true);
    textFieldEndDate_->setVisible(true);
    if (project->crawler_stop_date().isValid())
        textFieldEndDate_->setText(DateFormatter::stringFromDate(project->crawler_stop_date()));
    buttonLancer_->setEnabled(true);
    showFilterButton();
}

void ProgressView::closeCurrentProject()
{
    for (QLabel* field : {textFieldProjectName_, textFieldProjectURL_, textFieldPageAnalysees_, textFieldDepth_,
                          textFieldStartDate_, textFieldEndDate_})
        field->clear();
    for (QLabel* label : {labelPagesAnalysees_, textFieldPageAnalysees_, labelDepth_, textFieldDepth_, labelStartDate_,
                          textFieldStartDate_, labelEndDate_, textFieldEndDate_})
        label->setVisible(false);
    buttonLancer_->setEnabled(false);
    buttonFiltres_->setVisible(false);
    buttonFiltres_->setEnabled(false);
}

void ProgressView::actionLancer()
{
    DebugTrace("actionLancer");
    labelPagesAnalysees_->setVisible(true);
    textFieldPageAnalysees_->setVisible(true);
    buttonLancer_->setVisible(false);
    buttonLancer_->setEnabled(false);
    labelDepth_->setVisible(true);
    textFieldDepth_->setVisible(true);
    if (mainViewController_)
        mainViewController_->startCrawlerForProject(internalCurrentProject_);
}

void ProgressView::actionStop()
{
    if (mainViewController_)
        mainViewController_->cancelCrawlerForProject(internalCurrentProject_);
    ihmCrawlerEnd();
}

void ProgressView::actionCompresser()
{
    // The vacuum that follows every crawl is already queued with it; until it ends, no new
    // crawl can start.
    buttonLancer_->setEnabled(false);
}

void ProgressView::crawlerDidEnd()
{
    ihmCrawlerEnd();
}

void ProgressView::ihmCrawlerEnd()
{
    DebugTrace("ihmCrawlerEnd");
    if (internalCurrentProject_)
        textFieldDepth_->setText(QString::number(internalCurrentProject_->max_depth()));
    buttonLancer_->setVisible(true);
    buttonLancer_->setEnabled(true);
    showFilterButton();
}

void ProgressView::updateStartDate(const QDateTime& date)
{
    if (!date.isValid())
        return;
    textFieldStartDate_->setText(DateFormatter::stringFromDate(date));
    textFieldEndDate_->clear();
}

void ProgressView::updateStopDate(const QDateTime& date)
{
    if (!date.isValid())
        return;
    textFieldEndDate_->setText(DateFormatter::stringFromDate(date));
}

void ProgressView::setCounterText(QLabel* field, const QString& text)
{
    if (field->text() == text)
        return;
    if (!field->isVisible()) {
        field->setText(text);
        return;
    }
    field->setUpdatesEnabled(false);
    field->setText(text);
    if (!paintCounters_->isActive())
        paintCounters_->start();
}

void ProgressView::updatePageCount(qint32 count)
{
    setCounterText(textFieldPageAnalysees_, QString::number(count));
    // While a crawl keeps its counters apart, the project reads them and its registry values
    // are the crawl's to write.
    if (internalCurrentProject_ && !internalCurrentProject_->liveCounters())
        internalCurrentProject_->setPages_count(count);
}

void ProgressView::downloadPageInProgressWithURL(const QString&, qint32 depth)
{
    setCounterText(textFieldDepth_, QString::number(depth));
    // The depth of the page in hand; the true maximum is written when the crawl ends.
    if (internalCurrentProject_ && !internalCurrentProject_->liveCounters())
        internalCurrentProject_->setMax_depth(depth);
}
