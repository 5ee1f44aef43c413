#pragma once

#include <QMap>
#include <QString>
#include <QUrl>

// What a transfer fetches: a URL, a method, a cache policy, a time-out and extra header
// fields. A plain value: copying it gives an independent, modifiable request.
class URLRequest {
public:
    enum CachePolicy {
        UseProtocolCachePolicy,
        ReloadIgnoringLocalCacheData,
    };

    static constexpr double kDefaultTimeoutInterval = 60.0;

    URLRequest() = default;
    explicit URLRequest(const QUrl& url, CachePolicy cachePolicy = UseProtocolCachePolicy,
                        double timeoutInterval = kDefaultTimeoutInterval);

    QUrl URL() const { return url_; }
    void setURL(const QUrl& url) { url_ = url; }

    // "GET" unless set otherwise.
    QString HTTPMethod() const { return httpMethod_; }
    void setHTTPMethod(const QString& method) { httpMethod_ = method; }

    CachePolicy cachePolicy() const { return cachePolicy_; }
    void setCachePolicy(CachePolicy policy) { cachePolicy_ = policy; }

    // Seconds without any progress after which the transfer fails.
    double timeoutInterval() const { return timeoutInterval_; }
    void setTimeoutInterval(double seconds) { timeoutInterval_ = seconds; }

    // Seconds the whole transfer may take, redirects included, however steadily bytes come;
    // 0 or less: no bound.
    double maxTransferInterval() const { return maxTransferInterval_; }
    void setMaxTransferInterval(double seconds) { maxTransferInterval_ = seconds; }

    // Extra request header fields (name -> value), sent as given.
    QMap<QString, QString> allHTTPHeaderFields() const { return headerFields_; }
    void setValueForHTTPHeaderField(const QString& value, const QString& field);

private:
    QUrl url_;
    QString httpMethod_ = QStringLiteral("GET");
    CachePolicy cachePolicy_ = UseProtocolCachePolicy;
    double timeoutInterval_ = kDefaultTimeoutInterval;
    double maxTransferInterval_ = 0;
    QMap<QString, QString> headerFields_;
};
