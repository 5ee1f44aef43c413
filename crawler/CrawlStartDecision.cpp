#include "crawler/CrawlStartDecision.h"

#include "crawler/CrawlRecordKeeper.h"
#include "store/ApplicationDelegate.h"
#include "store/Project.h"
#include "store/QuillmereDownloaderQueue.h"
#include "store/QuillmerePage.h"
#include "store/LinkRules.h"
#include "store/WebStore.h"

namespace CrawlStartDecision {

Situation situationForProject(const std::shared_ptr<Project>& project, qint64* waitingCount)
{
    if (waitingCount)
        *waitingCount = 0;
    if (QuillmerePage::countPagesForProject(project) < 1)
        return Situation::Fresh;
    qint64 waiting = QuillmereDownloaderQueue::countWaitingDownloaderQueueForProject(project);
    // A web crawl stopped with links still to check has work left too: a check may even turn
    // up pages of the site to crawl.
    if (LinkRulesStore::of(project) == LinkRules::Web)
        waiting += WebStore::countPendingChecks(project);
    if (waitingCount)
        *waitingCount = waiting;
    return waiting < 1 ? Situation::Finished : Situation::Interrupted;
}

Choice choiceForAlertAnswer(Situation situation, int answer)
{
    switch (situation) {
    case Situation::Fresh:
        return Choice::Start;
    case Situation::Finished:
        return answer == 1000 ? Choice::Restart : Choice::Decline;
    case Situation::Interrupted:
        if (answer == 1001)
            return Choice::Continue;
        if (answer == 1002)
            return Choice::Restart;
        return Choice::Decline;
    }
    return Choice::Decline;
}

bool apply(Choice choice, const std::shared_ptr<Project>& project)
{
    switch (choice) {
    case Choice::Decline:
        return false;
    case Choice::Restart:
        // The zeroed counters are saved before the database is emptied: a process killed in
        // between leaves the old pages under a count that lags, never an empty database
        // under the old count (from which a continued crawl would count on).
        project->setPages_count(0);
        project->setMax_depth(0);
        if (ApplicationDelegate* delegate = ApplicationDelegate::sharedAppDelegate())
            delegate->saveContext();
        CrawlRecordKeeper::restartProject(project);
        return true;
    case Choice::Start:
    case Choice::Continue:
        return true;
    }
    return false;
}

} // namespace CrawlStartDecision
