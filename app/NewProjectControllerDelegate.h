#pragma once

#include <QString>

class NewProjectWindowController;

// Who the new-project sheet tells what the user decided: the application delegate.
class NewProjectControllerDelegate {
public:
    virtual ~NewProjectControllerDelegate() = default;
    virtual void createProjectValidateWithController(NewProjectWindowController* controller, const QString& projectName,
                                                     const QString& projectURL, qint32 limitDepth,
                                                     qint32 limitPageCount) = 0;
    virtual void createProjectCancelWithController(NewProjectWindowController* controller) = 0;
};
