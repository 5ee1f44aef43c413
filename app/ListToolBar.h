#pragma once

#include <QWidget>

class QLineEdit;
class QMenu;
class QToolButton;

// The row above an audit list: a search box that filters as one types, the column chooser
// (a menu of checkable columns, also opened from the list's header) and the CSV export.
class ListToolBar : public QWidget {
    Q_OBJECT
public:
    explicit ListToolBar(QWidget* parent = nullptr);

    QLineEdit* searchField() const { return searchField_; }
    QToolButton* columnsButton() const { return columnsButton_; }
    QToolButton* exportButton() const { return exportButton_; }
    QMenu* columnsMenu() const { return columnsMenu_; }

    // A checkable item of the column chooser; `toggled` is told when it changes.
    QAction* addColumnChoice(const QString& caption, bool shown);

private:
    QLineEdit* searchField_;
    QToolButton* columnsButton_;
    QToolButton* exportButton_;
    QMenu* columnsMenu_;
};
