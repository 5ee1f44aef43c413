#include "fetch/HTTPURLResponse.h"

HTTPURLResponse::HTTPURLResponse(const QUrl& url, int statusCode, std::optional<HTTPHeaderFields> headerFields)
    : url_(url), statusCode_(statusCode), headerFields_(std::move(headerFields))
{
}

QString HTTPURLResponse::valueForHTTPHeaderField(const QString& field) const
{
    if (!headerFields_)
        return QString();
    for (auto it = headerFields_->cbegin(); it != headerFields_->cend(); ++it) {
        if (it.key().compare(field, Qt::CaseInsensitive) == 0)
            return it.value().isNull() ? QStringLiteral("") : it.value();
    }
    return QString();
}
