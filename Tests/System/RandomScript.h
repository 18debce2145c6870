#pragma once

#include <cstdint>
#include <random>
#include <vector>

#include "Tests/System/EngineRun.h"

namespace tarv::engine {

/// The same numbers for the same seed.
class CRandom {
public:
    explicit CRandom(uint32_t seed) : engine_(seed) {}
    double between(double low, double high) { return low + (high - low) * (engine_() / 4294967296.0); }
    int32_t below(int32_t n) { return static_cast<int32_t>(engine_() % static_cast<uint32_t>(n)); }
    template <class T, size_t N>
    const T& of(const T (&items)[N]) {
        return items[below(N)];
    }

private:
    std::mt19937 engine_;
};

/// What is played: a layout, a signal, and what changes at which frame.
struct CScript {
    CSetup setup;
    CSignal input;
    std::vector<CEvent> events;
};

/// Any number of channels, rate, oversampling, bands and routing, with changes of the sound and of the layout: at any
/// frame, or at each block's begin as a host's automation does. The same script for the same seed.
class CScriptMaker {
public:
    explicit CScriptMaker(uint32_t seed) : random_(seed) {}
    CScript make(int64_t frames);

private:
    int32_t pause();
    CSet soundChange();
    CSet layoutChange();

    CRandom random_;
    int32_t channels_ = 1;
    int32_t mostStages_ = 0;
    int32_t beat_ = 0;
};

/// Stretches of blocks of one length, 1 to 700 frames: a run is recorded when its length comes again.
CCut cutIntoStretches(uint32_t seed);

}  // namespace tarv::engine
