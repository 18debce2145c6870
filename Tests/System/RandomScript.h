#pragma once

#include <cstdint>
#include <vector>

#include "Tests/Audio/Kernels/CRandom.h"
#include "Tests/System/EngineRun.h"

namespace tarv::engine {

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
