// A crawl started from the window's start button, followed to its very end: weights, dates
// and counters, the registry saved, the lists refreshed, the vacuum (with the start button
// held disabled), the sheet closed. Then a crawl stopped from the sheet, which ends the same
// way and can be continued to the same pages as a crawl never stopped.

#include "CrawlWindowSupport.h"

#include "crawler/DownloaderOperationLibXML.h"
#include "crawler/VacuumCleanerOperation.h"
#include "store/QuillmereDownloaderQueue.h"
#include "store/QuillmerePage.h"
#include "support/StallingSite.h"

#include <QProgressBar>
#include <QRegularExpression>

#include <algorithm>
#include <chrono>
#include <thread>

using namespace apptest;
using crawltest::anchor;

namespace {

QString formatted(const QDateTime& date)
{
    return date.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

class CrawlLifecycleTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(site.started());
        app.window()->show();
    }

    MainViewController* controller() const { return app.controller(); }
    ProgressView* panel() const { return app.progressView(); }
    QString U(const std::string& path) const { return site.U(path); }

    // Every page's weight is its incoming links over its depth, in whole numbers.
    void expectWeights(const ProjectPtr& project)
    {
        for (const auto& page : crawltest::Db(project, site.base()).pages()) {
            ASSERT_GT(page.depth, 0) << page.url;
            EXPECT_EQ(page.weight, double(page.in / page.depth)) << page.url;
        }
    }

    crawltest::Site site;
    LaunchedApp app;
};

TEST_F(CrawlLifecycleTest, EveryStepOfTheEndOfACrawl)
{
    // "/" (1) -> a, b, doc.pdf, img.png (2); b -> c (3).
    site.page("/", "Home",
              anchor("a.html", "A") + anchor("b.html", "B") + anchor("doc.pdf", "Doc") + anchor("img.png", "Logo"));
    site.page("/a.html", "A", anchor("b.html", "B") + anchor("/", "Home"));
    site.page("/b.html", "B", anchor("c.html", "C"));
    site.page("/c.html", "C", anchor("a.html", "A") + anchor("/", "Home"));
    site.raw("/doc.pdf", "%PDF-1.4", "application/pdf");
    site.raw("/img.png", std::string("\x89PNG\r\n\x1a\n", 8), "image/png");
    ProjectPtr project = app.createAndShowProject(QStringLiteral("site"), U("/"));
    ASSERT_EQ(app.documentsView()->numberOfRowsInTableView(), 0);
    ASSERT_FALSE(project->crawler_stop_date().isValid());
    const QDateTime before = QDateTime::currentDateTime().addSecs(-1);

    // What the window looks like while the crawl runs and while the vacuum runs, seen each
    // time the sheet's progress bar moves.
    int crawlObservations = 0, vacuumObservations = 0;
    bool startShownDuringCrawl = false, startEnabledDuringVacuum = false, sheetHiddenWhileBusy = false;
    CrawlEnds ends(controller());
    panel()->buttonLancer()->click();
    ProgressWindowController* sheet = controller()->progressWindowController();
    ASSERT_TRUE(sheet);
    ASSERT_TRUE(sheet->isVisible());
    QObject::connect(sheet->progressLinksIndicator(), &QProgressBar::valueChanged, [&] {
        const auto vacuum = controller()->vacuumOperation();
        sheetHiddenWhileBusy |= !sheet->isVisible();
        if (vacuum && !vacuum->isFinished()) {
            ++vacuumObservations;
            startEnabledDuringVacuum |= panel()->buttonLancer()->isEnabled();
        } else if (!vacuum) {
            ++crawlObservations;
            startShownDuringCrawl |= !panel()->buttonLancer()->isHidden() || panel()->buttonLancer()->isEnabled();
        }
    });
    ASSERT_TRUE(ends.waitFor());

    // The crawl and then the vacuum ran, the start button out of reach all along.
    EXPECT_GT(crawlObservations, 0);
    EXPECT_GT(vacuumObservations, 0);
    EXPECT_FALSE(startShownDuringCrawl);
    EXPECT_FALSE(startEnabledDuringVacuum);
    EXPECT_FALSE(sheetHiddenWhileBusy);
    ASSERT_TRUE(controller()->vacuumOperation());
    EXPECT_TRUE(controller()->vacuumOperation()->isFinished());

    // Weights.
    expectWeights(project);
    crawltest::Db db(project, site.base());
    EXPECT_EQ(db.at("~/").weight, 2.0);
    EXPECT_EQ(db.at("~/a.html").weight, 1.0);
    EXPECT_EQ(db.at("~/c.html").weight, 0.0);

    // Dates, counters, and the panel that shows them.
    const QDateTime start = project->crawler_start_date();
    const QDateTime stop = project->crawler_stop_date();
    ASSERT_TRUE(start.isValid());
    ASSERT_TRUE(stop.isValid());
    EXPECT_GE(start, before);
    EXPECT_GE(stop, start);
    EXPECT_LE(stop, QDateTime::currentDateTime());
    EXPECT_EQ(panel()->textFieldStartDate()->text(), formatted(start));
    EXPECT_EQ(panel()->textFieldEndDate()->text(), formatted(stop));
    const QRegularExpression shape(QStringLiteral("^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d$"));
    EXPECT_TRUE(shape.match(panel()->textFieldEndDate()->text()).hasMatch());
    EXPECT_EQ(project->pages_count(), 6);
    EXPECT_EQ(project->max_depth(), 3);
    EXPECT_EQ(panel()->textFieldPageAnalysees()->text(), QStringLiteral("6"));
    EXPECT_EQ(panel()->textFieldDepth()->text(), QStringLiteral("3"));

    // The registry on disk.
    const QVariantMap stored = storedProjectAttributes(app.app(), QStringLiteral("site"));
    EXPECT_EQ(stored.value(QStringLiteral("pages_count")).toInt(), 6);
    EXPECT_EQ(stored.value(QStringLiteral("max_depth")).toInt(), 3);
    EXPECT_EQ(stored.value(QStringLiteral("crawler_start_date")).toDateTime().toMSecsSinceEpoch(),
              start.toMSecsSinceEpoch());
    EXPECT_EQ(stored.value(QStringLiteral("crawler_stop_date")).toDateTime().toMSecsSinceEpoch(),
              stop.toMSecsSinceEpoch());

    // The list shows the HTML pages.
    EXPECT_EQ(app.documentsView()->numberOfRowsInTableView(), 4);

    // The vacuum: the links to the PDF and the image are off the home page's count.
    EXPECT_EQ(db.at("~/").out, 2);
    EXPECT_EQ(db.at("~/a.html").out, 2);
    EXPECT_EQ(db.at("~/doc.pdf").in, 1);

    // Idle again.
    EXPECT_FALSE(sheet->isVisible());
    EXPECT_EQ(controller()->progressWindowController(), sheet);
    EXPECT_FALSE(panel()->buttonLancer()->isHidden());
    EXPECT_TRUE(panel()->buttonLancer()->isEnabled());
    EXPECT_TRUE(panel()->buttonFiltres()->isEnabled());
    EXPECT_FALSE(controller()->isBusy());
    EXPECT_TRUE(Alert::shownAlerts().isEmpty());
}

TEST_F(CrawlLifecycleTest, StopFromTheSheetAbandonsAHangingTransferAtOnce)
{
    StallingSite stalling(StallingSite::Stall::AfterHeaders);
    ASSERT_TRUE(stalling.start());
    stalling.page("/", "Home", anchor("a.html", "A") + anchor("stall.html", "Stall"));
    stalling.page("/a.html", "A", "");
    stalling.page("/stall.html", "Stall", "");
    ProjectPtr project = app.createAndShowProject(QStringLiteral("hang"), QString::fromStdString(stalling.base() + "/"));
    CrawlEnds ends(controller());
    panel()->buttonLancer()->click();
    ProgressWindowController* sheet = controller()->progressWindowController();
    ASSERT_TRUE(sheet);
    ASSERT_TRUE(waitUntil([&] { return stalling.hits("/stall.html") == 1; }));
    waitUntil([] { return false; }, 300);  // headers in, the transfer waits for the rest

    QElapsedTimer stopping;
    stopping.start();
    sheet->buttonStop()->click();
    ASSERT_TRUE(ends.waitFor(1, 5000));
    EXPECT_LT(stopping.elapsed(), 1000);
    // The hanging page is neither counted nor done; the end of the crawl ran as usual.
    EXPECT_EQ(project->pages_count(), 2);
    EXPECT_EQ(QuillmereDownloaderQueue::countWaitingDownloaderQueueForProject(project), 1);
    EXPECT_TRUE(project->crawler_stop_date().isValid());
    EXPECT_EQ(storedProjectAttributes(app.app(), QStringLiteral("hang")).value(QStringLiteral("pages_count")).toInt(), 2);

    stalling.release();
    Alert::queueAnswer(1001);
    ASSERT_TRUE(app.crawlThroughStartButton());
    EXPECT_EQ(stalling.hits("/stall.html"), 2);
    EXPECT_EQ(project->pages_count(), 3);
    EXPECT_EQ(QuillmereDownloaderQueue::countWaitingDownloaderQueueForProject(project), 0);
}

// A site slow enough to be stopped in the middle: "/" links to 40 pages, each linking on to
// the next and back home; every answer takes 20 ms.
class StoppedCrawlTest : public CrawlLifecycleTest {
protected:
    static constexpr int kPages = 40;

    void SetUp() override
    {
        CrawlLifecycleTest::SetUp();
        std::string links;
        for (int i = 1; i <= kPages; ++i) {
            const std::string next = "p" + std::to_string(i % kPages + 1) + ".html";
            slowPage("/p" + std::to_string(i) + ".html", htmlPage("P" + std::to_string(i),
                                                                   anchor(next, "Next") + anchor("/", "Home")));
            links += anchor("p" + std::to_string(i) + ".html", "P" + std::to_string(i));
        }
        slowPage("/", htmlPage("Home", links));
    }

    void slowPage(const std::string& path, const std::string& html)
    {
        site.server.route(path, [html](const HttpRequest&, HttpResponse& response) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            response.setContent(html, "text/html; charset=utf-8");
        });
    }

    std::vector<std::string> sortedPages(const ProjectPtr& project)
    {
        auto all = pageLines(project, site.base());
        std::sort(all.begin(), all.end());
        return all;
    }
};

TEST_F(StoppedCrawlTest, StopFromTheSheetEndsTheCrawlThenContinueFinishesIt)
{
    // The same site crawled without a stop, for comparison.
    ProjectPtr whole = app.createAndShowProject(QStringLiteral("whole"), U("/"));
    ASSERT_TRUE(app.crawlThroughStartButton());
    ASSERT_EQ(whole->pages_count(), kPages + 1);
    const auto expected = sortedPages(whole);
    ASSERT_EQ(expected.size(), size_t(kPages + 1));
    const auto firstVacuum = controller()->vacuumOperation();

    ProjectPtr project = app.createAndShowProject(QStringLiteral("parts"), U("/"));
    site.server.clearRequests();
    CrawlEnds ends(controller());
    panel()->buttonLancer()->click();
    ProgressWindowController* sheet = controller()->progressWindowController();
    ASSERT_TRUE(sheet);
    ASSERT_TRUE(waitUntil([&] { return controller()->pageCount() >= 5; }));
    ASSERT_TRUE(sheet->isVisible());
    ASSERT_EQ(ends.count, 0);

    sheet->buttonStop()->click();

    // The sheet is gone at once; the crawl winds down and ends as a finished one does.
    EXPECT_FALSE(sheet->isVisible());
    EXPECT_EQ(sheet->result(), 1);
    EXPECT_FALSE(controller()->downloaderOperation()->canContinue());
    ASSERT_TRUE(ends.waitFor());
    // The page in hand at the stop (the fifth) was still downloading: it is given up, not
    // counted, and waits in the queue.
    const qint32 started = project->pages_count();
    EXPECT_GE(started, 4);
    EXPECT_LT(started, kPages / 2);
    const qint64 waiting = QuillmereDownloaderQueue::countWaitingDownloaderQueueForProject(project);
    EXPECT_GT(waiting, 0);
    EXPECT_EQ(QuillmerePage::countPagesForProject(project), kPages + 1);
    expectWeights(project);
    EXPECT_EQ(crawltest::Db(project, site.base()).at("~/").weight, double(started - 1));
    ASSERT_TRUE(project->crawler_stop_date().isValid());
    EXPECT_GE(project->crawler_stop_date(), project->crawler_start_date());
    EXPECT_EQ(panel()->textFieldEndDate()->text(), formatted(project->crawler_stop_date()));
    EXPECT_EQ(project->max_depth(), 2);
    const QVariantMap stored = storedProjectAttributes(app.app(), QStringLiteral("parts"));
    EXPECT_EQ(stored.value(QStringLiteral("pages_count")).toInt(), started);
    EXPECT_EQ(stored.value(QStringLiteral("crawler_stop_date")).toDateTime().toMSecsSinceEpoch(),
              project->crawler_stop_date().toMSecsSinceEpoch());
    EXPECT_EQ(app.documentsView()->numberOfRowsInTableView(), started);
    ASSERT_TRUE(controller()->vacuumOperation());
    EXPECT_NE(controller()->vacuumOperation(), firstVacuum);
    EXPECT_TRUE(controller()->vacuumOperation()->isFinished());
    EXPECT_FALSE(sheet->isVisible());
    EXPECT_FALSE(panel()->buttonLancer()->isHidden());
    EXPECT_TRUE(panel()->buttonLancer()->isEnabled());

    // Continue: the waiting pages are crawled, none of the analysed ones again.
    Alert::queueAnswer(1001);
    ASSERT_TRUE(app.crawlThroughStartButton());
    ASSERT_EQ(Alert::shownAlerts().size(), 1);
    EXPECT_EQ(Alert::shownAlerts().first().buttons.size(), 3);
    EXPECT_EQ(QuillmereDownloaderQueue::countWaitingDownloaderQueueForProject(project), 0);
    EXPECT_EQ(sortedPages(project), expected);
    EXPECT_EQ(project->pages_count(), kPages + 1);
    EXPECT_EQ(app.documentsView()->numberOfRowsInTableView(), kPages + 1);
    // Only the pages whose transfers the stop abandoned (one per request in flight) may have
    // been asked for twice.
    int twice = 0;
    for (int i = 1; i <= kPages; ++i) {
        const int hits = site.hits("/p" + std::to_string(i) + ".html");
        EXPECT_TRUE(hits == 1 || hits == 2) << i << ": " << hits;
        twice += hits == 2 ? 1 : 0;
    }
    EXPECT_LE(twice, DownloaderOperationLibXML::kDefaultParallelFetches);
    EXPECT_EQ(site.hits("/"), 1);
}

} // namespace
