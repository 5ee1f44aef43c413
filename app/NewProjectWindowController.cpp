#include "app/NewProjectWindowController.h"

#include "app/NewProjectControllerDelegate.h"
#include "html/StringOperations.h"
#include "base/DebugTrace.h"
#include "store/Localization.h"

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
    popUpLinkRules_->setCurrentIndex(0);
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

qint32 NewProjectWindowController::limitFromField(const QString& text)
{
    if (text.isEmpty())
        return -1;
    // As a text field's intValue: blanks skipped, an optional sign, then the leading digits.
    int i = 0;
    while (i < text.size() && text.at(i).isSpace())
        ++i;
    bool negative = false;
    if (i < text.size() && (text.at(i) == QLatin1Char('-') || text.at(i) == QLatin1Char('+'))) {
        negative = text.at(i) == QLatin1Char('-');
        ++i;
    }
    qint64 value = 0;
    while (i < text.size() && text.at(i) >= QLatin1Char('0') && text.at(i) <= QLatin1Char('9')) {
        value = value * 10 + (text.at(i).unicode() - '0');
        if (value > 2147483647LL)
            value = 2147483648LL;
        ++i;
    }
    if (negative)
        value = -value;
    return qint32(qBound<qint64>(-2147483647LL - 1, value, 2147483647LL));
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
        labelError_->setText(localizedString("CreateProjectErrorEmptyURL"));
        labelError_->show();
        textFieldURL_->setFocus();
        return;
    }
    labelError_->hide();
    DebugTrace("URL to Add : [%s]", qPrintable(url));
    const qint32 limitDepth = limitFromField(textFieldLimitDepth_->text());
    const qint32 limitPageCount = limitFromField(textFieldLimitPageCount_->text());
    if (delegate_)
        delegate_->createProjectValidateWithController(this, textFieldName_->text(), url, limitDepth, limitPageCount);
    endSheet(ValidateCode);
}

void NewProjectWindowController::actionAnnuler()
{
    if (delegate_)
        delegate_->createProjectCancelWithController(this);
    endSheet(CancelCode);
}
