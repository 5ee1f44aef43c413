#pragma once

#include <QMutex>
#include <QUrl>
#include <QWebEngineUrlRequestInterceptor>

#include <atomic>

// Lets through only the requests for the site's own origin (scheme, host and port of its
// start URL), so that a page previewed from the crawl calls no other server: no tracker, no
// font or image from elsewhere.
class SameSiteRequestInterceptor : public QWebEngineUrlRequestInterceptor {
    Q_OBJECT
public:
    explicit SameSiteRequestInterceptor(QObject* parent = nullptr);

    void setSite(const QUrl& site);
    bool isSameSite(const QUrl& url) const;
    int blockedCount() const { return blocked_.load(); }

    void interceptRequest(QWebEngineUrlRequestInfo& info) override;

private:
    mutable QMutex mutex_;
    QUrl site_;
    std::atomic<int> blocked_{0};
};
