#pragma once

// The loop of changes of rate in lanes, for the file of each instruction set alone, as WaveLoop.h: behind `CLanes`. The
// two branches of a channel stand side by side, and as many channels as a vector has room for. All arithmetic is that
// of HalfBandKernels.cpp in the same order.

#include "Audio/Kernels/Wave/CHalfBandPlan.h"

namespace tarv {

namespace {

/// Channels of a vector.
constexpr int32_t kPairs = CLanes::kWidth / 2;

/// The branches of `kPairs` channels at every second sample of the higher rate. Both see the even ones; going down,
/// branch B sees the odd ones.
template <int32_t N, bool IsUp>
class CHalfBandLanes {
public:
    explicit CHalfBandLanes(double* const* blocks) : blocks_(blocks) {
        alignas(CLanes) double values[CLanes::kWidth];
#pragma GCC unroll 8
        for (int32_t k = 0; k < N; ++k) {
            for (int32_t l = 0; l < CLanes::kWidth; ++l) {
                values[l] = blocks[l / 2][(l & 1) * N + k];
            }
            factors_[k] = CLanes::load(values);
        }
#pragma GCC unroll 9
        for (int32_t k = 0; k <= N; ++k) {
            for (int32_t l = 0; l < CLanes::kWidth; ++l) {
                values[l] = line(l, k)[(indexOf(l) + backOf(l)) & 3];
            }
            lines_[k] = CLanes::load(values);
        }
    }

    CLanes step(CLanes x) {
#pragma GCC unroll 8
        for (int32_t k = 0; k < N; ++k) {
            const CLanes y = (x - lines_[k + 1]) * factors_[k] + lines_[k];
            lines_[k] = x;
            x = y;
        }
        lines_[N] = x;
        return x;
    }

    /// Gives the lines back, `count` samples of the lower rate later. What stands in them for the other samples moves
    /// with the index.
    void store(int32_t count) const {
        alignas(CLanes) double values[CLanes::kWidth];
        alignas(CLanes) double others[CLanes::kWidth];
#pragma GCC unroll 9
        for (int32_t k = 0; k <= N; ++k) {
            lines_[k].store(values);
            for (int32_t l = 0; l < CLanes::kWidth; ++l) {
                others[l] = line(l, k)[(indexOf(l) + 3 - backOf(l)) & 3];
            }
            for (int32_t l = 0; l < CLanes::kWidth; ++l) {
                const int32_t next = indexOf(l) - 2 * count;
                line(l, k)[(next + backOf(l)) & 3] = values[l];
                line(l, k)[(next + 3 - backOf(l)) & 3] = others[l];
            }
        }
    }

private:
    int32_t indexOf(int32_t lane) const {
        return static_cast<int32_t>(blocks_[lane / 2][indexOfHalfBand(N)]);
    }
    /// How far behind the index the sample stands that a lane looks back to.
    static int32_t backOf(int32_t lane) {
        return IsUp || (lane & 1) == 0 ? 2 : 1;
    }
    double* line(int32_t lane, int32_t k) const {
        return blocks_[lane / 2] + linesOfHalfBand(N, lane & 1) + k * kHalfBandLine;
    }

    double* const* blocks_;
    CLanes factors_[N];
    CLanes lines_[N + 1];
};

/// `kPairs` channels from `first` on; a lane of a channel that is not there does the work of the last one.
struct CHalfBandChannels {
    const double* in[kPairs];
    double* out[kPairs];
    double* block[kPairs];
    CLanes gain;

    CHalfBandChannels(const CHalfBandPlan& plan, int32_t first) {
        alignas(CLanes) double gains[CLanes::kWidth];
        for (int32_t p = 0; p < kPairs; ++p) {
            const int32_t c = first + p < plan.channels ? first + p : plan.channels - 1;
            in[p] = plan.in[c];
            out[p] = plan.out[c];
            block[p] = plan.block[c];
            gains[2 * p] = plan.gain[c];
            gains[2 * p + 1] = plan.gain[c];
        }
        gain = CLanes::load(gains);
    }
    /// What branch B of a filter with `n` coefficients gave last, in its lane.
    CLanes held(int32_t n) const {
        alignas(CLanes) double values[CLanes::kWidth] = {};
        for (int32_t p = 0; p < kPairs; ++p) {
            values[2 * p + 1] = block[p][heldOfHalfBand(n)];
        }
        return CLanes::load(values);
    }
    /// The next samples see the index and what branch B gave last.
    void end(int32_t n, int32_t count, CLanes last) const {
        alignas(CLanes) double values[CLanes::kWidth];
        last.store(values);
        int32_t next[kPairs];
        for (int32_t p = 0; p < kPairs; ++p) {
            next[p] = (static_cast<int32_t>(block[p][indexOfHalfBand(n)]) - 2 * count) & 3;
        }
        for (int32_t p = 0; p < kPairs; ++p) {
            block[p][indexOfHalfBand(n)] = next[p];
            block[p][heldOfHalfBand(n)] = values[2 * p + 1];
        }
    }
};

/// Groups of channels that take turns in one loop, so that neither waits for what it just did itself. Long filters have
/// no registers for two.
constexpr int32_t groupsOf(int32_t n) {
    return n <= 4 ? 2 : 1;
}

template <int32_t N>
[[gnu::sysv_abi]] void goUp(const CHalfBandChannels* groups, int32_t groupCount, int32_t count) {
    CHalfBandLanes<N, true> first(groups[0].block);
    const auto step = [](CHalfBandLanes<N, true>& branches, const CHalfBandChannels& channels, int64_t i) {
        const CLanes y = branches.step(CLanes(2.0) * CLanes::twice(channels.in, i));
        // Each branch adds the zero that the other one makes of a zero.
        ((y + CLanes(0.0)) * channels.gain).storePairs(channels.out, 2 * i);
    };
    if (groupsOf(N) == 2 && groupCount == 2) {
        CHalfBandLanes<N, true> second(groups[1].block);
        for (int64_t i = 0; i < count; ++i) {
            step(first, groups[0], i);
            step(second, groups[1], i);
        }
        second.store(count);
    } else {
        for (int64_t i = 0; i < count; ++i) {
            step(first, groups[0], i);
        }
    }
    first.store(count);
    for (int32_t g = 0; g < groupCount; ++g) {
        groups[g].end(N, count, CLanes(0.0));
    }
}

template <int32_t N>
[[gnu::sysv_abi]] void goDown(const CHalfBandChannels* groups, int32_t groupCount, int32_t count) {
    CHalfBandLanes<N, false> first(groups[0].block);
    CLanes last[2] = {groups[0].held(N), CLanes(0.0)};
    const auto step = [](CHalfBandLanes<N, false>& branches, const CHalfBandChannels& channels, CLanes& held,
                         int64_t i) {
        const CLanes y = branches.step(CLanes::pairs(channels.in, 2 * i));
        ((y + held.swapped()) * channels.gain).storeFirsts(channels.out, i);
        held = y;
    };
    if (groupsOf(N) == 2 && groupCount == 2) {
        CHalfBandLanes<N, false> second(groups[1].block);
        last[1] = groups[1].held(N);
        for (int64_t i = 0; i < count; ++i) {
            step(first, groups[0], last[0], i);
            step(second, groups[1], last[1], i);
        }
        second.store(count);
    } else {
        for (int64_t i = 0; i < count; ++i) {
            step(first, groups[0], last[0], i);
        }
    }
    first.store(count);
    for (int32_t g = 0; g < groupCount; ++g) {
        groups[g].end(N, count, last[g]);
    }
}

template <int32_t N>
[[gnu::sysv_abi]] void runOrder(const CHalfBandPlan& plan) {
    for (int32_t first = 0; first < plan.channels; first += groupsOf(N) * kPairs) {
        const int32_t groupCount = first + kPairs < plan.channels ? groupsOf(N) : 1;
        const CHalfBandChannels groups[2] = {{plan, first}, {plan, first + kPairs}};
        if (plan.isUp) {
            goUp<N>(groups, groupCount, plan.count);
        } else {
            goDown<N>(groups, groupCount, plan.count);
        }
    }
}

[[gnu::sysv_abi]] inline void runHalfBands(const CHalfBandPlan& plan) {
    switch (plan.order) {
        case 1:
            return runOrder<1>(plan);
        case 2:
            return runOrder<2>(plan);
        case 3:
            return runOrder<3>(plan);
        case 4:
            return runOrder<4>(plan);
        case 5:
            return runOrder<5>(plan);
        case 6:
            return runOrder<6>(plan);
        case 7:
            return runOrder<7>(plan);
        default:
            return runOrder<kMostHalfBand>(plan);
    }
}

}  // namespace

}  // namespace tarv
