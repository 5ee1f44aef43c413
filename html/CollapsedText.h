#pragma once

#include <QString>
#include <QStringView>

// Text gathered in pieces with every run of blanks made one space and none at either end,
// optionally cut to a number of characters (a surrogate pair is never split). Once full it
// ignores what comes, so a huge text costs no more than its first characters.
class CollapsedText {
public:
    explicit CollapsedText(qsizetype limit = -1) : limit_(limit) {}

    void append(QStringView piece);
    bool isFull() const { return full_; }
    const QString& text() const { return text_; }
    void clear();

    // The whole of a text collapsed and cut at once.
    static QString of(QStringView text, qsizetype limit = -1);

private:
    QString text_;
    qsizetype limit_;
    bool pendingBlank_ = false;
    bool full_ = false;
};
