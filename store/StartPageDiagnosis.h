#pragma once

#include <QString>

#include <memory>

class Project;

// Why a crawl analysed nothing of its site: what the fetch log, the headers and the start
// page itself say about the start URL. The crawl's behaviour is not changed; this only
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
    // The fetch log tells most reasons; a page answered 200 with HTML but left unrecorded is
    // fetched once more (time-out in seconds, 0 for the default) to read its robots and
    // canonical tags.
    static Result diagnose(const std::shared_ptr<Project>& project, double timeoutSeconds);
    // The canonical href that makes the crawler stop at a page, or null; and whether the
    // page carries both noindex and nofollow. Same rules as the page analysis.
    static QString canonicalElsewhere(const QByteArray& html, const QString& pageUrl, bool* noIndexNoFollow);
};
