#pragma once

#include "store/FetchLog.h"
#include "store/QuillmerePage.h"

#include <QList>
#include <QString>

#include <memory>

class Project;

// What the window's page panel shows of one page: its last fetch (status, time, redirects)
// and the pages it links to, in the order its links were recorded. The links list shows the
// other direction (the pages that link to it).
class PageDetails {
public:
    struct OutgoingLink {
        QString anchor;
        QuillmerePagePtr target;
        FetchLogPtr fetch;  // null when the target was never fetched
    };

    // The last fetch of the page's URL; null when none was recorded.
    static FetchLogPtr fetchOf(const QuillmerePage& page, const std::shared_ptr<Project>& project);
    // A link whose target page row is gone is left out.
    static QList<OutgoingLink> outgoingLinks(const QuillmerePage& page, const std::shared_ptr<Project>& project);
};
