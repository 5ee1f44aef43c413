#include "crawler/StartPageDiagnosis.h"

#include "store/FetchLog.h"
#include "store/LinkHeaders.h"
#include "store/Localization.h"
#include "store/Project.h"
#include "store/QuillmerePage.h"
#include "store/RecordStatement.h"

#include <QUrl>

#include <sqlite3.h>

using namespace RecordStatement;

namespace {

bool isAnalysedTitle(const QString& title)
{
    return !title.isEmpty() && title != Localization::localizedString("ErrorContentType");
}

qint64 analysedPageCount(const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, "select count(*) from Page where title <> '' and title <> ?", &stmt))
        return 0;
    bindText(stmt, 1, Localization::localizedString("ErrorContentType"));
    qint64 count = 0;
    if (step(stmt, project) == SQLITE_ROW)
        count = sqlite3_column_int64(stmt, 0);
    finish(stmt);
    return count;
}

bool sameHost(const QUrl& a, const QUrl& b)
{
    return a.host().compare(b.host(), Qt::CaseInsensitive) == 0 && a.port(-1) == b.port(-1)
           && a.scheme().compare(b.scheme(), Qt::CaseInsensitive) == 0;
}

} // namespace

bool StartPageDiagnosis::crawlAnalysedNothing(const ProjectPtr& project)
{
    const QuillmerePagePtr start = QuillmerePage::getPageFromURL(project->url(), project);
    if (start && isAnalysedTitle(start->title()))
        return false;
    return analysedPageCount(project) <= 1;
}

StartPageDiagnosis::Result StartPageDiagnosis::diagnose(const ProjectPtr& project, const StartPageStop& stop)
{
    Result result;
    result.startUrl = project->url();
    const QuillmerePagePtr start = QuillmerePage::getPageFromURL(project->url(), project);
    if (start && isAnalysedTitle(start->title()))
        return result;
    const FetchLogPtr fetch = FetchLog::getFetchLogWithURL(project->url(), project);
    if (!fetch) {
        result.reason = Reason::NotFetched;
        return result;
    }
    result.status = int(fetch->status());
    if (!fetch->redirectChain().isEmpty() && !sameHost(QUrl(fetch->finalUrl()), QUrl(project->url()))) {
        result.reason = Reason::RedirectedToOtherHost;
        result.detail = fetch->finalUrl();
        return result;
    }
    if (fetch->status() == 0 || fetch->failure() == QLatin1String("timeout") || fetch->failure() == QLatin1String("refused")
        || fetch->failure() == QLatin1String("dns") || fetch->failure() == QLatin1String("error")
        || fetch->failure() == QLatin1String("too-many-redirects") || fetch->failure() == QLatin1String("bad-url")) {
        result.reason = Reason::TransferFailed;
        result.detail = fetch->failure().isEmpty() ? QStringLiteral("error") : fetch->failure();
        return result;
    }
    if (fetch->status() != 200 && fetch->status() != 201 && fetch->status() != 204) {
        result.reason = Reason::ErrorStatus;
        return result;
    }
    if (fetch->failure() == QLatin1String("wrong-type")) {
        result.reason = Reason::NotHtml;
        const LinkHeadersPtr headers = LinkHeaders::getLinkHeadersWithURL(project->url(), project);
        result.detail = headers ? headers->contentType() : QString();
        return result;
    }
    if (fetch->failure() == QLatin1String("too-large")) {
        result.reason = Reason::TooLarge;
        return result;
    }
    if (start) {
        // Recorded without a title: the page did not parse.
        result.reason = Reason::NotParsed;
        return result;
    }
    // Answered with HTML and left without a record: noindex and nofollow, or canonical
    // elsewhere, as the crawl read the page.
    switch (stop.kind) {
    case StartPageStop::Kind::NoIndexNoFollow:
        result.reason = Reason::NoIndexNoFollow;
        break;
    case StartPageStop::Kind::Canonical:
        result.reason = Reason::Canonical;
        result.detail = stop.canonical;
        break;
    case StartPageStop::Kind::None:
        result.reason = Reason::NoIndexOrCanonical;
        break;
    }
    return result;
}
