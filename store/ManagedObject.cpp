#include "store/ManagedObject.h"

void ManagedObject::setValueForKey(const QString& key, const QVariant& value)
{
    if (value.isNull() || !value.isValid())
        values_.remove(key);
    else
        values_.insert(key, value);
}
