#pragma once

#include "store/FetchLog.h"
#include "store/QuillmerePage.h"

#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <memory>

class Project;

// The pages of one documents-list filter, each with its last fetch, read row by row so that
// a list of any length is printed as it is read. The filters select what PageFilter's lists
// select.
class PageListing {
public:
    struct Row {
        QuillmerePagePtr page;
        FetchLogPtr fetch;  // null when the page was never fetched (known only from links)
    };

    // The names --sort and --columns accept, in the order of the default columns.
    static QStringList columns();
    static bool isColumn(const QString& name);

    // Calls `row` for each page, sorted by `sortColumn` (one of columns(); empty: store
    // order), ties in store order. Answers false when the statement could not be run.
    // The stored URL of the page a typed URL names when both are read without their escapes
    // (%20 and a space, %C3%A9 and é alike); null when none. Pages are stored as their links
    // wrote them, so one URL may be stored half escaped.
    static QString storedURLMatching(const QString& typed, const std::shared_ptr<Project>& project);

    // A column's value for a row, as the reports give it: numbers as numbers, a page never
    // fetched with null fetch columns; `table` gives the aligned table's texts ("404",
    // "timeout", "-") instead.
    static QVariant cellValue(const QString& column, const Row& row, bool table);

    static bool forEachPage(qint32 filter, const QString& sortColumn, bool descending,
                            const std::shared_ptr<Project>& project, const std::function<void(const Row&)>& row);
};
