#pragma once

#include "Audio/Graph/CAudioProcessBase.h"

namespace tarv {

/// Definition of a rate-doubling stage (`audio:modInterpolator`).
class CModInterpolatorDef : public CAudioProcessDefBase {
public:
    CAudioProcessBase* createProcess() const override;
};

/// Doubles the rate: each sample, doubled, and a zero behind it.
class CModInterpolator : public CAudioProcessBase {
public:
    [[nodiscard]] CError* init() override;
    void registerKernels() override;
    void process() override;
    void changeRate(CAudioRate& rate) const override { rate.shift(1); }

private:
    int32_t kernel_ = -1;
};

}  // namespace tarv
