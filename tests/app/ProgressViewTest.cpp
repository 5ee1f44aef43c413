// The progress panel of the main window and the progress sheet shown while a crawl runs:
// what they show of a project, how the start and filter buttons come and go, the queue
// gauge and the progress bar, the stop button, and their French captions.

#include "CrawlWindowSupport.h"

#include "app/LevelIndicator.h"
#include "app/ProgressControllerDelegate.h"
#include "app/ProgressWindowController.h"
#include "store/QuillmerePage.h"

#include <QGroupBox>
#include <QProgressBar>
#include <QTest>

#include <algorithm>

using namespace apptest;

namespace {

QDateTime at(int year, int month, int day, int h, int m, int s)
{
    return QDateTime(QDate(year, month, day), QTime(h, m, s));
}

class CountingStopDelegate : public ProgressControllerDelegate {
public:
    void stopIndexer() override { ++stops; }
    int stops = 0;
};

class ProgressViewTest : public ::testing::Test {
protected:
    LaunchedApp app;
    // A panel of its own, with no controller behind its start button.
    ProgressView view;

    ProjectPtr newProject(const QString& name = QStringLiteral("site"))
    {
        ProjectPtr project = Project::createProjectWithName(name, QStringLiteral("http://127.0.0.1:9/"), -1, -1);
        EXPECT_TRUE(project);
        return project;
    }
    static bool shown(QWidget* w) { return !w->isHidden(); }
    void expectCaptionsShown(bool visible)
    {
        for (QLabel* label : {view.labelPagesAnalysees(), view.textFieldPageAnalysees(), view.labelDepth(),
                              view.textFieldDepth(), view.labelStartDate(), view.textFieldStartDate(),
                              view.labelEndDate(), view.textFieldEndDate()})
            EXPECT_EQ(shown(label), visible) << label->objectName().toStdString() << " " << label->text().toStdString();
    }
};

TEST_F(ProgressViewTest, NeverCrawledProjectShowsItsStoredCountsNoDatesAndADisabledFilter)
{
    ProjectPtr project = newProject();
    project->setPages_count(7);
    project->setMax_depth(3);

    view.setCurrentProject(project);

    EXPECT_EQ(view.textFieldProjectName()->text(), QStringLiteral("site"));
    EXPECT_EQ(view.textFieldProjectURL()->text(), QStringLiteral("http://127.0.0.1:9/"));
    EXPECT_EQ(view.textFieldPageAnalysees()->text(), QStringLiteral("7"));
    EXPECT_EQ(view.textFieldDepth()->text(), QStringLiteral("3"));
    EXPECT_TRUE(view.textFieldStartDate()->text().isEmpty());
    EXPECT_TRUE(view.textFieldEndDate()->text().isEmpty());
    expectCaptionsShown(true);
    EXPECT_TRUE(view.buttonLancer()->isEnabled());
    EXPECT_TRUE(shown(view.buttonFiltres()));
    EXPECT_FALSE(view.buttonFiltres()->isEnabled());
}

TEST_F(ProgressViewTest, ProjectWithPagesAndDatesShowsThemFormattedAndEnablesTheFilter)
{
    ProjectPtr project = newProject();
    project->setCrawler_start_date(at(2024, 3, 5, 7, 8, 9));
    project->setCrawler_stop_date(at(2024, 3, 5, 17, 0, 59));
    ASSERT_TRUE(QuillmerePage::createPageWithPath("/", "index.html", "Home", "http://127.0.0.1:9/", 1, project));

    view.setCurrentProject(project);

    EXPECT_EQ(view.textFieldStartDate()->text(), QStringLiteral("2024-03-05 07:08:09"));
    EXPECT_EQ(view.textFieldEndDate()->text(), QStringLiteral("2024-03-05 17:00:59"));
    EXPECT_TRUE(shown(view.buttonFiltres()));
    EXPECT_TRUE(view.buttonFiltres()->isEnabled());

    // A project without dates leaves the fields as they were.
    ProjectPtr other = newProject(QStringLiteral("other"));
    view.setCurrentProject(other);
    EXPECT_EQ(view.textFieldProjectName()->text(), QStringLiteral("other"));
    EXPECT_EQ(view.textFieldStartDate()->text(), QStringLiteral("2024-03-05 07:08:09"));
    EXPECT_EQ(view.textFieldEndDate()->text(), QStringLiteral("2024-03-05 17:00:59"));
    EXPECT_FALSE(view.buttonFiltres()->isEnabled());
}

TEST_F(ProgressViewTest, ClosingEmptiesHidesAndDisables)
{
    ProjectPtr project = newProject();
    project->setPages_count(4);
    project->setCrawler_start_date(at(2024, 1, 2, 3, 4, 5));
    ASSERT_TRUE(QuillmerePage::createPageWithPath("/", "index.html", "Home", "http://127.0.0.1:9/", 1, project));
    view.setCurrentProject(project);
    ASSERT_TRUE(view.buttonFiltres()->isEnabled());

    view.closeCurrentProject();

    for (QLabel* field : {view.textFieldProjectName(), view.textFieldProjectURL(), view.textFieldPageAnalysees(),
                          view.textFieldDepth(), view.textFieldStartDate(), view.textFieldEndDate()})
        EXPECT_TRUE(field->text().isEmpty()) << field->objectName().toStdString();
    expectCaptionsShown(false);
    EXPECT_FALSE(view.buttonLancer()->isEnabled());
    EXPECT_FALSE(shown(view.buttonFiltres()));
    EXPECT_FALSE(view.buttonFiltres()->isEnabled());
}

TEST_F(ProgressViewTest, StartHidesTheStartButtonAndTheEndOfARunBringsItBack)
{
    ProjectPtr project = newProject();
    project->setMax_depth(2);
    view.setCurrentProject(project);
    view.labelDepth()->hide();
    view.textFieldPageAnalysees()->hide();

    view.actionLancer();

    EXPECT_FALSE(shown(view.buttonLancer()));
    EXPECT_FALSE(view.buttonLancer()->isEnabled());
    EXPECT_TRUE(shown(view.labelDepth()));
    EXPECT_TRUE(shown(view.textFieldPageAnalysees()));

    view.textFieldDepth()->setText(QStringLiteral("9"));
    project->setMax_depth(5);
    ASSERT_TRUE(QuillmerePage::createPageWithPath("/", "index.html", "Home", "http://127.0.0.1:9/", 1, project));
    view.ihmCrawlerEnd();

    EXPECT_TRUE(shown(view.buttonLancer()));
    EXPECT_TRUE(view.buttonLancer()->isEnabled());
    EXPECT_EQ(view.textFieldDepth()->text(), QStringLiteral("5"));
    EXPECT_TRUE(shown(view.buttonFiltres()));
    EXPECT_TRUE(view.buttonFiltres()->isEnabled());

    // The end of a crawl does the same; the vacuum's start holds the button disabled.
    view.actionLancer();
    view.crawlerDidEnd();
    EXPECT_TRUE(shown(view.buttonLancer()));
    EXPECT_TRUE(view.buttonLancer()->isEnabled());
    view.actionCompresser();
    EXPECT_FALSE(view.buttonLancer()->isEnabled());
}

TEST_F(ProgressViewTest, PageCountAndDepthGoToTheFieldsAndTheProject)
{
    ProjectPtr project = newProject();
    project->setMax_depth(1);
    view.setCurrentProject(project);

    view.updatePageCount(12);
    EXPECT_EQ(view.textFieldPageAnalysees()->text(), QStringLiteral("12"));
    EXPECT_EQ(project->pages_count(), 12);

    view.downloadPageInProgressWithURL(QStringLiteral("http://127.0.0.1:9/deep.html"), 5);
    EXPECT_EQ(view.textFieldDepth()->text(), QStringLiteral("5"));
    EXPECT_EQ(project->max_depth(), 5);
    // The depth of the page in hand, not the deepest so far.
    view.downloadPageInProgressWithURL(QStringLiteral("http://127.0.0.1:9/a.html"), 2);
    EXPECT_EQ(view.textFieldDepth()->text(), QStringLiteral("2"));
    EXPECT_EQ(project->max_depth(), 2);
    EXPECT_EQ(view.textFieldPageAnalysees()->text(), QStringLiteral("12"));
}

TEST_F(ProgressViewTest, StartDateClearsTheEndDateAndMissingDatesChangeNothing)
{
    view.setCurrentProject(newProject());
    view.updateStopDate(at(2023, 12, 31, 23, 59, 58));
    EXPECT_EQ(view.textFieldEndDate()->text(), QStringLiteral("2023-12-31 23:59:58"));

    view.updateStartDate(QDateTime());
    view.updateStopDate(QDateTime());
    EXPECT_TRUE(view.textFieldStartDate()->text().isEmpty());
    EXPECT_EQ(view.textFieldEndDate()->text(), QStringLiteral("2023-12-31 23:59:58"));

    view.updateStartDate(at(2024, 2, 29, 8, 0, 1));
    EXPECT_EQ(view.textFieldStartDate()->text(), QStringLiteral("2024-02-29 08:00:01"));
    EXPECT_TRUE(view.textFieldEndDate()->text().isEmpty());

    view.updateStopDate(QDateTime());
    view.updateStartDate(QDateTime());
    EXPECT_EQ(view.textFieldStartDate()->text(), QStringLiteral("2024-02-29 08:00:01"));
    EXPECT_TRUE(view.textFieldEndDate()->text().isEmpty());
}

TEST_F(ProgressViewTest, VersionAndCaptions)
{
    EXPECT_EQ(view.labelVersion()->text(), QStringLiteral("V Beta-1"));
    EXPECT_EQ(view.title(), frenchText("ProgressViewBoxProgression"));
    EXPECT_EQ(view.labelLocNomProject()->text(), frenchText("ProgressViewLabelNomProjet"));
    EXPECT_EQ(view.labelLocUrlSite()->text(), frenchText("ProgressViewLabelURLSite"));
    EXPECT_EQ(view.labelStartDate()->text(), frenchText("ProgressViewLabelStartDate"));
    EXPECT_EQ(view.labelEndDate()->text(), frenchText("ProgressViewLabelEndDate"));
    EXPECT_EQ(view.labelPagesAnalysees()->text(), frenchText("ProgressViewLabelPageAnalysees"));
    EXPECT_EQ(view.labelDepth()->text(), frenchText("ProgressViewLabelDepth"));
    EXPECT_EQ(view.buttonLancer()->text(), frenchText("ProgressViewButtonLancer"));
    EXPECT_EQ(view.buttonFiltres()->text(), frenchText("ProgressViewButtonFiltres"));
    EXPECT_FALSE(frenchText("ProgressViewButtonLancer").isEmpty());
}

// The sheet, shown on a window of its own.
class ProgressSheetTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        parent.resize(600, 400);
        parent.show();
        project = Project::createProjectWithName(QStringLiteral("site"), QStringLiteral("http://127.0.0.1:9/"), -1, -1);
        sheet = ProgressWindowController::initWithDelegate(&delegate, project);
    }
    void TearDown() override { delete sheet; }

    LaunchedApp app;
    QWidget parent;
    CountingStopDelegate delegate;
    ProjectPtr project;
    ProgressWindowController* sheet = nullptr;
};

TEST_F(ProgressSheetTest, ShownOnItsWindowAndClosedAtOnceByStop)
{
    EXPECT_EQ(sheet->project(), project);
    sheet->displaySheetInWindow(&parent);
    EXPECT_EQ(sheet->parentWindow(), &parent);
    ASSERT_TRUE(sheet->isVisible());
    EXPECT_EQ(delegate.stops, 0);

    sheet->buttonStop()->click();

    EXPECT_FALSE(sheet->isVisible());
    EXPECT_EQ(sheet->result(), 1);
    EXPECT_EQ(delegate.stops, 1);
}

TEST_F(ProgressSheetTest, EscapeStopsButReturnDoesNot)
{
    sheet->displaySheetInWindow(&parent);
    ASSERT_TRUE(sheet->isVisible());
    QTest::keyClick(sheet, Qt::Key_Return);
    EXPECT_TRUE(sheet->isVisible());
    EXPECT_EQ(delegate.stops, 0);

    QTest::keyClick(sheet, Qt::Key_Escape);
    EXPECT_FALSE(sheet->isVisible());
    EXPECT_EQ(delegate.stops, 1);
}

TEST_F(ProgressSheetTest, HidingTheSheetAlsoAsksToStop)
{
    sheet->displaySheetInWindow(&parent);
    ASSERT_TRUE(sheet->isVisible());

    sheet->hideProgressWindow();

    EXPECT_FALSE(sheet->isVisible());
    EXPECT_EQ(sheet->result(), 1);
    EXPECT_EQ(delegate.stops, 1);
}

TEST_F(ProgressSheetTest, QueueGaugeIsFullWhenNothingIsDoneYet)
{
    sheet->displaySheetInWindow(&parent);
    LevelIndicator* gauge = sheet->levelIndicatorQueue();

    sheet->updateQueueWaiting(5, 0);
    EXPECT_EQ(sheet->textFieldQueueWaiting()->text(), QStringLiteral("5"));
    EXPECT_EQ(sheet->textFieldQueueDone()->text(), QStringLiteral("5"));
    EXPECT_EQ(gauge->minValue(), 0.0);
    EXPECT_EQ(gauge->maxValue(), 5.0);
    EXPECT_EQ(gauge->doubleValue(), 5.0);
    EXPECT_EQ(gauge->fillRatio(), 1.0);

    // The second count is the done entries: the total shown is both together.
    sheet->updateQueueWaiting(3, 7);
    EXPECT_EQ(sheet->textFieldQueueWaiting()->text(), QStringLiteral("3"));
    EXPECT_EQ(sheet->textFieldQueueDone()->text(), QStringLiteral("10"));
    EXPECT_EQ(gauge->maxValue(), 10.0);
    EXPECT_EQ(gauge->doubleValue(), 3.0);
    EXPECT_DOUBLE_EQ(gauge->fillRatio(), 0.3);

    sheet->updateQueueWaiting(0, 12);
    EXPECT_EQ(sheet->textFieldQueueDone()->text(), QStringLiteral("12"));
    EXPECT_EQ(gauge->fillRatio(), 0.0);
}

TEST_F(ProgressSheetTest, ProgressBarRangeAndValue)
{
    sheet->displaySheetInWindow(&parent);
    QProgressBar* bar = sheet->progressLinksIndicator();
    sheet->updateProgressIndicatorWithValue(3, 4);

    sheet->startProgressIndicatorWithMaxValue(12);
    EXPECT_EQ(bar->minimum(), 0);
    EXPECT_EQ(bar->maximum(), 12);
    EXPECT_EQ(bar->value(), 0);

    sheet->updateProgressIndicatorWithValue(4, 9);
    EXPECT_EQ(bar->minimum(), 0);
    EXPECT_EQ(bar->maximum(), 9);
    EXPECT_EQ(bar->value(), 4);

    sheet->updateProgressIndicatorWithValue(9, 9);
    EXPECT_EQ(bar->value(), 9);
}

TEST_F(ProgressSheetTest, PageInHandAndVacuumedPage)
{
    sheet->updatePageCount(17);
    sheet->downloadPageInProgressWithURL(QStringLiteral("http://127.0.0.1:9/a.html"), 3);
    EXPECT_EQ(sheet->textFieldPageAnalysees()->text(), QStringLiteral("17"));
    EXPECT_EQ(sheet->textFieldURLPageAnalysee()->text(), QStringLiteral("http://127.0.0.1:9/a.html"));
    EXPECT_EQ(sheet->textFieldDepth()->text(), QStringLiteral("3"));

    sheet->vacuumPageInProgressWithURL(QStringLiteral("http://127.0.0.1:9/doc.pdf"));
    EXPECT_EQ(sheet->textFieldURLPageAnalysee()->text(), QStringLiteral("http://127.0.0.1:9/doc.pdf"));
    EXPECT_EQ(sheet->textFieldDepth()->text(), QStringLiteral("3"));
}

TEST_F(ProgressSheetTest, CaptionsAreTheFrenchTexts)
{
    QStringList boxes;
    for (QGroupBox* box : sheet->findChildren<QGroupBox*>())
        boxes << box->title();
    boxes.sort();
    QStringList expectedBoxes{frenchText("ProgressBoxProgression"), frenchText("ProgressBoxActions")};
    expectedBoxes.sort();
    EXPECT_EQ(boxes, expectedBoxes);

    QStringList labels;
    for (QLabel* label : sheet->findChildren<QLabel*>())
        labels << label->text();
    for (const char* key : {"ProgressLabelPagesAnalysees", "ProgressLabelProfondeurMax", "ProgressLabelURLAttente",
                            "ProgressLabelURLEnCours"}) {
        const QString text = frenchText(QLatin1String(key));
        EXPECT_FALSE(text.isEmpty()) << key;
        EXPECT_TRUE(labels.contains(text)) << key << " " << text.toStdString();
    }
    EXPECT_EQ(sheet->buttonStop()->text(), frenchText("ProgressButtonStop"));
    EXPECT_EQ(sheet->buttonStop()->text(), QStringLiteral("Arrêter"));
}

} // namespace
