#pragma once

#include <memory>

class OpenProjectWindowController;
class Project;

// Who the open-project sheet tells what the user decided: the application delegate.
class OpenProjectControllerDelegate {
public:
    virtual ~OpenProjectControllerDelegate() = default;
    virtual void openProjectValidateWithController(OpenProjectWindowController* controller,
                                                   const std::shared_ptr<Project>& project) = 0;
    virtual void openProjectCancelWithController(OpenProjectWindowController* controller) = 0;
    // After the sheet has deleted a project: the window lets it go if it shows it.
    virtual void openProjectDidDeleteProject(OpenProjectWindowController*, const std::shared_ptr<Project>&) {}
};
