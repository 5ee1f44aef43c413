#include "app/SheetWindowController.h"

#include <QHBoxLayout>
#include <QPushButton>

SheetWindowController::SheetWindowController(const QString& windowDescription) : QDialog(nullptr)
{
    setObjectName(windowDescription);
    setAttribute(Qt::WA_DeleteOnClose, false);
}

void SheetWindowController::displaySheetInWindow(QWidget* window)
{
    parentWindow_ = window;
    // Parented to the window (with the dialog's own flags, or it would become a child
    // widget) so that window modality blocks that window and the sheet is centred on it.
    if (window && parentWidget() != window)
        setParent(window, windowFlags());
    setWindowModality(Qt::WindowModal);
    open();
}

QHBoxLayout* SheetWindowController::buttonRow(QPushButton** cancel, QPushButton** validate,
                                              std::function<void()> onValidate)
{
    *cancel = new QPushButton;
    (*cancel)->setObjectName(QStringLiteral("buttonLocAnnuler"));
    (*cancel)->setAutoDefault(false);
    *validate = new QPushButton;
    (*validate)->setObjectName(QStringLiteral("buttonLocValider"));
    (*validate)->setDefault(true);
    connect(*cancel, &QPushButton::clicked, this, [this] { actionAnnuler(); });
    connect(*validate, &QPushButton::clicked, this, std::move(onValidate));
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(*cancel);
    row->addWidget(*validate);
    return row;
}
