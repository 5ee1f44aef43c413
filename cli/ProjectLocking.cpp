#include "cli/ProjectLocking.h"

#include "cli/CliContext.h"
#include "cli/CliText.h"
#include "store/ProjectLock.h"

namespace ProjectLocking {

QString describeOwner(qint64 processId, const QString& purpose)
{
    if (processId <= 0)
        return CliText::tr("CliOwnerAnotherProcess");
    if (purpose.isEmpty())
        return CliText::tr("CliOwnerProcess").arg(processId);
    return CliText::tr("CliOwnerProcessFor").arg(processId).arg(purpose);
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
                           CliText::tr("CliErrorProjectInUse")
                               .arg(projectName, describeOwner(lock->ownerProcessId(), lock->ownerPurpose())));
        return nullptr;
    case ProjectLock::Result::Failed:
        break;
    }
    *status = failWith(ExitUsage, CliText::tr("CliErrorCannotLock")
                                      .arg(projectName, lock->path(), lock->errorString()));
    return nullptr;
}

} // namespace ProjectLocking
