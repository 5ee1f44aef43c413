#pragma once

#include <atomic>

// Ctrl-C (and SIGTERM) as the stop button: the first clears the crawl's stop flag, which
// abandons a transfer in progress (its page stays in the queue) or lets a page already
// downloaded finish, and the end steps run; a second one quits at once.
namespace StopSignal {
void install(std::atomic<bool>* canContinue);
void uninstall();
bool received();
} // namespace StopSignal
