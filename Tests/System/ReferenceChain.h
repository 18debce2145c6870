#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace tarv::reference {

/// A second implementation of the product's audio path, sample by sample and straight from its formulas. It shares no
/// code with the product, so that an error of one shows as a difference.

inline constexpr int kChannels = 8;
inline constexpr int kGroups = 8;
inline constexpr int kMaxBands = 10;
inline constexpr int kDefaultBands = 7;

/// What one channel group holds. Frequencies in Hz, gains as factors. Bands behind the seventh stand at 64 Hz, 0 dB.
struct CGroupSettings {
    std::array<double, kMaxBands> frequencies = {64, 150, 350, 1000, 2000, 6000, 12000, 64, 64, 64};
    std::array<double, kMaxBands> gains = {1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
    double outGain = 1.0;
    bool isMuted = false;
    bool isSolo = false;
};

/// What may change while audio runs.
struct CSettings {
    std::array<CGroupSettings, kGroups> groups;
    int bandCount = kDefaultBands;
    bool isBypassed = false;
};

/// What stays from start to end. Lists go by element; channel numbers count from 1, 0 is none.
struct CLayout {
    double rate = 44100.0;
    int stages = 0;  ///< doublings of the rate: 0 to 3
    int hostChannels = 2;
    bool hasNoise = true;
    bool hasRise = false;  ///< begins while audio runs: what enters the curves rises from silence in 15 ms
    std::array<int, kChannels> inRouting = {1, 2, 0, 0, 0, 0, 0, 0};
    std::array<int, kChannels> outRouting = {1, 2, 0, 0, 0, 0, 0, 0};
    std::array<int, kChannels> grouping = {0, 0, 1, 1, 2, 2, 3, 3};
    std::array<int, kChannels> pairs = {};  ///< 1 to 4: two elements of one number are coded as mid and side
};

/// From this host frame on the settings are wanted; what is fading just then follows at the end of its fade.
struct CChange {
    int64_t frame;
    CSettings settings;
};

/// One row of samples a host channel; rows that are missing are silent.
using CSignal = std::vector<std::vector<double>>;

/// The first settings sound from the first frame without a fade. Changes in order of their frames.
CSignal render(const CLayout& layout, const CSettings& first, const std::vector<CChange>& changes, const CSignal& input,
               int64_t frames);

}  // namespace tarv::reference
