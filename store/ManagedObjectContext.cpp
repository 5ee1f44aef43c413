#include "store/ManagedObjectContext.h"

#include "store/PersistentStoreCoordinator.h"
#include "store/Project.h"

#include <algorithm>
#include <unordered_map>

ManagedObjectContext::ManagedObjectContext(PersistentStoreCoordinator* coordinator) : coordinator_(coordinator) {}

ManagedObjectContext::~ManagedObjectContext()
{
    for (auto& object : registered_)
        object->context_ = nullptr;
}

ProjectPtr ManagedObjectContext::insertNewProject()
{
    auto project = std::make_shared<Project>();
    project->context_ = this;
    project->inserted_ = true;
    registered_.push_back(project);
    return project;
}

void ManagedObjectContext::deleteObject(const ProjectPtr& object)
{
    if (!object || object->context_ != this)
        return;
    if (object->inserted_) {
        // Never saved: it simply leaves the context.
        std::erase(registered_, object);
        object->context_ = nullptr;
        object->inserted_ = false;
        return;
    }
    object->deleted_ = true;
}

std::optional<QList<ProjectPtr>> ManagedObjectContext::liveObjects(AppError* error)
{
    const auto* entity = coordinator_->managedObjectModel()->entityNamed(QStringLiteral("Project"));
    auto rows = coordinator_->fetchRows(*entity, error);
    if (!rows)
        return std::nullopt;

    std::unordered_map<qint64, ProjectPtr> known;
    std::vector<ProjectPtr> fresh;
    for (auto& object : registered_) {
        if (object->objectID_ != 0)
            known.emplace(object->objectID_, object);
        else
            fresh.push_back(object);
    }
    // Rebuild the registered list in store order; objects already in memory keep their
    // unsaved values, rows seen for the first time become new objects.
    std::vector<ProjectPtr> ordered;
    for (const auto& row : *rows) {
        auto it = known.find(row.primaryKey);
        if (it != known.end()) {
            ordered.push_back(it->second);
            known.erase(it);
            continue;
        }
        auto project = std::make_shared<Project>();
        project->context_ = this;
        project->objectID_ = row.primaryKey;
        for (auto v = row.values.begin(); v != row.values.end(); ++v) {
            if (!v.value().isNull())
                project->values_.insert(v.key(), v.value());
        }
        project->committed_ = project->values_;
        ordered.push_back(project);
    }
    // Saved objects whose rows went away meanwhile stay registered at the end.
    for (auto& [key, object] : known)
        ordered.push_back(object);
    ordered.insert(ordered.end(), fresh.begin(), fresh.end());
    registered_ = std::move(ordered);

    QList<ProjectPtr> live;
    for (auto& object : registered_) {
        if (!object->deleted_)
            live.append(object);
    }
    return live;
}

std::optional<QList<ProjectPtr>> ManagedObjectContext::executeFetchRequest(const FetchRequest& request, AppError* error)
{
    if (!coordinator_->managedObjectModel()->entityNamed(request.entityName)) {
        if (error)
            *error = AppError{QStringLiteral("QuillmereStoreErrorDomain"), 134000,
                              QStringLiteral("Unknown entity %1.").arg(request.entityName), QString()};
        return std::nullopt;
    }
    auto objects = liveObjects(error);
    if (!objects)
        return std::nullopt;
    QList<ProjectPtr> result;
    for (auto& object : *objects) {
        if (!request.predicate || request.predicate(*object))
            result.append(object);
    }
    if (!request.sortKey.isEmpty()) {
        const QString key = request.sortKey;
        const bool ascending = request.ascending;
        std::stable_sort(result.begin(), result.end(), [&](const ProjectPtr& a, const ProjectPtr& b) {
            const QVariant va = a->valueForKey(key);
            const QVariant vb = b->valueForKey(key);
            // Unset values sort first, as the store does with nulls.
            if (va.isNull() != vb.isNull())
                return ascending ? va.isNull() : vb.isNull();
            const auto order = QVariant::compare(va, vb);
            return ascending ? order == QPartialOrdering::Less : order == QPartialOrdering::Greater;
        });
    }
    if (request.fetchLimit > 0 && result.size() > request.fetchLimit)
        result.resize(request.fetchLimit);
    return result;
}

qint64 ManagedObjectContext::countForFetchRequest(const FetchRequest& request, AppError* error)
{
    FetchRequest all = request;
    all.sortKey.clear();
    all.fetchLimit = 0;
    auto objects = executeFetchRequest(all, error);
    return objects ? objects->size() : NotFound;
}

bool ManagedObjectContext::hasChanges() const
{
    return std::any_of(registered_.begin(), registered_.end(), [](const ProjectPtr& o) {
        return o->inserted_ || o->deleted_ || o->values_ != o->committed_;
    });
}

bool ManagedObjectContext::save(AppError* error)
{
    if (!hasChanges())
        return true;
    const auto* entity = coordinator_->managedObjectModel()->entityNamed(QStringLiteral("Project"));
    StoreChanges changes;
    std::vector<ProjectPtr> inserted;
    for (auto& o : registered_) {
        if (o->inserted_) {
            changes.inserts.append(o->values_);
            inserted.push_back(o);
        } else if (o->deleted_) {
            changes.deletes.append(o->objectID_);
        } else if (o->values_ != o->committed_) {
            changes.updates.append(StoreRow{o->objectID_, o->values_});
        }
    }
    QList<qint64> keys;
    if (!coordinator_->saveChanges(*entity, changes, &keys, error))
        return false;
    for (size_t i = 0; i < inserted.size(); ++i) {
        inserted[i]->objectID_ = keys[qsizetype(i)];
        inserted[i]->inserted_ = false;
    }
    std::vector<ProjectPtr> kept;
    for (auto& o : registered_) {
        if (o->deleted_) {
            o->context_ = nullptr;
            continue;
        }
        o->committed_ = o->values_;
        kept.push_back(o);
    }
    registered_ = std::move(kept);
    return true;
}

void ManagedObjectContext::rollback()
{
    std::vector<ProjectPtr> kept;
    for (auto& o : registered_) {
        if (o->inserted_) {
            o->context_ = nullptr;
            o->inserted_ = false;
            continue;
        }
        o->deleted_ = false;
        o->values_ = o->committed_;
        kept.push_back(o);
    }
    registered_ = std::move(kept);
}
