#include "store/ManagedObjectModel.h"

QList<AttributeDescription> EntityDescription::persistentAttributes() const
{
    QList<AttributeDescription> result;
    for (const auto& a : attributes) {
        if (a.type != AttributeDescription::Type::Transient)
            result.append(a);
    }
    return result;
}

const EntityDescription* ManagedObjectModel::entityNamed(const QString& name) const
{
    for (const auto& e : entities) {
        if (e.name == name)
            return &e;
    }
    return nullptr;
}

const ManagedObjectModel* ManagedObjectModel::quillmereModel()
{
    using T = AttributeDescription::Type;
    static const ManagedObjectModel model{{EntityDescription{
        QStringLiteral("Project"),
        {
            {QStringLiteral("name"), T::String},
            {QStringLiteral("url"), T::String},
            {QStringLiteral("creation_date"), T::Date},
            {QStringLiteral("crawler_start_date"), T::Date},
            {QStringLiteral("crawler_stop_date"), T::Date},
            {QStringLiteral("limit_depth"), T::Integer},
            {QStringLiteral("limit_page_count"), T::Integer},
            {QStringLiteral("max_depth"), T::Integer},
            {QStringLiteral("pages_count"), T::Integer},
            {QStringLiteral("sqlite_name"), T::String},
            {QStringLiteral("explore_no_index"), T::Boolean},
            {QStringLiteral("explore_no_follow"), T::Boolean},
            {QStringLiteral("explore_ariane"), T::Boolean},
            {QStringLiteral("explore_sitewides"), T::Boolean},
            {QStringLiteral("database"), T::Transient},
            {QStringLiteral("fileLogHandle"), T::Transient},
            {QStringLiteral("fileErrorLogHandle"), T::Transient},
        }}}};
    return &model;
}
