#pragma once

#include <QWebEnginePage>

// The preview shows only what the program tells it to load. A link clicked in it (or any
// other navigation the page starts) opens in the user's browser and is refused; requests
// for a new window are refused.
class WebPreviewPage : public QWebEnginePage {
    Q_OBJECT
public:
    explicit WebPreviewPage(QObject* parent = nullptr);

    // The program's own page, loaded at start.
    static QUrl promotionalPageURL();

    int refusedNavigationCount() const { return refusedNavigations_; }
    int refusedNewWindowCount() const { return refusedNewWindows_; }

protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
    QWebEnginePage* createWindow(WebWindowType type) override;

private:
    int refusedNavigations_ = 0;
    int refusedNewWindows_ = 0;
};
