#include "app/ListToolBar.h"

#include "store/Localization.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QMenu>
#include <QToolButton>

using Localization::localizedString;

ListToolBar::ListToolBar(QWidget* parent) : QWidget(parent)
{
    searchField_ = new QLineEdit;
    searchField_->setObjectName(QStringLiteral("searchField"));
    searchField_->setPlaceholderText(localizedString("AuditSearchPlaceholder"));
    searchField_->setClearButtonEnabled(true);
    columnsMenu_ = new QMenu(this);
    columnsMenu_->setObjectName(QStringLiteral("columnsMenu"));
    columnsButton_ = new QToolButton;
    columnsButton_->setObjectName(QStringLiteral("columnsButton"));
    columnsButton_->setText(localizedString("AuditColumnsButton"));
    columnsButton_->setMenu(columnsMenu_);
    columnsButton_->setPopupMode(QToolButton::InstantPopup);
    exportButton_ = new QToolButton;
    exportButton_->setObjectName(QStringLiteral("exportButton"));
    exportButton_->setText(localizedString("AuditExportButton"));

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(searchField_, 1);
    layout->addWidget(columnsButton_);
    layout->addWidget(exportButton_);
}

QAction* ListToolBar::addColumnChoice(const QString& caption, bool shown)
{
    QAction* item = columnsMenu_->addAction(caption);
    item->setCheckable(true);
    item->setChecked(shown);
    return item;
}
