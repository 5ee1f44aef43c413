#include "html/RobotEntryJokerURL.h"

namespace {

QString fragmentOf(const QString& value)
{
    QString fragment = value.mid(1);
    fragment.remove(QLatin1Char('*'));
    return fragment;
}

} // namespace

RobotEntryJokerURL::RobotEntryJokerURL(const QString& value)
    : RobotEntry(fragmentOf(value))
{
}

RobotEntryJokerURLPtr RobotEntryJokerURL::initWithEntryValue(const QString& value)
{
    return std::make_shared<RobotEntryJokerURL>(value);
}

bool RobotEntryJokerURL::isURLDisallowed(const QString& path) const
{
    const QString fragment = robotEntryValue();
    // QString::contains finds an empty needle everywhere; an empty fragment matches nothing.
    return !fragment.isEmpty() && path.contains(fragment, Qt::CaseSensitive);
}

QString RobotEntryJokerURL::description() const
{
    return QStringLiteral("RobotEntryJokerURL::") + robotEntryValue();
}
