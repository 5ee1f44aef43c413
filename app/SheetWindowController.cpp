#include "app/SheetWindowController.h"

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
