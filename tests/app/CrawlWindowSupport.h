#pragma once
// Helpers of the tests that crawl through the main window: the French captions as the
// translation file gives them, the registry as a fresh reader finds it on disk, the ends of
// crawls counted, and raw reads of a crawl database.

#include "AppTestSupport.h"
#include "crawler/CrawlTestSupport.h"

#include "app/ProgressWindowController.h"
#include "store/ManagedObjectModel.h"
#include "store/PersistentStoreCoordinator.h"

#include <QFile>
#include <QVariantMap>
#include <QXmlStreamReader>

#include <string>

namespace apptest {

// The French text of a caption key in translations/quillmere_fr.ts; null when the key is
// not there.
inline QString frenchText(const QString& key)
{
    QFile file(QStringLiteral(QUILLMERE_SOURCE_DIR "/translations/quillmere_fr.ts"));
    if (!file.open(QIODevice::ReadOnly)) {
        ADD_FAILURE() << "cannot read the French translations";
        return QString();
    }
    QXmlStreamReader xml(&file);
    bool inKey = false;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        if (xml.name() == QLatin1String("message"))
            inKey = xml.attributes().value(QLatin1String("id")) == key;
        else if (inKey && xml.name() == QLatin1String("translation"))
            return xml.readElementText();
    }
    return QString();
}

// The stored attributes of the project of that name, read from the registry file by a
// store of its own (not the application's objects in memory); empty when it is not there.
inline QVariantMap storedProjectAttributes(AppDelegate* app, const QString& name)
{
    const QString path = app->dataModelManager()->persistentStoreCoordinator()->storePath();
    const ManagedObjectModel* model = ManagedObjectModel::quillmereModel();
    PersistentStoreCoordinator reader(model);
    AppError error;
    if (!reader.addSQLiteStoreAtPath(path, &error)) {
        ADD_FAILURE() << "cannot open the registry at " << path.toStdString();
        return {};
    }
    const auto rows = reader.fetchRows(*model->entityNamed(QStringLiteral("Project")), &error);
    if (rows)
        for (const StoreRow& row : *rows)
            if (row.values.value(QStringLiteral("name")).toString() == name)
                return row.values;
    return {};
}

// Counts the crawls that end (vacuum done, window idle) while it lives.
class CrawlEnds {
public:
    explicit CrawlEnds(MainViewController* controller) : controller_(controller)
    {
        connection_ = QObject::connect(controller, &MainViewController::crawlFinished, [this] { ++count; });
    }
    ~CrawlEnds() { QObject::disconnect(connection_); }
    CrawlEnds(const CrawlEnds&) = delete;
    CrawlEnds& operator=(const CrawlEnds&) = delete;

    // Waits until `n` crawls have ended and nothing is left on the queue.
    bool waitFor(int n = 1, int timeoutMs = 20000)
    {
        return waitUntil([&] { return count >= n && !controller_->isBusy(); }, timeoutMs);
    }

    int count = 0;

private:
    MainViewController* controller_;
    QMetaObject::Connection connection_;
};

// An HTML page with a title.
inline std::string htmlPage(const std::string& title, const std::string& body)
{
    return "<html><head><title>" + title + "</title></head><body>" + body + "</body></html>";
}

// Every page of a crawl database as text: URL (under the site's base as "~/path"), title,
// depth, links in and out, weight; in identifier order.
inline std::vector<std::string> pageLines(const ProjectPtr& project, const std::string& base)
{
    std::vector<std::string> out;
    for (const auto& r : crawltest::Db(project, base).pages())
        out.push_back(r.url + " [" + r.title + "] depth " + std::to_string(r.depth) + " in " + std::to_string(r.in)
                      + " out " + std::to_string(r.out) + " weight " + std::to_string(r.weight));
    return out;
}

} // namespace apptest
