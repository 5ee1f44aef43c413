#pragma once

#include "store/ProjectLock.h"
#include "store/ProjectLockRefusal.h"

#include "store/LinkRules.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

class DataModelManager;
class RegistryLock;
class Project;
class StringTable;

// The project use cases of every front end, done once: creating a project, deleting one,
// and locking one to change it, each behind the guard that keeps a registry row's files
// inside the data directory. Refusals come as texts of the string table given.
class ProjectCatalog {
public:
    enum class Outcome {
        Done,
        Refused,           // bad name or URL, files outside the data directory, a file of no project
        Exists,            // a project of that name is in the registry
        InUse,             // the project's lock is held elsewhere, or its file cannot be made
        StoreUnavailable,  // the registry could not be opened (its error has been presented)
        NotSaved,          // the registry could not be saved: nothing changed
        Gone,              // another program deleted the project from the registry meanwhile
    };
    struct Result {
        Outcome outcome = Outcome::Done;
        QString why;                                 // the refusal, when there is one
        std::optional<ProjectLockRefusal> lockRefusal;  // with InUse
        std::shared_ptr<Project> project;            // create: the new project
        std::unique_ptr<ProjectLock> lock;           // held on the project when Done
        bool done() const { return outcome == Outcome::Done; }
    };
    // A last check of the files of a project just made, before it is saved; false with why.
    using Verify = std::function<bool(Project& project, QString* why)>;

    ProjectCatalog(DataModelManager& manager, const StringTable& text);

    // The guard: the first of the project's files that would leave the data directory, or a
    // null string. Everything that opens, locks, crawls or deletes a project asks it.
    QString escapingPath(const Project& project) const;
    QString escapingPath(const QString& name, const QString& sqliteName) const;
    // The refusal for such a row.
    QString filesOutsideText(const QString& name, const QString& escaping) const;

    // Takes the project's lock for `purpose` ("quillmere crawl"), after the guard; once held,
    // the project must still be in the registry (Gone otherwise): a program that shows a project
    // for long may hold a row another program has deleted since.
    Result lock(const Project& project, const QString& purpose) const;

    // Checks the name and the URL (stored in its normal form), then, with the registry held
    // against other processes: that no project has the name, that no file left without a
    // project would be taken over, creates the database, verifies, saves. The project's lock
    // comes with the project, for a caller that goes on with it.
    Result create(const QString& name, const QString& url, qint32 limitDepth, qint32 limitPageCount,
                  const QString& purpose, const Verify& verify = {}, LinkRules rules = LinkRules::Classic);

    // Deletes the project under its lock: its registry row first (a delete cut short leaves
    // files that no row names, never a row without its database), then its files.
    Result remove(const std::shared_ptr<Project>& project, const QString& purpose);

    // The files a project named so would use, that a new project must not find there.
    QStringList projectFiles(const QString& name, const QString& sqliteName) const;

private:
    bool isStillRegistered(const Project& project) const;
    Result refused(Outcome outcome, const QString& why) const;
    // Another process held the registry too long, or the system refused its lock.
    Result registryRefusal(const RegistryLock& registry) const;
    void removeDatabaseFiles(const QString& databasePath) const;

    DataModelManager& manager_;
    const StringTable& text_;
};
