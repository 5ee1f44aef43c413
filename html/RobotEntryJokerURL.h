#pragma once

#include "html/RobotEntry.h"

class RobotEntryJokerURL;
using RobotEntryJokerURLPtr = std::shared_ptr<RobotEntryJokerURL>;

// A rule written with "*": the value loses its leading "/" and every "*", and what remains
// must occur somewhere in the path ("/*.pdf" keeps ".pdf"). "$" is an ordinary character.
// An empty remainder ("/*") never matches.
class RobotEntryJokerURL : public RobotEntry {
public:
    RobotEntryJokerURL() = default;
    explicit RobotEntryJokerURL(const QString& value);

    static RobotEntryJokerURLPtr initWithEntryValue(const QString& value);

    bool isURLDisallowed(const QString& path) const override;
    QString description() const override;
};
