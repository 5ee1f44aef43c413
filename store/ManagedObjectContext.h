#pragma once

#include "base/AppError.h"

#include <QList>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class PersistentStoreCoordinator;
class Project;
using ProjectPtr = std::shared_ptr<Project>;

struct FetchRequest {
    QString entityName = QStringLiteral("Project");
    std::function<bool(const Project&)> predicate;  // empty: every object
    QString sortKey;                                // empty: store order
    bool ascending = true;
    int fetchLimit = 0;                             // 0: no limit
};

// The registry's context, on the main thread. Fetches see the unsaved changes (new objects,
// changed values; deleted objects are gone); saveContext writes them all at once.
class ManagedObjectContext {
public:
    static constexpr qint64 NotFound = std::numeric_limits<qint64>::max();

    explicit ManagedObjectContext(PersistentStoreCoordinator* coordinator);
    ~ManagedObjectContext();

    PersistentStoreCoordinator* persistentStoreCoordinator() const { return coordinator_; }

    ProjectPtr insertNewProject();
    void deleteObject(const ProjectPtr& object);

    std::optional<QList<ProjectPtr>> executeFetchRequest(const FetchRequest& request, AppError* error);
    // NotFound on error.
    qint64 countForFetchRequest(const FetchRequest& request, AppError* error);

    bool hasChanges() const;
    bool save(AppError* error);
    void rollback();

private:
    std::optional<QList<ProjectPtr>> liveObjects(AppError* error);

    PersistentStoreCoordinator* coordinator_;
    std::vector<ProjectPtr> registered_;  // saved objects by primary key, then new ones
};
