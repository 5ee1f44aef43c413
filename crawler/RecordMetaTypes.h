#pragma once

// Records travel through the relays' dictionaries as QVariants of their shared pointers.
#include "store/QuillmerePage.h"

#include <QMetaType>
#include <QVariant>

Q_DECLARE_METATYPE(QuillmerePagePtr)

inline QVariant pageVariant(const QuillmerePagePtr& page)
{
    return QVariant::fromValue(page);
}

inline QuillmerePagePtr pageFromVariant(const QVariant& value)
{
    return value.isValid() ? value.value<QuillmerePagePtr>() : QuillmerePagePtr();
}
