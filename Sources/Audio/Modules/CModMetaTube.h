#pragma once

#include "Audio/Kernels/CTubeBlock.h"
#include "Audio/Modules/CAudioProcessTerminal.h"

namespace tarv {

/// Definition of the harmonic saturation stage (`audio:modMetaTube`).
class CModMetaTubeDef : public CAudioProcessDefBase {
public:
    CAudioProcessBase* createProcess() const override;
};

/// The saturation stage for one channel: port 0 is shaped, port 1 steers the mix of the two curves. Without a signal
/// on port 1 the module passes port 0 on.
class CModMetaTubeModule : public CAudioModule {
public:
    static constexpr int32_t kSlotCount = 11;

    ~CModMetaTubeModule() override;
    void bindParams() override;
    void resolveKernels() override;
    bool differs() const;
    void design(double rate, CModMetaTubeModule* from);
    CBufferHandle run(CBufferHandle in, CBufferHandle second, int32_t count);
    void retire();
    void makeReady(const CModMetaTubeModule*) {}
    int32_t latency() const { return 0; }

private:
    void readBlock(CTubeBlock& block) const;

    const CAudioParamSlot* slots_[kSlotCount] = {};
    int32_t runKernel_ = -1;
    int32_t initKernel_ = -1;
    // A copy, since the kernel may run after the module's next update.
    CTubeBlock values_{};
    bool isDesigned_ = false;
    CBufferHandle block_ = kNoBuffer;
};

class CModMetaTube : public CAudioProcessTerminal<CModMetaTubeModule> {
public:
    [[nodiscard]] CError* init() override;
    void registerKernels() override;
};

}  // namespace tarv
