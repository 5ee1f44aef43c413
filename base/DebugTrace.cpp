#include "base/DebugTrace.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>

namespace {
std::mutex& sinkMutex()
{
    static std::mutex m;
    return m;
}
DebugTraceSink& sinkSlot()
{
    static DebugTraceSink sink;
    return sink;
}
bool stderrWanted()
{
    static const bool wanted = [] {
        const char* v = std::getenv("QUILLMERE_TRACE");
        return !(v && std::strcmp(v, "0") == 0);
    }();
    return wanted;
}
} // namespace

void DebugTraceImpl(const char* format, ...)
{
    char small[512];
    va_list args;
    va_start(args, format);
    va_list copy;
    va_copy(copy, args);
    int n = std::vsnprintf(small, sizeof small, format, args);
    va_end(args);
    std::string text;
    if (n < 0) {
        va_end(copy);
        return;
    }
    if (static_cast<size_t>(n) < sizeof small) {
        text.assign(small, static_cast<size_t>(n));
    } else {
        text.resize(static_cast<size_t>(n) + 1);
        std::vsnprintf(text.data(), text.size(), format, copy);
        text.resize(static_cast<size_t>(n));
    }
    va_end(copy);

    std::lock_guard lock(sinkMutex());
    if (sinkSlot()) {
        sinkSlot()(text);
    } else if (stderrWanted()) {
        std::fprintf(stderr, "%s\n", text.c_str());
    }
}

void setDebugTraceSink(DebugTraceSink sink)
{
    std::lock_guard lock(sinkMutex());
    sinkSlot() = std::move(sink);
}
