#pragma once

#include "app/ListReadConnection.h"
#include "store/QuillmerePage.h"

#include <QTabWidget>

#include <memory>

class PagePanel;
class Project;
class QWebEngineProfile;
class QWebEngineView;
class SafePreviewPage;
class SiteChartsView;
class SiteMapView;

// The last pane of the main window: the described preview first, then the page panel, the
// safe preview of the selected page, the crawl map and the charts. What a tab shows is read
// when the tab is shown, so a hidden map or preview costs nothing.
class PreviewTabs : public QTabWidget {
    Q_OBJECT
public:
    enum Tab { PreviewTab, PageTab, SafePreviewTab, MapTab, ChartsTab };

    // Takes the described preview as its first tab.
    explicit PreviewTabs(QWebEngineView* preview, QWidget* parent = nullptr);
    ~PreviewTabs() override;

    void setCurrentProject(const std::shared_ptr<Project>& project);
    // The crawl's records changed (a crawl or a vacuum ended): the map and the charts are
    // read again.
    void projectChanged();
    void selectPage(const QuillmerePagePtr& page);

    PagePanel* pagePanel() const { return pagePanel_; }
    QWebEngineView* safePreview() const { return safePreview_; }
    SafePreviewPage* safePreviewPage() const { return safePage_; }
    SiteMapView* siteMap() const { return siteMap_; }
    SiteChartsView* charts() const { return charts_; }

Q_SIGNALS:
    // A page clicked on the map, for the documents list to select.
    void pageChosen(qint64 idt);

private:
    void showCurrentTab();

    std::shared_ptr<Project> project_;
    // The map and the charts are read beside a crawl that may be writing.
    ListReadConnection reads_;
    QuillmerePagePtr page_;
    PagePanel* pagePanel_;
    QWebEngineProfile* safeProfile_;
    SafePreviewPage* safePage_;
    QWebEngineView* safePreview_;
    SiteMapView* siteMap_;
    SiteChartsView* charts_;
    // What each tab shows is out of date.
    bool panelStale_ = false;
    bool safePreviewStale_ = false;
    bool mapStale_ = true;
    bool chartsStale_ = true;
};
