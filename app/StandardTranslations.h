#pragma once

// Qt's own French texts (standard buttons, context menus of text fields), from the
// translations Qt is installed with; the program's captions come with the core.
namespace StandardTranslations {
bool install();
}
