// The filter sheet: its controls as the filter in force sets them, the rules that keep one
// filter at a time, and the delegate action its validation calls.
#include "AppTestSupport.h"

#include "app/PagesFilterDelegate.h"
#include "app/PagesFilterWindowController.h"
#include "store/Localization.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QRadioButton>
#include <QTest>

#include <memory>

using namespace apptest;

namespace {

// Records the filter actions in the order they were called.
class RecordingFilterDelegate : public PagesFilterDelegate {
public:
    void doFilterNone() override { calls << "none"; }
    void doFilter404All() override { calls << "404All"; }
    void doFilter404OnlyHTML() override { calls << "404OnlyHTML"; }
    void doFilter404NotHTML() override { calls << "404NotHTML"; }
    void doFilterNoIndex() override { calls << "noIndex"; }
    void doFilterCanonical() override { calls << "canonical"; }
    QStringList calls;
};

// A sheet on screen (so that mouse clicks reach its controls), opened on a filter code.
struct FilterSheet {
    explicit FilterSheet(qint32 code) : sheet(PagesFilterWindowController::initWithDelegate(&delegate, code))
    {
        sheet->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(sheet.get()));
    }
    PagesFilterWindowController* operator->() const { return sheet.get(); }

    RecordingFilterDelegate delegate;
    std::unique_ptr<PagesFilterWindowController> sheet;
};

// A mouse click on a check box or radio button, on its indicator at the left.
void clickOn(QAbstractButton* button)
{
    QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, QPoint(6, button->height() / 2));
}

struct ControlState {
    bool check404;
    bool radioGroupEnabled;
    QRadioButton* radio;  // the one radio checked, or none
    bool noIndex;
    bool canonical;
};

void expectControls(const FilterSheet& s, const ControlState& expected)
{
    EXPECT_EQ(s->check404()->isChecked(), expected.check404);
    EXPECT_EQ(s->radioGroup()->isEnabled(), expected.radioGroupEnabled);
    EXPECT_EQ(s->radio404All()->isChecked(), expected.radio == s->radio404All());
    EXPECT_EQ(s->radio404OnlyHTML()->isChecked(), expected.radio == s->radio404OnlyHTML());
    EXPECT_EQ(s->radio404NotHTML()->isChecked(), expected.radio == s->radio404NotHTML());
    EXPECT_EQ(s->checkNoIndex()->isChecked(), expected.noIndex);
    EXPECT_EQ(s->checkCanonical()->isChecked(), expected.canonical);
}

} // namespace

TEST(PagesFilterSheet, OpensOnNoFilterWithEverythingOff)
{
    LaunchedApp app;
    FilterSheet s(0);
    expectControls(s, {false, false, nullptr, false, false});
    EXPECT_EQ(s->filterAction(), 0);
}

TEST(PagesFilterSheet, OpensOnEach404VariantWithItsRadio)
{
    LaunchedApp app;
    FilterSheet all(1);
    expectControls(all, {true, true, all->radio404All(), false, false});
    FilterSheet html(2);
    expectControls(html, {true, true, html->radio404OnlyHTML(), false, false});
    FilterSheet notHtml(3);
    expectControls(notHtml, {true, true, notHtml->radio404NotHTML(), false, false});
}

TEST(PagesFilterSheet, OpensOnNoIndexAndOnCanonical)
{
    LaunchedApp app;
    FilterSheet noIndex(4);
    expectControls(noIndex, {false, false, nullptr, true, false});
    FilterSheet canonical(5);
    expectControls(canonical, {false, false, nullptr, false, true});
}

TEST(PagesFilterSheet, AnUnknownCodeLeavesTheControlsAsLaidOut)
{
    LaunchedApp app;
    for (qint32 code : {6, 42, -1}) {
        FilterSheet s(code);
        // Nothing set: the radio group keeps the enabled state of its layout, unlike code 0.
        expectControls(s, {false, true, nullptr, false, false});
        EXPECT_EQ(s->filterAction(), code);
        s->buttonLocValider()->click();
        EXPECT_EQ(s.delegate.calls, QStringList{"none"}) << code;
    }
}

TEST(PagesFilterSheet, CaptionsAreFrench)
{
    LaunchedApp app;
    FilterSheet s(0);
    EXPECT_EQ(s->check404()->text(), "Pages en erreur 404");
    EXPECT_EQ(s->radio404All()->text(), "Tous types");
    EXPECT_EQ(s->radio404OnlyHTML()->text(), "HTML uniquement");
    EXPECT_EQ(s->radio404NotHTML()->text(), "Autres que HTML");
    EXPECT_EQ(s->checkNoIndex()->text(), "Pages en noindex");
    EXPECT_EQ(s->checkCanonical()->text(), "Pages avec un lien canonique");
    EXPECT_EQ(s->buttonLocValider()->text(), "Valider");
    EXPECT_EQ(s->buttonLocAnnuler()->text(), "Annuler");
    QStringList boxTitles;
    for (auto* box : s.sheet->findChildren<QGroupBox*>())
        boxTitles << box->title();
    EXPECT_TRUE(boxTitles.contains("Pages introuvables"));
    EXPECT_TRUE(boxTitles.contains("Indexation"));
    EXPECT_TRUE(boxTitles.contains("Canonique"));
}

TEST(PagesFilterSheet, Checking404ClearsTheOthersAndSelectsAllTypes)
{
    LaunchedApp app;
    FilterSheet s(4);
    clickOn(s->check404());
    expectControls(s, {true, true, s->radio404All(), false, false});
    EXPECT_EQ(s->filterAction(), 1);

    FilterSheet c(5);
    clickOn(c->check404());
    expectControls(c, {true, true, c->radio404All(), false, false});
    EXPECT_EQ(c->filterAction(), 1);
}

TEST(PagesFilterSheet, Unchecking404DisablesTheRadiosAndFallsBackToNone)
{
    LaunchedApp app;
    FilterSheet s(3);
    clickOn(s->check404());
    EXPECT_FALSE(s->check404()->isChecked());
    EXPECT_FALSE(s->radioGroup()->isEnabled());
    EXPECT_EQ(s->filterAction(), 0);
    // A disabled radio does not answer the mouse.
    clickOn(s->radio404OnlyHTML());
    EXPECT_EQ(s->filterAction(), 0);
}

TEST(PagesFilterSheet, EachRadioSetsItsCode)
{
    LaunchedApp app;
    FilterSheet s(1);
    clickOn(s->radio404OnlyHTML());
    EXPECT_TRUE(s->radio404OnlyHTML()->isChecked());
    EXPECT_FALSE(s->radio404All()->isChecked());
    EXPECT_EQ(s->filterAction(), 2);
    clickOn(s->radio404NotHTML());
    EXPECT_TRUE(s->radio404NotHTML()->isChecked());
    EXPECT_FALSE(s->radio404OnlyHTML()->isChecked());
    EXPECT_EQ(s->filterAction(), 3);
    clickOn(s->radio404All());
    EXPECT_TRUE(s->radio404All()->isChecked());
    EXPECT_EQ(s->filterAction(), 1);
}

TEST(PagesFilterSheet, CheckingNoIndexClears404AndCanonical)
{
    LaunchedApp app;
    FilterSheet s(2);
    clickOn(s->checkNoIndex());
    EXPECT_TRUE(s->checkNoIndex()->isChecked());
    EXPECT_FALSE(s->check404()->isChecked());
    EXPECT_FALSE(s->radioGroup()->isEnabled());
    EXPECT_FALSE(s->checkCanonical()->isChecked());
    EXPECT_EQ(s->filterAction(), 4);

    FilterSheet c(5);
    clickOn(c->checkNoIndex());
    expectControls(c, {false, false, nullptr, true, false});
    EXPECT_EQ(c->filterAction(), 4);
}

TEST(PagesFilterSheet, CheckingCanonicalClears404AndNoIndex)
{
    LaunchedApp app;
    FilterSheet s(1);
    clickOn(s->checkCanonical());
    EXPECT_TRUE(s->checkCanonical()->isChecked());
    EXPECT_FALSE(s->check404()->isChecked());
    EXPECT_FALSE(s->radioGroup()->isEnabled());
    EXPECT_FALSE(s->checkNoIndex()->isChecked());
    EXPECT_EQ(s->filterAction(), 5);

    FilterSheet n(4);
    clickOn(n->checkCanonical());
    expectControls(n, {false, false, nullptr, false, true});
    EXPECT_EQ(n->filterAction(), 5);
}

TEST(PagesFilterSheet, UncheckingNoIndexOrCanonicalFallsBackToNone)
{
    LaunchedApp app;
    FilterSheet n(4);
    clickOn(n->checkNoIndex());
    EXPECT_FALSE(n->checkNoIndex()->isChecked());
    EXPECT_EQ(n->filterAction(), 0);
    FilterSheet c(5);
    clickOn(c->checkCanonical());
    EXPECT_FALSE(c->checkCanonical()->isChecked());
    EXPECT_EQ(c->filterAction(), 0);
}

TEST(PagesFilterSheet, UpdateFilterActionKeepsTheCodeWhileABoxIsChecked)
{
    LaunchedApp app;
    FilterSheet s(2);
    s->updateFilterAction();
    EXPECT_EQ(s->filterAction(), 2);
    s->check404()->setChecked(false);
    s->updateFilterAction();
    EXPECT_EQ(s->filterAction(), 0);
}

TEST(PagesFilterSheet, ReopeningThe404BoxGoesBackToAllTypes)
{
    LaunchedApp app;
    FilterSheet s(2);
    expectControls(s, {true, true, s->radio404OnlyHTML(), false, false});
    clickOn(s->check404());
    EXPECT_FALSE(s->radioGroup()->isEnabled());
    clickOn(s->check404());
    expectControls(s, {true, true, s->radio404All(), false, false});
    EXPECT_EQ(s->filterAction(), 1);
    s->buttonLocValider()->click();
    EXPECT_EQ(s.delegate.calls, QStringList{"404All"});
}

TEST(PagesFilterSheet, UncheckingTheOnlyBoxValidatesAsNone)
{
    LaunchedApp app;
    for (qint32 code : {1, 4, 5}) {
        FilterSheet s(code);
        QAbstractButton* box = code == 1 ? static_cast<QAbstractButton*>(s->check404())
                               : code == 4 ? s->checkNoIndex()
                                           : s->checkCanonical();
        clickOn(box);
        s->buttonLocValider()->click();
        EXPECT_EQ(s.delegate.calls, QStringList{"none"}) << code;
        EXPECT_EQ(s->result(), 1);
        EXPECT_FALSE(s->isVisible());
    }
}

TEST(PagesFilterSheet, ValidateCallsTheActionOfTheCode)
{
    LaunchedApp app;
    const QStringList expected{"none", "404All", "404OnlyHTML", "404NotHTML", "noIndex", "canonical"};
    for (qint32 code = 0; code <= 5; ++code) {
        FilterSheet s(code);
        s->buttonLocValider()->click();
        EXPECT_EQ(s.delegate.calls, QStringList{expected[code]}) << code;
        EXPECT_EQ(s->result(), 1);
    }
}

TEST(PagesFilterSheet, ValidateAfterClicksCallsTheChosenAction)
{
    LaunchedApp app;
    FilterSheet s(0);
    clickOn(s->check404());
    clickOn(s->radio404NotHTML());
    s->buttonLocValider()->click();
    EXPECT_EQ(s.delegate.calls, QStringList{"404NotHTML"});
}

TEST(PagesFilterSheet, CancelTellsNobody)
{
    LaunchedApp app;
    FilterSheet s(0);
    clickOn(s->checkCanonical());
    s->buttonLocAnnuler()->click();
    EXPECT_TRUE(s.delegate.calls.isEmpty());
    EXPECT_EQ(s->result(), 0);
    EXPECT_FALSE(s->isVisible());
}

TEST(PagesFilterSheet, ReturnValidatesAndEscapeCancels)
{
    LaunchedApp app;
    app.window()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(app.window()));
    app.app()->actionDoFilters();
    PagesFilterWindowController* sheet = app.controller()->pageFilterWindowController();
    ASSERT_TRUE(sheet);
    ASSERT_TRUE(sheet->isVisible());
    clickOn(sheet->checkNoIndex());
    QTest::keyClick(sheet, Qt::Key_Return);
    EXPECT_FALSE(sheet->isVisible());
    EXPECT_EQ(sheet->result(), 1);
    EXPECT_EQ(app.app()->currentFilter(), 4);

    app.app()->actionDoFilters();
    sheet = app.controller()->pageFilterWindowController();
    ASSERT_TRUE(sheet);
    EXPECT_TRUE(sheet->checkNoIndex()->isChecked());
    clickOn(sheet->checkCanonical());
    QTest::keyClick(sheet, Qt::Key_Escape);
    EXPECT_FALSE(sheet->isVisible());
    EXPECT_EQ(sheet->result(), 0);
    EXPECT_EQ(app.app()->currentFilter(), 4);
}

TEST(PagesFilterSheet, CancelKeepsTheListAndTheFilterInForce)
{
    LaunchedApp app;
    app.createAndShowProject("site", "http://127.0.0.1:9/");
    app.app()->doFilter404All();
    const QString title = app.documentsView()->title();
    EXPECT_EQ(title, "0 document en 404 tous types référencé");

    app.app()->actionDoFilters();
    PagesFilterWindowController* sheet = app.controller()->pageFilterWindowController();
    ASSERT_TRUE(sheet);
    EXPECT_TRUE(sheet->check404()->isChecked());
    EXPECT_TRUE(sheet->radio404All()->isChecked());
    sheet->checkCanonical()->click();
    EXPECT_EQ(sheet->filterAction(), 5);
    sheet->buttonLocAnnuler()->click();
    EXPECT_EQ(sheet->result(), 0);
    EXPECT_EQ(app.app()->currentFilter(), 1);
    EXPECT_EQ(app.documentsView()->title(), title);
}

TEST(PagesFilterSheet, ValidateAppliesTheFilterToTheList)
{
    LaunchedApp app;
    app.createAndShowProject("site", "http://127.0.0.1:9/");
    app.app()->actionDoFilters();
    PagesFilterWindowController* sheet = app.controller()->pageFilterWindowController();
    ASSERT_TRUE(sheet);
    sheet->checkCanonical()->click();
    sheet->buttonLocValider()->click();
    EXPECT_EQ(app.app()->currentFilter(), 5);
    EXPECT_EQ(app.documentsView()->title(), "0 document canonisé référencé");
}
