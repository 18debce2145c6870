#pragma once

#include "Audio/Modules/CAudioProcessTerminal.h"

namespace tarv {

/// Definition of a mute switch (`audio:modMute`).
class CModMuteDef : public CAudioProcessDefBase {
public:
    CAudioProcessBase* createProcess() const override;
};

/// Passes one channel by reference, or replaces it by the anti-denormal noise.
class CModMuteModule : public CAudioModule {
public:
    ~CModMuteModule() override { retire(); }
    void bindParams() override;
    void resolveKernels() override;
    bool differs() const { return isMutedNow() != isMuted_; }
    void design(double, CModMuteModule*) { isMuted_ = isMutedNow(); }
    CBufferHandle run(CBufferHandle in, CBufferHandle second, int32_t count);
    void retire() { drop(seed_); }
    void makeReady(const CModMuteModule*) {}
    int32_t latency() const { return 0; }

private:
    bool isMutedNow() const { return read(muteSlot_, 0.0) >= 0.5; }

    const CAudioParamSlot* muteSlot_ = nullptr;
    bool isMuted_ = false;
    int32_t noiseKernel_ = -1;
    CBufferHandle seed_ = kNoBuffer;
};

class CModMute : public CAudioProcessTerminal<CModMuteModule> {
public:
    void registerKernels() override;
};

}  // namespace tarv
