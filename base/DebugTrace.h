#pragma once
// The debug trace: printf-style, written to standard error in debug builds.
// Release builds compile every call away, so nothing is emitted there.

#include <functional>
#include <string>

#if defined(__GNUC__)
#define QUILLMERE_PRINTF(a, b) __attribute__((format(printf, a, b)))
#else
#define QUILLMERE_PRINTF(a, b)
#endif

void DebugTraceImpl(const char* format, ...) QUILLMERE_PRINTF(1, 2);

#ifdef QUILLMERE_DEBUG_TRACE
#define DebugTrace(...) DebugTraceImpl(__VA_ARGS__)
constexpr bool kDebugTraceEnabled = true;
#else
#define DebugTrace(...) ((void)0)
constexpr bool kDebugTraceEnabled = false;
#endif

// Tests catch the trace through a sink; while one is installed, standard error stays quiet.
// QUILLMERE_TRACE=0 in the environment silences standard error too.
using DebugTraceSink = std::function<void(const std::string&)>;
void setDebugTraceSink(DebugTraceSink sink);
