#pragma once

#include "crawler/Operation.h"
#include "crawler/VacuumCleanerDelegate.h"

#include <memory>

class Project;

// After a crawl, takes the links to non-HTML resources off the out-link counts of the pages
// that carry them. Deletes nothing; running it twice decrements twice.
class VacuumCleanerOperation : public Operation {
public:
    VacuumCleanerOperation(std::shared_ptr<Project> project, std::shared_ptr<VacuumCleanerDelegate> delegate);
    static std::shared_ptr<VacuumCleanerOperation> initWithProject(std::shared_ptr<Project> project,
                                                                   std::shared_ptr<VacuumCleanerDelegate> delegate)
    {
        return std::make_shared<VacuumCleanerOperation>(std::move(project), std::move(delegate));
    }

    std::shared_ptr<Project> project() const { return project_; }
    std::shared_ptr<VacuumCleanerDelegate> vacuumDelegate() const { return vacuumDelegate_; }

    void main() override;

    // Relays to the delegate on the main thread.
    void vacuumCleanerDidStart();
    void vacuumProgressIndex(qint32 currentIndex, qint32 maxIndex);
    void vacuumingPage(const QuillmerePagePtr& page);
    void vacuumCleanerDidEnd();

    void mainThreadVacuumCleanerDidStart();
    void mainThreadVacuumProgressIndexWithMutableDictionnary(qint32 currentIndex, qint32 maxIndex);
    void mainThreadVacuumingWithMutableDictionnary(const QuillmerePagePtr& page);
    void mainThreadVacuumCleanerDidEnd();

private:
    std::shared_ptr<Project> project_;
    std::shared_ptr<VacuumCleanerDelegate> vacuumDelegate_;
};
