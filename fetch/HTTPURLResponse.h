#pragma once

#include <QMap>
#include <QString>
#include <QUrl>

#include <memory>
#include <optional>

// Response header fields, name as the server spelled it -> value. A field that came several
// times holds its values joined with ", ".
using HTTPHeaderFields = QMap<QString, QString>;

// The status and header fields of one HTTP response, and the URL that answered it.
class HTTPURLResponse {
public:
    HTTPURLResponse(const QUrl& url, int statusCode, std::optional<HTTPHeaderFields> headerFields);

    QUrl URL() const { return url_; }
    int statusCode() const { return statusCode_; }

    // Empty when the response carried no header dictionary at all.
    const std::optional<HTTPHeaderFields>& allHeaderFields() const { return headerFields_; }

    // The value of a header field, the name compared without regard to case; a null string
    // when the field is absent (an empty value stays an empty, non-null string).
    QString valueForHTTPHeaderField(const QString& field) const;

private:
    QUrl url_;
    int statusCode_ = 0;
    std::optional<HTTPHeaderFields> headerFields_;
};

// Responses are shared; "no response" is an empty pointer.
using HTTPURLResponsePtr = std::shared_ptr<const HTTPURLResponse>;
