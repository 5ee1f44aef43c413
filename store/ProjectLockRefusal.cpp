#include "store/ProjectLockRefusal.h"

#include "store/StringTable.h"

ProjectLockRefusal::ProjectLockRefusal(const ProjectLock& lock, ProjectLock::Result result, const QString& projectName)
    : inUse_(result == ProjectLock::Result::Busy),
      projectName_(projectName),
      ownerProcessId_(lock.ownerProcessId()),
      ownerPurpose_(lock.ownerPurpose()),
      path_(lock.path()),
      errorString_(lock.errorString())
{
}

QString ProjectLockRefusal::owner(qint64 processId, const QString& purpose, const StringTable& text)
{
    if (processId <= 0)
        return text.text("CliOwnerAnotherProcess");
    if (purpose.isEmpty())
        return text.text("CliOwnerProcess").arg(processId);
    return text.text("CliOwnerProcessFor").arg(processId).arg(purpose);
}

QString ProjectLockRefusal::line(const StringTable& text) const
{
    if (inUse_)
        return text.text("CliErrorProjectInUse").arg(projectName_, owner(ownerProcessId_, ownerPurpose_, text));
    return text.text("CliErrorCannotLock").arg(projectName_, path_, errorString_);
}

QString ProjectLockRefusal::message(const StringTable& text) const
{
    return text.text("ProjectInUseMessage").arg(projectName_);
}

QString ProjectLockRefusal::details(const StringTable& text) const
{
    if (inUse_ && ownerProcessId_ > 0)
        return text.text("ProjectInUseByProcess").arg(ownerProcessId_).arg(ownerPurpose_);
    if (inUse_)
        return text.text("ProjectInUseWait");
    return text.text("ProjectLockCannotBeMade").arg(path_, errorString_);
}
