#pragma once

#include <QList>
#include <QStringList>
#include <QVariant>
#include <QWidget>

class DocumentsView;
class ListToolBar;

// The documents list as the first tab of the audit: the described pane, unchanged, under a
// search box (rows that hold the text stay shown), a column chooser (the described columns,
// plus the status and the response time, hidden until chosen) and the CSV export.
class DocumentsTab : public QWidget {
    Q_OBJECT
public:
    explicit DocumentsTab(DocumentsView* documentsView, QWidget* parent = nullptr);

    DocumentsView* documentsView() const { return documentsView_; }
    ListToolBar* toolBar() const { return toolBar_; }
    int shownRowCount() const;

    // The report keys of the shown columns (as the command line's pages report names them),
    // and the shown rows' values under them, in the order shown.
    QStringList shownKeys() const;
    QList<QList<QVariant>> shownRows() const;
    bool exportCsv(const QString& path, QString* reason) const;

Q_SIGNALS:
    void exportRequested();

private:
    void applySearch();
    QStringList shownColumnIdentifiers() const;

    DocumentsView* documentsView_;
    ListToolBar* toolBar_;
    bool rowsHidden_ = false;
};
