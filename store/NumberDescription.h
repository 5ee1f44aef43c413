#pragma once

#include <QLocale>
#include <QString>

// A stored number as the lists show it: integers plainly, weights in the shortest form that
// reads back to the same value (0.5, 2, 0.3333333333333333).
namespace NumberDescription {
inline QString description(qint64 value)
{
    return QString::number(value);
}
inline QString description(double value)
{
    return QString::number(value, 'g', QLocale::FloatingPointShortest);
}
} // namespace NumberDescription
