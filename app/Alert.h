#pragma once

#include <QList>
#include <QString>
#include <QStringList>

class QWidget;

// A modal alert whose answers are numbered by the order in which its buttons were added:
// 1000 for the first, 1001, 1002, whatever order the platform style draws them in.
// Tests queue the next answers in advance; an alert that finds one queued answers it
// without showing anything, and every alert run is recorded for them to read.
class Alert {
public:
    static constexpr int FirstButtonReturn = 1000;

    struct Shown {
        QString messageText;
        QString informativeText;
        QStringList buttons;
        int answer = 0;
    };

    void setMessageText(const QString& text) { messageText_ = text; }
    void setInformativeText(const QString& text) { informativeText_ = text; }
    void addButtonWithTitle(const QString& title) { buttons_ << title; }
    // The button Escape answers (by its index in the order added): the one that cancels. An
    // alert with one button answers it; one with several and none named closes with 0.
    void setCancelButton(int index) { cancelButton_ = index; }
    QString messageText() const { return messageText_; }
    QString informativeText() const { return informativeText_; }
    QStringList buttons() const { return buttons_; }

    // Shows the alert modal on parent (or on its own) and answers 1000 + the index of the
    // button chosen; 0 when it was closed without one.
    int runModal(QWidget* parent = nullptr);

    static void queueAnswer(int answer);
    static int queuedAnswerCount();
    static QList<Shown> shownAlerts();
    static void clearForTesting();

private:
    QString messageText_;
    QString informativeText_;
    QStringList buttons_;
    int cancelButton_ = -1;
};
