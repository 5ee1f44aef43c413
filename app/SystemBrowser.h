#pragma once

#include <QUrl>

#include <functional>

// Opens a URL in the user's default browser. Tests put an opener of their own in its place,
// so that no browser is ever launched by them.
namespace SystemBrowser {
// Only web addresses (http, https) are handed on: a crawled URL is the site's choice, and a
// file:, smb: or javascript: one must not reach the desktop's handlers. Answers whether the
// URL was handed on.
bool openURL(const QUrl& url);
bool isOpenable(const QUrl& url);
void setOpenerForTesting(std::function<void(const QUrl&)> opener);
} // namespace SystemBrowser
