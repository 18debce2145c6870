#pragma once

#include <memory>

#include "Audio/Context/CRunJoiner.h"
#include "Audio/Kernels/Wave/CHalfBandPlan.h"
#include "Audio/Kernels/Wave/CInstructionSet.h"
#include "Audio/Kernels/Wave/WaveSets.h"

namespace tarv {

class CQPLEXContext;

/// Finds changes of rate by two, a half-band filter behind zeros between the samples or in front of a decimation that
/// is kAlwaysEven, and runs both kernels of all channels in lanes.
class CHalfBandJoiner final : public CRunJoiner {
public:
    /// The kernels of `context` that are joined; those must be registered.
    CHalfBandJoiner(const CQPLEXContext& context, CInstructionSet set);
    ~CHalfBandJoiner() override;
    CFound find(CRecordedCall* calls, int32_t count) override;
    bool plan(CPlanMemory& memory, CRecordedCall& call) override;

private:
    struct CJoined;
    struct CFilter {
        CKernelFunction plain;
        CKernelFunction withGain;
    };

    static void runJoined(const void* plan);
    static void findPlacesOfJoined(void* plan, CSignalPlaces& places);
    static bool makeApart(CJoined& joined);
    bool findFilter(CKernelFunction function, CHalfBandPlan& plan, bool& hasGain) const;
    bool takePair(const CRecordedCall& first, const CRecordedCall& second, CHalfBandPlan& plan) const;

    std::unique_ptr<CJoined> found_;
    CFilter filters_[kMostHalfBand];  ///< by coefficients of a branch less 1
    CKernelFunction interpolate_;
    CKernelFunction decimate_;
    CRunHalfBands run_;
    CRunHalfBands runPair_;  ///< for one channel and two
};

}  // namespace tarv
