#pragma once

#include <memory>

class DownloaderDelegate;
class DownloaderOperationLibXML;
class Project;

// The crawl a project's link rules call for: the classic crawler, or the web rules' one
// (a WebCrawlOperation). Both front ends start their crawls here.
class CrawlOperationFactory {
public:
    static std::shared_ptr<DownloaderOperationLibXML> operationForProject(const std::shared_ptr<Project>& project,
                                                                          std::shared_ptr<DownloaderDelegate> delegate);
};
