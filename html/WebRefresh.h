#pragma once

#include <QString>
#include <QStringView>

// The target of <meta http-equiv="refresh" content="...">, read as browsers read it:
// "5; url=next.html", "0;URL='next.html'", "3, next.html". Null when the content names no
// target (a plain "5" reloads the page itself) or is not a refresh at all.
class WebRefresh {
public:
    static QString target(QStringView content);
};
