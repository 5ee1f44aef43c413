#pragma once

#include <QWebEnginePage>

class QWebEngineProfile;
class SameSiteRequestInterceptor;

// The second preview: the selected page of the crawl, with JavaScript off and no request to
// any server but the site's (its own private profile, so the interceptor and the settings
// touch nothing of the described preview). Navigation the page starts is refused; a link
// clicked opens in the user's browser, as in the described preview.
class SafePreviewPage : public QWebEnginePage {
    Q_OBJECT
public:
    // The profile must outlive the page: the caller owns both and deletes the page first.
    SafePreviewPage(QWebEngineProfile* profile, SameSiteRequestInterceptor* interceptor, QObject* parent = nullptr);

    // Loads a page of the site whose start URL is `site`.
    void loadPage(const QUrl& url, const QUrl& site);
    SameSiteRequestInterceptor* interceptor() const { return interceptor_; }

protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
    QWebEnginePage* createWindow(WebWindowType type) override;

private:
    SameSiteRequestInterceptor* interceptor_;
};
