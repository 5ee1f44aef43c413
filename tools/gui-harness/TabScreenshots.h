#pragma once

#include <QString>

#include <functional>

class AppDelegate;

// One picture of the main window per visible tab of the audit's tab bar, taken from the
// screen after the tab is shown: DIR/tab-N-NAME.png.
namespace TabScreenshots {
void take(AppDelegate& delegate, const QString& dir, const std::function<void(int)>& end);
}
