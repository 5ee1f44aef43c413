#pragma once

#include <QList>
#include <QString>

#include <memory>

struct sqlite3_stmt;
class Project;
class QuillmerePage;
class QuillmereLink;
using QuillmereLinkPtr = std::shared_ptr<QuillmereLink>;

// One row of the Links table: the page idt_source contains a link to the page idt_page.
class QuillmereLink {
public:
    QuillmereLink(qint64 pageIdentifier, qint64 sourceIdentifier, const QString& anchor, qint64 counter,
                  const std::shared_ptr<Project>& project);

    // Takes the source first and the target second; the target goes into idt_page. The new
    // link keeps both records as its cached pages.
    static QuillmereLinkPtr createLinkWithPageSource(const std::shared_ptr<QuillmerePage>& source,
                                                     const std::shared_ptr<QuillmerePage>& target,
                                                     const QString& anchor, qint32 counter,
                                                     const std::shared_ptr<Project>& project);
    static void removeAllLinksWithTarget(const std::shared_ptr<QuillmerePage>& target,
                                         const std::shared_ptr<Project>& project);
    // The links that point to the target page, in database order, without cached pages.
    static QList<QuillmereLinkPtr> getSourcesLinksFromPage(const std::shared_ptr<QuillmerePage>& target,
                                                           const std::shared_ptr<Project>& project);
    // Columns 0 to 3: idt_page, idt_source, anchor, counter.
    static QuillmereLinkPtr linkFromStatement(sqlite3_stmt* statement, const std::shared_ptr<Project>& project);

    // For a link read from the database this looks up the SOURCE page (idt_source), like
    // pageSource; callers wanting the target use idt_page with getPageFromIdentifier.
    std::shared_ptr<QuillmerePage> page();
    std::shared_ptr<QuillmerePage> pageSource();

    QString description() const;

    qint64 idt_page() const { return idtPage_; }
    void setIdt_page(qint64 v) { idtPage_ = v; }
    std::shared_ptr<QuillmerePage> cachedPage() const { return cachedPage_; }
    void setCachedPage(const std::shared_ptr<QuillmerePage>& v) { cachedPage_ = v; }
    qint64 idt_source() const { return idtSource_; }
    void setIdt_source(qint64 v) { idtSource_ = v; }
    std::shared_ptr<QuillmerePage> cachedPageSource() const { return cachedPageSource_; }
    void setCachedPageSource(const std::shared_ptr<QuillmerePage>& v) { cachedPageSource_ = v; }
    QString anchor() const { return anchor_; }
    void setAnchor(const QString& v) { anchor_ = v; }
    qint64 counter() const { return counter_; }
    void setCounter(qint64 v) { counter_ = v; }
    std::weak_ptr<Project> project() const { return project_; }
    void setProject(const std::shared_ptr<Project>& v) { project_ = v; }

private:
    qint64 idtPage_ = 0;
    std::shared_ptr<QuillmerePage> cachedPage_;
    qint64 idtSource_ = 0;
    std::shared_ptr<QuillmerePage> cachedPageSource_;
    QString anchor_;
    qint64 counter_ = 0;
    std::weak_ptr<Project> project_;
};
