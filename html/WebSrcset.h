#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

// The candidate URLs of a srcset attribute, read as browsers read it: a candidate is a URL
// (which may hold commas) and its descriptors up to the next comma outside parentheses; a
// candidate whose descriptors are not valid (two densities, "2q") is dropped, as browsers
// drop it.
class WebSrcset {
public:
    static QStringList urls(QStringView srcset);
};
