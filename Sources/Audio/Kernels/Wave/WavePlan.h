#pragma once

#include "Audio/Context/COperation.h"
#include "Audio/Context/CRunJoiner.h"
#include "Audio/Kernels/Wave/CWavePlan.h"

namespace tarv {

/// The most bands of a wave.
constexpr int32_t kMostWaveBands = 10;

/// The operations of one channel that a wave stands for, each reading what the one before writes. All have one sample
/// count. Null where there is none; behind the bands there is all but `gain`, or nothing.
struct CWaveChannel {
    struct CBand {
        const COperation* filter;
        const COperation* highPass;
        const COperation* tube;
        const COperation* oldFilter = nullptr;  ///< null: the filter is not faded
        const COperation* fade = nullptr;
    };
    const COperation* before;
    CBand bands[kMostWaveBands];
    int32_t bandCount;  ///< 1 and up
    const COperation* filterBehind;
    const COperation* highPassBehind;
    const COperation* gainBehind;

    const COperation& first() const { return before ? *before : *bands[0].filter; }
    const COperation& last() const;
    /// The filter of a band is faded.
    bool hasFade() const;
};

/// The plan of a wave over 1, 2, 4 or 8 `channels` of equal shape, at most as many as a vector has lanes, with its
/// constants in their lanes. False without room in `memory`.
bool planWave(const CWaveChannel* channels, int32_t count, int32_t width, CPlanMemory& memory, CWavePlan& plan);

}  // namespace tarv
