#pragma once

#include "html/RobotEntry.h"

class RobotEntryFullURL;
using RobotEntryFullURLPtr = std::shared_ptr<RobotEntryFullURL>;

// A prefix rule: the Disallow value as written ("/private"); it forbids every path that
// starts with it, letter case ignored.
class RobotEntryFullURL : public RobotEntry {
public:
    RobotEntryFullURL() = default;
    explicit RobotEntryFullURL(const QString& value);

    static RobotEntryFullURLPtr initWithEntryValue(const QString& value);

    bool isURLDisallowed(const QString& path) const override;
    QString description() const override;
};
