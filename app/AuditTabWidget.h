#pragma once

#include "app/ListReadConnection.h"

#include "store/AuditOverview.h"
#include "store/AuditReport.h"

#include <QList>
#include <QSet>
#include <QTabWidget>

#include <functional>
#include <memory>

class DocumentsTab;
class DocumentsView;
class Project;
class QAction;
class QMenu;
class ReportListView;

// The tab bar over the documents list: the documents list first, then the overview of what
// is wrong, the response codes, the broken links and the redirects, and for a project crawled
// with the web rules its external links, resources, robots.txt blocks and missing fragments.
// Every list is read from the same core queries as the command line's reports, again when a
// project is shown and when a crawl ends.
class AuditTabWidget : public QTabWidget {
    Q_OBJECT
public:
    explicit AuditTabWidget(DocumentsView* documentsView, QWidget* parent = nullptr);

    void setCurrentProject(const std::shared_ptr<Project>& project);
    void closeCurrentProject();
    // Marks every list to be read again, and reads the one shown at once; the others are
    // read when their tab is shown, so that the end of a crawl reads no list nobody looks at
    // (the documents list has its own refresh).
    void refresh();

    // Applies a documents-list filter (the controller's, so that the links list follows).
    void setFilterHandler(std::function<void(qint32)> handler) { filterHandler_ = std::move(handler); }

    DocumentsTab* documentsTab() const { return documentsTab_; }
    ReportListView* overviewList() const { return overview_; }
    ReportListView* codesList() const { return codes_; }
    ReportListView* reportList(AuditReport::Kind kind) const;
    const QList<AuditOverview::Finding>& findings() const { return findings_; }

    // Fichier's items: the sitemap export and the export of the list shown.
    void addFileMenuItems(QMenu* menu);
    QAction* exportSitemapAction() const { return exportSitemapAction_; }
    QAction* exportListAction() const { return exportListAction_; }
    void exportCurrentList();
    void exportSitemap();

    // Where the next file is saved, instead of asking in a file dialog (empty: cancelled).
    static void setSavePathProviderForTesting(std::function<QString(const QString& suggested)> provider);

private:
    ReportListView* addList(const QString& name, const char* captionKey);
    void openFinding(int row);
    void loadIfStale(QWidget* tab);
    void load(QWidget* tab);
    void exportList(QWidget* tab);
    QString askSavePath(const QString& captionKey, const QString& suggested, const QString& filter);
    void showWriteFailure(const QString& file, const QString& reason);

    std::shared_ptr<Project> project_;
    // The lists are read beside a crawl that may be writing: through a connection of their
    // own, committed rows only.
    ListReadConnection reads_;
    std::shared_ptr<Project> reader() { return reads_.readerFor(project_); }
    DocumentsTab* documentsTab_;
    ReportListView* overview_;
    ReportListView* codes_;
    QList<std::pair<AuditReport::Kind, ReportListView*>> reports_;
    QList<AuditOverview::Finding> findings_;
    QSet<QWidget*> stale_;
    std::function<void(qint32)> filterHandler_;
    QAction* exportSitemapAction_ = nullptr;
    QAction* exportListAction_ = nullptr;
};
