#pragma once

#include <cstddef>
#include <cstdint>
#include <random>

namespace tarv {

/// Random numbers that are the same everywhere.
class CRandom {
public:
    explicit CRandom(uint32_t seed) : engine_(seed) {}
    double between(double low, double high) { return low + (high - low) * (engine_() / 4294967296.0); }
    /// 0 to n - 1.
    int32_t below(int32_t n) { return static_cast<int32_t>(engine_() % static_cast<uint32_t>(n)); }
    bool isOneOf(int32_t n) { return below(n) == 0; }
    template <class T, size_t N>
    const T& of(const T (&items)[N]) {
        return items[below(N)];
    }

private:
    std::mt19937 engine_;
};

}  // namespace tarv
