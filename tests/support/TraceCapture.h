#pragma once

#include "base/DebugTrace.h"

#include <mutex>
#include <string>
#include <vector>

// Collects the debug trace while it lives.
class TraceCapture {
public:
    TraceCapture()
    {
        setDebugTraceSink([this](const std::string& line) {
            std::lock_guard lock(mutex_);
            lines_.push_back(line);
        });
    }
    ~TraceCapture() { setDebugTraceSink({}); }

    std::vector<std::string> lines() const
    {
        std::lock_guard lock(mutex_);
        return lines_;
    }
    bool contains(const std::string& text) const
    {
        for (const auto& l : lines())
            if (l.find(text) != std::string::npos)
                return true;
        return false;
    }

private:
    mutable std::mutex mutex_;
    std::vector<std::string> lines_;
};
