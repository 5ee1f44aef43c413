#include "app/SheetWindowController.h"

SheetWindowController::SheetWindowController(const QString& windowDescription) : QDialog(nullptr)
{
    setObjectName(windowDescription);
    setAttribute(Qt::WA_DeleteOnClose, false);
}

void SheetWindowController::displaySheetInWindow(QWidget* window)
{
    parentWindow_ = window;
    if (window)
        setParent(window, windowFlags() | Qt::Sheet);
    setWindowModality(Qt::WindowModal);
    open();
}
