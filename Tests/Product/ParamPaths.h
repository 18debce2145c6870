#pragma once

namespace tarv::engine {

/// Full names of the product's parameters.
inline constexpr const char* kFreqs = "plugin.modMain.modBrindleXEQ.xeq-freqs";
inline constexpr const char* kGains = "plugin.modMain.modBrindleXEQ.xeq-gains";
inline constexpr const char* kBandCount = "plugin.modMain.modBrindleXEQ.band-count";
inline constexpr const char* kOutGain = "plugin.modMain.modOutGain.gain";
inline constexpr const char* kMute = "plugin.modMain.modOutGain.mute";
inline constexpr const char* kBypass = "plugin.modMain.modBypass.enable";
inline constexpr const char* kSolo = "plugin.modMain.io-params.channel-group-solo";
inline constexpr const char* kInRouting = "plugin.modMain.io-params.in-routing";
inline constexpr const char* kOutRouting = "plugin.modMain.io-params.out-routing";
inline constexpr const char* kGrouping = "plugin.modMain.io-params.grouping";
inline constexpr const char* kPairs = "plugin.modMain.io-params.ms-pairs";
/// 0 is Auto, 1 to 4 are 1x to 8x.
inline constexpr const char* kOversampling = "plugin.modMain.oversampling";

}  // namespace tarv::engine
