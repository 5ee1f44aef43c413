#include "cli/CrawlProgress.h"

#include "cli/CliText.h"
#include "store/DisplayText.h"

#include <cstdio>

#include <sys/ioctl.h>
#include <unistd.h>

CrawlProgress::CrawlProgress() : terminal_(isatty(STDERR_FILENO) == 1), width_(80)
{
    winsize size{};
    if (terminal_ && ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 20)
        width_ = size.ws_col;
    sinceDraw_.start();
}

void CrawlProgress::page(qint32 pagesAnalysed, qint32 depth, const QString& url)
{
    pages_ = pagesAnalysed;
    depth_ = depth;
    // The page's URL is the site's text: shown escaped, its credentials masked.
    url_ = DisplayText::forTerminal(url);
    phase_.clear();
    draw(false);
}

void CrawlProgress::queue(qint64 waiting, qint64 done)
{
    waiting_ = waiting;
    done_ = done;
    draw(false);
}

void CrawlProgress::vacuum(qint32 index, qint32 count)
{
    phase_ = CliText::tr("CliProgressVacuum").arg(index + 1).arg(count);
    draw(index + 1 == count);
}

void CrawlProgress::message(const QString& text)
{
    if (terminal_ && drawn_)
        std::fputs("\r\033[K", stderr);
    std::fprintf(stderr, "%s\n", qPrintable(DisplayText::forTerminal(text, DisplayText::LineBreaks::Keep)));
    drawn_ = false;
    std::fflush(stderr);
}

void CrawlProgress::finish()
{
    if (terminal_)
        draw(true);
    if (terminal_ && drawn_)
        std::fputs("\n", stderr);
    drawn_ = false;
    std::fflush(stderr);
}

void CrawlProgress::draw(bool force)
{
    const qint64 interval = terminal_ ? 100 : 1000;
    if (!force && drawn_ && sinceDraw_.elapsed() < interval)
        return;
    sinceDraw_.restart();
    const qint64 total = waiting_ + done_;
    QString text = CliText::tr("CliProgressLine")
                       .arg(pages_)
                       .arg(depth_)
                       .arg(waiting_)
                       .arg(total);
    if (!phase_.isEmpty())
        text += QStringLiteral("  ") + phase_;
    if (!terminal_) {
        std::fprintf(stderr, "%s  %s\n", qPrintable(text), qPrintable(url_));
        std::fflush(stderr);
        drawn_ = true;
        return;
    }
    // One line: the bar, the counts, then the URL (or the vacuum's progress) in what is left.
    const int barWidth = 16;
    const int filled = total > 0 ? int(barWidth * done_ / total) : 0;
    QString line = QStringLiteral("[") + QString(filled, QLatin1Char('#')) + QString(barWidth - filled, QLatin1Char('.'))
                   + QStringLiteral("] ") + CliText::tr("CliProgressBar").arg(pages_).arg(depth_).arg(waiting_).arg(total);
    const QString tail = phase_.isEmpty() ? url_ : phase_;
    const int room = width_ - 1 - int(line.size()) - 2;
    if (room > 8 && !tail.isEmpty())
        line += QStringLiteral("  ") + (tail.size() > room ? QStringLiteral("...") + tail.right(room - 3) : tail);
    line = line.left(width_ - 1);
    std::fprintf(stderr, "\r\033[K%s", qPrintable(line));
    std::fflush(stderr);
    drawn_ = true;
}
