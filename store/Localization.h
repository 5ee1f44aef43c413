#pragma once

#include <QString>

// The application's string tables: French captions looked up by key (id-based Qt
// translations embedded in the core). A key with no text reads as the key itself.
namespace Localization {
// Installs the French table in the running QCoreApplication; safe to call more than once.
bool install();
QString localizedString(const char* key);
} // namespace Localization
