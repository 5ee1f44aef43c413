#include "app/HelpDialog.h"

#include "store/Localization.h"

#include <QDialogButtonBox>
#include <QFile>
#include <QTextBrowser>
#include <QVBoxLayout>

using Localization::localizedString;

HelpDialog::HelpDialog(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("helpDialog"));
    setWindowTitle(localizedString("HelpWindowTitle"));
    browser_ = new QTextBrowser;
    browser_->setObjectName(QStringLiteral("helpBrowser"));
    // Links lead to other sites or to files of the source tree: neither is for this window.
    browser_->setOpenLinks(false);
    QFile readme(QStringLiteral(":/help/README.md"));
    if (readme.open(QIODevice::ReadOnly))
        browser_->setMarkdown(QString::fromUtf8(readme.readAll()));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(browser_);
    layout->addWidget(buttons);
    resize(820, 680);
}

HelpDialog* HelpDialog::showFor(QWidget* window)
{
    HelpDialog* dialog = window ? window->findChild<HelpDialog*>(QStringLiteral("helpDialog"), Qt::FindDirectChildrenOnly) : nullptr;
    if (!dialog)
        dialog = new HelpDialog(window);
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
    return dialog;
}
