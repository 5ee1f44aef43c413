#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

class Project;
class QIODevice;

// A sitemaps.org 0.9 sitemap of the pages a search engine may index: analysed pages of the
// project's own server (scheme, host and port of its URL) that answered 200 with HTML and are
// neither noindex nor canonical elsewhere. A file holds at most 50,000 URLs and 50 MiB; past
// that, an index names the files.
class SitemapWriter {
public:
    static constexpr int kMaxUrlsPerFile = 50000;
    static constexpr qint64 kMaxBytesPerFile = 50 * 1024 * 1024;

    struct Result {
        bool ok = false;
        qint64 urls = 0;
        QStringList files;  // written, the index first when there is one
        bool unreadable = false;  // the crawl database could not be read
        QString errorFile;        // the file that could not be written
        QString errorReason;      // the system's words for it
        bool needsIndex = false;  // more URLs than one file holds, and no file to name parts after
    };

    // Calls `loc` with each URL, absolute and fully percent-encoded, in store order.
    static bool forEachURL(const std::shared_ptr<Project>& project, const std::function<void(const QString&)>& loc);

    // One sitemap on `out`; fails (needsIndex) when the URLs do not fit in one file.
    static Result writeTo(QIODevice* out, const std::shared_ptr<Project>& project);
    // The sitemap in `path`; when the URLs do not fit in one, `path` becomes the index of the
    // files NAME-1.xml, NAME-2.xml... written beside it, located for the index under the
    // root of the project's site.
    static Result writeFile(const QString& path, const std::shared_ptr<Project>& project);

    static QString xmlEscaped(const QString& text);
};
