#pragma once

#include "app/SheetWindowController.h"

#include "store/LinkRules.h"

class NewProjectControllerDelegate;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

// The new-project sheet: name, site URL, optional depth and page-count limits.
class NewProjectWindowController : public SheetWindowController {
    Q_OBJECT
public:
    explicit NewProjectWindowController(NewProjectControllerDelegate* delegate);
    static NewProjectWindowController* initWithDelegate(NewProjectControllerDelegate* delegate)
    {
        return new NewProjectWindowController(delegate);
    }

    // A limit field's value: -1 when empty, else the whole number it holds (blanks around
    // it allowed), -1 or more. False, value untouched, for anything else.
    static bool limitFromField(const QString& text, qint32* value);
    // The site URL as typed, trimmed, less one trailing "/".
    static QString urlFromField(const QString& text);

    void actionValider();
    void actionAnnuler() override;

    QLineEdit* textFieldURL() const { return textFieldURL_; }
    QLineEdit* textFieldName() const { return textFieldName_; }
    QLineEdit* textFieldLimitDepth() const { return textFieldLimitDepth_; }
    QLineEdit* textFieldLimitPageCount() const { return textFieldLimitPageCount_; }
    QPushButton* buttonLocValider() const { return buttonLocValider_; }
    // How the project will read links: classic unless the user chose web.
    QComboBox* popUpLinkRules() const { return popUpLinkRules_; }
    LinkRules linkRules() const;
    QPushButton* buttonLocAnnuler() const { return buttonLocAnnuler_; }
    QLabel* labelError() const { return labelError_; }

private:
    void windowDidLoad();
    // Shows a refusal under the fields and puts the focus where the fix is to be typed.
    void refuse(const QString& message, QWidget* field);

    NewProjectControllerDelegate* delegate_;
    QLineEdit* textFieldURL_;
    QLineEdit* textFieldName_;
    QLineEdit* textFieldLimitDepth_;
    QLineEdit* textFieldLimitPageCount_;
    QGroupBox* boxLocProject_;
    QLabel* labelLocNomProject_;
    QLabel* labelLocUrlSite_;
    QGroupBox* boxLocParametres_;
    QLabel* labelLocProfondeurMax_;
    QLabel* labelLocNomMaxPageScannees_;
    QLabel* labelLocRegles_;
    QComboBox* popUpLinkRules_;
    QLabel* labelError_;
    QPushButton* buttonLocValider_;
    QPushButton* buttonLocAnnuler_;
};
