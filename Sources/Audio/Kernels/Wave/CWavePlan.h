#pragma once

#include <cstdint>

namespace tarv {

/// The most channels that stand side by side in a wave.
constexpr int32_t kMostWaveChannels = 8;

/// Blocks of fewer samples take the short form, which has fewer rounds at its ends: one sample a round in two stages
/// instead of two samples in three (AVX-512: in two).
constexpr int32_t kShortWave = 64;

/// What one lane of a vector holds: constants of a band, what it carries from block to block, and what its
/// stages hand on from round to round (two samples each). Two stages leave radicands and all that is read a round and
/// more later unused, but the feed. See WaveLoop.h.
enum CWaveField : int32_t {
    // The filter and the high-pass.
    kWaveC0,
    kWaveC1,
    kWaveC2,
    kWaveC3,
    kWaveFilterGain,
    kWaveHighPassFactor,
    kWaveHighPassGain,
    // The way to the two curves.
    kWaveGainI,
    kWaveBiasI,
    kWaveKneeStartA,
    kWaveKneeStartB,
    kWaveRadiusSquaredA,
    kWaveRadiusSquaredB,
    // From the roots to the output.
    kWaveCentreOffsetA,
    kWaveCentreOffsetB,
    kWaveNearerKneeEnd,  ///< the smaller of the two
    kWaveKneeEndA,
    kWaveKneeEndB,
    kWaveSlopeA,
    kWaveSlopeB,
    kWaveFeedFactor,
    kWaveGainV,
    kWaveBiasV,
    kWaveRestOutput,
    kWaveAutoGain,
    // Where the lane stands.
    kWaveBand,  ///< number of its band; the wave reaches it by so many times the stages later
    /// All bits: the lane is the filter behind the bands, which takes no part in the saturation. Only in a vector with
    /// lanes to spare.
    kWaveIsPost,
    // Carried from block to block.
    kWaveS1,
    kWaveS2,
    kWaveHighPassState,
    kWaveFeedState,
    // Handed on between stages.
    kWavePassed,
    kWaveOut = kWavePassed + 2,
    kWaveRadicandA = kWaveOut + 2,
    kWaveRadicandB = kWaveRadicandA + 2,
    // What is read a round and more later, twice: the rounds take turns, so that none moves what it keeps.
    kWaveFeed = kWaveRadicandB + 2,
    kWaveX = kWaveFeed + 2,
    kWaveRootA = kWaveX + 2,
    kWaveRootB = kWaveRootA + 2,
    kWaveOtherTurn = kWaveRootB + 2,
    kWaveFieldsInUse = kWaveOtherTurn + (kWaveOtherTurn - kWaveFeed),
    // Vectors are so far apart that what one stores does not lie 4096 bytes from what another loads soon after: the
    // processor takes that for the same place and waits.
    kWaveFieldCount = kWaveFieldsInUse + 3
};

/// What a lane of a band whose filter is faded holds besides: the filter with the old values, and the ramp between
/// both; see CrossfadeKernels.h.
enum CWaveFadeField : int32_t {
    kWaveOldC0,
    kWaveOldC1,
    kWaveOldC2,
    kWaveOldC3,
    kWaveOldGain,
    kWaveRampFactor,
    kWaveIsFaded,  ///< all bits: the lane takes part in the fade
    // Carried from block to block.
    kWaveOldS1,
    kWaveOldS2,
    kWaveRamp,
    kWaveRampBefore,
    kWaveFadeFieldCount
};

/// Fields of the filters before and behind the bands, which stand outside their vectors: a biquad, and behind the bands
/// also a high-pass and a gain.
enum CWaveEndField : int32_t {
    kWaveEndC0,
    kWaveEndC1,
    kWaveEndC2,
    kWaveEndC3,
    kWaveEndGain,
    kWaveEndS1,
    kWaveEndS2,
    kWaveEndHighPassFactor,
    kWaveEndHighPassGain,
    kWaveEndOutGain,
    kWaveEndHighPassState,
    kWaveEndFieldCount
};

/// Where the filter behind the bands stands.
enum class CWavePost : int32_t {
    None,
    InLanes,  ///< in the lanes that the last vector has to spare
    Alone     ///< in a vector of its own that has no saturation
};

/// Addresses of what one lane carries from block to block. `feed` is null for a lane of the filter behind the bands,
/// `oldFilter` and `ramp` without a fade, all are null for a lane that nobody uses.
struct CWaveStates {
    double* filter;  ///< s1, s2
    double* highPass;
    double* feed;
    double* oldFilter;  ///< s1, s2
    double* ramp;       ///< two samples
};

/// A wave: bands in series, 1 and up, of 1, 2, 4 or 8 channels, and the filters at both ends. What it points to is
/// owned by others. Lane `l` of vector `v` is channel l % channels of band v x bandsPerVector + l / channels.
struct CWavePlan {
    double* lanes;   ///< field f of vector v: `width` doubles at (v x kWaveFieldCount + f) x width; 64-byte aligned
    double* fades;   ///< the same of CWaveFadeField; null: no filter is faded
    double* before;  ///< kWaveEndFieldCount fields of `width` doubles, the channels last
    double* behind;  ///< the same
    CWaveStates* states;                     ///< of each lane of each vector
    double* stateBefore[kMostWaveChannels];  ///< s1, s2; all null without a filter there
    double* stateBehind[kMostWaveChannels];  ///< s1, s2
    double* highPassBehind[kMostWaveChannels];
    const double* in[kMostWaveChannels];
    double* out[kMostWaveChannels];
    int32_t width;  ///< lanes of a vector
    int32_t channels;
    int32_t bands;
    int32_t vectors;
    int32_t count;         ///< samples
    uint32_t fading;       ///< bit v: a lane of vector v takes part in a fade
    uint32_t fadingWhole;  ///< bit v: all of them do
    CWavePost post;
};

}  // namespace tarv
