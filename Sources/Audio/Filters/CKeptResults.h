#pragma once

#include <bit>
#include <cstdint>

namespace tarv {

/// The last results of a few functions, for designs that follow one another and share most of their numbers: a gain
/// moves, and frequency and bandwidth stay. A kept result is what the call gave, to the bit. One thread at a time.
class CKeptResults {
public:
    using CFunction = double (*)(double argument);

    /// What `function` gives, which depends on nothing but its argument.
    double of(CFunction function, double argument) {
        const auto bits = std::bit_cast<uint64_t>(argument);
        for (const CResult& kept : results_) {
            if (kept.function == function && kept.argument == bits) {
                return kept.value;
            }
        }
        CResult& oldest = results_[next_++ % kCount];
        oldest = {function, bits, function(argument)};
        return oldest.value;
    }

private:
    /// As many as any design asks for.
    static constexpr uint32_t kCount = 4;

    struct CResult {
        CFunction function = nullptr;
        uint64_t argument = 0;  ///< its bits: both zeros differ, as their results may
        double value = 0.0;
    };
    CResult results_[kCount];
    uint32_t next_ = 0;
};

}  // namespace tarv
