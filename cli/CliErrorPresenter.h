#pragma once

#include "base/AppError.h"
#include "store/DisplayText.h"

#include <cstdio>
#include <cstdlib>

// On the command line an error meant for the user ends the program: its description and
// reason go to standard error, and the status is 2.
class CliErrorPresenter : public ErrorPresenter {
public:
    void presentError(const AppError& error) override
    {
        const auto keep = DisplayText::LineBreaks::Keep;
        std::fprintf(stderr, "quillmere: %s\n", qPrintable(DisplayText::forTerminal(error.localizedDescription, keep)));
        if (!error.localizedFailureReason.isEmpty())
            std::fprintf(stderr, "quillmere: %s\n",
                         qPrintable(DisplayText::forTerminal(error.localizedFailureReason, keep)));
        std::fflush(stderr);
        std::exit(2);
    }
};
