#pragma once

#include <atomic>

// Ctrl-C (and SIGTERM) as the stop button: the first clears the crawl's stop flag so the
// current page finishes and the end steps run; a second one quits at once.
namespace StopSignal {
void install(std::atomic<bool>* canContinue);
void uninstall();
bool received();
} // namespace StopSignal
