#pragma once

#include "Audio/Graph/CAudioProcessBase.h"

namespace tarv {

/// Definition of a rate-halving stage (`audio:modDecimator`).
class CModDecimatorDef : public CAudioProcessDefBase {
public:
    CAudioProcessBase* createProcess() const override;
};

/// Halves the rate: keeps every second sample, over the borders of blocks of odd length.
class CModDecimator : public CAudioProcessBase {
public:
    [[nodiscard]] CError* init() override;
    void registerKernels() override;
    void process() override;
    void reset() override;
    void changeRate(CAudioRate& rate) const override { rate.shift(-1); }

private:
    int32_t evenKernel_ = -1;
    int32_t oddKernel_ = -1;
    int32_t offset_ = 0;  ///< position of the first sample to keep in the next block, 0 or 1
};

}  // namespace tarv
