#include "html/CollapsedText.h"

void CollapsedText::append(QStringView piece)
{
    if (full_)
        return;
    const qsizetype n = piece.size();
    for (qsizetype i = 0; i < n; ++i) {
        const QChar c = piece[i];
        if (c.isSpace()) {
            pendingBlank_ = !text_.isEmpty();
            continue;
        }
        const qsizetype width = (c.isHighSurrogate() && i + 1 < n && piece[i + 1].isLowSurrogate()) ? 2 : 1;
        if (limit_ >= 0 && text_.size() + (pendingBlank_ ? 1 : 0) + width > limit_) {
            full_ = true;
            return;
        }
        if (pendingBlank_) {
            text_.append(u' ');
            pendingBlank_ = false;
        }
        text_.append(piece.sliced(i, width));
        i += width - 1;
    }
}

void CollapsedText::clear()
{
    text_.clear();
    pendingBlank_ = false;
    full_ = false;
}

QString CollapsedText::of(QStringView text, qsizetype limit)
{
    CollapsedText collapsed(limit);
    collapsed.append(text);
    return collapsed.text();
}
