#pragma once

#include "base/AppError.h"

class DataModelManager;
class ManagedObjectContext;

// What the registry needs from the running application: the one data model manager and a
// way to show errors. The command line, the desktop app and the tests each install one.
class ApplicationDelegate {
public:
    virtual ~ApplicationDelegate() = default;

    virtual DataModelManager* dataModelManager() = 0;
    virtual void presentError(const AppError& error) = 0;

    ManagedObjectContext* managedObjectContext();
    bool saveContext();

    static ApplicationDelegate* sharedAppDelegate();
    static void setSharedAppDelegate(ApplicationDelegate* delegate);
};

// The plain application delegate of the command line and the tests: it owns the manager and
// hands errors to the presenter it was given. It installs itself as the shared delegate.
class CoreAppDelegate : public ApplicationDelegate {
public:
    explicit CoreAppDelegate(ErrorPresenter* presenter);
    ~CoreAppDelegate() override;
    CoreAppDelegate(const CoreAppDelegate&) = delete;
    CoreAppDelegate& operator=(const CoreAppDelegate&) = delete;

    DataModelManager* dataModelManager() override;
    void presentError(const AppError& error) override;

private:
    ErrorPresenter* presenter_;
    DataModelManager* dataModelManager_;
};
