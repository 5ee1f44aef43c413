#pragma once

#include <QElapsedTimer>
#include <QString>

// Progress of a running crawl on standard error: redrawn in place with a bar on a terminal,
// a plain line every second otherwise.
class CrawlProgress {
public:
    CrawlProgress();

    void page(qint32 pagesAnalysed, qint32 depth, const QString& url);
    void queue(qint64 waiting, qint64 done);
    void vacuum(qint32 index, qint32 count);
    void message(const QString& text);  // a line of its own
    void finish();                       // leaves the terminal line clean

private:
    void draw(bool force);

    bool terminal_;
    int width_;
    QElapsedTimer sinceDraw_;
    bool drawn_ = false;
    qint32 pages_ = 0;
    qint32 depth_ = 0;
    qint64 waiting_ = 0;
    qint64 done_ = 0;
    QString url_;
    QString phase_;
};
