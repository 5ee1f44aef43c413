#include "fetch/URLRequest.h"

URLRequest::URLRequest(const QUrl& url, CachePolicy cachePolicy, double timeoutInterval)
    : url_(url), cachePolicy_(cachePolicy), timeoutInterval_(timeoutInterval)
{
}

void URLRequest::setValueForHTTPHeaderField(const QString& value, const QString& field)
{
    if (value.isNull())
        headerFields_.remove(field);
    else
        headerFields_.insert(field, value);
}
