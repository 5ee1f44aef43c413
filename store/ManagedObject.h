#pragma once

#include <QString>
#include <QVariant>
#include <QVariantMap>

class ManagedObjectContext;

// A registry object whose persistent attributes the context tracks: changes stay in memory
// until the context is saved, and a rollback brings back the last saved values.
class ManagedObject {
public:
    virtual ~ManagedObject() = default;

    QVariant valueForKey(const QString& key) const { return values_.value(key); }
    void setValueForKey(const QString& key, const QVariant& value);

    ManagedObjectContext* managedObjectContext() const { return context_; }
    qint64 objectID() const { return objectID_; }
    bool isInserted() const { return inserted_; }

protected:
    ManagedObject() = default;

private:
    friend class ManagedObjectContext;
    QVariantMap values_;
    QVariantMap committed_;
    qint64 objectID_ = 0;
    ManagedObjectContext* context_ = nullptr;
    bool inserted_ = false;
    bool deleted_ = false;
};
