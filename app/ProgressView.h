#pragma once

#include <QDateTime>
#include <QGroupBox>

#include <memory>

class MainViewController;
class Project;
class QLabel;
class QPushButton;
class QTimer;

// The progress panel: the project shown (name, site URL, pages analysed, depth, start and
// end dates), the start button where every crawl begins, and the filter button.
class ProgressView : public QGroupBox {
    Q_OBJECT
public:
    explicit ProgressView(QWidget* parent = nullptr);

    void setMainViewController(MainViewController* controller) { mainViewController_ = controller; }
    std::shared_ptr<Project> internalCurrentProject() const { return internalCurrentProject_; }

    void setCurrentProject(const std::shared_ptr<Project>& project);
    void closeCurrentProject();
    void actionLancer();
    void actionStop();
    void actionCompresser();
    void crawlerDidEnd();
    void ihmCrawlerEnd();
    void updateStartDate(const QDateTime& date);
    void updateStopDate(const QDateTime& date);
    void updatePageCount(qint32 count);
    void downloadPageInProgressWithURL(const QString& url, qint32 depth);

    QLabel* textFieldProjectName() const { return textFieldProjectName_; }
    QLabel* textFieldProjectURL() const { return textFieldProjectURL_; }
    QPushButton* buttonLancer() const { return buttonLancer_; }
    QPushButton* buttonFiltres() const { return buttonFiltres_; }
    QLabel* labelPagesAnalysees() const { return labelPagesAnalysees_; }
    QLabel* textFieldPageAnalysees() const { return textFieldPageAnalysees_; }
    QLabel* labelDepth() const { return labelDepth_; }
    QLabel* textFieldDepth() const { return textFieldDepth_; }
    QLabel* labelStartDate() const { return labelStartDate_; }
    QLabel* textFieldStartDate() const { return textFieldStartDate_; }
    QLabel* labelEndDate() const { return labelEndDate_; }
    QLabel* textFieldEndDate() const { return textFieldEndDate_; }
    QLabel* labelVersion() const { return labelVersion_; }
    QLabel* labelLocNomProject() const { return labelLocNomProject_; }
    QLabel* labelLocUrlSite() const { return labelLocUrlSite_; }

private:
    void awakeFromNib();
    void showFilterButton();
    // Gives a counter its new text at once but paints it a few times a second at most.
    void setCounterText(QLabel* field, const QString& text);

    MainViewController* mainViewController_ = nullptr;
    std::shared_ptr<Project> internalCurrentProject_;
    QLabel* textFieldProjectName_;
    QLabel* textFieldProjectURL_;
    QPushButton* buttonLancer_;
    QPushButton* buttonFiltres_;
    QLabel* labelPagesAnalysees_;
    QLabel* textFieldPageAnalysees_;
    QLabel* labelDepth_;
    QLabel* textFieldDepth_;
    QLabel* labelStartDate_;
    QLabel* textFieldStartDate_;
    QLabel* labelEndDate_;
    QLabel* textFieldEndDate_;
    QLabel* labelVersion_;
    QLabel* labelLocNomProject_;
    QLabel* labelLocUrlSite_;
    QTimer* paintCounters_;
};
