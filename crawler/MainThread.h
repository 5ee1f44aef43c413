#pragma once

#include <functional>

// Hands work to the thread of the Qt event loop (the application's main thread).
namespace MainThread {
bool isMainThread();
// Runs fn there and waits until it has returned; runs it at once when already there.
void performAndWait(const std::function<void()>& fn);
// Queues fn there without waiting.
void post(std::function<void()> fn);
} // namespace MainThread
