#pragma once

#include "app/ListReadConnection.h"
#include "store/PageDetails.h"

#include <QWidget>

#include <memory>

class Project;
class QLabel;
class QTableWidget;

// The page panel: for the page selected in the documents list, its URL, the status and the
// response time of its last fetch, the redirects followed, and the pages it links to.
class PagePanel : public QWidget {
    Q_OBJECT
public:
    explicit PagePanel(QWidget* parent = nullptr);

    void setCurrentProject(const std::shared_ptr<Project>& project);
    // Null: no page (the panel says so).
    void showPage(const QuillmerePagePtr& page);

    QLabel* urlLabel() const { return urlLabel_; }
    QLabel* statusLabel() const { return statusLabel_; }
    QLabel* responseTimeLabel() const { return responseTimeLabel_; }
    QLabel* redirectsLabel() const { return redirectsLabel_; }
    // Anchor | linked page | its status, one row per link, in the order they were recorded.
    QTableWidget* outgoingTable() const { return outgoingTable_; }

private:
    std::shared_ptr<Project> project_;
    // A crawl may be writing while a page is shown: its committed rows only.
    ListReadConnection reads_;
    QLabel* urlLabel_;
    QLabel* statusLabel_;
    QLabel* responseTimeLabel_;
    QLabel* redirectsLabel_;
    QLabel* outgoingTitle_;
    QTableWidget* outgoingTable_;
};
