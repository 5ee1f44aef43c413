#pragma once

#include <QList>

#include <functional>
#include <memory>

struct sqlite3_stmt;
class Project;
class QuillmereLink;
class QuillmerePage;
class QuillmereLinkPage;
using QuillmereLinkPagePtr = std::shared_ptr<QuillmereLinkPage>;

// A link that points to a page, paired with the page that contains it; read in one joined
// statement for the links list.
class QuillmereLinkPage {
public:
    QuillmereLinkPage(const std::shared_ptr<QuillmerePage>& quillmerePage,
                      const std::shared_ptr<QuillmereLink>& quillmereLink);

    // The links to the target page, sorted by counter, each with its source page. A link whose
    // source page row is gone is left out by the join.
    static QList<QuillmereLinkPagePtr> getSourcesLinksFromPage(const std::shared_ptr<QuillmerePage>& target,
                                                               const std::shared_ptr<Project>& project);
    static QList<QuillmereLinkPagePtr> getSourcesLinksFromPage(const QuillmerePage& target,
                                                               const std::shared_ptr<Project>& project);
    // The same links one at a time, without holding them all (a home page can have millions),
    // and how many there are. False when the database could not be read.
    static bool forEachSourceLink(const QuillmerePage& target, const std::shared_ptr<Project>& project,
                                  const std::function<void(const QuillmereLinkPage&)>& visit);
    static qint64 countSourceLinks(const QuillmerePage& target, const std::shared_ptr<Project>& project);
    // Columns 0 to 3 of the joined row.
    static std::shared_ptr<QuillmereLink> linkFromStatement(sqlite3_stmt* statement,
                                                            const std::shared_ptr<Project>& project);
    // The source page: identifier from column 1, the other fields from columns 4 to 14.
    static std::shared_ptr<QuillmerePage> pageFromStatement(sqlite3_stmt* statement,
                                                            const std::shared_ptr<Project>& project);

    std::shared_ptr<QuillmerePage> quillmerePage() const { return quillmerePage_; }
    void setQuillmerePage(const std::shared_ptr<QuillmerePage>& v) { quillmerePage_ = v; }
    std::shared_ptr<QuillmereLink> quillmereLink() const { return quillmereLink_; }
    void setQuillmereLink(const std::shared_ptr<QuillmereLink>& v) { quillmereLink_ = v; }

private:
    std::shared_ptr<QuillmerePage> quillmerePage_;
    std::shared_ptr<QuillmereLink> quillmereLink_;
};
