#pragma once

#include <QDialog>

class QTextBrowser;

// Aide > Aide de Quillmere (F1): the README the program is shipped with, in a window of its
// own beside the main one.
class HelpDialog : public QDialog {
    Q_OBJECT
public:
    explicit HelpDialog(QWidget* parent = nullptr);
    static HelpDialog* showFor(QWidget* window);

    QTextBrowser* browser() const { return browser_; }

private:
    QTextBrowser* browser_;
};
