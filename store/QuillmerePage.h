#pragma once

#include <QList>
#include <QString>

#include <memory>

struct sqlite3_stmt;
class Project;
class QuillmerePage;
class QuillmereLinkPage;
using QuillmerePagePtr = std::shared_ptr<QuillmerePage>;
using QuillmereLinkPagePtr = std::shared_ptr<QuillmereLinkPage>;

// One row of the Page table: a document of the site, its flags, link counters, depth and
// weight. Records are never refreshed from the database; while a crawl runs the record in
// memory is the authority for the link counters it writes back.
class QuillmerePage {
public:
    QuillmerePage(qint64 idt, const QString& path, const QString& name, const QString& title, const QString& url,
                  qint64 isNoIndex, qint64 isNoFollow, qint64 isCanonical, qint64 inLinkCount, qint64 outLinkCount,
                  qint64 depth, double weight, const std::shared_ptr<Project>& project);

    // Creation and single-row look-ups.
    static QuillmerePagePtr createPageWithPath(const QString& path, const QString& name, const QString& title,
                                               const QString& url, qint32 depth,
                                               const std::shared_ptr<Project>& project);
    static QuillmerePagePtr getPageFromPath(const QString& path, const QString& name,
                                            const std::shared_ptr<Project>& project);
    // Finds the page stored with or without one trailing slash.
    static QuillmerePagePtr getPageFromURL(const QString& url, const std::shared_ptr<Project>& project);
    static QuillmerePagePtr getPageFromIdentifier(qint64 identifier, const std::shared_ptr<Project>& project);

    // Lists, in statement order.
    static QList<QuillmerePagePtr> getAllPagesForProject(const std::shared_ptr<Project>& project);
    // The pages getAllPagesForProject lists, the heaviest `limit` of them (ties in its order).
    static QList<QuillmerePagePtr> getTopPagesByWeightForProject(const std::shared_ptr<Project>& project, qint32 limit);
    static QList<QuillmerePagePtr> getPages404AllTypesMimeForProject(const std::shared_ptr<Project>& project);
    static QList<QuillmerePagePtr> getPages404OnlyHTMLForProject(const std::shared_ptr<Project>& project);
    static QList<QuillmerePagePtr> getPages404AllNotHTMLForProject(const std::shared_ptr<Project>& project);
    // The same three lists with the 404 title given instead of read from the string tables.
    static QList<QuillmerePagePtr> getPages404AllTypesMimeForProject(const std::shared_ptr<Project>& project,
                                                                     const QString& title404);
    static QList<QuillmerePagePtr> getPages404OnlyHTMLForProject(const std::shared_ptr<Project>& project,
                                                                 const QString& title404);
    static QList<QuillmerePagePtr> getPages404AllNotHTMLForProject(const std::shared_ptr<Project>& project,
                                                                   const QString& title404);
    static QList<QuillmerePagePtr> getPagesNoIndexForProject(const std::shared_ptr<Project>& project);
    static QList<QuillmerePagePtr> getPagesCanonicalForProject(const std::shared_ptr<Project>& project);
    static QList<QuillmerePagePtr> getAllVacuumPagesForProject(const std::shared_ptr<Project>& project);

    // Counts; 0 on failure.
    static qint64 countPagesForProject(const std::shared_ptr<Project>& project);
    static qint64 countVacuumPagesForProject(const std::shared_ptr<Project>& project);

    // Changes made in SQL only; no record in memory follows them.
    static void performWeightForProject(const std::shared_ptr<Project>& project);
    static void decOutLinkCountWithPageIdentifier(qint32 identifier, const std::shared_ptr<Project>& project);

    // Builds a record from the current row (columns idt..weight in table order).
    static QuillmerePagePtr pageFromStatement(sqlite3_stmt* statement, const std::shared_ptr<Project>& project);

    // Updates of this record's row, through its own project.
    void updatePageTitle(const QString& title);
    void incInLinkCount();
    void incOutLinkCount();
    // These write the flag but, in memory, add one to outLinkCount and leave the flag as it was.
    void updateIsNoIndex(bool value);
    void updateIsNoFollow(bool value);
    void updateIsCanonical(bool value);
    // Deletes the page row only; its Links rows stay.
    void removeFromProject(const std::shared_ptr<Project>& project);
    // The links that point to this page, each with its source page.
    QList<QuillmereLinkPagePtr> getAllSourcePages() const;

    QString description() const;

    qint64 idt() const { return idt_; }
    void setIdt(qint64 v) { idt_ = v; }
    QString path() const { return path_; }
    void setPath(const QString& v) { path_ = v; }
    QString page() const { return page_; }
    void setPage(const QString& v) { page_ = v; }
    QString title() const { return title_; }
    void setTitle(const QString& v) { title_ = v; }
    QString url() const { return url_; }
    void setUrl(const QString& v) { url_ = v; }
    qint64 isNoIndex() const { return isNoIndex_; }
    void setIsNoIndex(qint64 v) { isNoIndex_ = v; }
    qint64 isNoFollow() const { return isNoFollow_; }
    void setIsNoFollow(qint64 v) { isNoFollow_ = v; }
    qint64 isCanonical() const { return isCanonical_; }
    void setIsCanonical(qint64 v) { isCanonical_ = v; }
    qint64 inLinkCount() const { return inLinkCount_; }
    void setInLinkCount(qint64 v) { inLinkCount_ = v; }
    qint64 outLinkCount() const { return outLinkCount_; }
    void setOutLinkCount(qint64 v) { outLinkCount_ = v; }
    qint64 depth() const { return depth_; }
    void setDepth(qint64 v) { depth_ = v; }
    double weight() const { return weight_; }
    void setWeight(double v) { weight_ = v; }
    std::weak_ptr<Project> project() const { return project_; }
    void setProject(const std::shared_ptr<Project>& v) { project_ = v; }

private:
    // Shared by the three flag updates once their statement is prepared: binds and steps it,
    // then bumps outLinkCount in memory.
    void stepFlagUpdate(sqlite3_stmt* statement, bool value, int flagColumn);

    qint64 idt_ = 0;
    QString path_;
    QString page_;
    QString title_;
    QString url_;
    qint64 isNoIndex_ = 0;
    qint64 isNoFollow_ = 0;
    qint64 isCanonical_ = 0;
    qint64 inLinkCount_ = 0;
    qint64 outLinkCount_ = 0;
    qint64 depth_ = 0;
    double weight_ = 0.0;
    std::weak_ptr<Project> project_;
};
