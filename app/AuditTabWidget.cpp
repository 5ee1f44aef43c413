#include "app/AuditTabWidget.h"

#include "app/Alert.h"
#include "app/DocumentsTab.h"
#include "app/ReportListView.h"
#include "app/ReportTableModel.h"
#include "store/LinkRules.h"
#include "store/Localization.h"
#include "store/Project.h"
#include "store/ResponseCodes.h"
#include "store/SitemapWriter.h"

#include <QAction>
#include <QDir>
#include <QFileDialog>
#include <QMenu>

using Localization::localizedString;

namespace {
std::function<QString(const QString&)>& savePathProvider()
{
    static std::function<QString(const QString&)> provider;
    return provider;
}

QStringList captions(const QList<const char*>& keys)
{
    QStringList out;
    for (const char* key : keys)
        out << localizedString(key);
    return out;
}
} // namespace

void AuditTabWidget::setSavePathProviderForTesting(std::function<QString(const QString&)> provider)
{
    savePathProvider() = std::move(provider);
}

AuditTabWidget::AuditTabWidget(DocumentsView* documentsView, QWidget* parent) : QTabWidget(parent)
{
    setObjectName(QStringLiteral("auditTabs"));
    setDocumentMode(true);
    documentsTab_ = new DocumentsTab(documentsView);
    addTab(documentsTab_, localizedString("AuditTabDocuments"));
    connect(documentsTab_, &DocumentsTab::exportRequested, this, [this] { exportList(documentsTab_); });

    overview_ = addList(QStringLiteral("overviewList"), "AuditTabOverview");
    overview_->setColumns({QStringLiteral("finding"), QStringLiteral("count")},
                          captions({"AuditColumnFinding", "AuditColumnCount"}));
    overview_->setStretchColumn(0);
    connect(overview_, &ReportListView::rowActivated, this, &AuditTabWidget::openFinding);
    codes_ = addList(QStringLiteral("codesList"), "AuditTabCodes");
    codes_->setColumns({QStringLiteral("class"), QStringLiteral("status"), QStringLiteral("count")},
                       captions({"AuditColumnClass", "CliColumnStatus", "AuditColumnCount"}));
    codes_->setStretchColumn(1);

    using K = AuditReport::Kind;
    const struct {
        K kind;
        const char* name;
        const char* caption;
    } lists[] = {{K::Broken, "brokenList", "AuditTabBroken"},       {K::Redirects, "redirectsList", "AuditTabRedirects"},
                 {K::External, "externalList", "AuditTabExternal"}, {K::Resources, "resourcesList", "AuditTabResources"},
                 {K::Robots, "robotsList", "AuditTabRobots"},       {K::Fragments, "fragmentsList", "AuditTabFragments"}};
    for (const auto& l : lists) {
        ReportListView* view = addList(QLatin1String(l.name), l.caption);
        view->setColumns(AuditReport::keys(l.kind, false), captions(AuditReport::headerKeys(l.kind, false)));
        reports_.append({l.kind, view});
    }
    connect(this, &QTabWidget::currentChanged, this, [this](int index) { loadIfStale(widget(index)); });
    setCurrentProject(nullptr);
}

ReportListView* AuditTabWidget::addList(const QString& name, const char* captionKey)
{
    auto* view = new ReportListView(name);
    addTab(view, localizedString(captionKey));
    connect(view, &ReportListView::exportRequested, this, [this, view] { exportList(view); });
    return view;
}

ReportListView* AuditTabWidget::reportList(AuditReport::Kind kind) const
{
    for (const auto& [k, view] : reports_)
        if (k == kind)
            return view;
    return nullptr;
}

void AuditTabWidget::setCurrentProject(const std::shared_ptr<Project>& project)
{
    if (project != project_)
        reads_.close();
    project_ = project;
    refresh();
}

void AuditTabWidget::closeCurrentProject()
{
    project_.reset();
    reads_.close();
    refresh();
}

void AuditTabWidget::refresh()
{
    const bool web = project_ && LinkRulesStore::of(reader()) == LinkRules::Web;
    stale_ = {overview_, codes_};
    for (const auto& [kind, view] : reports_) {
        const bool webOnly = kind != AuditReport::Kind::Broken && kind != AuditReport::Kind::Redirects;
        setTabVisible(indexOf(view), web || !webOnly);
        // Broken links of a web project have their kind and tag.
        if (kind == AuditReport::Kind::Broken && view->model()->keys() != AuditReport::keys(kind, web))
            view->setColumns(AuditReport::keys(kind, web), captions(AuditReport::headerKeys(kind, web)));
        stale_.insert(view);
    }
    loadIfStale(currentWidget());
}

void AuditTabWidget::loadIfStale(QWidget* tab)
{
    if (stale_.remove(tab))
        load(tab);
}

void AuditTabWidget::load(QWidget* tab)
{
    if (tab == codes_) {
        QList<QList<QVariant>> rows;
        if (project_)
            for (const auto& c : ResponseCodes::counts(reader()))
                rows << QList<QVariant>{c.statusClass == QLatin1String("failed") ? localizedString("AuditClassFailed")
                                                                                 : c.statusClass,
                                        c.code, c.count};
        codes_->setRows(rows);
        return;
    }
    if (tab == overview_) {
        findings_ = AuditOverview::findings(project_ ? reader() : nullptr);
        QList<QList<QVariant>> rows;
        for (const auto& f : findings_)
            rows << QList<QVariant>{localizedString(f.key), f.count};
        overview_->setRows(rows);
        return;
    }
    for (const auto& [kind, view] : reports_) {
        if (view != tab)
            continue;
        QList<QList<QVariant>> rows;
        // A web rules' list of a classic project (hidden) has nothing to read.
        if (project_ && isTabVisible(indexOf(view)))
            AuditReport::forEachRow(kind, reader(), [&rows](const QList<QVariant>& row) { rows << row; });
        view->setRows(rows);
    }
}

void AuditTabWidget::openFinding(int row)
{
    if (row < 0 || row >= findings_.size())
        return;
    const AuditOverview::Finding& finding = findings_.at(row);
    switch (finding.list) {
    case AuditOverview::List::Documents:
        if (filterHandler_)
            filterHandler_(finding.filter);
        setCurrentWidget(documentsTab_);
        break;
    case AuditOverview::List::ResponseCodes:
        setCurrentWidget(codes_);
        break;
    case AuditOverview::List::Report:
        if (ReportListView* view = reportList(finding.report))
            setCurrentWidget(view);
        break;
    }
}

void AuditTabWidget::addFileMenuItems(QMenu* menu)
{
    menu->addSeparator();
    exportSitemapAction_ = menu->addAction(localizedString("AuditMenuExportSitemap"));
    exportSitemapAction_->setObjectName(QStringLiteral("menuItemExportSitemap"));
    exportListAction_ = menu->addAction(localizedString("AuditMenuExportList"));
    exportListAction_->setObjectName(QStringLiteral("menuItemExportList"));
    connect(exportSitemapAction_, &QAction::triggered, this, &AuditTabWidget::exportSitemap);
    connect(exportListAction_, &QAction::triggered, this, &AuditTabWidget::exportCurrentList);
}

void AuditTabWidget::exportCurrentList()
{
    exportList(currentWidget());
}

QString AuditTabWidget::askSavePath(const QString& captionKey, const QString& suggested, const QString& filter)
{
    if (savePathProvider())
        return savePathProvider()(suggested);
    return QFileDialog::getSaveFileName(window(), localizedString(captionKey.toUtf8().constData()),
                                        QDir::home().filePath(suggested), filter);
}

void AuditTabWidget::showWriteFailure(const QString& file, const QString& reason)
{
    Alert alert;
    alert.setMessageText(localizedString("AuditExportFailedMessage").arg(file, reason));
    alert.setInformativeText(QString());
    alert.addButtonWithTitle(localizedString("MainViewAlertDownloadErrorDefaultButton"));
    alert.runModal(window());
}

void AuditTabWidget::exportList(QWidget* tab)
{
    auto* list = qobject_cast<ReportListView*>(tab);
    if (!list && tab != documentsTab_)
        return;
    const QString name = (project_ ? project_->name() + QLatin1Char('-') : QString())
                         + (list ? list->objectName() : QStringLiteral("documents")) + QStringLiteral(".csv");
    const QString path = askSavePath(QStringLiteral("AuditExportDialogTitle"), name, QStringLiteral("CSV (*.csv)"));
    if (path.isEmpty())
        return;
    QString reason;
    const bool written = list ? list->exportCsv(path, &reason) : documentsTab_->exportCsv(path, &reason);
    if (!written)
        showWriteFailure(path, reason);
}

void AuditTabWidget::exportSitemap()
{
    if (!project_)
        return;
    const QString path = askSavePath(QStringLiteral("AuditSitemapDialogTitle"), project_->name() + QStringLiteral("-sitemap.xml"),
                                     QStringLiteral("XML (*.xml)"));
    if (path.isEmpty())
        return;
    const SitemapWriter::Result result = SitemapWriter::writeFile(path, reader());
    if (!result.ok)
        showWriteFailure(result.errorFile.isEmpty() ? path : result.errorFile, result.errorReason);
}
