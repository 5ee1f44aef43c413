#include "store/ApplicationDelegate.h"

#include "store/DataModelManager.h"

namespace {
ApplicationDelegate* g_sharedAppDelegate = nullptr;
}

ManagedObjectContext* ApplicationDelegate::managedObjectContext()
{
    return dataModelManager()->managedObjectContext();
}

bool ApplicationDelegate::saveContext()
{
    return dataModelManager()->saveContext();
}

ApplicationDelegate* ApplicationDelegate::sharedAppDelegate()
{
    return g_sharedAppDelegate;
}

void ApplicationDelegate::setSharedAppDelegate(ApplicationDelegate* delegate)
{
    g_sharedAppDelegate = delegate;
}

CoreAppDelegate::CoreAppDelegate(ErrorPresenter* presenter) : presenter_(presenter), dataModelManager_(nullptr)
{
    setSharedAppDelegate(this);
    dataModelManager_ = new DataModelManager(this);
}

CoreAppDelegate::~CoreAppDelegate()
{
    delete dataModelManager_;
    if (sharedAppDelegate() == this)
        setSharedAppDelegate(nullptr);
}

DataModelManager* CoreAppDelegate::dataModelManager()
{
    return dataModelManager_;
}

void CoreAppDelegate::presentError(const AppError& error)
{
    if (presenter_)
        presenter_->presentError(error);
}
