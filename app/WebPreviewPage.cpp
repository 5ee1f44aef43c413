#include "app/WebPreviewPage.h"

#include "app/SystemBrowser.h"
#include "base/DebugTrace.h"

WebPreviewPage::WebPreviewPage(QObject* parent) : QWebEnginePage(parent) {}

QUrl WebPreviewPage::promotionalPageURL()
{
    return QUrl(QStringLiteral("qrc:/preview/welcome.html"));
}

bool WebPreviewPage::acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame)
{
    // What the program itself loads (the welcome page) is shown; everything else is the
    // user's and goes to the browser.
    if (type == NavigationTypeTyped)
        return true;
    DebugTrace("preview navigation refused: %s", qPrintable(url.toString()));
    ++refusedNavigations_;
    if (isMainFrame && url.scheme() != QLatin1String("qrc"))
        SystemBrowser::openURL(url);
    return false;
}

QWebEnginePage* WebPreviewPage::createWindow(WebWindowType)
{
    ++refusedNewWindows_;
    return nullptr;
}
