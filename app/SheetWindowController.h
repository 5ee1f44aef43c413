#pragma once

#include <QDialog>
#include <QPointer>

#include <functional>

class QHBoxLayout;
class QPushButton;

// A window-modal dialog shown on the main window: validate ends it with code 1, cancel with
// code 0. Return presses the validate button; Escape (and closing the sheet) is cancel.
class SheetWindowController : public QDialog {
    Q_OBJECT
public:
    // The sheets' return codes.
    static constexpr int ValidateCode = 1;
    static constexpr int CancelCode = 0;

    // Remembers the window as parentWindow and begins the sheet on it.
    void displaySheetInWindow(QWidget* window);
    QWidget* parentWindow() const { return parentWindow_; }
    bool isSheetShown() const { return isVisible(); }

    // The cancel button's action; Escape and the window's close button come here too.
    virtual void actionAnnuler() = 0;
    void reject() override { actionAnnuler(); }

protected:
    explicit SheetWindowController(const QString& windowDescription);
    void endSheet(int returnCode) { done(returnCode); }
    // The cancel and validate buttons at the foot of a sheet: validate is the default button
    // (Return), cancel calls actionAnnuler.
    QHBoxLayout* buttonRow(QPushButton** cancel, QPushButton** validate, std::function<void()> onValidate);

private:
    QPointer<QWidget> parentWindow_;
};
