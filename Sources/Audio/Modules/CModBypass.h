#pragma once

#include "Audio/Modules/CAudioProcessTerminal.h"

namespace tarv {

/// Definition of the bypass switch (`audio:modBypass`).
class CModBypassDef : public CAudioProcessDefBase {
public:
    CAudioProcessBase* createProcess() const override;
};

/// Chooses for one channel between the processed signal (port 0), the dry one (port 1) and, if other groups are
/// soloed, the anti-denormal noise.
class CModBypassModule : public CAudioModule {
public:
    ~CModBypassModule() override { retire(); }
    void bindParams() override;
    void resolveKernels() override;
    bool differs() const { return choose() != choice_; }
    void design(double, CModBypassModule*) { choice_ = choose(); }
    CBufferHandle run(CBufferHandle in, CBufferHandle second, int32_t count);
    void retire() { drop(seed_); }
    void makeReady(const CModBypassModule*) {}
    int32_t latency() const { return 0; }

private:
    enum class CChoice : uint8_t { Processed, Dry, Noise };
    CChoice choose() const;
    bool isSoloedAway() const;

    const CAudioParamSlot* enableSlot_ = nullptr;
    const CAudioParamSlot* soloSlot_ = nullptr;
    CChoice choice_ = CChoice::Processed;
    int32_t noiseKernel_ = -1;
    CBufferHandle seed_ = kNoBuffer;
};

class CModBypass : public CAudioProcessTerminal<CModBypassModule> {
public:
    [[nodiscard]] CError* init() override;
    void registerKernels() override;
};

}  // namespace tarv
