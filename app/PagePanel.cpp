#include "app/PagePanel.h"

#include "store/Localization.h"
#include "store/Project.h"

#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QTableWidget>
#include <QVBoxLayout>

using Localization::localizedString;

namespace {

QString statusOf(const FetchLogPtr& fetch)
{
    if (!fetch)
        return localizedString("PagePanelNotFetched");
    return fetch->statusText();
}

QString chainOf(const FetchLogPtr& fetch)
{
    if (!fetch || fetch->redirectChain().isEmpty())
        return localizedString("PagePanelNoRedirect");
    QStringList steps;
    for (const FetchHop& hop : fetch->redirectChain())
        steps << QStringLiteral("%1 (%2)").arg(hop.url).arg(hop.status);
    steps << fetch->finalUrl();
    return steps.join(QStringLiteral(" → "));
}

QLabel* valueLabel(const QString& name)
{
    auto* label = new QLabel;
    label->setObjectName(name);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setWordWrap(true);
    return label;
}

} // namespace

PagePanel::PagePanel(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("pagePanel"));
    urlLabel_ = valueLabel(QStringLiteral("pagePanelURL"));
    statusLabel_ = valueLabel(QStringLiteral("pagePanelStatus"));
    responseTimeLabel_ = valueLabel(QStringLiteral("pagePanelResponseTime"));
    redirectsLabel_ = valueLabel(QStringLiteral("pagePanelRedirects"));
    outgoingTitle_ = new QLabel(localizedString("PagePanelOutgoingTitle"));

    outgoingTable_ = new QTableWidget(0, 3);
    outgoingTable_->setObjectName(QStringLiteral("pagePanelOutgoing"));
    outgoingTable_->setHorizontalHeaderLabels({localizedString("PagePanelColumnAnchor"),
                                               localizedString("PagePanelColumnTarget"),
                                               localizedString("PagePanelColumnStatus")});
    outgoingTable_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    outgoingTable_->setSelectionBehavior(QAbstractItemView::SelectRows);
    outgoingTable_->verticalHeader()->hide();
    outgoingTable_->setWordWrap(false);
    outgoingTable_->verticalHeader()->setDefaultSectionSize(outgoingTable_->fontMetrics().height() + 6);
    outgoingTable_->horizontalHeader()->resizeSection(0, 180);
    outgoingTable_->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);

    auto* form = new QFormLayout;
    form->addRow(localizedString("PagePanelURL"), urlLabel_);
    form->addRow(localizedString("PagePanelStatus"), statusLabel_);
    form->addRow(localizedString("PagePanelResponseTime"), responseTimeLabel_);
    form->addRow(localizedString("PagePanelRedirects"), redirectsLabel_);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addLayout(form);
    layout->addWidget(outgoingTitle_);
    layout->addWidget(outgoingTable_, 1);
    showPage(nullptr);
}

void PagePanel::setCurrentProject(const std::shared_ptr<Project>& project)
{
    if (project != project_)
        reads_.close();
    project_ = project;
    showPage(nullptr);
}

void PagePanel::showPage(const QuillmerePagePtr& page)
{
    outgoingTable_->setRowCount(0);
    if (!page || !project_) {
        urlLabel_->setText(localizedString("PagePanelNoPage"));
        statusLabel_->clear();
        responseTimeLabel_->clear();
        redirectsLabel_->clear();
        return;
    }
    const FetchLogPtr fetch = PageDetails::fetchOf(*page, reads_.readerFor(project_));
    urlLabel_->setText(page->url());
    statusLabel_->setText(statusOf(fetch));
    responseTimeLabel_->setText(fetch && fetch->responseMs() >= 0
                                    ? localizedString("PagePanelResponseTimeValue").arg(fetch->responseMs())
                                    : QString());
    redirectsLabel_->setText(chainOf(fetch));

    const QList<PageDetails::OutgoingLink> links = PageDetails::outgoingLinks(*page, reads_.readerFor(project_));
    outgoingTable_->setRowCount(int(links.size()));
    for (int row = 0; row < links.size(); ++row) {
        const PageDetails::OutgoingLink& link = links.at(row);
        outgoingTable_->setItem(row, 0, new QTableWidgetItem(link.anchor));
        outgoingTable_->setItem(row, 1, new QTableWidgetItem(link.target->url()));
        outgoingTable_->setItem(row, 2, new QTableWidgetItem(statusOf(link.fetch)));
    }
}
