#include "cli/ProjectLocking.h"

#include "cli/CliContext.h"
#include "store/ProjectLock.h"

namespace ProjectLocking {

QString describeOwner(qint64 processId, const QString& purpose)
{
    if (processId <= 0)
        return QStringLiteral("another process");
    if (purpose.isEmpty())
        return QStringLiteral("process %1").arg(processId);
    return QStringLiteral("process %1 (%2)").arg(processId).arg(purpose);
}

std::unique_ptr<ProjectLock> take(const QString& projectName, const QString& databasePath, const QString& purpose,
                                  int* status)
{
    auto lock = std::make_unique<ProjectLock>(ProjectLock::lockFilePathForDatabase(databasePath));
    switch (lock->tryLock(QStringLiteral("quillmere %1").arg(purpose))) {
    case ProjectLock::Result::Locked:
        *status = ExitOk;
        return lock;
    case ProjectLock::Result::Busy:
        *status = failWith(ExitProjectInUse,
                           QStringLiteral("the project '%1' is in use by %2; try again once it has finished")
                               .arg(projectName, describeOwner(lock->ownerProcessId(), lock->ownerPurpose())));
        return nullptr;
    case ProjectLock::Result::Failed:
        break;
    }
    *status = failWith(ExitUsage, QStringLiteral("cannot lock the project '%1' (%2): %3")
                                      .arg(projectName, lock->path(), lock->errorString()));
    return nullptr;
}

} // namespace ProjectLocking
