#pragma once

#include "store/FetchLog.h"

#include <QString>

#include <functional>
#include <memory>

class Project;

// The fetched URLs an audit report is about (the broken ones, or the redirecting ones), each
// with every page that links to it and the link's anchor, read row by row: one row per link,
// grouped by URL (in URL order), links in their recorded order. A URL no page links to
// comes once, with a null source. Only URLs of the crawl's pages and its start URL are
// listed (not robots.txt).
class AuditListing {
public:
    enum class Kind { Broken, Redirects };
    struct Row {
        FetchLogPtr fetch;
        QString sourceUrl;  // null when no page links to the URL
        QString anchor;
    };

    static bool forEach(Kind kind, const std::shared_ptr<Project>& project, const std::function<void(const Row&)>& row);
};
