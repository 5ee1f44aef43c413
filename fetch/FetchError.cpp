#include "fetch/FetchError.h"

const QString FetchError::URLErrorDomain = QStringLiteral("NSURLErrorDomain");

FetchError::FetchError(QString domain, int code, QString localizedDescription)
    : domain_(std::move(domain)), code_(code), localizedDescription_(std::move(localizedDescription))
{
}

FetchErrorPtr FetchError::errorWithCode(int code, const QString& localizedDescription)
{
    return std::make_shared<const FetchError>(URLErrorDomain, code, localizedDescription);
}
