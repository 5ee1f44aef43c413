#pragma once

#include <QtGlobal>

#include <memory>

class Project;

// How a crawl of a project begins, decided once for the window and the command line.
// A project whose crawl database holds no page starts at once. Otherwise the user chooses:
// after a finished crawl (nothing waits in the queue) between restarting and not starting;
// after an interrupted one between continuing, restarting and not starting.
namespace CrawlStartDecision {

enum class Situation { Fresh, Finished, Interrupted };
enum class Choice { Start, Continue, Restart, Decline };

// waitingCount, when given, receives the number of queue entries still waiting (0 for a
// fresh project, whose queue is not looked at).
Situation situationForProject(const std::shared_ptr<Project>& project, qint64* waitingCount = nullptr);

// What an answer of the start alert means. The finished crawl's alert has the buttons
// restart (1000) and cancel (1001); the interrupted crawl's has cancel (1000), continue
// (1001) and restart (1002). Any other answer declines; a fresh project always starts.
Choice choiceForAlertAnswer(Situation situation, int answer);

// Carries the choice out before the crawler is made: a restart empties the crawl database
// and sets the stored page count and depth back to 0. Continue and start change nothing:
// the crawler always queues the start URL again, and the pages and the waiting queue
// kept in the database are what make a crawl go on. Answers whether a crawl is to start.
bool apply(Choice choice, const std::shared_ptr<Project>& project);

} // namespace CrawlStartDecision
