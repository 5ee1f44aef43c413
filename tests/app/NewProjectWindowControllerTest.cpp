// The new-project sheet: what it reads from its fields, what it tells its delegate, how it
// ends, and its French captions.
#include "AppTestSupport.h"

#include "app/NewProjectControllerDelegate.h"
#include "app/NewProjectWindowController.h"
#include "store/LinkRules.h"

#include <QComboBox>
#include <QFileInfo>

#include <QGroupBox>
#include <QLineEdit>
#include <QTest>

#include <memory>
#include <optional>

using namespace apptest;

namespace {

struct Validation {
    NewProjectWindowController* controller;
    QString name;
    QString url;
    qint32 limitDepth;
    qint32 limitPageCount;
};

class RecordingNewProjectDelegate : public NewProjectControllerDelegate {
public:
    void createProjectValidateWithController(NewProjectWindowController* controller, const QString& projectName,
                                             const QString& projectURL, qint32 limitDepth, qint32 limitPageCount) override
    {
        validations.push_back({controller, projectName, projectURL, limitDepth, limitPageCount});
    }
    void createProjectCancelWithController(NewProjectWindowController* controller) override
    {
        cancels.push_back(controller);
    }
    std::vector<Validation> validations;
    std::vector<NewProjectWindowController*> cancels;
};

// A sheet on screen with its own recording delegate.
struct NewSheet {
    NewSheet() : sheet(NewProjectWindowController::initWithDelegate(&delegate))
    {
        sheet->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(sheet.get()));
    }
    NewProjectWindowController* operator->() const { return sheet.get(); }

    // Types the fields as a user would, then presses the validate button; the delegate's
    // record of it, if it was told.
    std::optional<Validation> validate(const QString& name, const QString& url, const QString& depth = QString(),
                                       const QString& pageCount = QString())
    {
        type(sheet->textFieldName(), name);
        type(sheet->textFieldURL(), url);
        type(sheet->textFieldLimitDepth(), depth);
        type(sheet->textFieldLimitPageCount(), pageCount);
        const size_t before = delegate.validations.size();
        sheet->buttonLocValider()->click();
        if (delegate.validations.size() == before)
            return std::nullopt;
        return delegate.validations.back();
    }
    static void type(QLineEdit* field, const QString& text)
    {
        field->clear();
        QTest::keyClicks(field, text);
        EXPECT_EQ(field->text(), text);
    }

    RecordingNewProjectDelegate delegate;
    std::unique_ptr<NewProjectWindowController> sheet;
};

QStringList texts(const QWidget* parent)
{
    QStringList all;
    for (auto* label : parent->findChildren<QLabel*>())
        all << label->text();
    for (auto* box : parent->findChildren<QGroupBox*>())
        all << box->title();
    return all;
}

} // namespace

TEST(NewProjectSheet, OneTrailingSlashIsRemoved)
{
    LaunchedApp app;
    NewSheet s;
    auto v = s.validate("site", "http://example.com/");
    ASSERT_TRUE(v);
    EXPECT_EQ(v->url, "http://example.com");
    EXPECT_EQ(v->controller, s.sheet.get());
}

TEST(NewProjectSheet, TwoTrailingSlashesKeepOne)
{
    LaunchedApp app;
    NewSheet s;
    auto v = s.validate("site", "http://example.com/dir//");
    ASSERT_TRUE(v);
    EXPECT_EQ(v->url, "http://example.com/dir/");
}

TEST(NewProjectSheet, TheURLIsTrimmedBeforeItsSlashIsRemoved)
{
    LaunchedApp app;
    NewSheet s;
    auto v = s.validate("site", "  http://example.com/a/  ");
    ASSERT_TRUE(v);
    EXPECT_EQ(v->url, "http://example.com/a");
    NewSheet tab;
    tab->textFieldURL()->setText("\thttp://example.com/b/\n");
    tab->buttonLocValider()->click();
    ASSERT_EQ(tab.delegate.validations.size(), 1u);
    EXPECT_EQ(tab.delegate.validations[0].url, "http://example.com/b");
    NewSheet t;
    auto w = t.validate("site", "http://example.com/page.html");
    ASSERT_TRUE(w);
    EXPECT_EQ(w->url, "http://example.com/page.html");
}

TEST(NewProjectSheet, EmptyLimitsMeanNoLimit)
{
    LaunchedApp app;
    NewSheet s;
    auto v = s.validate("site", "http://example.com");
    ASSERT_TRUE(v);
    EXPECT_EQ(v->limitDepth, -1);
    EXPECT_EQ(v->limitPageCount, -1);
}

TEST(NewProjectSheet, ANumberAfterBlanksIsRead)
{
    LaunchedApp app;
    NewSheet s;
    auto v = s.validate("site", "http://example.com", "   3", " 250 ");
    ASSERT_TRUE(v);
    EXPECT_EQ(v->limitDepth, 3);
    EXPECT_EQ(v->limitPageCount, 250);
    NewSheet t;
    auto w = t.validate("site", "http://example.com", "-1", "0");
    ASSERT_TRUE(w);
    EXPECT_EQ(w->limitDepth, -1);
    EXPECT_EQ(w->limitPageCount, 0);
}

TEST(NewProjectSheet, ALimitThatIsNotAWholeNumberOfMinusOneOrMoreIsRefused)
{
    LaunchedApp app;
    struct Case { const char* depth; const char* pages; const char* message; };
    const Case cases[] = {
        {"abc", "", "« abc » n'est pas une profondeur maximale : un nombre entier, -1 ou plus (vide : pas de limite)."},
        {"-4", "", "« -4 » n'est pas une profondeur maximale : un nombre entier, -1 ou plus (vide : pas de limite)."},
        {"12 levels", "", "« 12 levels » n'est pas une profondeur maximale : un nombre entier, -1 ou plus (vide : pas de limite)."},
        {"2", "-5", "« -5 » n'est pas un nombre maximal de pages : un nombre entier, -1 ou plus (vide : pas de limite)."},
        {"", "7x9", "« 7x9 » n'est pas un nombre maximal de pages : un nombre entier, -1 ou plus (vide : pas de limite)."},
        {"", "1.5", "« 1.5 » n'est pas un nombre maximal de pages : un nombre entier, -1 ou plus (vide : pas de limite)."},
    };
    for (const Case& c : cases) {
        NewSheet s;
        EXPECT_FALSE(s.validate("site", "http://example.com", c.depth, c.pages)) << c.depth << " / " << c.pages;
        EXPECT_TRUE(s->isVisible());
        EXPECT_TRUE(s->labelError()->isVisible());
        EXPECT_EQ(s->labelError()->text(), QString::fromUtf8(c.message));
        EXPECT_TRUE(s.delegate.cancels.empty());
    }
}

TEST(NewProjectSheet, AnAddressThatIsNotHttpOrHttpsWithAHostIsRefused)
{
    LaunchedApp app;
    struct Case { const char* url; const char* message; };
    const Case cases[] = {
        {"notaurl", "'notaurl' n'est pas une URL http ou https."},
        {"ftp://example.com", "'ftp://example.com' n'est pas une URL http ou https."},
        {"http://", "L'URL 'http:/' ne nomme aucun hôte."},
    };
    for (const Case& c : cases) {
        NewSheet s;
        EXPECT_FALSE(s.validate("site", c.url)) << c.url;
        EXPECT_TRUE(s->isVisible());
        EXPECT_TRUE(s->labelError()->isVisible());
        EXPECT_EQ(s->labelError()->text(), QString::fromUtf8(c.message)) << c.url;
        EXPECT_TRUE(s->textFieldURL()->hasFocus() || !s->isActiveWindow());
        // Once the address is right the sheet goes on and the message goes away.
        auto v = s.validate("site", "https://example.com/");
        ASSERT_TRUE(v);
        EXPECT_EQ(v->url, "https://example.com");
        EXPECT_FALSE(s->labelError()->isVisible());
    }
}

TEST(NewProjectSheet, ARefusedSheetCreatesNothing)
{
    LaunchedApp app;
    app.window()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(app.window()));
    const QStringList fields[] = {{"notaurl", "", ""}, {"http://127.0.0.1:9/", "abc", ""}, {"http://127.0.0.1:9/", "", "-5"}};
    for (const QStringList& typed : fields) {
        app.app()->createProject();
        NewProjectWindowController* sheet = app.controller()->projectWindowController();
        ASSERT_TRUE(sheet);
        sheet->textFieldName()->setText("site");
        sheet->textFieldURL()->setText(typed[0]);
        sheet->textFieldLimitDepth()->setText(typed[1]);
        sheet->textFieldLimitPageCount()->setText(typed[2]);
        sheet->buttonLocValider()->click();
        EXPECT_TRUE(sheet->isVisible()) << qPrintable(typed.join('|'));
        EXPECT_TRUE(sheet->labelError()->isVisible());
        EXPECT_EQ(Project::countProjects(), 0);
        EXPECT_FALSE(app.documentsView()->currentProject());
        // No alert either: the sheet said it.
        EXPECT_TRUE(Alert::shownAlerts().isEmpty());
        sheet->buttonLocAnnuler()->click();
    }
    EXPECT_FALSE(QFileInfo::exists(app.dir.path() + "/site.sqlite"));
}

TEST(NewProjectSheet, TheNameIsPassedAsTyped)
{
    LaunchedApp app;
    NewSheet s;
    auto v = s.validate("  Mon site  ", "http://example.com");
    ASSERT_TRUE(v);
    EXPECT_EQ(v->name, "  Mon site  ");
    NewSheet t;
    auto w = t.validate("", "http://example.com");
    ASSERT_TRUE(w);
    EXPECT_EQ(w->name, "");
}

TEST(NewProjectSheet, ValidateEndsWithOneAndCancelWithZero)
{
    LaunchedApp app;
    NewSheet s;
    ASSERT_TRUE(s.validate("site", "http://example.com"));
    EXPECT_EQ(s->result(), 1);
    EXPECT_FALSE(s->isVisible());
    EXPECT_TRUE(s.delegate.cancels.empty());

    NewSheet c;
    c->textFieldURL()->setText("http://example.com");
    c->buttonLocAnnuler()->click();
    EXPECT_EQ(c->result(), 0);
    EXPECT_FALSE(c->isVisible());
    ASSERT_EQ(c.delegate.cancels.size(), 1u);
    EXPECT_EQ(c.delegate.cancels[0], c.sheet.get());
    EXPECT_TRUE(c.delegate.validations.empty());
}

TEST(NewProjectSheet, AnEmptyURLIsRefused)
{
    LaunchedApp app;
    for (const QString& url : {QString(), QStringLiteral("   "), QStringLiteral("/"), QStringLiteral(" / ")}) {
        NewSheet s;
        EXPECT_FALSE(s.validate("site", url)) << qPrintable(url);
        EXPECT_TRUE(s->isVisible());
        EXPECT_TRUE(s->labelError()->isVisible());
        EXPECT_EQ(s->labelError()->text(), "Indiquez l'adresse du site, par exemple https://www.exemple.fr.");
        EXPECT_TRUE(s.delegate.cancels.empty());

        // Once an address is given the sheet goes on and the message goes away.
        auto v = s.validate("site", "http://example.com");
        ASSERT_TRUE(v);
        EXPECT_FALSE(s->labelError()->isVisible());
        EXPECT_FALSE(s->isVisible());
    }
}

TEST(NewProjectSheet, AnEmptyURLCreatesNoProject)
{
    LaunchedApp app;
    app.window()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(app.window()));
    app.app()->createProject();
    NewProjectWindowController* sheet = app.controller()->projectWindowController();
    ASSERT_TRUE(sheet);
    sheet->textFieldName()->setText("site");
    sheet->buttonLocValider()->click();
    EXPECT_TRUE(sheet->isVisible());
    EXPECT_TRUE(sheet->labelError()->isVisible());
    EXPECT_EQ(Project::countProjects(), 0);
    EXPECT_FALSE(app.documentsView()->currentProject());
}

TEST(NewProjectSheet, CaptionsAndPlaceholdersAreFrench)
{
    LaunchedApp app;
    NewSheet s;
    EXPECT_EQ(s->windowTitle(), "Nouveau projet");
    const QStringList all = texts(s.sheet.get());
    for (const char* expected : {"Projet", "Nom du projet :", "URL du site :", "Paramètres", "Profondeur maximale :",
                                 "Nombre maximal de pages analysées :"})
        EXPECT_TRUE(all.contains(QString::fromUtf8(expected))) << expected;
    EXPECT_EQ(s->textFieldLimitDepth()->placeholderText(), "vide : pas de limite");
    EXPECT_EQ(s->textFieldLimitPageCount()->placeholderText(), "vide : pas de limite");
    EXPECT_EQ(s->buttonLocValider()->text(), "Valider");
    EXPECT_EQ(s->buttonLocAnnuler()->text(), "Annuler");
}

TEST(NewProjectSheet, ReturnValidatesOnTheMainWindow)
{
    LaunchedApp app;
    app.window()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(app.window()));
    RecordingNewProjectDelegate delegate;
    auto* sheet = NewProjectWindowController::initWithDelegate(&delegate);
    app.controller()->setProjectWindowController(sheet);
    sheet->displaySheetInWindow(app.window());
    EXPECT_EQ(sheet->parentWindow(), app.window());
    ASSERT_TRUE(sheet->isVisible());
    EXPECT_EQ(sheet->windowModality(), Qt::WindowModal);

    sheet->textFieldName()->setText("site");
    sheet->textFieldURL()->setText("http://example.com/");
    sheet->textFieldLimitDepth()->setText("2");
    QTest::keyClick(sheet, Qt::Key_Return);
    ASSERT_EQ(delegate.validations.size(), 1u);
    EXPECT_EQ(delegate.validations[0].url, "http://example.com");
    EXPECT_EQ(delegate.validations[0].limitDepth, 2);
    EXPECT_EQ(delegate.validations[0].limitPageCount, -1);
    EXPECT_EQ(sheet->result(), 1);
    EXPECT_FALSE(sheet->isVisible());
    EXPECT_TRUE(delegate.cancels.empty());
}

TEST(NewProjectSheet, EscapeCancelsOnTheMainWindow)
{
    LaunchedApp app;
    app.window()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(app.window()));
    RecordingNewProjectDelegate delegate;
    auto* sheet = NewProjectWindowController::initWithDelegate(&delegate);
    app.controller()->setProjectWindowController(sheet);
    sheet->displaySheetInWindow(app.window());
    ASSERT_TRUE(sheet->isVisible());
    sheet->textFieldURL()->setText("http://example.com");
    QTest::keyClick(sheet, Qt::Key_Escape);
    EXPECT_TRUE(delegate.validations.empty());
    ASSERT_EQ(delegate.cancels.size(), 1u);
    EXPECT_EQ(sheet->result(), 0);
    EXPECT_FALSE(sheet->isVisible());
}

TEST(NewProjectSheet, ValidatingThroughTheApplicationCreatesAndShowsTheProject)
{
    LaunchedApp app;
    app.window()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(app.window()));
    app.app()->createProject();
    NewProjectWindowController* sheet = app.controller()->projectWindowController();
    ASSERT_TRUE(sheet);
    ASSERT_TRUE(sheet->isVisible());
    QTest::keyClicks(sheet->textFieldName(), "exemple");
    QTest::keyClicks(sheet->textFieldURL(), "http://127.0.0.1:9/site/");
    QTest::keyClicks(sheet->textFieldLimitPageCount(), "10");
    QTest::keyClick(sheet->textFieldLimitPageCount(), Qt::Key_Return);
    EXPECT_FALSE(sheet->isVisible());
    EXPECT_EQ(sheet->result(), 1);

    ProjectPtr project = Project::getProjectWithName("exemple");
    ASSERT_TRUE(project);
    EXPECT_EQ(project->url(), "http://127.0.0.1:9/site");
    EXPECT_EQ(project->limit_depth(), -1);
    EXPECT_EQ(project->limit_page_count(), 10);
    ASSERT_TRUE(app.documentsView()->currentProject());
    EXPECT_EQ(app.documentsView()->currentProject()->name(), "exemple");
}

TEST(NewProjectSheet, TheLinkRulesAreClassicUnlessWebIsChosen)
{
    LaunchedApp app;
    app.window()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(app.window()));
    const auto makeProject = [&](const char* name, bool chooseWeb) {
        app.app()->createProject();
        NewProjectWindowController* sheet = app.controller()->projectWindowController();
        ASSERT_TRUE(sheet);
        ASSERT_EQ(sheet->popUpLinkRules()->count(), 2);
        EXPECT_EQ(sheet->popUpLinkRules()->currentIndex(), 0);
        EXPECT_EQ(sheet->popUpLinkRules()->itemText(1), QStringLiteral("Web (liens lus comme par un navigateur)"));
        if (chooseWeb)
            sheet->popUpLinkRules()->setCurrentIndex(1);
        QTest::keyClicks(sheet->textFieldName(), name);
        QTest::keyClicks(sheet->textFieldURL(), "http://127.0.0.1:9/site/");
        QTest::keyClick(sheet->textFieldURL(), Qt::Key_Return);
        EXPECT_FALSE(sheet->isVisible());
    };
    makeProject("classique", false);
    makeProject("navigateur", true);
    const ProjectPtr classic = Project::getProjectWithName("classique");
    const ProjectPtr web = Project::getProjectWithName("navigateur");
    ASSERT_TRUE(classic);
    ASSERT_TRUE(web);
    EXPECT_EQ(LinkRulesStore::of(classic), LinkRules::Classic);
    EXPECT_EQ(LinkRulesStore::of(web), LinkRules::Web);
}
