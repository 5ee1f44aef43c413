#include "html/RobotEntryFullURL.h"

#include "html/StringOperations.h"

RobotEntryFullURL::RobotEntryFullURL(const QString& value)
    : RobotEntry(value)
{
}

RobotEntryFullURLPtr RobotEntryFullURL::initWithEntryValue(const QString& value)
{
    return std::make_shared<RobotEntryFullURL>(value);
}

bool RobotEntryFullURL::isURLDisallowed(const QString& path) const
{
    return hasPrefixCaseInsensitive(path, robotEntryValue());
}

QString RobotEntryFullURL::description() const
{
    return QStringLiteral("RobotEntryFullURL::") + robotEntryValue();
}
