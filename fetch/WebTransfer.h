#pragma once

#include "fetch/FetchOutcome.h"
#include "fetch/WebFetcher.h"

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QUrl>

#include <atomic>
#include <chrono>

// One request of the web rules and its answer, without following redirects, on a libcurl
// handle pair taken from the shared pool (so that keep-alive connections are reused). The
// answer's head is always read; its body only when it is a GET, the content type is one of
// the kept ones and the answer is not a redirect with a Location. Otherwise the transfer stops
// once the head is in, which is not a failure.
class WebTransfer {
public:
    using Clock = std::chrono::steady_clock;

    struct Result {
        int status = 0;                                  // 0 when no response came
        QList<QPair<QByteArray, QByteArray>> headers;    // names in lower case, in order
        QByteArray body;                                 // null unless kept and whole
        FetchOutcome::Failure failure = FetchOutcome::Failure::None;
        QString failureText;
        bool abandoned = false;

        // The first value of the field (name in lower case); null when absent.
        QByteArray value(const QByteArray& name) const;
    };

    // `deadline`: when the whole fetch must have ended (time_point::max(): no bound).
    WebTransfer(const WebRequestOptions& options, const std::atomic<bool>* canContinue, Clock::time_point deadline);

    Result run(const QUrl& url, bool head);

    static bool isRedirectStatus(int status);
    // Whether the Content-Type value names one of the kept types (a prefix match on the media
    // type, case-insensitive).
    static bool isKeptType(const QByteArray& contentType, const QStringList& keptTypes);

private:
    friend struct WebTransferCallbacks;
    struct State;

    bool shouldStop(State& state) const;
    size_t handleHeaderLine(State& state, const char* data, size_t size) const;
    size_t handleBody(State& state, const char* data, size_t size) const;
    int runLoop(void* easy, void* multi, State& state) const;

    const WebRequestOptions& options_;
    const std::atomic<bool>* canContinue_;
    Clock::time_point deadline_;
};
