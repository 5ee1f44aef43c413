#pragma once

#include <QList>
#include <QString>

// The registry's object model: which entities exist and which attributes they keep.
// Transient attributes live only in memory; the store never sees them.
struct AttributeDescription {
    enum class Type { String, Date, Integer, Boolean, Transient };
    QString name;
    Type type;
};

struct EntityDescription {
    QString name;
    QList<AttributeDescription> attributes;

    QList<AttributeDescription> persistentAttributes() const;
};

class ManagedObjectModel {
public:
    QList<EntityDescription> entities;

    const EntityDescription* entityNamed(const QString& name) const;

    // The "Quillmere" model: one entity, "Project".
    static const ManagedObjectModel* quillmereModel();
};
