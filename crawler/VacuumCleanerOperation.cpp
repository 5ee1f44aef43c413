#include "crawler/VacuumCleanerOperation.h"

#include "store/LinkRules.h"

#include "crawler/CrawlTransaction.h"
#include "crawler/MainThread.h"
#include "store/Project.h"
#include "store/QuillmereLink.h"

VacuumCleanerOperation::VacuumCleanerOperation(std::shared_ptr<Project> project,
                                               std::shared_ptr<VacuumCleanerDelegate> delegate)
    : project_(std::move(project)), vacuumDelegate_(std::move(delegate))
{
}

void VacuumCleanerOperation::main()
{
    vacuumCleanerDidStart();
    // A web crawl counts its pages' links exactly when it ends: nothing to take off.
    if (LinkRulesStore::of(project_) == LinkRules::Web) {
        vacuumCleanerDidEnd();
        return;
    }
    {
        // All or nothing: a vacuum cut short (killed, disk full) must not leave some counts
        // decremented, since running it again decrements them all again.
        CrawlTransaction transaction(project_->sqlite3Database());
        const QList<QuillmerePagePtr> pages = QuillmerePage::getAllVacuumPagesForProject(project_);
        const qint32 count = qint32(pages.size());
        for (qint32 i = 0; i < count; ++i) {
            const QuillmerePagePtr& page = pages[i];
            vacuumProgressIndex(i, count);
            vacuumingPage(page);
            for (const auto& link : QuillmereLink::getSourcesLinksFromPage(page, project_))
                QuillmerePage::decOutLinkCountWithPageIdentifier(qint32(link->idt_source()), project_);
        }
        transaction.commit();
    }
    vacuumCleanerDidEnd();
}

void VacuumCleanerOperation::vacuumCleanerDidStart()
{
    MainThread::performAndWaitFor([this] { mainThreadVacuumCleanerDidStart(); });
}

void VacuumCleanerOperation::vacuumProgressIndex(qint32 currentIndex, qint32 maxIndex)
{
    MainThread::performAndWaitFor([&] { mainThreadVacuumProgressIndexWithMutableDictionnary(currentIndex, maxIndex); });
}

void VacuumCleanerOperation::vacuumingPage(const QuillmerePagePtr& page)
{
    MainThread::performAndWaitFor([&] { mainThreadVacuumingWithMutableDictionnary(page); });
}

void VacuumCleanerOperation::vacuumCleanerDidEnd()
{
    MainThread::performAndWaitFor([this] { mainThreadVacuumCleanerDidEnd(); });
}

void VacuumCleanerOperation::mainThreadVacuumCleanerDidStart()
{
    if (vacuumDelegate_)
        vacuumDelegate_->vacuumCleanerDidStart();
}

void VacuumCleanerOperation::mainThreadVacuumProgressIndexWithMutableDictionnary(qint32 currentIndex, qint32 maxIndex)
{
    if (vacuumDelegate_)
        vacuumDelegate_->vacuumProgressIndex(currentIndex, maxIndex);
}

void VacuumCleanerOperation::mainThreadVacuumingWithMutableDictionnary(const QuillmerePagePtr& page)
{
    if (vacuumDelegate_)
        vacuumDelegate_->vacuumingPage(page);
}

void VacuumCleanerOperation::mainThreadVacuumCleanerDidEnd()
{
    if (vacuumDelegate_)
        vacuumDelegate_->vacuumCleanerDidEnd();
}
