#include "cli/ProjectLocking.h"

#include "cli/CliContext.h"
#include "cli/CliText.h"
#include "store/ProjectLock.h"
#include "store/ProjectLockRefusal.h"
#include "store/StringTable.h"

namespace ProjectLocking {

QString describeOwner(qint64 processId, const QString& purpose)
{
    return ProjectLockRefusal::owner(processId, purpose, StringTable::forLanguage(CliText::language()));
}

std::unique_ptr<ProjectLock> take(const QString& projectName, const QString& databasePath, const QString& purpose,
                                  int* status)
{
    auto lock = std::make_unique<ProjectLock>(ProjectLock::lockFilePathForDatabase(databasePath));
    const ProjectLock::Result result = lock->tryLock(QStringLiteral("quillmere %1").arg(purpose));
    if (result == ProjectLock::Result::Locked) {
        *status = ExitOk;
        return lock;
    }
    const ProjectLockRefusal refusal(*lock, result, projectName);
    *status = failWith(refusal.inUse() ? ExitProjectInUse : ExitUsage,
                       refusal.line(StringTable::forLanguage(CliText::language())));
    return nullptr;
}

} // namespace ProjectLocking
