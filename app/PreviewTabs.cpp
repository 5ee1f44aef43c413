#include "app/PreviewTabs.h"

#include "app/PagePanel.h"
#include "app/SafePreviewPage.h"
#include "app/SameSiteRequestInterceptor.h"
#include "app/SiteChartsView.h"
#include "app/SiteMapView.h"
#include "store/Localization.h"
#include "store/Project.h"

#include <QWebEngineProfile>
#include <QWebEngineView>

using Localization::localizedString;

PreviewTabs::PreviewTabs(QWebEngineView* preview, QWidget* parent) : QTabWidget(parent)
{
    setObjectName(QStringLiteral("previewTabs"));
    setDocumentMode(true);
    pagePanel_ = new PagePanel;
    // A profile of its own, kept in memory: its interceptor and settings stay off the
    // described preview.
    safeProfile_ = new QWebEngineProfile(this);
    safePreview_ = new QWebEngineView;
    safePreview_->setObjectName(QStringLiteral("safePreview"));
    safePage_ = new SafePreviewPage(safeProfile_, new SameSiteRequestInterceptor(safeProfile_), safePreview_);
    safePreview_->setPage(safePage_);
    siteMap_ = new SiteMapView;
    charts_ = new SiteChartsView;

    addTab(preview, localizedString("PreviewTabPreview"));
    addTab(pagePanel_, localizedString("PreviewTabPage"));
    addTab(safePreview_, localizedString("PreviewTabSafePreview"));
    addTab(siteMap_, localizedString("PreviewTabMap"));
    addTab(charts_, localizedString("PreviewTabCharts"));

    connect(this, &QTabWidget::currentChanged, this, [this] { showCurrentTab(); });
    connect(siteMap_, &SiteMapView::pageClicked, this, &PreviewTabs::pageChosen);
}

PreviewTabs::~PreviewTabs()
{
    // The page goes before the profile it was made with.
    safePreview_->setPage(nullptr);
    delete safePage_;
    safePage_ = nullptr;
}

void PreviewTabs::setCurrentProject(const std::shared_ptr<Project>& project)
{
    if (project != project_)
        reads_.close();
    project_ = project;
    page_.reset();
    pagePanel_->setCurrentProject(project);
    panelStale_ = false;
    safePreviewStale_ = true;
    projectChanged();
}

void PreviewTabs::projectChanged()
{
    mapStale_ = true;
    chartsStale_ = true;
    panelStale_ = page_ != nullptr;
    showCurrentTab();
}

void PreviewTabs::selectPage(const QuillmerePagePtr& page)
{
    page_ = page;
    panelStale_ = true;
    safePreviewStale_ = true;
    showCurrentTab();
    // Ringing a page is cheap: the map follows even when hidden.
    if (!mapStale_)
        siteMap_->highlightPage(page ? page->idt() : -1);
}

void PreviewTabs::showCurrentTab()
{
    switch (currentIndex()) {
    case PageTab:
        if (panelStale_)
            pagePanel_->showPage(page_);
        panelStale_ = false;
        break;
    case SafePreviewTab:
        if (safePreviewStale_) {
            if (page_ && project_)
                safePage_->loadPage(QUrl(page_->url()), QUrl(project_->url()));
            else
                safePage_->load(QUrl(QStringLiteral("about:blank")));
        }
        safePreviewStale_ = false;
        break;
    case MapTab:
        if (mapStale_) {
            siteMap_->load(reads_.readerFor(project_));
            siteMap_->highlightPage(page_ ? page_->idt() : -1);
        }
        mapStale_ = false;
        break;
    case ChartsTab:
        if (chartsStale_)
            charts_->load(reads_.readerFor(project_));
        chartsStale_ = false;
        break;
    default:
        break;
    }
}
