#include "cli/ReportCommands.h"

#include "cli/ProjectAccess.h"
#include "cli/TableOutput.h"
#include "crawler/CrawlRecordKeeper.h"
#include "store/DateFormatter.h"
#include "store/Localization.h"
#include "store/PageFilter.h"
#include "store/Project.h"
#include "store/QuillmereDownloaderQueue.h"
#include "store/QuillmereLink.h"
#include "store/QuillmereLinkPage.h"
#include "store/QuillmerePage.h"

#include <algorithm>

namespace ReportCommands {

namespace {
const QString kFormatHelp = QStringLiteral("  --format F   table (default), csv (RFC 4180) or json (an array of objects)\n");

bool formatOption(CliContext& context, TableOutput::Format* format, int* status)
{
    const QString text = context.command.values.value(QStringLiteral("--format"), QStringLiteral("table"));
    if (!TableOutput::parseFormat(text, format)) {
        *status = failWith(ExitUsage, QStringLiteral("'%1' is not a format: table, csv or json").arg(text));
        return false;
    }
    return true;
}

bool filterOption(CliContext& context, qint32* code, int* status)
{
    static const QStringList names{QStringLiteral("all"), QStringLiteral("404"), QStringLiteral("404-html"),
                                   QStringLiteral("404-other"), QStringLiteral("noindex"), QStringLiteral("canonical")};
    const QString text = context.command.values.value(QStringLiteral("--filter"), QStringLiteral("all"));
    const qsizetype index = names.indexOf(text);
    if (index < 0) {
        *status = failWith(ExitUsage, QStringLiteral("'%1' is not a filter: %2").arg(text, names.join(QStringLiteral(", "))));
        return false;
    }
    *code = qint32(index);
    return true;
}

QString limitText(qint32 limit)
{
    return limit == -1 ? QStringLiteral("none") : QString::number(limit);
}

QString dateText(const QDateTime& date)
{
    return date.isValid() ? DateFormatter::stringFromDate(date) : QStringLiteral("-");
}

QString filterCounts(const std::shared_ptr<Project>& project)
{
    QString out = QStringLiteral("Filters:\n");
    const char* labels[] = {nullptr, "404, all types", "404, HTML only", "404, not HTML", "noindex", "canonical"};
    for (qint32 code = 1; code <= 5; ++code)
        out += QStringLiteral("  %1 %2\n").arg(QString::fromLatin1(labels[code]) + QLatin1Char(':'), -16)
                   .arg(PageFilter::pages(code, project).size());
    return out;
}

QString topPages(const std::shared_ptr<Project>& project, int count)
{
    // A large site's pages are not all loaded for ten rows.
    const QList<QuillmerePagePtr> pages = QuillmerePage::getTopPagesByWeightForProject(project, count);
    TableOutput table({}, {QStringLiteral("WEIGHT"), QStringLiteral("IN"), QStringLiteral("OUT"), QStringLiteral("DEPTH"),
                           QStringLiteral("URL")});
    for (const auto& p : pages)
        table.addRow({p->weight(), p->inLinkCount(), p->outLinkCount(), p->depth(), p->url()});
    QString out = table.render(TableOutput::Format::Table, QStringLiteral("Top %1 pages by weight:").arg(pages.size()));
    // Indent the table under its title.
    QStringList lines = out.split(QLatin1Char('\n'));
    for (int i = 1; i < lines.size(); ++i)
        if (!lines[i].isEmpty())
            lines[i] = QStringLiteral("  ") + lines[i];
    return lines.join(QLatin1Char('\n'));
}
} // namespace

QList<CommandSpec> specs()
{
    return {
        {QStringLiteral("show"), QStringLiteral("show NAME"), QStringLiteral("show a project, its last crawl and its counts"),
         QString(), 1, 1, {}, {}},
        {QStringLiteral("pages"),
         QStringLiteral("pages NAME [--filter all|404|404-html|404-other|noindex|canonical] [--format table|csv|json]"),
         QStringLiteral("list the pages of a project: URL, title, depth, links received, links sent, weight"),
         QStringLiteral("  --filter F   all (default): HTML pages without noindex, nofollow or canonical; 404: pages\n"
                        "               without HTML answer, any type; 404-html, 404-other: the same by content type;\n"
                        "               noindex; canonical: pages that name another URL as canonical\n")
             + kFormatHelp,
         1, 1, {QStringLiteral("--filter"), QStringLiteral("--format")}, {}},
        {QStringLiteral("links"), QStringLiteral("links NAME URL [--format table|csv|json]"),
         QStringLiteral("list the pages that link to the page at URL, with their anchors"), kFormatHelp, 2, 2,
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
    out += QStringLiteral("Project:        %1\n").arg(project->name());
    out += QStringLiteral("URL:            %1\n").arg(project->url());
    out += QStringLiteral("Created:        %1\n").arg(dateText(project->creation_date()));
    out += QStringLiteral("Limits:         depth %1, pages %2\n").arg(limitText(project->limit_depth()), limitText(project->limit_page_count()));
    out += QStringLiteral("Last crawl:     %1 to %2\n").arg(dateText(project->crawler_start_date()), dateText(project->crawler_stop_date()));
    out += QStringLiteral("Pages crawled:  %1\n").arg(CrawlRecordKeeper::pageCountOf(project));
    out += QStringLiteral("Deepest depth:  %1\n").arg(project->max_depth());
    out += QStringLiteral("Pages known:    %1\n").arg(QuillmerePage::countPagesForProject(project));
    out += QStringLiteral("Queue:          %1 done, %2 waiting\n")
               .arg(QuillmereDownloaderQueue::countDoneDownloaderQueueForProject(project))
               .arg(QuillmereDownloaderQueue::countWaitingDownloaderQueueForProject(project));
    out += QStringLiteral("Database:       %1\n").arg(project->full_sqlite_name());
    out += filterCounts(project);
    if (const int failed = ProjectAccess::databaseFailureStatus(project, ProjectAccess::Need::Read))
        return failed;
    printOut(out);
    return ExitOk;
}

int runPages(CliContext& context)
{
    int status = ExitOk;
    TableOutput::Format format;
    qint32 filter = 0;
    if (!formatOption(context, &format, &status) || !filterOption(context, &filter, &status))
        return status;
    ProjectPtr project = ProjectAccess::open(context, context.command.operands.value(0), ProjectAccess::Need::Read, &status);
    if (!project)
        return status;
    const QList<QuillmerePagePtr> pages = PageFilter::pages(filter, project);
    TableOutput table({QStringLiteral("url"), QStringLiteral("title"), QStringLiteral("depth"),
                       QStringLiteral("inLinkCount"), QStringLiteral("outLinkCount"), QStringLiteral("weight")},
                      {Localization::localizedString("DocumentViewColumnURL"),
                       Localization::localizedString("DocumentViewColumnTitle"),
                       Localization::localizedString("DocumentViewColumnDepth"),
                       Localization::localizedString("DocumentViewColumnReceived"),
                       Localization::localizedString("DocumentViewColumnLinksOut"),
                       Localization::localizedString("DocumentViewColumnWeight")});
    if (const int failed = ProjectAccess::databaseFailureStatus(project, ProjectAccess::Need::Read))
        return failed;
    for (const auto& p : pages)
        table.addRow({p->url(), p->title(), p->depth(), p->inLinkCount(), p->outLinkCount(), p->weight()});
    printOut(table.render(format, PageFilter::title(filter, quint64(pages.size()))));
    return ExitOk;
}

int runLinks(CliContext& context)
{
    int status = ExitOk;
    TableOutput::Format format;
    if (!formatOption(context, &format, &status))
        return status;
    ProjectPtr project = ProjectAccess::open(context, context.command.operands.value(0), ProjectAccess::Need::Read, &status);
    if (!project)
        return status;
    const QString url = context.command.operands.value(1);
    if (url.isEmpty())
        return failWith(ExitUsage, QStringLiteral("the URL is empty"));
    const QuillmerePagePtr page = QuillmerePage::getPageFromURL(url, project);
    if (const int failed = ProjectAccess::databaseFailureStatus(project, ProjectAccess::Need::Read))
        return failed;
    if (!page)
        return failWith(ExitUsage, QStringLiteral("no page with the URL %1 in '%2'").arg(url, project->name()));
    const QList<QuillmereLinkPagePtr> links = QuillmereLinkPage::getSourcesLinksFromPage(page, project);
    if (const int failed = ProjectAccess::databaseFailureStatus(project, ProjectAccess::Need::Read))
        return failed;
    TableOutput table({QStringLiteral("anchor"), QStringLiteral("url"), QStringLiteral("depth"), QStringLiteral("outLinkCount")},
                      {Localization::localizedString("LinkViewColumnAnchor"), Localization::localizedString("LinkViewColumnURL"),
                       Localization::localizedString("LinkViewColumnDepth"),
                       Localization::localizedString("LinkViewColumnLinksOut")});
    for (const auto& pair : links)
        table.addRow({pair->quillmereLink()->anchor(), pair->quillmerePage()->url(), pair->quillmerePage()->depth(),
                      pair->quillmerePage()->outLinkCount()});
    printOut(table.render(format, PageFilter::sourcesTitle(quint64(links.size()))));
    return ExitOk;
}

void printCrawlReport(const std::shared_ptr<Project>& project, const CrawlRunFigures& figures)
{
    QString out;
    out += QStringLiteral("Crawl of '%1' (%2)%3\n")
               .arg(project->name(), project->url(),
                    figures.stopped ? QStringLiteral(": stopped") : (figures.endError.isEmpty() ? QString() : QStringLiteral(": ended on an error")));
    out += QStringLiteral("Pages analysed: %1 (this run: %2)\n").arg(project->pages_count()).arg(figures.pagesThisRun);
    out += QStringLiteral("Deepest depth:  %1\n").arg(project->max_depth());
    const double rate = figures.seconds > 0 ? figures.pagesThisRun / figures.seconds : 0;
    out += QStringLiteral("Duration:       %1 s (%2 pages/s)\n").arg(figures.seconds, 0, 'f', 2).arg(rate, 0, 'f', 1);
    out += QStringLiteral("Queue:          %1 done, %2 waiting\n")
               .arg(QuillmereDownloaderQueue::countDoneDownloaderQueueForProject(project))
               .arg(QuillmereDownloaderQueue::countWaitingDownloaderQueueForProject(project));
    out += filterCounts(project);
    out += topPages(project, 10);
    printOut(out);
}

} // namespace ReportCommands
