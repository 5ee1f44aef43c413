#pragma once

#include <QString>

// What the crawl read on a start page that answered with HTML and that it did not analyse:
// its robots tags or the other canonical URL it names. Kept for the report of the same run,
// which then need not ask for the page again.
struct StartPageStop {
    enum class Kind { None, NoIndexNoFollow, Canonical };
    Kind kind = Kind::None;
    QString canonical;  // for Canonical: the href the page names
};
