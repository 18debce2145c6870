#include "Audio/Kernels/BandChain.h"

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/CBiquad.h"
#include "Audio/Kernels/COnePole.h"
#include "Audio/Kernels/CTube.h"
#include "Audio/Kernels/KernelNames.h"

namespace tarv {

namespace {

template <class T>
using CFilter = CBiquad<T, CBiquadForm::Common, true>;
template <class T>
using CHighPass = COnePole<T, 1, true, true>;

/// The three operations of a channel.
struct CBandOperations {
    COperation* filter;
    COperation* highPass;
    COperation* tube;

    int32_t count() const { return filter->count; }
};

/// Two samples of two channels between two stages: (a b) early, (a b) late.
struct CSquare {
    CPair early;
    CPair late;

    void load(const double* const* signals, int32_t i) {
        early = loadPair(signals[0] + i);
        late = loadPair(signals[1] + i);
        transpose(early, late);
    }
    void store(double* const* signals, int32_t i) const {
        CSquare s = *this;
        transpose(s.early, s.late);
        storePair(signals[0] + i, s.early);
        storePair(signals[1] + i, s.late);
    }
};

void storeEach(double* const* signals, int32_t i, CPair value) {
    signals[0][i] = value.first();
    signals[1][i] = value.second();
}

/// Addresses of one signal in two channels.
template <class T>
struct CTwo {
    T* of[2];
};

/// The signals of two channels.
struct CBandSignals {
    CTwo<const double> source, feed;
    CTwo<double> filtered, passed, out;

    CBandSignals(const CBandOperations& a, const CBandOperations& b)
        : source{{a.filter->signal(2), b.filter->signal(2)}},
          feed{{a.tube->signal(3), b.tube->signal(3)}},
          filtered{{a.filter->signal(0), b.filter->signal(0)}},
          passed{{a.highPass->signal(0), b.highPass->signal(0)}},
          out{{a.tube->signal(0), b.tube->signal(0)}} {}
};

/// The recursions of two channels.
struct CBandStates {
    CFilter<CPair> filter;
    CHighPass<CPair> highPass;
    CTube<CPair> tube;

    void load(const CBandOperations& a, const CBandOperations& b) {
        filter.load(*a.filter, *b.filter);
        highPass.load(*a.highPass, *b.highPass);
        tube.load(*a.tube, *b.tube);
    }
    void store(const CBandOperations& a, const CBandOperations& b) {
        filter.store(*a.filter, *b.filter);
        highPass.store(*a.highPass, *b.highPass);
        tube.store(*a.tube, *b.tube);
    }
};

/// One sample of two channels through all three stages.
template <bool HasLinks>
inline void runSingle(CBandStates& states, const CBandSignals& signals, int32_t i) {
    const CPair filtered = states.filter.step(CPair(signals.source.of[0][i], signals.source.of[1][i]));
    const CPair passed = states.highPass.step(filtered);
    const CPair y = states.tube.step(passed, CPair(signals.feed.of[0][i], signals.feed.of[1][i]));
    if constexpr (HasLinks) {
        storeEach(signals.filtered.of, i, filtered);
        storeEach(signals.passed.of, i, passed);
    }
    storeEach(signals.out.of, i, y);
}

/// The bands of two channels side by side; twice the same channel gives that channel's result.
template <bool HasLinks>
void runPair(const CBandOperations& a, const CBandOperations& b) {
    const int32_t count = a.count();
    const CBandSignals signals(a, b);
    CBandStates states;
    states.load(a, b);
    CSquare behindFilter = {};
    CSquare behindHighPass = {};
    const auto runFilter = [&](int32_t i) __attribute__((always_inline)) {
        CSquare x;
        x.load(signals.source.of, i);
        behindFilter.early = states.filter.step(x.early);
        behindFilter.late = states.filter.step(x.late);
        if constexpr (HasLinks) {
            behindFilter.store(signals.filtered.of, i);
        }
    };
    const auto runHighPass = [&](int32_t i) __attribute__((always_inline)) {
        behindHighPass.early = states.highPass.step(behindFilter.early);
        behindHighPass.late = states.highPass.step(behindFilter.late);
        if constexpr (HasLinks) {
            behindHighPass.store(signals.passed.of, i);
        }
    };
    const auto runTube = [&](int32_t i) __attribute__((always_inline)) {
        CSquare x;
        x.load(signals.feed.of, i);
        CSquare y;
        y.early = states.tube.step(behindHighPass.early, x.early);
        y.late = states.tube.step(behindHighPass.late, x.late);
        y.store(signals.out.of, i);
    };
    // Each stage is two samples behind the one before it: in one round of the loop none waits for another.
    const int32_t even = count & ~1;
    if (even >= 4) {
        runFilter(0);
        runHighPass(0);
        runFilter(2);
        for (int32_t i = 4; i < even; i += 2) {
            runTube(i - 4);
            runHighPass(i - 2);
            runFilter(i);
        }
        runTube(even - 4);
        runHighPass(even - 2);
        runTube(even - 2);
    }
    for (int32_t i = even >= 4 ? even : 0; i < count; ++i) {
        runSingle<HasLinks>(states, signals, i);
    }
    states.store(a, b);
}

}  // namespace

void registerBandChain(CQPLEXContext& context) {
    context.registerChain({context.findKernel(KernelName::kBiquadCommonGain),
                           context.findKernel(KernelName::kHighPass1Gain), context.findKernel(KernelName::kMetaTube)},
                          runBandChain);
}

void runBandChain(COperation* const* const* stages, int32_t count) {
    const auto band = [stages](int32_t c) { return CBandOperations{stages[0][c], stages[1][c], stages[2][c]}; };
    const auto run = stages[0][0]->pointers[0] != nullptr ? runPair<true> : runPair<false>;
    int32_t c = 0;
    for (; c + 2 <= count; c += 2) {
        run(band(c), band(c + 1));
    }
    if (c < count) {
        run(band(c), band(c));
    }
}

}  // namespace tarv
