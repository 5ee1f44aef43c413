#pragma once

#include <QByteArray>
#include <QByteArrayView>

// The encoding a browser reads a page in: a byte order mark first, then the charset the
// server declared, then a <meta charset> or <meta http-equiv=content-type> near the top of
// the page, else UTF-8. Names are those QStringDecoder takes.
class WebCharset {
public:
    // `transportCharset` is the charset parameter of the answer's Content-Type ("" for none).
    static QByteArray encodingOf(QByteArrayView page, QByteArrayView transportCharset = {});

    // The encoding a label names as browsers map labels (latin1 and us-ascii are read as
    // windows-1252, for instance); "" when the label names none this system can decode.
    static QByteArray encodingForLabel(QByteArrayView label);

    // The label of the first <meta> that declares one, read the way browsers pre-scan the
    // start of a page (comments and other tags skipped); "" when none does.
    static QByteArray labelFromMeta(QByteArrayView head);

    // The charset named in a Content-Type value ("text/html; charset=utf-8"); "" when none.
    static QByteArray labelFromContentType(QByteArrayView value);

    // How much of the page the <meta> scan reads: the first chunk the parser gets.
    static constexpr qsizetype kScanLength = 64 * 1024;
};
