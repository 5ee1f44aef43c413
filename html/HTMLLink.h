#pragma once

#include "html/HTMLNode.h"
#include "html/PageFacts.h"
#include "html/RobotEntry.h"

#include <QList>
#include <QString>
#include <QVariantMap>

#include <memory>

class HTMLLink;
using HTMLLinkPtr = std::shared_ptr<HTMLLink>;

// One anchor of a crawled page turned into a link: its anchor text, raw href, the absolute
// URL it leads to (fragment removed), whether it leaves the site, and for an internal link
// the (documentPath, documentName) pair under which the crawler files the target page.
//
// Resolution works on strings and paths, not on parsed URLs, and keeps a few oddities the
// crawl database depends on (see the .cpp). It throws RangeException when a relative href
// climbs above the root or an internal URL is shorter than the site base.
class HTMLLink {
public:
    HTMLLink() = default;
    HTMLLink(const HTMLNodePtr& node, const QString& currentPath, const QString& currentFullURL,
             const QString& projectBaseURL);

    // A fully resolved link for an "a" element. currentPath is the directory path of the page
    // holding it ("/" or "/dir"), projectBaseURL the project's start URL.
    static HTMLLinkPtr initWithHTMLNode(const HTMLNodePtr& node, const QString& currentPath,
                                        const QString& currentFullURL, const QString& projectBaseURL);
    // The same link from what a page reading kept of the anchor.
    HTMLLink(const AnchorFacts& anchor, const QString& currentPath, const QString& currentFullURL,
             const QString& projectBaseURL);
    static HTMLLinkPtr initWithAnchorFacts(const AnchorFacts& anchor, const QString& currentPath,
                                           const QString& currentFullURL, const QString& projectBaseURL);

    // Resolves a relative href against a directory path; both outputs are cleared first.
    static void extractFromHRef(const QString& href, const QString& currentPath, QString& fullPath,
                                QString& documentName);
    // Sets documentPath and documentName from an absolute URL of the site.
    void extractPathAndDocumentWithURL(const QString& url, const QString& projectBaseURL);
    // Whether the site's Disallow rules let the crawler follow this link. No rules (or a null
    // list) allow everything.
    bool isAllowedURLwithArrayOfDisallowed(const QList<RobotEntryPtr>& rules) const;
    bool isAllowedURLwithArrayOfDisallowed(const QList<RobotEntryPtr>* rules) const;

    QString description() const;

    bool isExternalLink() const { return isExternalLink_; }
    void setIsExternalLink(bool v) { isExternalLink_ = v; }
    bool isSamePageLink() const { return isSamePageLink_; }
    void setIsSamePageLink(bool v) { isSamePageLink_ = v; }
    bool isPossibleFirstURLError() const { return isPossibleFirstURLError_; }
    void setIsPossibleFirstURLError(bool v) { isPossibleFirstURLError_ = v; }
    QString href() const { return href_; }
    void setHref(const QString& v) { href_ = v; }
    QString fullHref() const { return fullHref_; }
    void setFullHref(const QString& v) { fullHref_ = v; }
    QString anchor() const { return anchor_; }
    void setAnchor(const QString& v) { anchor_ = v; }
    QString documentPath() const { return documentPath_; }
    void setDocumentPath(const QString& v) { documentPath_ = v; }
    QString documentName() const { return documentName_; }
    void setDocumentName(const QString& v) { documentName_ = v; }
    QString debugAnchor() const { return debugAnchor_; }
    void setDebugAnchor(const QString& v) { debugAnchor_ = v; }
    QString debugHRef() const { return debugHRef_; }
    void setDebugHRef(const QString& v) { debugHRef_ = v; }
    QString currentPath() const { return currentPath_; }
    void setCurrentPath(const QString& v) { currentPath_ = v; }
    QString currentFullURL() const { return currentFullURL_; }
    void setCurrentFullURL(const QString& v) { currentFullURL_ = v; }
    QString projectBaseURL() const { return projectBaseURL_; }
    void setProjectBaseURL(const QString& v) { projectBaseURL_ = v; }
    // Never filled by the link itself; empty stands for none.
    QVariantMap headers() const { return headers_; }
    void setHeaders(const QVariantMap& v) { headers_ = v; }

private:
    void resolveAnchor(const AnchorFacts& anchor);
    void resolveHref();
    void resolveAbsoluteHref();

    bool isExternalLink_ = false;
    bool isSamePageLink_ = false;
    bool isPossibleFirstURLError_ = false;
    QString href_;
    QString fullHref_;
    QString anchor_;
    QString documentPath_;
    QString documentName_;
    QString debugAnchor_;
    QString debugHRef_;
    QString currentPath_;
    QString currentFullURL_;
    QString projectBaseURL_;
    QVariantMap headers_;
};
