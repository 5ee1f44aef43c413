#pragma once

#include <QtGlobal>

#include <atomic>

// The running counters of a crawl whose pages are taken on the crawler's thread while a
// window reads the project on its own thread: the page count and the depth of the page in
// hand, written by the crawler's record keeping and read by anyone. While they are set on
// a project (Project::setLiveCounters), its pages_count and max_depth read them; the
// registry's values are written on the main thread only, at each commit and at the end.
struct CrawlCounters {
    std::atomic<qint32> pagesCount{0};
    std::atomic<qint32> depthInHand{0};
};
