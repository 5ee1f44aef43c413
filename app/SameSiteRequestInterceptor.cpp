#include "app/SameSiteRequestInterceptor.h"

#include "base/DebugTrace.h"

#include <QMutexLocker>

namespace {

int portOf(const QUrl& url)
{
    return url.port(url.scheme() == QLatin1String("https") ? 443 : 80);
}

} // namespace

SameSiteRequestInterceptor::SameSiteRequestInterceptor(QObject* parent) : QWebEngineUrlRequestInterceptor(parent) {}

void SameSiteRequestInterceptor::setSite(const QUrl& site)
{
    QMutexLocker lock(&mutex_);
    site_ = site;
}

bool SameSiteRequestInterceptor::isSameSite(const QUrl& url) const
{
    QMutexLocker lock(&mutex_);
    // An inline data: resource asks no server.
    if (url.scheme() == QLatin1String("data"))
        return true;
    if (!site_.isValid() || url.scheme() != site_.scheme())
        return false;
    return url.host().compare(site_.host(), Qt::CaseInsensitive) == 0 && portOf(url) == portOf(site_);
}

void SameSiteRequestInterceptor::interceptRequest(QWebEngineUrlRequestInfo& info)
{
    if (isSameSite(info.requestUrl()))
        return;
    DebugTrace("safe preview blocked: %s", qPrintable(info.requestUrl().toString()));
    ++blocked_;
    info.block(true);
}
