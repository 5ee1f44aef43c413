#pragma once

#include <functional>
#include <optional>
#include <type_traits>
#include <utility>

// Hands work to the thread of the Qt event loop (the application's main thread).
namespace MainThread {
bool isMainThread();
// Runs fn there and waits until it has returned; runs it at once when already there.
void performAndWait(const std::function<void()>& fn);
// performAndWait for a call with a result: the caller gets back what fn returned there.
template <typename F>
auto performAndWaitFor(F&& fn) -> std::invoke_result_t<F&>
{
    using Result = std::invoke_result_t<F&>;
    if constexpr (std::is_void_v<Result>) {
        performAndWait([&fn] { fn(); });
    } else {
        std::optional<Result> result;
        performAndWait([&fn, &result] { result.emplace(fn()); });
        return std::move(*result);
    }
}
// Queues fn there without waiting.
void post(std::function<void()> fn);
} // namespace MainThread
