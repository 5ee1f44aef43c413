#pragma once

#include "app/SheetWindowController.h"

class PagesFilterDelegate;
class QButtonGroup;
class QCheckBox;
class QGroupBox;
class QPushButton;
class QRadioButton;
class QWidget;

// The filter sheet: one filter at a time, 404 (of all types, HTML only or not HTML),
// noindex or canonical; none when nothing is checked.
class PagesFilterWindowController : public SheetWindowController {
    Q_OBJECT
public:
    PagesFilterWindowController(PagesFilterDelegate* delegate, qint32 initialFilter);
    static PagesFilterWindowController* initWithDelegate(PagesFilterDelegate* delegate, qint32 initialFilter)
    {
        return new PagesFilterWindowController(delegate, initialFilter);
    }

    qint32 filterAction() const { return filterAction_; }

    void actionCheck404();
    void actionRadio404All();
    void actionRadio404OnlyHTML();
    void actionRadio404NotHTML();
    void actionCheckNoIndex();
    void actionCheckCanonical();
    void updateFilterAction();
    void actionValider();
    void actionAnnuler() override;

    QCheckBox* check404() const { return check404_; }
    QWidget* radioGroup() const { return radioGroup_; }
    QRadioButton* radio404All() const { return radio404All_; }
    QRadioButton* radio404OnlyHTML() const { return radio404OnlyHTML_; }
    QRadioButton* radio404NotHTML() const { return radio404NotHTML_; }
    QCheckBox* checkNoIndex() const { return checkNoIndex_; }
    QCheckBox* checkCanonical() const { return checkCanonical_; }
    QPushButton* buttonLocValider() const { return buttonLocValider_; }
    QPushButton* buttonLocAnnuler() const { return buttonLocAnnuler_; }

private:
    void windowDidLoad();
    void selectRadio(QRadioButton* radio);

    PagesFilterDelegate* delegate_;
    qint32 filterAction_;
    QCheckBox* check404_;
    QWidget* radioGroup_;
    QButtonGroup* radioButtons_;
    QRadioButton* radio404All_;
    QRadioButton* radio404OnlyHTML_;
    QRadioButton* radio404NotHTML_;
    QCheckBox* checkNoIndex_;
    QCheckBox* checkCanonical_;
    QGroupBox* boxLoc404_;
    QGroupBox* boxLocNoIndex_;
    QGroupBox* boxLocCanonical_;
    QPushButton* buttonLocValider_;
    QPushButton* buttonLocAnnuler_;
};
