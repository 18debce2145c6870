#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "Core/Log.h"

namespace tarv {

/// Collects the lines of the log for the length of its life. One at a time.
class CLogCapture {
public:
    CLogCapture() {
        setLogSink([](void* user, const char* line) { static_cast<CLogCapture*>(user)->lines.emplace_back(line); },
                   this);
    }
    ~CLogCapture() { setLogSink(nullptr, nullptr); }
    CLogCapture(const CLogCapture&) = delete;
    CLogCapture& operator=(const CLogCapture&) = delete;

    bool has(const std::string& line) const { return std::find(lines.begin(), lines.end(), line) != lines.end(); }

    std::vector<std::string> lines;
};

}  // namespace tarv
