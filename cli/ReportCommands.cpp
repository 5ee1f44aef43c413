#include "cli/ReportCommands.h"

#include "store/LinkRules.h"
#include "store/WebAudit.h"

#include "cli/CliText.h"
#include "cli/ProjectAccess.h"
#include "cli/ReportOptions.h"
#include "store/ReportWriter.h"
#include "cli/TableOutput.h"
#include "crawler/CrawlRecordKeeper.h"
#include "store/DateFormatter.h"
#include "store/DisplayText.h"
#include "store/FetchLog.h"
#include "store/PageFilter.h"
#include "store/PageListing.h"
#include "store/Project.h"
#include "store/QuillmereDownloaderQueue.h"
#include "store/QuillmereLink.h"
#include "store/QuillmereLinkPage.h"
#include "store/QuillmerePage.h"

#include <QMap>

#include <sqlite3.h>
#include <QUrl>

namespace ReportCommands {

namespace {
bool filterOption(CliContext& context, qint32* code, int* status)
{
    static const QStringList names{QStringLiteral("all"), QStringLiteral("404"), QStringLiteral("404-html"),
                                   QStringLiteral("404-other"), QStringLiteral("noindex"), QStringLiteral("canonical")};
    const QString text = context.command.values.value(QStringLiteral("--filter"), QStringLiteral("all"));
    const qsizetype index = names.indexOf(text);
    if (index < 0) {
        *status = failWith(ExitUsage, CliText::tr("CliErrorBadFilter").arg(text, names.join(QStringLiteral(", "))));
        return false;
    }
    *code = qint32(index);
    return true;
}

// --columns a,b,c (the default: every column but error) and --sort COLUMN[:asc|:desc].
bool columnOptions(CliContext& context, QStringList* columns, QString* sort, bool* descending, int* status)
{
    const QStringList all = PageListing::columns();
    const QString listed = context.command.values.value(QStringLiteral("--columns"));
    *columns = listed.isEmpty() ? all.mid(0, all.size() - 1) : listed.split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (auto& c : *columns) {
        c = c.trimmed();
        if (!PageListing::isColumn(c)) {
            *status = failWith(ExitUsage, CliText::tr("CliErrorBadColumn").arg(c, all.join(QStringLiteral(", "))));
            return false;
        }
    }
    if (columns->isEmpty()) {
        *status = failWith(ExitUsage, CliText::tr("CliErrorBadColumn").arg(listed, all.join(QStringLiteral(", "))));
        return false;
    }
    QString sortText = context.command.values.value(QStringLiteral("--sort"));
    *descending = false;
    if (sortText.endsWith(QLatin1String(":desc"))) {
        *descending = true;
        sortText.chop(5);
    } else if (sortText.endsWith(QLatin1String(":asc"))) {
        sortText.chop(4);
    }
    if (!sortText.isEmpty() && !PageListing::isColumn(sortText)) {
        *status = failWith(ExitUsage, CliText::tr("CliErrorBadColumn").arg(sortText, all.join(QStringLiteral(", "))));
        return false;
    }
    *sort = sortText;
    return true;
}

QString columnHeader(const QString& column)
{
    static const QMap<QString, const char*> keys{
        {QStringLiteral("url"), "DocumentViewColumnURL"},
        {QStringLiteral("title"), "DocumentViewColumnTitle"},
        {QStringLiteral("depth"), "DocumentViewColumnDepth"},
        {QStringLiteral("inLinkCount"), "DocumentViewColumnReceived"},
        {QStringLiteral("outLinkCount"), "DocumentViewColumnLinksOut"},
        {QStringLiteral("weight"), "DocumentViewColumnWeight"},
        {QStringLiteral("status"), "CliColumnStatus"},
        {QStringLiteral("responseMs"), "CliColumnResponseMs"},
        {QStringLiteral("error"), "CliColumnError"},
    };
    return CliText::tr(keys.value(column, "CliColumnStatus"));
}

QString limitText(qint32 limit)
{
    return limit == -1 ? CliText::tr("CliLimitNone") : QString::number(limit);
}

QString dateText(const QDateTime& date)
{
    return date.isValid() ? DateFormatter::stringFromDate(date) : QStringLiteral("-");
}

QString filterCounts(const std::shared_ptr<Project>& project)
{
    QString out = CliText::tr("CliFiltersTitle") + QLatin1Char('\n');
    const char* labels[] = {nullptr, "CliFilter404All", "CliFilter404Html", "CliFilter404Other", "CliFilterNoIndex",
                            "CliFilterCanonical"};
    for (qint32 code = 1; code <= 5; ++code)
        out += QStringLiteral("  %1 %2\n").arg(CliText::tr(labels[code]), -16)
                   .arg(PageFilter::pages(code, project).size());
    return out;
}

QString topPages(const std::shared_ptr<Project>& project, int count)
{
    // A large site's pages are not all loaded for ten rows.
    const QList<QuillmerePagePtr> pages = QuillmerePage::getTopPagesByWeightForProject(project, count);
    TableOutput table({}, {CliText::tr("CliTopWeight"), CliText::tr("CliTopIn"), CliText::tr("CliTopOut"),
                           CliText::tr("CliTopDepth"), QStringLiteral("URL")});
    for (const auto& p : pages)
        table.addRow({p->weight(), p->inLinkCount(), p->outLinkCount(), p->depth(), p->url()});
    QString out = table.render(TableOutput::Format::Table, CliText::tr("CliTopTitle").arg(pages.size()));
    // Indent the table under its title.
    QStringList lines = out.split(QLatin1Char('\n'));
    for (int i = 1; i < lines.size(); ++i)
        if (!lines[i].isEmpty())
            lines[i] = QStringLiteral("  ") + lines[i];
    return lines.join(QLatin1Char('\n'));
}

// A label padded to the report's column of values.
QString label(const char* key)
{
    const QString text = CliText::tr(key);
    return text.size() >= 16 ? text + QLatin1Char(' ') : text.leftJustified(16);
}

// The web rules' targets, a line per kind: how many, by status class.
QString webCounts(const ProjectPtr& project)
{
    const auto counts = WebAudit::countsByKind(project);
    static const char* const kinds[][2] = {{"page", "CliReportWebPages"},
                                           {"resource", "CliReportWebResources"},
                                           {"external", "CliReportWebExternal"},
                                           {"other", "CliReportWebOther"}};
    static const char* const classes[] = {"2xx",      "3xx",     "4xx",     "5xx",         "failed", "blocked",
                                          "robots",   "excluded", "skipped", "not-checked", "pending"};
    QString out = CliText::tr("CliReportWebTitle") + QLatin1Char('\n');
    for (const auto& kind : kinds) {
        const auto byClass = counts.value(QLatin1String(kind[0]));
        qint64 total = 0;
        QStringList parts;
        for (const char* name : classes) {
            const qint64 n = byClass.value(QLatin1String(name));
            total += n;
            if (n > 0)
                parts << QStringLiteral("%1 %2")
                             .arg(qstrcmp(name, "robots") == 0 ? QStringLiteral("blocked by robots.txt") : QLatin1String(name))
                             .arg(n);
        }
        out += QStringLiteral("  ") + label(kind[1]) + QString::number(total)
               + (parts.isEmpty() ? QString() : QStringLiteral(" (") + parts.join(QStringLiteral(", ")) + QLatin1Char(')'))
               + QLatin1Char('\n');
    }
    return out;
}

// The page a URL names, typed with its escapes (%20) or without them (a space, é), and with
// or without its trailing "/".
QuillmerePagePtr pageForTypedURL(const QString& typed, const ProjectPtr& project)
{
    if (QuillmerePagePtr page = QuillmerePage::getPageFromURL(typed, project))
        return page;
    const QString stored = PageListing::storedURLMatching(typed, project);
    return stored.isNull() ? nullptr : QuillmerePage::getPageFromURL(stored, project);
}
} // namespace

QList<CommandSpec> specs()
{
    return {
        {QStringLiteral("show"), QStringLiteral("show NAME"), CliText::tr("CliShowSummary"), CliText::tr("CliShowDetails"),
         1, 1, {}, {}},
        {QStringLiteral("pages"),
         QStringLiteral("pages NAME [--filter all|404|404-html|404-other|noindex|canonical] [--columns C,...]\n"
                        "        [--sort COLUMN[:desc]] [--format table|csv|json|markdown]"),
         CliText::tr("CliPagesSummary"), CliText::tr("CliPagesDetails") + ReportOptions::formatHelp(), 1, 1,
         {QStringLiteral("--filter"), QStringLiteral("--format"), QStringLiteral("--columns"), QStringLiteral("--sort")},
         {}},
        {QStringLiteral("links"), QStringLiteral("links NAME URL [--format table|csv|json|markdown]"),
         CliText::tr("CliLinksSummary"), CliText::tr("CliLinksDetails") + ReportOptions::formatHelp(), 2, 2,
         {QStringLiteral("--format")}, {}},
    };
}

int runShow(CliContext& context)
{
    int status = ExitOk;
    const QString name = context.command.operands.value(0);
    ProjectPtr project = ProjectAccess::open(context, name, ProjectAccess::Need::Read, &status);
    if (!project)
        return status;
    QString out;
    out += label("CliShowProject") + DisplayText::escapeControls(project->name()) + QLatin1Char('\n');
    out += label("CliShowURL") + DisplayText::escapeControls(project->url()) + QLatin1Char('\n');
    out += label("CliShowRules") + LinkRulesStore::nameOf(LinkRulesStore::of(project)) + QLatin1Char('\n');
    out += label("CliShowCreated") + dateText(project->creation_date()) + QLatin1Char('\n');
    out += label("CliShowLimits")
           + CliText::tr("CliShowLimitsValue").arg(limitText(project->limit_depth()), limitText(project->limit_page_count()))
           + QLatin1Char('\n');
    out += label("CliShowLastCrawl")
           + CliText::tr("CliShowFromTo").arg(dateText(project->crawler_start_date()), dateText(project->crawler_stop_date()))
           + QLatin1Char('\n');
    out += label("CliShowPagesCrawled") + QString::number(CrawlRecordKeeper::pageCountOf(project)) + QLatin1Char('\n');
    out += label("CliReportDeepest") + QString::number(project->max_depth()) + QLatin1Char('\n');
    out += label("CliShowPagesKnown") + QString::number(QuillmerePage::countPagesForProject(project)) + QLatin1Char('\n');
    out += label("CliReportQueue")
           + CliText::tr("CliReportQueueValue")
                 .arg(QuillmereDownloaderQueue::countDoneDownloaderQueueForProject(project))
                 .arg(QuillmereDownloaderQueue::countWaitingDownloaderQueueForProject(project))
           + QLatin1Char('\n');
    out += label("CliReportBroken")
           + CliText::tr("CliReportBrokenValue")
                 .arg(FetchLog::countBrokenLinks(project))
                 .arg(FetchLog::countBrokenTargets(project))
           + QLatin1Char('\n');
    out += label("CliShowDatabase") + project->full_sqlite_name() + QLatin1Char('\n');
    out += filterCounts(project);
    if (const int failed = ProjectAccess::databaseFailureStatus(project, ProjectAccess::Need::Read))
        return failed;
    printOut(out);
    return ExitOk;
}

int runPages(CliContext& context)
{
    int status = ExitOk;
    ReportWriter::Format format;
    qint32 filter = 0;
    QStringList columns;
    QString sort;
    bool descending = false;
    if (!ReportOptions::format(context, &format, &status) || !filterOption(context, &filter, &status)
        || !columnOptions(context, &columns, &sort, &descending, &status))
        return status;
    ProjectPtr project = ProjectAccess::open(context, context.command.operands.value(0), ProjectAccess::Need::Read, &status);
    if (!project)
        return status;
    QStringList headers;
    for (const auto& c : columns)
        headers << columnHeader(c);
    // Rows are printed as the statement yields them: a list of any length starts at once and
    // holds one page at a time (the aligned table excepted, which needs its widths).
    ReportWriter writer(format, columns, headers, QString());
    const bool table = format == ReportWriter::Format::Table;
    const bool read = PageListing::forEachPage(filter, sort, descending, project, [&](const PageListing::Row& row) {
        QList<QVariant> values;
        values.reserve(columns.size());
        for (const auto& c : columns)
            values << PageListing::cellValue(c, row, table);
        writer.addRow(values);
    });
    if (const int failed = ProjectAccess::databaseFailureStatus(project, ProjectAccess::Need::Read))
        return failed;
    if (!read)
        return failWith(ExitUsage, CliText::tr("CliErrorUnreadableDatabase").arg(project->name()));
    writer.setTitle(CliText::tr(PageFilter::titleKey(filter)).arg(writer.rowCount()));
    writer.finish();
    return ExitOk;
}

int runLinks(CliContext& context)
{
    int status = ExitOk;
    ReportWriter::Format format;
    if (!ReportOptions::format(context, &format, &status))
        return status;
    ProjectPtr project = ProjectAccess::open(context, context.command.operands.value(0), ProjectAccess::Need::Read, &status);
    if (!project)
        return status;
    const QString url = context.command.operands.value(1);
    if (url.isEmpty())
        return failWith(ExitUsage, CliText::tr("CliErrorEmptyURL"));
    const QuillmerePagePtr page = pageForTypedURL(url, project);
    if (const int failed = ProjectAccess::databaseFailureStatus(project, ProjectAccess::Need::Read))
        return failed;
    if (!page)
        return failWith(ExitUsage, CliText::tr("CliErrorNoPageWithURL").arg(url, project->name()));
    // One read transaction, so that the count in the title and the rows agree while a crawl
    // writes; the rows are written as they are read (a home page can have millions).
    sqlite3* db = project->sqlite3Database();
    const bool snapshot = db && sqlite3_exec(db, "begin", nullptr, nullptr, nullptr) == SQLITE_OK;
    const qint64 count = QuillmereLinkPage::countSourceLinks(*page, project);
    if (const int failed = ProjectAccess::databaseFailureStatus(project, ProjectAccess::Need::Read)) {
        if (snapshot)
            sqlite3_exec(db, "rollback", nullptr, nullptr, nullptr);
        return failed;
    }
    ReportWriter writer(format,
                        {QStringLiteral("anchor"), QStringLiteral("url"), QStringLiteral("depth"), QStringLiteral("outLinkCount")},
                        {CliText::tr("LinkViewColumnAnchor"), CliText::tr("LinkViewColumnURL"),
                         CliText::tr("LinkViewColumnDepth"), CliText::tr("LinkViewColumnLinksOut")},
                        CliText::tr("CliLinksTitle").arg(count).arg(page->url()));
    QuillmereLinkPage::forEachSourceLink(*page, project, [&writer](const QuillmereLinkPage& pair) {
        writer.addRow({pair.quillmereLink()->anchor(), pair.quillmerePage()->url(), pair.quillmerePage()->depth(),
                       pair.quillmerePage()->outLinkCount()});
    });
    if (snapshot)
        sqlite3_exec(db, "rollback", nullptr, nullptr, nullptr);
    if (const int failed = ProjectAccess::databaseFailureStatus(project, ProjectAccess::Need::Read))
        return failed;
    writer.finish();
    return ExitOk;
}

void printCrawlReport(const std::shared_ptr<Project>& project, const CrawlRunFigures& figures)
{
    QString out;
    const QString how = figures.stopped ? CliText::tr("CliReportStopped")
                                        : (figures.endError.isEmpty() ? QString() : CliText::tr("CliReportEndedOnError"));
    out += CliText::tr("CliReportTitle").arg(DisplayText::escapeControls(project->name()),
                                              DisplayText::escapeControls(project->url()))
           + how + QLatin1Char('\n');
    if (figures.webRules)
        out += label("CliShowRules") + LinkRulesStore::nameOf(LinkRules::Web) + QLatin1Char('\n');
    out += label("CliReportPagesAnalysed")
           + CliText::tr("CliReportPagesValue").arg(project->pages_count()).arg(figures.pagesThisRun) + QLatin1Char('\n');
    out += label("CliReportDeepest") + QString::number(project->max_depth()) + QLatin1Char('\n');
    const double rate = figures.seconds > 0 ? figures.pagesThisRun / figures.seconds : 0;
    out += label("CliReportDuration")
           + CliText::tr("CliReportDurationValue").arg(figures.seconds, 0, 'f', 2).arg(rate, 0, 'f', 1) + QLatin1Char('\n');
    out += label("CliReportQueue")
           + CliText::tr("CliReportQueueValue")
                 .arg(QuillmereDownloaderQueue::countDoneDownloaderQueueForProject(project))
                 .arg(QuillmereDownloaderQueue::countWaitingDownloaderQueueForProject(project))
           + QLatin1Char('\n');
    out += label("CliReportBroken")
           + CliText::tr("CliReportBrokenValue").arg(figures.brokenLinks).arg(figures.brokenTargets) + QLatin1Char('\n');
    if (figures.webRules) {
        out += label("CliReportBrokenFragments") + QString::number(figures.brokenFragments) + QLatin1Char('\n');
        out += webCounts(project);
        const qint64 blocked = WebAudit::countsByKind(project).value(QStringLiteral("external")).value(QStringLiteral("blocked"));
        if (blocked > 0)
            out += CliText::tr("CliReportBlockedNote").arg(blocked).arg(project->name()) + QLatin1Char('\n');
    }
    if (figures.misreadBroken > 0)
        out += CliText::tr("CliClassicMisreadHint").arg(figures.misreadBroken) + QLatin1Char('\n');
    out += filterCounts(project);
    out += topPages(project, 10);
    if (!figures.whyNothing.isEmpty())
        out += QLatin1Char('\n') + figures.whyNothing + QLatin1Char('\n');
    printOut(out);
}

} // namespace ReportCommands
