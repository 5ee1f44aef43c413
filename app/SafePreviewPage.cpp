#include "app/SafePreviewPage.h"

#include "app/SameSiteRequestInterceptor.h"
#include "app/SystemBrowser.h"

#include <QWebEngineProfile>
#include <QWebEngineSettings>

SafePreviewPage::SafePreviewPage(QWebEngineProfile* profile, SameSiteRequestInterceptor* interceptor, QObject* parent)
    : QWebEnginePage(profile, parent), interceptor_(interceptor)
{
    profile->setUrlRequestInterceptor(interceptor);
    QWebEngineSettings* s = settings();
    s->setAttribute(QWebEngineSettings::JavascriptEnabled, false);
    s->setAttribute(QWebEngineSettings::LocalContentCanAccessRemoteUrls, false);
    s->setAttribute(QWebEngineSettings::PluginsEnabled, false);
    s->setAttribute(QWebEngineSettings::AutoLoadIconsForPage, false);
}

void SafePreviewPage::loadPage(const QUrl& url, const QUrl& site)
{
    interceptor_->setSite(site);
    load(url);
}

bool SafePreviewPage::acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame)
{
    // What the program loads, and the site's own redirects on the way, are shown.
    if (type == NavigationTypeTyped || (type == NavigationTypeRedirect && interceptor_->isSameSite(url)))
        return true;
    if (isMainFrame && type == NavigationTypeLinkClicked)
        SystemBrowser::openURL(url);
    return false;
}

QWebEnginePage* SafePreviewPage::createWindow(WebWindowType)
{
    return nullptr;
}
