#include "cli/WebAuditCommands.h"

#include "cli/CliText.h"
#include "cli/ProjectAccess.h"
#include "cli/ReportOptions.h"
#include "store/ReportWriter.h"
#include "store/AuditReport.h"
#include "store/LinkRules.h"
#include "store/Project.h"
#include "store/WebAudit.h"

#include <QVariantMap>

namespace WebAuditCommands {

namespace {

enum class Report { Broken, External, Fragments, Robots };

QVariant statusValue(const WebAudit::Row& row)
{
    return row.status > 0 ? QVariant(row.status) : QVariant();
}

// One JSON object per target, with the links to it.
class JsonTargets {
public:
    JsonTargets(ReportWriter& writer, Report report) : writer_(writer), report_(report) {}
    void add(const WebAudit::Row& row)
    {
        const QString key = report_ == Report::Fragments ? row.url + QLatin1Char('#') + row.fragment : row.url;
        if (key != currentKey_) {
            flush();
            currentKey_ = key;
            object_ = QVariantMap{{QStringLiteral("url"), row.url}};
            switch (report_) {
            case Report::Broken:
            case Report::External:
                object_.insert(QStringLiteral("status"), statusValue(row));
                object_.insert(QStringLiteral("kind"), row.kind);
                object_.insert(QStringLiteral("verdict"), row.verdict);
                object_.insert(QStringLiteral("error"), row.failure.isEmpty() ? QVariant() : QVariant(row.failure));
                object_.insert(QStringLiteral("finalUrl"), row.finalUrl);
                break;
            case Report::Fragments:
                object_.insert(QStringLiteral("fragment"), row.fragment);
                break;
            case Report::Robots:
                object_.insert(QStringLiteral("kind"), row.kind);
                object_.insert(QStringLiteral("rule"), row.rule);
                break;
            }
            sources_.clear();
        }
        if (!row.sourceUrl.isNull())
            sources_.append(QVariantMap{{QStringLiteral("url"), row.sourceUrl},
                                        {QStringLiteral("anchor"), row.anchor},
                                        {QStringLiteral("tag"), row.tag},
                                        {QStringLiteral("attribute"), row.attribute}});
    }
    void flush()
    {
        if (currentKey_.isNull())
            return;
        object_.insert(QStringLiteral("linkedFrom"), sources_);
        writer_.addJsonObject(object_);
        currentKey_ = QString();
    }

private:
    ReportWriter& writer_;
    Report report_;
    QString currentKey_;
    QVariantMap object_;
    QVariantList sources_;
};

int list(CliContext& context, Report report, ProjectPtr project)
{
    int status = ExitOk;
    ReportWriter::Format format;
    if (!ReportOptions::format(context, &format, &status))
        return status;
    if (!project) {
        project = ProjectAccess::open(context, context.command.operands.value(0), ProjectAccess::Need::Read, &status);
        if (!project)
            return status;
    }
    if (LinkRulesStore::of(project) != LinkRules::Web)
        return failWith(ExitUsage, CliText::tr("CliErrorNotWebProject").arg(project->name()));

    const AuditReport::Kind kind = report == Report::Broken      ? AuditReport::Kind::Broken
                                   : report == Report::External  ? AuditReport::Kind::External
                                   : report == Report::Fragments ? AuditReport::Kind::Fragments
                                                                 : AuditReport::Kind::Robots;
    const QStringList keys = AuditReport::keys(kind, true);
    QStringList headers;
    for (const char* key : AuditReport::headerKeys(kind, true))
        headers << CliText::tr(key);
    ReportWriter writer(format, keys, headers, QString());
    JsonTargets json(writer, report);
    qint64 targets = 0, links = 0;
    QString last;
    const WebAudit::Visit visit = [&](const WebAudit::Row& row) {
        const QString key = report == Report::Fragments ? row.url + QLatin1Char('#') + row.fragment : row.url;
        if (key != last) {
            ++targets;
            last = key;
        }
        if (!row.sourceUrl.isNull())
            ++links;
        if (format == ReportWriter::Format::Json) {
            json.add(row);
            return;
        }
        writer.addRow(AuditReport::values(kind, row));
    };
    bool read = false;
    switch (report) {
    case Report::Broken: read = WebAudit::forEachBroken(project, visit); break;
    case Report::External: read = WebAudit::forEachExternal(project, visit); break;
    case Report::Fragments: read = WebAudit::forEachBrokenFragment(project, visit); break;
    case Report::Robots: read = WebAudit::forEachRobotsBlocked(project, visit); break;
    }
    json.flush();
    if (const int failed = ProjectAccess::databaseFailureStatus(project, ProjectAccess::Need::Read))
        return failed;
    if (!read)
        return failWith(ExitUsage, CliText::tr("CliErrorUnreadableDatabase").arg(project->name()));
    const char* title = report == Report::Broken      ? "CliBrokenTitle"
                        : report == Report::External  ? "CliExternalTitle"
                        : report == Report::Fragments ? "CliFragmentsTitle"
                                                      : "CliRobotsTitle";
    writer.setTitle(CliText::tr(title).arg(targets).arg(links));
    writer.finish();
    return ExitOk;
}

} // namespace

QList<CommandSpec> specs()
{
    const QString format = QStringLiteral(" NAME [--format table|csv|json|markdown]");
    return {
        {QStringLiteral("external"), QStringLiteral("external") + format, CliText::tr("CliExternalSummary"),
         CliText::tr("CliExternalDetails") + ReportOptions::formatHelp(), 1, 1, {QStringLiteral("--format")}, {}},
        {QStringLiteral("fragments"), QStringLiteral("fragments") + format, CliText::tr("CliFragmentsSummary"),
         CliText::tr("CliFragmentsDetails") + ReportOptions::formatHelp(), 1, 1, {QStringLiteral("--format")}, {}},
        {QStringLiteral("robots"), QStringLiteral("robots") + format, CliText::tr("CliRobotsSummary"),
         CliText::tr("CliRobotsDetails") + ReportOptions::formatHelp(), 1, 1, {QStringLiteral("--format")}, {}},
    };
}

int runBroken(CliContext& context, const std::shared_ptr<Project>& project)
{
    return list(context, Report::Broken, project);
}

int runExternal(CliContext& context)
{
    return list(context, Report::External, nullptr);
}

int runFragments(CliContext& context)
{
    return list(context, Report::Fragments, nullptr);
}

int runRobots(CliContext& context)
{
    return list(context, Report::Robots, nullptr);
}

} // namespace WebAuditCommands
