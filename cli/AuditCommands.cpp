#include "cli/AuditCommands.h"

#include "cli/CliText.h"
#include "cli/ProjectAccess.h"
#include "cli/ReportOptions.h"
#include "store/ReportWriter.h"
#include "cli/WebAuditCommands.h"
#include "store/LinkRules.h"
#include "store/WebAudit.h"
#include "store/AuditListing.h"
#include "store/AuditReport.h"
#include "store/Project.h"
#include "store/SitemapWriter.h"

#include <QFile>
#include <QVariantMap>

namespace AuditCommands {

namespace {

QVariant statusValue(const FetchLogPtr& fetch)
{
    return fetch->status() > 0 ? QVariant(qint64(fetch->status())) : QVariant();
}

QVariantList chainList(const FetchLogPtr& fetch)
{
    QVariantList hops;
    for (const auto& hop : fetch->redirectChain())
        hops.append(QVariantMap{{QStringLiteral("url"), hop.url}, {QStringLiteral("status"), hop.status}});
    return hops;
}

// One JSON object per URL, with the pages that link to it: the rows of a URL come together.
class JsonGroups {
public:
    JsonGroups(ReportWriter& writer, std::function<QVariantMap(const FetchLogPtr&)> describe)
        : writer_(writer), describe_(std::move(describe))
    {
    }
    void add(const AuditListing::Row& row)
    {
        if (!current_ || current_->url() != row.fetch->url()) {
            flush();
            current_ = row.fetch;
            object_ = describe_(row.fetch);
            sources_.clear();
        }
        if (!row.sourceUrl.isNull())
            sources_.append(QVariantMap{{QStringLiteral("url"), row.sourceUrl}, {QStringLiteral("anchor"), row.anchor}});
    }
    void flush()
    {
        if (!current_)
            return;
        object_.insert(QStringLiteral("linkedFrom"), sources_);
        writer_.addJsonObject(object_);
        current_.reset();
    }
    qint64 groups() const { return writer_.rowCount(); }

private:
    ReportWriter& writer_;
    std::function<QVariantMap(const FetchLogPtr&)> describe_;
    FetchLogPtr current_;
    QVariantMap object_;
    QVariantList sources_;
};

int runListing(CliContext& context, AuditListing::Kind kind)
{
    int status = ExitOk;
    ReportWriter::Format format;
    if (!ReportOptions::format(context, &format, &status))
        return status;
    ProjectPtr project = ProjectAccess::open(context, context.command.operands.value(0), ProjectAccess::Need::Read, &status);
    if (!project)
        return status;
    const bool broken = kind == AuditListing::Kind::Broken;
    if (broken && LinkRulesStore::of(project) == LinkRules::Web)
        return WebAuditCommands::runBroken(context, project);
    const AuditReport::Kind report = broken ? AuditReport::Kind::Broken : AuditReport::Kind::Redirects;
    const QStringList keys = AuditReport::keys(report, false);
    QStringList headers;
    for (const char* key : AuditReport::headerKeys(report, false))
        headers << CliText::tr(key);
    ReportWriter writer(format, keys, headers, QString());
    JsonGroups groups(writer, [broken](const FetchLogPtr& f) {
        QVariantMap object{{QStringLiteral("url"), f->url()},
                           {QStringLiteral("status"), statusValue(f)},
                           {QStringLiteral("finalUrl"), f->finalUrl()},
                           {QStringLiteral("responseMs"), f->responseMs()},
                           {QStringLiteral("fetchedAt"), f->fetchedAt().toString(Qt::ISODateWithMs)}};
        if (broken) {
            object.insert(QStringLiteral("error"), f->failure().isEmpty() ? QVariant() : QVariant(f->failure()));
            object.insert(QStringLiteral("errorText"), f->failureText());
        } else {
            object.insert(QStringLiteral("chain"), chainList(f));
        }
        return object;
    });
    qint64 urls = 0, links = 0;
    FetchLogPtr last;
    const bool read = AuditListing::forEach(kind, project, [&](const AuditListing::Row& row) {
        if (row.fetch != last) {
            ++urls;
            last = row.fetch;
        }
        if (!row.sourceUrl.isNull())
            ++links;
        if (format == ReportWriter::Format::Json) {
            groups.add(row);
            return;
        }
        writer.addRow(AuditReport::values(report, row));
    });
    groups.flush();
    if (const int failed = ProjectAccess::databaseFailureStatus(project, ProjectAccess::Need::Read))
        return failed;
    if (!read)
        return failWith(ExitUsage, CliText::tr("CliErrorUnreadableDatabase").arg(project->name()));
    writer.setTitle(CliText::tr(broken ? "CliBrokenTitle" : "CliRedirectsTitle").arg(urls).arg(links));
    writer.finish();
    if (broken) {
        // Said on standard error: the formats for programs stay as they are.
        if (const qint64 misread = WebAudit::countClassicMisreadBroken(project))
            printErr(CliText::tr("CliClassicMisreadHint").arg(misread));
    }
    return ExitOk;
}

} // namespace

QList<CommandSpec> specs()
{
    return {
        {QStringLiteral("broken"), QStringLiteral("broken NAME [--format table|csv|json|markdown]"),
         CliText::tr("CliBrokenSummary"), CliText::tr("CliBrokenDetails") + ReportOptions::formatHelp(), 1, 1,
         {QStringLiteral("--format")}, {}},
        {QStringLiteral("redirects"), QStringLiteral("redirects NAME [--format table|csv|json|markdown]"),
         CliText::tr("CliRedirectsSummary"), CliText::tr("CliRedirectsDetails") + ReportOptions::formatHelp(), 1, 1,
         {QStringLiteral("--format")}, {}},
        {QStringLiteral("sitemap"), QStringLiteral("sitemap NAME [-o FILE]"), CliText::tr("CliSitemapSummary"),
         CliText::tr("CliSitemapDetails"), 1, 1, {QStringLiteral("-o"), QStringLiteral("--output")}, {}},
    };
}

int runBroken(CliContext& context)
{
    return runListing(context, AuditListing::Kind::Broken);
}

int runRedirects(CliContext& context)
{
    return runListing(context, AuditListing::Kind::Redirects);
}

int runSitemap(CliContext& context)
{
    int status = ExitOk;
    QString output = context.command.values.value(QStringLiteral("-o"),
                                                  context.command.values.value(QStringLiteral("--output")));
    ProjectPtr project = ProjectAccess::open(context, context.command.operands.value(0), ProjectAccess::Need::Read, &status);
    if (!project)
        return status;
    SitemapWriter::Result result;
    if (output.isEmpty() || output == QLatin1String("-")) {
        QFile out;
        if (!out.open(stdout, QIODevice::WriteOnly))
            return failWith(ExitFailure, CliText::tr("CliSitemapCannotWrite").arg(QStringLiteral("-"), out.errorString()));
        result = SitemapWriter::writeTo(&out, project);
        out.flush();
        if (!result.ok && result.errorFile.isEmpty())
            result.errorFile = QStringLiteral("-");
        if (result.needsIndex)
            return failWith(ExitUsage, CliText::tr("CliSitemapNeedsFile").arg(result.urls).arg(SitemapWriter::kMaxUrlsPerFile));
    } else {
        result = SitemapWriter::writeFile(output, project);
    }
    if (const int failed = ProjectAccess::databaseFailureStatus(project, ProjectAccess::Need::Read))
        return failed;
    if (result.unreadable)
        return failWith(ExitUsage, CliText::tr("CliErrorUnreadableDatabase").arg(project->name()));
    if (!result.ok)
        return failWith(ExitFailure, CliText::tr("CliSitemapCannotWrite").arg(result.errorFile, result.errorReason));
    if (result.files.size() == 1)
        printErr(CliText::tr("CliSitemapWrote").arg(result.urls).arg(result.files.first()));
    else if (result.files.size() > 1)
        printErr(CliText::tr("CliSitemapWroteIndex").arg(result.urls).arg(result.files.first()).arg(result.files.size() - 1));
    return ExitOk;
}

} // namespace AuditCommands
