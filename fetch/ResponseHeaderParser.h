#pragma once

#include "fetch/HTTPURLResponse.h"

#include <QByteArray>

// Gathers the header lines of HTTP responses, one line at a time as the transfer hands them
// over, into a status code and a header dictionary. A status line starts a new block, so
// interim responses (100 Continue) and redirects each get a block of their own.
class ResponseHeaderParser {
public:
    // Takes one line, its line end included or not. Answers true when the line closed a
    // header block (the empty line after the fields).
    bool addLine(const QByteArray& line);

    void reset();

    bool hasStatusLine() const { return hasStatusLine_; }
    bool isComplete() const { return complete_; }
    int statusCode() const { return statusCode_; }
    HTTPHeaderFields headerFields() const { return fields_; }

private:
    void addField(const QByteArray& name, const QString& value);

    bool hasStatusLine_ = false;
    bool complete_ = false;
    int statusCode_ = 0;
    HTTPHeaderFields fields_;
    QString lastFieldName_;
};
