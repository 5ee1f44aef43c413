#include "app/Alert.h"

#include <QMessageBox>
#include <QPushButton>

namespace {
QList<int>& queuedAnswers()
{
    static QList<int> answers;
    return answers;
}
QList<Alert::Shown>& shown()
{
    static QList<Alert::Shown> alerts;
    return alerts;
}
} // namespace

int Alert::runModal(QWidget* parent)
{
    int answer = 0;
    if (!queuedAnswers().isEmpty()) {
        answer = queuedAnswers().takeFirst();
    } else {
        QMessageBox box(parent);
        box.setIcon(QMessageBox::Warning);
        box.setWindowModality(parent ? Qt::WindowModal : Qt::ApplicationModal);
        box.setText(messageText_);
        box.setInformativeText(informativeText_);
        QList<QAbstractButton*> added;
        // ActionRole buttons: the style may not reorder them, and Escape answers only the
        // button named as the cancel one.
        for (const QString& title : buttons_)
            added << box.addButton(title, QMessageBox::ActionRole);
        if (!added.isEmpty())
            box.setDefaultButton(static_cast<QPushButton*>(added.first()));
        if (cancelButton_ >= 0 && cancelButton_ < added.size())
            box.setEscapeButton(added.at(cancelButton_));
        else if (added.size() == 1)
            box.setEscapeButton(added.first());
        box.exec();
        const int index = added.indexOf(box.clickedButton());
        answer = index >= 0 ? FirstButtonReturn + index : 0;
    }
    shown().append({messageText_, informativeText_, buttons_, answer});
    return answer;
}

void Alert::queueAnswer(int answer)
{
    queuedAnswers().append(answer);
}

int Alert::queuedAnswerCount()
{
    return int(queuedAnswers().size());
}

QList<Alert::Shown> Alert::shownAlerts()
{
    return shown();
}

void Alert::clearForTesting()
{
    queuedAnswers().clear();
    shown().clear();
}
