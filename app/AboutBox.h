#pragma once

#include <QMessageBox>

// Quillmere > À propos: the program's version and the licences of what it is built with.
// Not modal, so the window stays usable while it is up.
class AboutBox : public QMessageBox {
    Q_OBJECT
public:
    explicit AboutBox(QWidget* parent = nullptr);
    // The one box of a window, raised if it is already up.
    static AboutBox* showFor(QWidget* window);
};
