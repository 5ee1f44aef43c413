#include "ScriptedCrawl.h"

#include "app/DocumentsView.h"

#include <cstdio>

int ScriptedCrawl::rowWithMostIncomingLinks(DocumentsView* view)
{
    int best = -1;
    qint64 most = 0;
    const auto& pages = view->arrayOfPages();
    for (int row = 0; row < pages.size(); ++row) {
        if (pages.at(row)->inLinkCount() > most) {
            most = pages.at(row)->inLinkCount();
            best = row;
        }
    }
    return best;
}

void ScriptedCrawl::whenPreviewLoaded(const bool& loaded, int waitMs, int settleMs, std::function<void()> then)
{
    auto* poll = new QTimer;
    auto* waited = new QElapsedTimer;
    waited->start();
    QObject::connect(poll, &QTimer::timeout, [poll, waited, &loaded, waitMs, settleMs, then] {
        if (!loaded && waited->elapsed() < waitMs)
            return;
        if (!loaded)
            std::fprintf(stderr, "quillmere-gui: the preview had not finished loading after %d s\n", waitMs / 1000);
        poll->stop();
        poll->deleteLater();
        delete waited;
        QTimer::singleShot(settleMs, then);
    });
    poll->start(100);
}
