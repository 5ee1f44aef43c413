#pragma once

#include <QString>

#include <memory>

class ProjectLock;

// Takes the lock of a project before a command changes it (crawl, vacuum, delete). When
// another process holds it, or the lock file cannot be made, says so and answers null with
// *status set.
namespace ProjectLocking {
std::unique_ptr<ProjectLock> take(const QString& projectName, const QString& databasePath, const QString& purpose,
                                  int* status);
// "process 1234 (quillmere crawl)", or "another process" when the holder left no PID.
QString describeOwner(qint64 processId, const QString& purpose);
} // namespace ProjectLocking
