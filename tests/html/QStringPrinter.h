#pragma once

#include <QString>

#include <ostream>

// GoogleTest shows a QString as its text, not as its code units.
inline void PrintTo(const QString& text, std::ostream* os)
{
    *os << '"' << text.toStdString() << '"';
}
