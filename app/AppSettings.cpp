#include "app/AppSettings.h"

#include "app/DocumentsView.h"
#include "app/GuiLaunch.h"
#include "app/LinksView.h"
#include "app/MainViewController.h"
#include "app/MainWindow.h"
#include "app/SplitView.h"

#include <QHeaderView>
#include <QSettings>
#include <QTableView>

#include <memory>

namespace {
const QString kGeometry = QStringLiteral("window/geometry");
const QString kSplitter = QStringLiteral("window/splitter");
const QString kDocumentsColumns = QStringLiteral("documents/columns");
const QString kLinksColumns = QStringLiteral("links/columns");
const QString kLastProject = QStringLiteral("projects/last");
const QString kRecentProjects = QStringLiteral("projects/recent");
const QString kLinkRules = QStringLiteral("newProject/linkRules");

std::unique_ptr<QSettings> settings()
{
    return std::make_unique<QSettings>(QLatin1String(GuiLaunch::kOrganizationName),
                                       QLatin1String(GuiLaunch::kApplicationName));
}

void restoreHeader(QSettings& store, const QString& key, QTableView* table)
{
    const QByteArray state = store.value(key).toByteArray();
    if (state.isEmpty() || !table)
        return;
    // A state saved with another set of columns would mix them up: it is dropped.
    QHeaderView* header = table->horizontalHeader();
    const int count = header->count();
    const QByteArray before = header->saveState();
    if (!header->restoreState(state) || header->count() != count)
        header->restoreState(before);
}
} // namespace

namespace AppSettings {

void saveWindow(MainWindow* window)
{
    if (!window)
        return;
    const auto store = settings();
    store->setValue(kGeometry, window->saveGeometry());
    MainViewController* controller = window->mainViewController();
    store->setValue(kSplitter, controller->splitView()->saveState());
    store->setValue(kDocumentsColumns, controller->documentsView()->documentsTableView()->horizontalHeader()->saveState());
    store->setValue(kLinksColumns, controller->linksView()->linksTableView()->horizontalHeader()->saveState());
}

void restoreWindow(MainWindow* window)
{
    if (!window)
        return;
    const auto store = settings();
    const QByteArray geometry = store->value(kGeometry).toByteArray();
    if (!geometry.isEmpty())
        window->restoreGeometry(geometry);
    MainViewController* controller = window->mainViewController();
    const QByteArray splitter = store->value(kSplitter).toByteArray();
    if (!splitter.isEmpty())
        controller->splitView()->restoreState(splitter);
    restoreHeader(*store, kDocumentsColumns, controller->documentsView()->documentsTableView());
    restoreHeader(*store, kLinksColumns, controller->linksView()->linksTableView());
}

QString lastProject()
{
    return settings()->value(kLastProject).toString();
}

void setLastProject(const QString& name)
{
    const auto store = settings();
    if (name.isEmpty())
        store->remove(kLastProject);
    else
        store->setValue(kLastProject, name);
}

QStringList recentProjects()
{
    return settings()->value(kRecentProjects).toStringList();
}

void noteProjectShown(const QString& name)
{
    if (name.isEmpty())
        return;
    const auto store = settings();
    QStringList recent = store->value(kRecentProjects).toStringList();
    recent.removeAll(name);
    recent.prepend(name);
    while (recent.size() > maxRecentProjects)
        recent.removeLast();
    store->setValue(kRecentProjects, recent);
    store->setValue(kLastProject, name);
}

void forgetProject(const QString& name)
{
    const auto store = settings();
    QStringList recent = store->value(kRecentProjects).toStringList();
    recent.removeAll(name);
    store->setValue(kRecentProjects, recent);
    if (store->value(kLastProject).toString() == name)
        store->remove(kLastProject);
}

LinkRules lastLinkRules()
{
    return LinkRulesStore::fromName(settings()->value(kLinkRules).toString()).value_or(LinkRules::Classic);
}

void setLastLinkRules(LinkRules rules)
{
    settings()->setValue(kLinkRules, LinkRulesStore::nameOf(rules));
}

} // namespace AppSettings
