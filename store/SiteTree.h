#pragma once

#include <QHash>
#include <QList>
#include <QString>

#include <memory>

class Project;

// The site's pages as the crawl met them: each page under the first page that linked to it
// from one level up (the shortest-path tree), with what the crawl map draws of it. Pages with
// no such link (the start page, or pages whose linking pages are gone) are roots.
class SiteTree {
public:
    struct Node {
        qint64 idt = 0;
        QString url;
        QString title;
        qint64 depth = 0;
        qint64 inLinkCount = 0;
        qint64 status = 0;     // the last fetch's status; 0 when none came
        QString failure;       // the last fetch's failure ("timeout", "refused"...), empty if none
        bool fetched = false;  // false when the page was never fetched
        qint64 parentIdt = -1; // -1 for a root
        QList<int> children;   // indexes in nodes(), in the order their links were recorded
    };

    // Reads every page and every link once; the links are walked in one pass whatever the
    // size of the site.
    static SiteTree read(const std::shared_ptr<Project>& project);

    const QList<Node>& nodes() const { return nodes_; }
    // Indexes of the roots, start page first.
    const QList<int>& roots() const { return roots_; }
    // The index of a page in nodes(), -1 when absent.
    int indexOf(qint64 idt) const { return indexOfIdt_.value(idt, -1); }

private:
    QList<Node> nodes_;
    QList<int> roots_;
    QHash<qint64, int> indexOfIdt_;
};
