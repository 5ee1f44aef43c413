#pragma once

#include <QList>
#include <QString>

#include <memory>

class Project;

// How the fetched URLs answered, counted by status code: the class ("2xx".."5xx", or
// "failed" for a transfer that got no status), the code ("404", or the failure: "timeout",
// "refused"...) and how many URLs answered it, classes then codes in order.
class ResponseCodes {
public:
    struct Count {
        QString statusClass;
        QString code;
        qint64 count = 0;
    };
    static QList<Count> counts(const std::shared_ptr<Project>& project);
    // URLs whose answer is an error status (4xx, 5xx) or a failed transfer.
    static qint64 errorCount(const QList<Count>& counts);
};
