#pragma once

#include <QString>

#include <memory>

class Project;

// Where a queued redirect target came from: the queue entry that started the chain (a page
// that was not itself a redirect target) and how many redirect entries lie between them.
// Kept in a table of its own beside the crawl tables, so that a chain is counted across
// queue entries, batches and continued runs without touching what the crawl writes.
class RedirectChain {
public:
    // Redirect entries a chain started from one queue entry may add to the queue.
    static constexpr int kMaximumHops = 20;

    struct Link {
        QString origin; // the entry that started the chain
        int hops = 0;   // redirect entries from the origin to this URL
    };

    // Makes the table when it is missing; answers whether it is there.
    static bool prepareTable(const std::shared_ptr<Project>& project);
    // Empties it, for a crawl that starts afresh.
    static void clear(const std::shared_ptr<Project>& project);
    // The chain that led to url: the url itself at 0 hops when no redirect queued it.
    static Link linkOf(const QString& url, const std::shared_ptr<Project>& project);
    // Notes that a redirect queued url as the given step of a chain (the last note wins).
    static bool recordLink(const QString& url, const Link& link, const std::shared_ptr<Project>& project);
};
