#include "app/AboutBox.h"

#include "store/Localization.h"

#include <QCoreApplication>

using Localization::localizedString;

AboutBox::AboutBox(QWidget* parent) : QMessageBox(parent)
{
    setObjectName(QStringLiteral("aboutBox"));
    setAttribute(Qt::WA_DeleteOnClose);
    setIcon(QMessageBox::Information);
    setWindowTitle(localizedString("AboutWindowTitle"));
    setTextFormat(Qt::PlainText);
    setText(localizedString("AboutText").arg(QCoreApplication::applicationVersion().isEmpty()
                                                 ? QStringLiteral(QUILLMERE_VERSION)
                                                 : QCoreApplication::applicationVersion()));
    setInformativeText(localizedString("AboutLicences").arg(QString::fromLatin1(qVersion())));
    setStandardButtons(QMessageBox::Close);
    setWindowModality(Qt::NonModal);
}

AboutBox* AboutBox::showFor(QWidget* window)
{
    AboutBox* box = window ? window->findChild<AboutBox*>(QStringLiteral("aboutBox"), Qt::FindDirectChildrenOnly) : nullptr;
    if (!box)
        box = new AboutBox(window);
    box->show();
    box->raise();
    box->activateWindow();
    return box;
}
