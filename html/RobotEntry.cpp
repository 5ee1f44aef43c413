#include "html/RobotEntry.h"

RobotEntry::RobotEntry(const QString& value)
    : robotEntryValue_(value)
{
}

RobotEntryPtr RobotEntry::initWithEntryValue(const QString& value)
{
    return std::make_shared<RobotEntry>(value);
}

bool RobotEntry::isURLDisallowed(const QString&) const
{
    return true;
}

QString RobotEntry::description() const
{
    return QStringLiteral("RobotEntry::") + robotEntryValue_;
}
