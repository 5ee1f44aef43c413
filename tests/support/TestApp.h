#pragma once

#include "base/AppError.h"
#include "store/ApplicationDelegate.h"
#include "store/DataModelManager.h"

#include <QTemporaryDir>

#include <memory>
#include <vector>

// Keeps the errors that would be shown to the user.
class RecordingErrorPresenter : public ErrorPresenter {
public:
    void presentError(const AppError& error) override { errors.push_back(error); }
    std::vector<AppError> errors;
};

// A fresh application over a temporary data directory: the shared delegate, its manager
// and a presenter that records errors. The directory goes away with the object.
class TestApp {
public:
    TestApp()
    {
        DataModelManager::setDataDirectoryOverride(dir.path());
        delegate = std::make_unique<CoreAppDelegate>(&presenter);
    }
    ~TestApp()
    {
        delegate.reset();
        DataModelManager::setDataDirectoryOverride(QString());
    }
    QString path() const { return dir.path(); }
    DataModelManager* manager() { return delegate->dataModelManager(); }

    QTemporaryDir dir;
    RecordingErrorPresenter presenter;
    std::unique_ptr<CoreAppDelegate> delegate;
};
