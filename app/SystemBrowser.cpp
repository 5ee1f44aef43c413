#include "app/SystemBrowser.h"

#include "base/DebugTrace.h"

#include <QDesktopServices>

namespace SystemBrowser {

namespace {
std::function<void(const QUrl&)>& opener()
{
    static std::function<void(const QUrl&)> fn;
    return fn;
}
} // namespace

bool isOpenable(const QUrl& url)
{
    const QString scheme = url.scheme().toLower();
    return url.isValid() && !url.host().isEmpty()
           && (scheme == QLatin1String("http") || scheme == QLatin1String("https"));
}

bool openURL(const QUrl& url)
{
    if (!isOpenable(url)) {
        DebugTrace("not opened in the browser: %s", qPrintable(url.toString(QUrl::RemoveUserInfo)));
        return false;
    }
    if (opener())
        opener()(url);
    else
        QDesktopServices::openUrl(url);
    return true;
}

void setOpenerForTesting(std::function<void(const QUrl&)> fn)
{
    opener() = std::move(fn);
}

} // namespace SystemBrowser
