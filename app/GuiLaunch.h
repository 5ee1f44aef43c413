#pragma once

#include <QString>

class DemoServer;
class MainViewController;

// What the desktop program and the tools that drive its window do alike before and after the
// application object exists.
namespace GuiLaunch {
// The names the program's settings are kept under.
inline constexpr char kOrganizationName[] = "Quillmere";
inline constexpr char kApplicationName[] = "Quillmere";
// Before QApplication: Chromium's sandbox cannot run as root, so the preview goes without it
// there (and only there); the preview's GL contexts are shared.
void prepareProcess();
// After QApplication: names (those of the settings too), version and Qt's own French texts.
void configureApplication();
// Serves the built-in demo site on 127.0.0.1 and opens the project 'demo' on it. Shows an
// alert and answers false when the site could not be served or the project made.
bool openDemo(DemoServer& server, MainViewController* controller);
} // namespace GuiLaunch
