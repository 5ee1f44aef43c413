#pragma once

#include "store/AuditReport.h"

#include <QList>

#include <memory>

class Project;

// What is wrong with a crawled site, finding by finding, each with its count and the list
// that shows it: a documents-list filter, the response codes, or one of the audit's listings.
// Web rules add their own findings (external links, resources, robots.txt, fragments).
class AuditOverview {
public:
    enum class List { Documents, ResponseCodes, Report };
    struct Finding {
        const char* key;  // the finding's caption in the string tables
        qint64 count = 0;
        List list = List::Documents;
        qint32 filter = 0;                                 // List::Documents
        AuditReport::Kind report = AuditReport::Kind::Broken;  // List::Report
    };

    static QList<Finding> findings(const std::shared_ptr<Project>& project);
};
