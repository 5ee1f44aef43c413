#pragma once

#include <QString>

#include <memory>

// A failed transfer: where the failure comes from, its code and a readable text.
// Codes follow the URL loading system's numbering so that a reader who knows it finds
// familiar values (-1001 timed out, -1004 cannot connect, ...).
class FetchError {
public:
    static const QString URLErrorDomain; // "NSURLErrorDomain"

    enum Code : int {
        Unknown = -1,
        Cancelled = -999,
        BadURL = -1000,
        TimedOut = -1001,
        UnsupportedURL = -1002,
        CannotFindHost = -1003,
        CannotConnectToHost = -1004,
        NetworkConnectionLost = -1005,
        HTTPTooManyRedirects = -1007,
        BadServerResponse = -1011,
        CannotDecodeContentData = -1015,
        CannotParseResponse = -1017,
        SecureConnectionFailed = -1200,
    };

    FetchError() = default;
    FetchError(QString domain, int code, QString localizedDescription);

    // An error of the URL loading domain.
    static std::shared_ptr<const FetchError> errorWithCode(int code, const QString& localizedDescription);

    QString domain() const { return domain_; }
    int code() const { return code_; }
    QString localizedDescription() const { return localizedDescription_; }

private:
    QString domain_;
    int code_ = 0;
    QString localizedDescription_;
};

// An error is shared, and "no error" is an empty pointer.
using FetchErrorPtr = std::shared_ptr<const FetchError>;
