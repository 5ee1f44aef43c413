#pragma once

#include <QStringList>
#include <QStringView>

// The references a style sheet or a style attribute makes a browser load: url(x), url('x'),
// url("x"), and the string of @import "x". Comments and other strings are skipped; CSS
// escapes are decoded; a malformed url( is skipped, as browsers skip it.
class WebCssUrls {
public:
    static QStringList urls(QStringView css);
};
