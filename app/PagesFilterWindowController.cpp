#include "app/PagesFilterWindowController.h"

#include "app/PagesFilterDelegate.h"
#include "store/Localization.h"
#include "store/PageFilter.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

using Localization::localizedString;

PagesFilterWindowController::PagesFilterWindowController(PagesFilterDelegate* delegate, qint32 initialFilter)
    : SheetWindowController(QStringLiteral("PagesFilterWindowController")), delegate_(delegate),
      filterAction_(initialFilter)
{
    check404_ = new QCheckBox;
    check404_->setObjectName(QStringLiteral("check404"));
    radio404All_ = new QRadioButton;
    radio404All_->setObjectName(QStringLiteral("radio404All"));
    radio404OnlyHTML_ = new QRadioButton;
    radio404OnlyHTML_->setObjectName(QStringLiteral("radio404OnlyHTML"));
    radio404NotHTML_ = new QRadioButton;
    radio404NotHTML_->setObjectName(QStringLiteral("radio404NotHTML"));
    radioButtons_ = new QButtonGroup(this);
    radioButtons_->addButton(radio404All_);
    radioButtons_->addButton(radio404OnlyHTML_);
    radioButtons_->addButton(radio404NotHTML_);
    radioGroup_ = new QWidget;
    radioGroup_->setObjectName(QStringLiteral("radioGroup"));
    auto* radios = new QVBoxLayout(radioGroup_);
    radios->setContentsMargins(20, 0, 0, 0);
    radios->addWidget(radio404All_);
    radios->addWidget(radio404OnlyHTML_);
    radios->addWidget(radio404NotHTML_);
    boxLoc404_ = new QGroupBox;
    auto* box404 = new QVBoxLayout(boxLoc404_);
    box404->addWidget(check404_);
    box404->addWidget(radioGroup_);

    checkNoIndex_ = new QCheckBox;
    checkNoIndex_->setObjectName(QStringLiteral("checkNoIndex"));
    boxLocNoIndex_ = new QGroupBox;
    (new QVBoxLayout(boxLocNoIndex_))->addWidget(checkNoIndex_);
    checkCanonical_ = new QCheckBox;
    checkCanonical_->setObjectName(QStringLiteral("checkCanonical"));
    boxLocCanonical_ = new QGroupBox;
    (new QVBoxLayout(boxLocCanonical_))->addWidget(checkCanonical_);

    // The actions answer the user's clicks (and keyboard toggles), not programmatic changes.
    connect(check404_, &QCheckBox::clicked, this, [this] { actionCheck404(); });
    connect(radio404All_, &QRadioButton::clicked, this, [this] { actionRadio404All(); });
    connect(radio404OnlyHTML_, &QRadioButton::clicked, this, [this] { actionRadio404OnlyHTML(); });
    connect(radio404NotHTML_, &QRadioButton::clicked, this, [this] { actionRadio404NotHTML(); });
    connect(checkNoIndex_, &QCheckBox::clicked, this, [this] { actionCheckNoIndex(); });
    connect(checkCanonical_, &QCheckBox::clicked, this, [this] { actionCheckCanonical(); });

    QHBoxLayout* buttons = buttonRow(&buttonLocAnnuler_, &buttonLocValider_, [this] { actionValider(); });

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(boxLoc404_);
    layout->addWidget(boxLocNoIndex_);
    layout->addWidget(boxLocCanonical_);
    layout->addLayout(buttons);
    windowDidLoad();
}

void PagesFilterWindowController::windowDidLoad()
{
    setWindowTitle(localizedString("PageFilterWindowTitle"));
    boxLoc404_->setTitle(localizedString("PageFilterBox404"));
    check404_->setText(localizedString("PageFilterCheck404"));
    radio404All_->setText(localizedString("PageFilterRadio404All"));
    radio404OnlyHTML_->setText(localizedString("PageFilterRadio404OnlyHTML"));
    radio404NotHTML_->setText(localizedString("PageFilterRadio404NotHTML"));
    boxLocNoIndex_->setTitle(localizedString("PageFilterBoxNoIndex"));
    checkNoIndex_->setText(localizedString("PageFilterCheckNoIndex"));
    boxLocCanonical_->setTitle(localizedString("PageFilterBoxCanonical"));
    checkCanonical_->setText(localizedString("PageFilterCheckCanonical"));
    buttonLocValider_->setText(localizedString("PageFilterButtonValider"));
    buttonLocAnnuler_->setText(localizedString("PageFilterButtonAnnuler"));

    // The controls as the filter in force says; an unknown code leaves them as they are.
    switch (filterAction_) {
    case PageFilter::All:
        check404_->setChecked(false);
        radioGroup_->setEnabled(false);
        checkNoIndex_->setChecked(false);
        checkCanonical_->setChecked(false);
        break;
    case PageFilter::Error404AllTypes:
    case PageFilter::Error404OnlyHTML:
    case PageFilter::Error404NotHTML:
        check404_->setChecked(true);
        radioGroup_->setEnabled(true);
        selectRadio(filterAction_ == PageFilter::Error404AllTypes   ? radio404All_
                    : filterAction_ == PageFilter::Error404OnlyHTML ? radio404OnlyHTML_
                                                                    : radio404NotHTML_);
        checkNoIndex_->setChecked(false);
        checkCanonical_->setChecked(false);
        break;
    case PageFilter::NoIndex:
        check404_->setChecked(false);
        radioGroup_->setEnabled(false);
        checkNoIndex_->setChecked(true);
        checkCanonical_->setChecked(false);
        break;
    case PageFilter::Canonical:
        check404_->setChecked(false);
        radioGroup_->setEnabled(false);
        checkNoIndex_->setChecked(false);
        checkCanonical_->setChecked(true);
        break;
    default:
        break;
    }
}

void PagesFilterWindowController::selectRadio(QRadioButton* radio)
{
    radio->setChecked(true);
}

void PagesFilterWindowController::actionCheck404()
{
    if (check404_->isChecked()) {
        checkNoIndex_->setChecked(false);
        checkCanonical_->setChecked(false);
        radioGroup_->setEnabled(true);
        selectRadio(radio404All_);
        filterAction_ = PageFilter::Error404AllTypes;
    } else {
        radioGroup_->setEnabled(false);
        updateFilterAction();
    }
}

void PagesFilterWindowController::actionRadio404All()
{
    filterAction_ = PageFilter::Error404AllTypes;
}

void PagesFilterWindowController::actionRadio404OnlyHTML()
{
    filterAction_ = PageFilter::Error404OnlyHTML;
}

void PagesFilterWindowController::actionRadio404NotHTML()
{
    filterAction_ = PageFilter::Error404NotHTML;
}

void PagesFilterWindowController::actionCheckNoIndex()
{
    if (checkNoIndex_->isChecked()) {
        check404_->setChecked(false);
        radioGroup_->setEnabled(false);
        checkCanonical_->setChecked(false);
        filterAction_ = PageFilter::NoIndex;
    } else {
        updateFilterAction();
    }
}

void PagesFilterWindowController::actionCheckCanonical()
{
    if (checkCanonical_->isChecked()) {
        check404_->setChecked(false);
        radioGroup_->setEnabled(false);
        checkNoIndex_->setChecked(false);
        filterAction_ = PageFilter::Canonical;
    } else {
        updateFilterAction();
    }
}

void PagesFilterWindowController::updateFilterAction()
{
    if (!check404_->isChecked() && !checkNoIndex_->isChecked() && !checkCanonical_->isChecked())
        filterAction_ = PageFilter::All;
}

void PagesFilterWindowController::actionValider()
{
    if (delegate_) {
        switch (filterAction_) {
        case PageFilter::Error404AllTypes:
            delegate_->doFilter404All();
            break;
        case PageFilter::Error404OnlyHTML:
            delegate_->doFilter404OnlyHTML();
            break;
        case PageFilter::Error404NotHTML:
            delegate_->doFilter404NotHTML();
            break;
        case PageFilter::NoIndex:
            delegate_->doFilterNoIndex();
            break;
        case PageFilter::Canonical:
            delegate_->doFilterCanonical();
            break;
        default:
            delegate_->doFilterNone();
            break;
        }
    }
    endSheet(ValidateCode);
}

void PagesFilterWindowController::actionAnnuler()
{
    endSheet(CancelCode);
}
