#pragma once

// Who the progress sheet asks to stop the crawl: the main view controller.
class ProgressControllerDelegate {
public:
    virtual ~ProgressControllerDelegate() = default;
    virtual void stopIndexer() = 0;
};
