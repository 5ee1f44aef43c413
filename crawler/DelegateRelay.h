#pragma once

#include "crawler/MainThread.h"

#include <type_traits>

// Where an operation's calls to its delegate run: on the main thread while the operation's
// thread waits for the answer, or in place for a delegate that shows no window and takes
// them on the operation's thread. Either way the caller gets the delegate's answer as it
// was returned, typed.
class DelegateRelay {
public:
    explicit DelegateRelay(bool inPlace = false) : inPlace_(inPlace) {}

    bool inPlace() const { return inPlace_; }

    template <typename F>
    auto operator()(F&& call) const -> std::invoke_result_t<F&>
    {
        if (inPlace_)
            return call();
        return MainThread::performAndWaitFor(call);
    }

private:
    bool inPlace_;
};
