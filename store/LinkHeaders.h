#pragma once

#include <QString>

#include <memory>
#include <optional>

struct sqlite3_stmt;
class Project;
class LinkHeaders;
using LinkHeadersPtr = std::shared_ptr<LinkHeaders>;

// The HTTP answer recorded for one URL: content type, announced length, received length.
// Nothing keeps the rows unique: each create adds a row.
class LinkHeaders {
public:
    LinkHeaders(const QString& url, const QString& contentType, std::optional<qint64> contentLength,
                std::optional<qint64> downloadedLength, const std::shared_ptr<Project>& project);

    // The lengths go to the database as 32-bit integers (a missing one as 0); the record keeps
    // the values as given.
    static LinkHeadersPtr createLinkHeadersWithURL(const QString& url, const QString& contentType,
                                                   std::optional<qint64> contentLength,
                                                   std::optional<qint64> downloadedLength,
                                                   const std::shared_ptr<Project>& project);
    // The first row recorded for the URL, or none.
    static LinkHeadersPtr getLinkHeadersWithURL(const QString& url, const std::shared_ptr<Project>& project);
    // Both null, or the same four values (null and empty texts differ).
    static bool sameRow(const LinkHeadersPtr& a, const LinkHeadersPtr& b);
    static LinkHeadersPtr linkHeadersFromStatement(sqlite3_stmt* statement, const std::shared_ptr<Project>& project);

    // Case-insensitive "text/html" anywhere in the content type; a record without a content
    // type counts as HTML.
    bool isContentTypeHTML() const;
    // Strictly more than 1 MiB announced; a missing length reads as 0.
    bool isContentLengthToBig() const;

    QString description() const;

    QString url() const { return url_; }
    void setUrl(const QString& v) { url_ = v; }
    QString contentType() const { return contentType_; }
    void setContentType(const QString& v) { contentType_ = v; }
    std::optional<qint64> contentLength() const { return contentLength_; }
    void setContentLength(std::optional<qint64> v) { contentLength_ = v; }
    std::optional<qint64> downloadedLength() const { return downloadedLength_; }
    void setDownloadedLength(std::optional<qint64> v) { downloadedLength_ = v; }
    std::weak_ptr<Project> project() const { return project_; }
    void setProject(const std::shared_ptr<Project>& v) { project_ = v; }

private:
    QString url_;
    QString contentType_;
    std::optional<qint64> contentLength_;
    std::optional<qint64> downloadedLength_;
    std::weak_ptr<Project> project_;
};
