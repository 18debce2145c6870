#include "Audio/Processes/BandChain.h"

#include "Audio/Processes/BiquadLoop.h"
#include "Audio/Processes/CQPLEXContext.h"
#include "Audio/Processes/KernelNames.h"
#include "Audio/Processes/OnePoleLoop.h"
#include "Audio/Processes/TubeLoop.h"

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

/// Two samples of two channels, on their way between the stages: (a b) early, (a b) late.
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

/// The bands of two channels side by side; twice the same channel gives that channel's result.
void runPair(const CBandOperations& a, const CBandOperations& b) {
    const int32_t count = a.count();
    const CTwo<const double> source = {a.filter->signal(2), b.filter->signal(2)};
    const CTwo<double> filtered = {a.filter->signal(0), b.filter->signal(0)};
    const CTwo<double> passed = {a.highPass->signal(0), b.highPass->signal(0)};
    const CTwo<const double> feed = {a.tube->signal(3), b.tube->signal(3)};
    const CTwo<double> out = {a.tube->signal(0), b.tube->signal(0)};
    CFilter<CPair> filter;
    CHighPass<CPair> highPass;
    CTube<CPair> tube;
    filter.load(*a.filter, *b.filter);
    highPass.load(*a.highPass, *b.highPass);
    tube.load(*a.tube, *b.tube);
    CSquare behindFilter = {};
    CSquare behindHighPass = {};
    const auto runFilter = [&](int32_t i) __attribute__((always_inline)) {
        CSquare x;
        x.load(source.of, i);
        behindFilter.early = filter.step(x.early);
        behindFilter.late = filter.step(x.late);
        behindFilter.store(filtered.of, i);
    };
    const auto runHighPass = [&](int32_t i) __attribute__((always_inline)) {
        behindHighPass.early = highPass.step(behindFilter.early);
        behindHighPass.late = highPass.step(behindFilter.late);
        behindHighPass.store(passed.of, i);
    };
    const auto runTube = [&](int32_t i) __attribute__((always_inline)) {
        CSquare x;
        x.load(feed.of, i);
        CSquare y;
        y.early = tube.step(behindHighPass.early, x.early);
        y.late = tube.step(behindHighPass.late, x.late);
        y.store(out.of, i);
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
        const CPair behind1 = filter.step(CPair(source.of[0][i], source.of[1][i]));
        const CPair behind2 = highPass.step(behind1);
        const CPair y = tube.step(behind2, CPair(feed.of[0][i], feed.of[1][i]));
        storeEach(filtered.of, i, behind1);
        storeEach(passed.of, i, behind2);
        storeEach(out.of, i, y);
    }
    filter.store(*a.filter, *b.filter);
    highPass.store(*a.highPass, *b.highPass);
    tube.store(*a.tube, *b.tube);
}

}  // namespace

void registerBandChain(CQPLEXContext& context) {
    context.registerChain({context.findKernel("com.tarvelo.qplex.fltbiqcommong"),
                           context.findKernel("com.tarvelo.qplex.flthp1ag"), context.findKernel(KernelName::kMetaTube)},
                          runBandChain);
}

void runBandChain(COperation* const* const* stages, int32_t count) {
    const auto band = [stages](int32_t c) { return CBandOperations{stages[0][c], stages[1][c], stages[2][c]}; };
    int32_t c = 0;
    for (; c + 2 <= count; c += 2) {
        runPair(band(c), band(c + 1));
    }
    if (c < count) {
        runPair(band(c), band(c));
    }
}

}  // namespace tarv
