#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <vector>

#include "Core/CError.h"

namespace tarv {

/// Of a clock that never goes back.
inline double seconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

inline double secondsOf(const std::function<void()>& work) {
    const double start = seconds();
    work();
    return seconds() - start;
}

/// Of one value or more; the upper one of the two in the middle.
inline double medianOf(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<int64_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// Of one value or more: a tenth of them are below. For long pieces of work, which other programs interrupt.
inline double quietOf(std::vector<double> values) {
    const auto tenth = values.begin() + static_cast<int64_t>(values.size() / 10);
    std::nth_element(values.begin(), tenth, values.end());
    return *tenth;
}

/// Ends the program: the time of a call that failed means nothing.
inline void mustSucceed(CError* error) {
    if (error) {
        showError(error);
        std::abort();
    }
}

}  // namespace tarv
