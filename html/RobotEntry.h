#pragma once

#include <QList>
#include <QString>

#include <memory>

class RobotEntry;
using RobotEntryPtr = std::shared_ptr<RobotEntry>;

// One Disallow rule of a robots.txt. The base class disallows everything; the crawler only
// ever creates the two subclasses (prefix rules and "*" rules).
class RobotEntry {
public:
    RobotEntry() = default;
    explicit RobotEntry(const QString& value);
    virtual ~RobotEntry() = default;

    static RobotEntryPtr initWithEntryValue(const QString& value);

    QString robotEntryValue() const { return robotEntryValue_; }
    void setRobotEntryValue(const QString& value) { robotEntryValue_ = value; }

    // Whether the site-relative path is forbidden by this rule.
    virtual bool isURLDisallowed(const QString& path) const;
    virtual QString description() const;

private:
    QString robotEntryValue_;
};
