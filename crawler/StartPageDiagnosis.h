#pragma once

#include "crawler/StartPageStop.h"

#include <QString>

#include <memory>

class Project;

// Why a crawl analysed nothing of its site: what the fetch log, the headers and the start
// page's tags, as the crawl read them, say about the start URL. The crawl's behaviour is not changed; this only
// explains it.
class StartPageDiagnosis {
public:
    enum class Reason {
        Analysed,               // the start page was analysed: nothing to explain
        NotFetched,             // no fetch of the start URL is known (a stop, an older crawl)
        TransferFailed,         // detail: the failure's name ("refused", "timeout", "dns"...)
        ErrorStatus,            // status: the HTTP status
        RedirectedToOtherHost,  // detail: where the redirects ended
        NotHtml,                // detail: the content type
        TooLarge,
        Canonical,              // detail: the canonical URL the page names
        NoIndexNoFollow,
        NoIndexOrCanonical,     // one of the two, the page could not be read again to tell
        NotParsed,
    };
    struct Result {
        Reason reason = Reason::Analysed;
        QString startUrl;
        QString detail;
        int status = 0;
    };

    // The start page was not analysed, and no more than one page was.
    static bool crawlAnalysedNothing(const std::shared_ptr<Project>& project);
    // From what the crawl recorded (fetch log, headers, pages) and what it read on the start
    // page in this run (`stop`); nothing is asked of the site again. A start page answered
    // with HTML and left unrecorded by an earlier run reads as NoIndexOrCanonical.
    static Result diagnose(const std::shared_ptr<Project>& project, const StartPageStop& stop);
};
