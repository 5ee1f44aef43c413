#pragma once

#include "crawler/CrawlRecordKeeper.h"
#include "crawler/DownloaderDelegate.h"

#include <memory>

// A crawl delegate whose record-keeping calls are CrawlRecordKeeper's; a front end adds what
// it shows. Its keeper exists once a project is given (setProject).
class RecordKeepingDelegate : public DownloaderDelegate {
public:
    bool hasRecords() const { return records_ != nullptr; }
    const CrawlRecordKeeper& records() const { return *records_; }

    QuillmerePagePtr foundPageWithPath(const QString& path, const QString& name, const QString& title,
                                       const QString& url, qint32 depth) override
    {
        return records_->foundPageWithPath(path, name, title, url, depth);
    }
    void updatePage(const QuillmerePagePtr& page, const QString& title) override { records_->updatePage(page, title); }
    bool foundLinkWithPath(const QString& path, const QString& name, const QString& anchor, const QString& url,
                           qint32 depth, const QuillmerePagePtr& page) override
    {
        return records_->foundLinkWithPath(path, name, anchor, url, depth, page);
    }
    bool foundLinkWithPage(const QuillmerePagePtr& pageTo, const QString& anchor, const QuillmerePagePtr& page) override
    {
        return records_->foundLinkWithPage(pageTo, anchor, page);
    }
    QuillmerePagePtr getPageFromURL(const QString& url) override { return records_->getPageFromURL(url); }
    void downloadPageWasAbandonedWithURL(const QString&, qint32) override { records_->pageWasAbandoned(); }
    void crawlDidCommit() override { records_->crawlDidCommit(); }

protected:
    void setProject(std::shared_ptr<Project> project) { records_ = std::make_unique<CrawlRecordKeeper>(std::move(project)); }
    CrawlRecordKeeper& keeper() { return *records_; }

private:
    std::unique_ptr<CrawlRecordKeeper> records_;
};
