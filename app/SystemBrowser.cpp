#include "app/SystemBrowser.h"

#include <QDesktopServices>

namespace SystemBrowser {

namespace {
std::function<void(const QUrl&)>& opener()
{
    static std::function<void(const QUrl&)> fn;
    return fn;
}
} // namespace

void openURL(const QUrl& url)
{
    if (opener())
        opener()(url);
    else
        QDesktopServices::openUrl(url);
}

void setOpenerForTesting(std::function<void(const QUrl&)> fn)
{
    opener() = std::move(fn);
}

} // namespace SystemBrowser
