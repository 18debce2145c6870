#pragma once

#include "Audio/Modules/CAudioProcessTerminal.h"

namespace tarv {

/// Definition of the anti-denormal noise (`audio:modDenorm`).
class CModDenormDef : public CAudioProcessDefBase {
public:
    CAudioProcessBase* createProcess() const override;
};

/// Adds noise of 1e-11 to one channel, which keeps every recursion behind it away from denormal numbers.
class CModDenormModule : public CAudioModule {
public:
    ~CModDenormModule() override { retire(); }
    void bindParams() override {}
    void resolveKernels() override;
    bool differs() const { return false; }
    void design(double rate, CModDenormModule* from);
    CBufferHandle run(CBufferHandle in, CBufferHandle second, int32_t count);
    void retire() { drop(seed_); }
    void makeReady(const CModDenormModule*) {}
    int32_t latency() const { return 0; }

private:
    int32_t kernel_ = -1;
    CBufferHandle seed_ = kNoBuffer;
};

class CModDenorm : public CAudioProcessTerminal<CModDenormModule> {
public:
    void registerKernels() override;
};

}  // namespace tarv
