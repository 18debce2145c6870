#pragma once

// The loop of the wavefront, for the file of each instruction set alone. All in it has internal linkage and nothing of
// it is shared: a linker that merged a function of two sets would run the wrong one. What is not inlined has the
// calling convention of WaveSets.h.
//
// In a round, each vector takes S samples through G stages, each stage one round behind the one before it, so that none
// waits for another:
//   F  biquad and high-pass          sample group n
//   R  the two roots                 n - 1         (G = 3; with G = 2 together with X)
//   X  curves, mix and auto-gain     n - (G - 1)
// What stages hand on from round to round goes through memory. Vectors of 64 bytes are few and their stores dear: they
// take two stages, and the processor finds work for the time of a root behind it.
// Band b starts b x G rounds late. Vectors run from the last to the first, so that each finds in its neighbour what
// that one gave in the round before: that is the input of its first band, and its other bands read its own lanes.
// Expects `CLanes`, a vector with kWidth lanes, before it. All arithmetic is that of CBiquad.h, COnePole.h and CTube.h
// in the same order.

#include "Audio/Kernels/Wave/CWavePlan.h"
#include "Audio/Kernels/Wave/WaveEnds.h"
#include "Audio/Kernels/Wave/WaveStep.h"

namespace tarv {

namespace {

constexpr int32_t kWidth = CLanes::kWidth;
/// 32 instead of 16, as AVX-512 has them.
constexpr bool kHasManyRegisters = kWidth == 8;
/// Of runs that are not short.
constexpr int32_t kLongStages = kHasManyRegisters ? 2 : 3;

/// What follows loads its constants anew: kept, they would be spilled.
[[gnu::always_inline]] inline void forgetConstants() {
    if constexpr (!kHasManyRegisters) {
        asm volatile("" ::: "memory");
    }
}

/// C channels of a wave, S samples a round in G stages.
template <int32_t C, int32_t S, int32_t G>
class CWave {
public:
    explicit CWave(const CWavePlan& plan)
        : plan_(plan),
          vectors_(reinterpret_cast<CLanes*>(plan.lanes)),
          fades_(reinterpret_cast<CLanes*>(plan.fades)),
          hasBefore_(plan.stateBefore[0] != nullptr),
          groups_((plan.count + S - 1) / S),
          wholeGroups_(plan.count / S),
          last_(plan.vectors - 1) {
        const int32_t total = plan.bands + (plan.post == CWavePost::InLanes ? 1 : 0);
        lastLane_ = (total - 1) % kPerVector * C;
        // The filter that stands alone reads what the last band gave in the round before.
        outDelay_ = plan.post == CWavePost::Alone ? total * G : total * G - 1;
    }

    [[gnu::sysv_abi]] void run() {
        moveStates<true>();
        const int32_t rounds = groups_ + outDelay_;
        const int32_t firstLane = plan_.vectors * kPerVector * G - 1;
        const int32_t from = firstLane > outDelay_ ? firstLane : outDelay_;
        int32_t r = 0;
        for (; r < rounds && r < from; ++r) {
            runEdge(r);
        }
        if (isFading()) {
            runInside<true>(r);
        } else {
            runInside<false>(r);
        }
        for (; r < rounds; ++r) {
            runEdge(r);
        }
        moveStates<false>();
    }

private:
    static constexpr int32_t kPerVector = kWidth / C;
    using CEnd = typename CEndLanes<C>::Type;
    static constexpr bool preparesRoots() { return G == 3; }

    CLanes* vector(int32_t v) const { return vectors_ + static_cast<int64_t>(v) * kWaveFieldCount; }
    CWaveTurn turn(int32_t v, int32_t r) const { return CWaveTurn::of<G>(vector(v), r); }
    /// The vector that comes behind `v`.
    CWaveTurn nextTurn(int32_t v, int32_t r) const { return v > 0 ? turn(v - 1, r) : turn(last_, r + 1); }
    /// Only for a vector with a fade.
    CLanes* fade(int32_t v) const { return fades_ + static_cast<int64_t>(v) * kWaveFadeFieldCount; }

    template <bool IsIn>
    static void move(double* lane, double* state) {
        if constexpr (IsIn) {
            *lane = *state;
        } else {
            *state = *lane;
        }
    }
    /// Takes what is carried from block to block into the lanes, or gives it back.
    template <bool IsIn>
    [[gnu::sysv_abi]] void moveStates() {
        for (int32_t v = 0; v < plan_.vectors; ++v) {
            double* const fields = plan_.lanes + static_cast<int64_t>(v) * kWaveFieldCount * kWidth;
            for (int32_t l = 0; l < kWidth; ++l) {
                const CWaveStates& s = plan_.states[v * kWidth + l];
                if (s.filter != nullptr) {
                    move<IsIn>(fields + kWaveS1 * kWidth + l, s.filter);
                    move<IsIn>(fields + kWaveS2 * kWidth + l, s.filter + 1);
                    move<IsIn>(fields + kWaveHighPassState * kWidth + l, s.highPass);
                }
                if (s.feed != nullptr) {
                    move<IsIn>(fields + kWaveFeedState * kWidth + l, s.feed);
                }
                if (s.oldFilter != nullptr) {
                    double* const faded = plan_.fades + static_cast<int64_t>(v) * kWaveFadeFieldCount * kWidth + l;
                    move<IsIn>(faded + kWaveOldS1 * kWidth, s.oldFilter);
                    move<IsIn>(faded + kWaveOldS2 * kWidth, s.oldFilter + 1);
                    move<IsIn>(faded + kWaveRamp * kWidth, s.ramp);
                    move<IsIn>(faded + kWaveRampBefore * kWidth, s.ramp + 1);
                }
            }
        }
        for (int32_t c = 0; c < C; ++c) {
            const int32_t l = kWidth - C + c;
            if (hasBefore_) {
                move<IsIn>(plan_.before + kWaveEndS1 * kWidth + l, plan_.stateBefore[c]);
                move<IsIn>(plan_.before + kWaveEndS2 * kWidth + l, plan_.stateBefore[c] + 1);
            }
            if (plan_.post == CWavePost::Alone) {
                move<IsIn>(plan_.behind + kWaveEndS1 * kWidth + l, plan_.stateBehind[c]);
                move<IsIn>(plan_.behind + kWaveEndS2 * kWidth + l, plan_.stateBehind[c] + 1);
                move<IsIn>(plan_.behind + kWaveEndHighPassState * kWidth + l, plan_.highPassBehind[c]);
            }
        }
    }

    /// Whether sample `i` lies in the block.
    template <bool IsEdge>
    bool isThere(int32_t i) const {
        return !IsEdge || (i >= 0 && i < plan_.count);
    }
    /// The samples of group `r`, filtered; the channels in the last lanes.
    template <bool IsEdge>
    [[gnu::always_inline]] void takeInput(int32_t r, CLanes* x) {
        if (hasBefore_) {
            CWaveEnd<CEnd> before(plan_.before);
            gatherInput<IsEdge>(r, x, [&](CEnd in) { return before.step(plan_.before, in); });
            before.store(plan_.before);
        } else {
            gatherInput<IsEdge>(r, x, [](CEnd in) { return in; });
        }
    }
    template <bool IsEdge, class F>
    [[gnu::always_inline]] void gatherInput(int32_t r, CLanes* x, F&& filter) {
#pragma GCC unroll 2
        for (int32_t j = 0; j < S; ++j) {
            const int32_t i = r * S + j;
            x[j] = isThere<IsEdge>(i) ? filter(CEnd::template gather<C>(plan_.in, i)).behindZeros() : CLanes(0.0);
        }
    }
    /// Gives the samples that leave the wave in round `r`.
    template <bool IsEdge, class L>
    [[gnu::always_inline]] void giveOutput(int32_t r, const L* y, int32_t firstLane) {
#pragma GCC unroll 2
        for (int32_t j = 0; j < S; ++j) {
            const int32_t i = (r - outDelay_) * S + j;
            if (isThere<IsEdge>(i)) {
                y[j].template scatter<C>(plan_.out, i, firstLane);
            }
        }
    }
    /// The filter that stands alone takes what the last band gave in the round before.
    template <bool IsEdge>
    [[gnu::always_inline]] void runBehind(int32_t r) {
        const CLanes* const x = vector(last_) + kWaveOut;
        CWaveBehind<CEnd> behind(plan_.behind);
        CEnd y[S];
#pragma GCC unroll 2
        for (int32_t j = 0; j < S; ++j) {
            y[j] = CEnd::lastOf(x[j]);
            if (isThere<IsEdge>((r - outDelay_) * S + j)) {
                y[j] = behind.step(plan_.behind, y[j]);
            }
        }
        behind.store(plan_.behind);
        giveOutput<IsEdge>(r, y, CEnd::kWidth - C);
    }

    /// IsPrepared: its roots were prepared, and it prepares those of `next`, the vector that comes next. At the ends of
    /// a block, with two stages, and without other vectors each does all itself.
    template <bool IsEdge, bool HasPost, bool IsPrepared, class Fade>
    [[gnu::always_inline]] void stepVector(const CWaveTurn& turn, const CWaveTurn& next, CLanes* e,
                                           const CLanes* neighbour, const CWaveEdge& edge) {
        CLanes* const f = turn.all;
        CLanes in[S];
#pragma GCC unroll 2
        for (int32_t j = 0; j < S; ++j) {
            in[j] = CLanes::follow<C>(neighbour[j], f[kWaveOut + j]);
        }
        CWaveRecursion state(f);
        Fade fade(e);
#pragma GCC unroll 2
        for (int32_t j = 0; j < S; ++j) {
            stepSample<G, S, IsEdge, HasPost, IsPrepared>(turn, e, state, fade, j, in[j], edge);
            forgetConstants();
            if (IsPrepared && j == 0) {
                prepareRoots<S>(next);
                forgetConstants();
            }
        }
        state.store(f);
        fade.store(e);
    }
    template <bool IsEdge, bool HasPost, bool IsPrepared>
    [[gnu::always_inline]] void stepAny(int32_t r, int32_t v, const CLanes* neighbour, const CWaveEdge& edge) {
        if ((plan_.fading >> v & 1) != 0) [[unlikely]] {
            if ((plan_.fadingWhole >> v & 1) != 0) {
                stepFading<IsEdge, HasPost, IsPrepared, true>(r, v, neighbour, edge);
            } else {
                stepFading<IsEdge, HasPost, IsPrepared, false>(r, v, neighbour, edge);
            }
        } else {
            stepVector<IsEdge, HasPost, IsPrepared, CNoWaveFade>(turn(v, r), nextTurn(v, r), nullptr, neighbour, edge);
        }
    }
    template <bool IsEdge, bool HasPost, bool IsPrepared, bool IsWhole>
    [[gnu::noinline, gnu::sysv_abi]] void stepFading(int32_t r, int32_t v, const CLanes* neighbour,
                                                     const CWaveEdge& edge) {
        stepVector<IsEdge, HasPost, IsPrepared, CWaveFade<IsWhole>>(turn(v, r), nextTurn(v, r), fade(v), neighbour,
                                                                    edge);
    }
    /// A vector in a round in which lanes of some vector stand outside the block. Most have all lanes inside even then,
    /// or none.
    template <bool HasPost>
    [[gnu::noinline, gnu::sysv_abi]] void runVectorAtEdge(int32_t r, int32_t v, const CLanes* neighbour) {
        constexpr int32_t kLastStage = kPerVector * G - 1;
        const int32_t group = r - v * kPerVector * G;
        if (group < 0 || group - kLastStage >= groups_) {
            return;
        }
        if (group >= kLastStage && group < wholeGroups_) {
            stepAny<false, HasPost, false>(r, v, neighbour, {});
        } else {
            const CWaveEdge edge = {CLanes(r) - vector(v)[kWaveBand] * CLanes(G), CLanes(plan_.count)};
            stepAny<true, HasPost, false>(r, v, neighbour, edge);
        }
    }
    template <bool IsEdge, bool HasPost, bool IsPrepared = preparesRoots()>
    [[gnu::always_inline]] void runVector(int32_t r, int32_t v, const CLanes* neighbour) {
        if constexpr (IsEdge) {
            runVectorAtEdge<HasPost>(r, v, neighbour);
        } else {
            stepAny<false, HasPost, IsPrepared>(r, v, neighbour, {});
        }
    }

    /// A vector but the last one.
    template <bool IsEdge, bool IsFading>
    [[gnu::always_inline]] void runOther(int32_t r, int32_t v, const CLanes* neighbour) {
        if constexpr (IsFading) {
            stepVector<IsEdge, false, preparesRoots(), CWaveFade<true>>(turn(v, r), nextTurn(v, r), fade(v), neighbour,
                                                                        {});
        } else {
            runVector<IsEdge, false>(r, v, neighbour);
        }
    }
    /// IsFading: as isFading.
    template <bool IsEdge, bool IsFading, CWavePost Post>
    [[gnu::always_inline]] void runVectors(int32_t r) {
        if constexpr (Post == CWavePost::Alone) {
            runBehind<IsEdge>(r);
        }
        CLanes x[S];
        takeInput<IsEdge>(r, x);
        constexpr bool kHasPost = Post == CWavePost::InLanes;
        if (last_ == 0) {
            runVector<IsEdge, kHasPost, false>(r, 0, x);
        } else {
            runVector<IsEdge, kHasPost>(r, last_, vector(last_ - 1) + kWaveOut);
            for (int32_t v = last_ - 1; v > 0; --v) {
                runOther<IsEdge, IsFading>(r, v, vector(v - 1) + kWaveOut);
            }
            runOther<IsEdge, IsFading>(r, 0, x);
        }
        if constexpr (Post != CWavePost::Alone) {
            giveOutput<IsEdge>(r, vector(last_) + kWaveOut, lastLane_);
        }
    }

    /// All lanes of all vectors but the last one are in a fade: as when a host moves everything.
    bool isFading() const {
        const uint32_t others = (1U << last_) - 1;
        return last_ > 0 && (plan_.fadingWhole & others) == others;
    }
    /// The rounds from `r` on in which all lanes stand inside the block.
    template <bool IsFading>
    [[gnu::always_inline]] void runInside(int32_t& r) {
        if constexpr (preparesRoots()) {
            prepareRoots<S>(turn(last_, r));
        }
        switch (plan_.post) {
            case CWavePost::None:
                for (; r < wholeGroups_; ++r) {
                    runVectors<false, IsFading, CWavePost::None>(r);
                }
                break;
            case CWavePost::InLanes:
                for (; r < wholeGroups_; ++r) {
                    runVectors<false, IsFading, CWavePost::InLanes>(r);
                }
                break;
            case CWavePost::Alone:
                for (; r < wholeGroups_; ++r) {
                    runVectors<false, IsFading, CWavePost::Alone>(r);
                }
        }
    }
    /// A round in which some lanes stand outside the block.
    [[gnu::noinline, gnu::sysv_abi]] void runEdge(int32_t r) {
        switch (plan_.post) {
            case CWavePost::None:
                return runVectors<true, false, CWavePost::None>(r);
            case CWavePost::InLanes:
                return runVectors<true, false, CWavePost::InLanes>(r);
            case CWavePost::Alone:
                return runVectors<true, false, CWavePost::Alone>(r);
        }
    }

    const CWavePlan& plan_;
    CLanes* vectors_;
    CLanes* fades_;
    bool hasBefore_;
    int32_t groups_;       ///< rounds that the first stage of a band works
    int32_t wholeGroups_;  ///< of them those whose samples all lie in the block
    int32_t last_;         ///< vector
    int32_t lastLane_;
    int32_t outDelay_;
};

template <int32_t C>
[[gnu::sysv_abi]] void runChannels(const CWavePlan& plan) {
    if (plan.count < kShortWave) {
        CWave<C, 1, 2>(plan).run();
    } else {
        CWave<C, 2, kLongStages>(plan).run();
    }
}

[[gnu::sysv_abi]] inline void runWave(const CWavePlan& plan) {
    switch (plan.channels) {
        case 1:
            return runChannels<1>(plan);
        case 2:
            return runChannels<2>(plan);
        case 4:
            if constexpr (kWidth >= 4) {
                return runChannels<4>(plan);
            }
            return;
        default:
            if constexpr (kWidth >= 8) {
                return runChannels<8>(plan);
            }
    }
}

}  // namespace

}  // namespace tarv
