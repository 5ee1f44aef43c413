#pragma once

#include <QString>

// An error shown to the user: what happened, and why.
struct AppError {
    QString domain;
    int code = 0;
    QString localizedDescription;
    QString localizedFailureReason;
};

// Where errors meant for the user go: an alert in the desktop app, standard error (and
// status 2) on the command line, a list in the tests.
class ErrorPresenter {
public:
    virtual ~ErrorPresenter() = default;
    virtual void presentError(const AppError& error) = 0;
};
