#pragma once

#include <QUrl>

#include <functional>

// Opens a URL in the user's default browser. Tests put an opener of their own in its place,
// so that no browser is ever launched by them.
namespace SystemBrowser {
void openURL(const QUrl& url);
void setOpenerForTesting(std::function<void(const QUrl&)> opener);
} // namespace SystemBrowser
