#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Core/CError.h"
#include "Core/Log.h"

namespace tarv {

/// First line of a failure, which it consumes; empty for success.
inline std::string messageOf(CError* error) {
    if (!error) {
        return "";
    }
    const std::string message = (*error->lines().begin())->toUtf8();
    delete error;
    return message;
}

/// Gathers the log while it lives.
class CGatheredLog {
public:
    CGatheredLog() {
        setLogSink([](void* user, const char* line) { static_cast<CGatheredLog*>(user)->lines.emplace_back(line); },
                   this);
    }
    ~CGatheredLog() { setLogSink(nullptr, nullptr); }
    std::vector<std::string> lines;
};

}  // namespace tarv

// NOLINTNEXTLINE: a macro, so that the failing line is the test's.
#define EXPECT_GOOD(expression) EXPECT_EQ(::tarv::messageOf(expression), "")
