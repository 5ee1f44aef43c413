#include "cli/WebOptions.h"

#include "cli/CliContext.h"
#include "cli/CliText.h"
#include "crawler/CrawlSettings.h"
#include "crawler/WebCrawlOperation.h"
#include "store/Project.h"

namespace WebOptions {

namespace {
const QString kRules = QStringLiteral("--rules");
const QString kNoExternal = QStringLiteral("--no-external");
const QString kIgnoreRobots = QStringLiteral("--ignore-robots");
const QString kInclude = QStringLiteral("--include");
const QString kExclude = QStringLiteral("--exclude");
const QString kUserAgent = QStringLiteral("--user-agent");
const QString kHeader = QStringLiteral("--header");
const QString kMaxPageSize = QStringLiteral("--max-page-size");
const QString kExternalTimeout = QStringLiteral("--external-timeout");
const QString kPerHost = QStringLiteral("--per-host");

bool patterns(const CliContext& context, const QString& option, QList<QRegularExpression>* out, int* status)
{
    for (const QString& text : context.command.lists.value(option)) {
        QRegularExpression pattern(text);
        if (!pattern.isValid()) {
            *status = failWith(ExitUsage, CliText::tr("CliErrorBadRegex").arg(option, text, pattern.errorString()));
            return false;
        }
        pattern.optimize();
        out->append(pattern);
    }
    return true;
}

bool hasLineBreak(const QString& text)
{
    return text.contains(QLatin1Char('\n')) || text.contains(QLatin1Char('\r'));
}
} // namespace

QStringList crawlValueOptions()
{
    return {kInclude, kExclude, kUserAgent, kHeader, kMaxPageSize, kExternalTimeout, kPerHost};
}

QStringList crawlFlagOptions()
{
    return {kNoExternal, kIgnoreRobots};
}

QString rulesHelp()
{
    return CliText::tr("CliRulesHelp");
}

QString crawlHelp()
{
    return CliText::tr("CliWebOptionsHelp");
}

bool rules(const CliContext& context, LinkRules* rules, int* status)
{
    *rules = LinkRules::Classic;
    if (!context.command.values.contains(kRules))
        return true;
    const auto chosen = LinkRulesStore::fromName(context.command.values.value(kRules));
    if (!chosen) {
        *status = failWith(ExitUsage, CliText::tr("CliErrorBadRules").arg(context.command.values.value(kRules)));
        return false;
    }
    *rules = *chosen;
    return true;
}

bool crawlOptions(const CliContext& context, WebCrawlOptions* options, bool* given, int* status)
{
    const auto& values = context.command.values;
    *given = false;
    for (const auto& option : crawlValueOptions())
        *given = *given || values.contains(option);
    for (const auto& option : crawlFlagOptions())
        *given = *given || context.command.flags.contains(option);
    options->checkExternal = !context.command.flags.contains(kNoExternal);
    options->obeyRobots = !context.command.flags.contains(kIgnoreRobots);
    if (!patterns(context, kInclude, &options->includes, status) || !patterns(context, kExclude, &options->excludes, status))
        return false;
    if (values.contains(kUserAgent)) {
        const QString agent = values.value(kUserAgent).trimmed();
        if (agent.isEmpty() || hasLineBreak(agent)) {
            *status = failWith(ExitUsage, CliText::tr("CliErrorBadUserAgent"));
            return false;
        }
        options->userAgent = agent;
    }
    for (const QString& header : context.command.lists.value(kHeader)) {
        const qsizetype colon = header.indexOf(QLatin1Char(':'));
        const QString name = colon > 0 ? header.left(colon).trimmed() : QString();
        static const QRegularExpression token(QStringLiteral("^[!#$%&'*+.^_`|~0-9A-Za-z-]+$"));
        if (name.isEmpty() || !token.match(name).hasMatch() || hasLineBreak(header)) {
            *status = failWith(ExitUsage, CliText::tr("CliErrorBadHeader").arg(header));
            return false;
        }
        options->headers.append({name.toLatin1(), header.mid(colon + 1).trimmed().toUtf8()});
    }
    if (values.contains(kMaxPageSize)) {
        double bytes = 0;
        if (!CrawlSettings::parseNumber(values.value(kMaxPageSize), 1024, double(WebCrawlOptions::kMaximumMaxPageSize),
                                        &bytes)) {
            *status = failWith(ExitUsage, CliText::tr("CliErrorBadMaxPageSize"));
            return false;
        }
        options->maxPageSize = qint64(bytes);
    }
    if (values.contains(kExternalTimeout)
        && !CrawlSettings::parseNumber(values.value(kExternalTimeout), CrawlSettings::kMinimumTimeout,
                                       CrawlSettings::kMaximumTimeout, &options->externalTimeout)) {
        *status = failWith(ExitUsage, CliText::tr("CliErrorBadExternalTimeout"));
        return false;
    }
    if (values.contains(kPerHost)) {
        bool ok = false;
        const int count = values.value(kPerHost).trimmed().toInt(&ok);
        if (!ok || count < 1 || count > WebCrawlOptions::kMaximumPerHost) {
            *status = failWith(ExitUsage, CliText::tr("CliErrorBadPerHost"));
            return false;
        }
        options->perHost = count;
    }
    return true;
}

bool acceptedBy(const std::shared_ptr<Project>& project, const CliContext& context, bool given, int* status)
{
    Q_UNUSED(context);
    if (!given || LinkRulesStore::of(project) == LinkRules::Web)
        return true;
    *status = failWith(ExitUsage, CliText::tr("CliErrorWebOptionOnClassic").arg(project->name()));
    return false;
}

void applyTo(DownloaderOperationLibXML& operation, const WebCrawlOptions& options)
{
    if (auto* web = dynamic_cast<WebCrawlOperation*>(&operation))
        web->setOptions(options);
}

} // namespace WebOptions
