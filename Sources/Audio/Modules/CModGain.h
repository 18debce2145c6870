#pragma once

#include "Audio/Modules/CAudioProcessTerminal.h"

namespace tarv {

/// Definition of an output gain (`audio:modGain`).
class CModGainDef : public CAudioProcessDefBase {
public:
    CAudioProcessBase* createProcess() const override;
};

/// Linear gain of one channel. Muted, or at a gain up to kNothing, the channel carries the anti-denormal noise.
class CModGainModule : public CAudioModule {
public:
    /// Gains up to it count as silence.
    static constexpr double kNothing = 2.220446049250313e-16;

    ~CModGainModule() override { retire(); }
    void bindParams() override;
    void resolveKernels() override;
    bool differs() const;
    void design(double rate, CModGainModule* from);
    CBufferHandle run(CBufferHandle in, CBufferHandle second, int32_t count);
    void retire() { drop(seed_); }
    void makeReady(const CModGainModule*) {}
    int32_t latency() const { return 0; }

private:
    const CAudioParamSlot* gainSlot_ = nullptr;
    const CAudioParamSlot* muteSlot_ = nullptr;
    double gain_ = 1.0;
    bool isMuted_ = false;
    int32_t noiseKernel_ = -1;
    CBufferHandle seed_ = kNoBuffer;
};

class CModGain : public CAudioProcessTerminal<CModGainModule> {
public:
    void registerKernels() override;
};

}  // namespace tarv
