#pragma once

#include "Audio/Context/CRunJoiner.h"
#include "Audio/Kernels/Wave/CHalfBandPlan.h"
#include "Audio/Kernels/Wave/CInstructionSet.h"

namespace tarv {

class CQPLEXContext;

/// Finds changes of rate by two, a half-band filter behind zeros between the samples or in front of a decimation, and
/// runs both kernels of all channels in lanes.
class CHalfBandJoiner final : public CRunJoiner {
public:
    /// The kernels of `context` that are joined; those must be registered.
    CHalfBandJoiner(const CQPLEXContext& context, CInstructionSet set);
    int32_t join(const CRecordedCall* calls, int32_t count, CPlanMemory& memory, CRecordedCall& call) override;

private:
    struct CFilter {
        CKernelFunction plain;
        CKernelFunction withGain;
    };

    bool findFilter(CKernelFunction function, CHalfBandPlan& plan, bool& hasGain) const;
    bool plan(const CRecordedCall& first, const CRecordedCall& second, CHalfBandPlan& plan) const;

    CFilter filters_[kMostHalfBand];  ///< by coefficients of a branch less 1
    CKernelFunction interpolate_;
    CKernelFunction decimate_;
    void (*run_)(const CHalfBandPlan& plan);
};

}  // namespace tarv
