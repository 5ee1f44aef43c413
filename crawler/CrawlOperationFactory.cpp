#include "crawler/CrawlOperationFactory.h"

#include "crawler/WebCrawlOperation.h"
#include "store/LinkRules.h"

std::shared_ptr<DownloaderOperationLibXML>
CrawlOperationFactory::operationForProject(const std::shared_ptr<Project>& project,
                                           std::shared_ptr<DownloaderDelegate> delegate)
{
    if (LinkRulesStore::of(project) == LinkRules::Web)
        return std::make_shared<WebCrawlOperation>(project, std::move(delegate), false);
    return DownloaderOperationLibXML::initWithProject(project, std::move(delegate));
}
