#include "app/NewProjectWindowController.h"

#include "app/AppSettings.h"
#include "app/NewProjectControllerDelegate.h"
#include "app/ProjectRefusalAlert.h"
#include "html/StringOperations.h"
#include "base/DebugTrace.h"
#include "store/Localization.h"
#include "store/ProjectRules.h"
#include "store/StringTable.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

using Localization::localizedString;

NewProjectWindowController::NewProjectWindowController(NewProjectControllerDelegate* delegate)
    : SheetWindowController(QStringLiteral("NewProjectWindowController")), delegate_(delegate)
{
    textFieldName_ = new QLineEdit;
    textFieldName_->setObjectName(QStringLiteral("textFieldName"));
    textFieldURL_ = new QLineEdit;
    textFieldURL_->setObjectName(QStringLiteral("textFieldURL"));
    textFieldURL_->setMinimumWidth(360);
    textFieldLimitDepth_ = new QLineEdit;
    textFieldLimitDepth_->setObjectName(QStringLiteral("textFieldLimitDepth"));
    textFieldLimitPageCount_ = new QLineEdit;
    textFieldLimitPageCount_->setObjectName(QStringLiteral("textFieldLimitPageCount"));

    boxLocProject_ = new QGroupBox;
    labelLocNomProject_ = new QLabel;
    labelLocUrlSite_ = new QLabel;
    auto* projectForm = new QFormLayout(boxLocProject_);
    projectForm->addRow(labelLocNomProject_, textFieldName_);
    projectForm->addRow(labelLocUrlSite_, textFieldURL_);

    boxLocParametres_ = new QGroupBox;
    labelLocProfondeurMax_ = new QLabel;
    labelLocNomMaxPageScannees_ = new QLabel;
    auto* limitsForm = new QFormLayout(boxLocParametres_);
    limitsForm->addRow(labelLocProfondeurMax_, textFieldLimitDepth_);
    limitsForm->addRow(labelLocNomMaxPageScannees_, textFieldLimitPageCount_);
    labelLocRegles_ = new QLabel;
    popUpLinkRules_ = new QComboBox;
    popUpLinkRules_->setObjectName(QStringLiteral("popUpLinkRules"));
    limitsForm->addRow(labelLocRegles_, popUpLinkRules_);

    labelError_ = new QLabel;
    labelError_->setObjectName(QStringLiteral("labelError"));
    labelError_->setStyleSheet(QStringLiteral("color: #b00020;"));
    labelError_->setWordWrap(true);
    labelError_->hide();

    QHBoxLayout* buttons = buttonRow(&buttonLocAnnuler_, &buttonLocValider_, [this] { actionValider(); });

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(boxLocProject_);
    layout->addWidget(boxLocParametres_);
    layout->addWidget(labelError_);
    layout->addLayout(buttons);
    windowDidLoad();
}

void NewProjectWindowController::windowDidLoad()
{
    setWindowTitle(localizedString("CreateProjectWindowTitle"));
    boxLocProject_->setTitle(localizedString("CreateProjectBoxProject"));
    labelLocNomProject_->setText(localizedString("CreateProjectLabelNomProject"));
    labelLocUrlSite_->setText(localizedString("CreateProjectLabelUrlSite"));
    boxLocParametres_->setTitle(localizedString("CreateProjectBoxParametres"));
    labelLocProfondeurMax_->setText(localizedString("CreateProjectLabelProfondeurMax"));
    labelLocNomMaxPageScannees_->setText(localizedString("CreateProjectLabelNombreMaxScan"));
    labelLocRegles_->setText(localizedString("CreateProjectLabelRegles"));
    // Classic first: the rules a project gets unless the user asks for the others.
    popUpLinkRules_->clear();
    popUpLinkRules_->addItem(localizedString("CreateProjectReglesClassic"), int(LinkRules::Classic));
    popUpLinkRules_->addItem(localizedString("CreateProjectReglesWeb"), int(LinkRules::Web));
    // The rules chosen for the last project made come first again.
    popUpLinkRules_->setCurrentIndex(AppSettings::lastLinkRules() == LinkRules::Web ? 1 : 0);
    popUpLinkRules_->setToolTip(localizedString("CreateProjectReglesToolTip"));
    textFieldLimitDepth_->setPlaceholderText(localizedString("CreateProjectPlaceHolderProfondeurMax"));
    textFieldLimitPageCount_->setPlaceholderText(localizedString("CreateProjectPlaceHolderNombreMaxScan"));
    textFieldURL_->setPlaceholderText(QStringLiteral("https://www.example.com"));
    buttonLocValider_->setText(localizedString("CreateProjectButtonValider"));
    buttonLocAnnuler_->setText(localizedString("CreateProjectButtonAnnuler"));
}

LinkRules NewProjectWindowController::linkRules() const
{
    return popUpLinkRules_->currentData().toInt() == int(LinkRules::Web) ? LinkRules::Web : LinkRules::Classic;
}

bool NewProjectWindowController::limitFromField(const QString& text, qint32* value)
{
    const QString typed = text.trimmed();
    if (typed.isEmpty()) {
        *value = -1;
        return true;
    }
    bool ok = false;
    const int n = typed.toInt(&ok);
    if (!ok || n < -1)
        return false;
    *value = n;
    return true;
}

QString NewProjectWindowController::urlFromField(const QString& text)
{
    QString url = stringByTrim(text);
    if (url.endsWith(QLatin1Char('/')))
        url.chop(1);
    return url;
}

void NewProjectWindowController::actionValider()
{
    const QString url = urlFromField(textFieldURL_->text());
    if (url.isEmpty()) {
        // An empty address cannot name a site: say so and keep the sheet open.
        refuse(localizedString("CreateProjectErrorEmptyURL"), textFieldURL_);
        return;
    }
    // What the crawl could not use is refused here, before anything is made: an address that
    // is not http or https with a host, a limit that is not a whole number of -1 or more.
    QString why;
    const QString normal = ProjectRules::normalForm(url);
    if (!ProjectRules::isCrawlableURL(normal.isNull() ? url : normal, StringTable::forLanguage(StringTable::Language::French), &why)) {
        refuse(ProjectRefusalAlert::asSentence(why), textFieldURL_);
        return;
    }
    qint32 limitDepth = -1;
    if (!limitFromField(textFieldLimitDepth_->text(), &limitDepth)) {
        refuse(localizedString("CreateProjectErrorLimitDepth").arg(textFieldLimitDepth_->text().trimmed()), textFieldLimitDepth_);
        return;
    }
    qint32 limitPageCount = -1;
    if (!limitFromField(textFieldLimitPageCount_->text(), &limitPageCount)) {
        refuse(localizedString("CreateProjectErrorLimitPageCount").arg(textFieldLimitPageCount_->text().trimmed()),
               textFieldLimitPageCount_);
        return;
    }
    labelError_->hide();
    DebugTrace("URL to Add : [%s]", qPrintable(url));
    AppSettings::setLastLinkRules(linkRules());
    if (delegate_)
        delegate_->createProjectValidateWithController(this, textFieldName_->text(), url, limitDepth, limitPageCount);
    endSheet(ValidateCode);
}

void NewProjectWindowController::refuse(const QString& message, QWidget* field)
{
    labelError_->setText(message);
    labelError_->show();
    field->setFocus();
}

void NewProjectWindowController::actionAnnuler()
{
    if (delegate_)
        delegate_->createProjectCancelWithController(this);
    endSheet(CancelCode);
}
