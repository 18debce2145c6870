#pragma once

#include <array>

namespace tarv::factory {

/// The content that the factory data must have, written down once more.

using CCurve = std::array<double, 7>;  ///< decibels

struct CFactoryPreset {
    const char* name;
    CCurve groupA;
    bool hasGroupB;
    CCurve groupB;
    double outGainB;  ///< decibels; 0 stands for none
};

inline constexpr CFactoryPreset kFactoryPresets[] = {
    {"Default", {0, 0, 0, 0, 0, 0, 0}, false, {}, 0},
    {"Inverted Smiley", {-2.10, -0.40, 1.29, 2.09, 1.29, -0.40, -2.10}, false, {}, 0},
    {"More Loudness", {1.20, 0, 0, 1.70, 0, 0.80, 2.40}, false, {}, 0},
    {"High Freq Roll-off", {0, 0, 0, -0.50, -1.20, -2.30, -4.10}, false, {}, 0},
    {"Boom Box", {6.12, 0.20, 0, 0.60, -0.30, -0.30, 5.40}, true, {-2.74, 0, 0, -1.13, 0, 0, 4.51}, 0},
    {"Stereo Sheen", {2.00, 0.70, 0, 0, 0, 0.70, 2.00}, true, {-7.30, -1.40, 0, 0, 0.40, 1.50, 4.90}, 0},
    {"Strange Stereo",
     {-0.50, -4.80, -1.90, 2.80, 3.30, 2.50, 5.30},
     true,
     {9.60, 4.70, 0.50, -1.10, 0.40, 2.10, -1.80},
     1.70},
};
inline constexpr int kFactoryCount = 7;

using CRow = std::array<int, 8>;

struct CRoutingPreset {
    const char* name;
    CRow grouping;
    CRow inRouting;
    CRow outRouting;
    CRow pairs;
    std::array<const char*, 8> groupNames;
    std::array<const char*, 4> channelNames;
    bool hasSideChain;
};

inline constexpr CRoutingPreset kRoutingPresets[] = {
    {"Default Stereo",
     {0, 0, 1, 1, 2, 2, 3, 3},
     {1, 2},
     {1, 2},
     {},
     {"1", "2", "3", "4", "5", "6", "7", "8"},
     {"L", "R", "IN3", "IN4"},
     false},
    {"2.1 Stereo",
     {0, 0, 1, 1, 1, 1, 1, 1},
     {1, 2, 3},
     {1, 2},
     {},
     {"Front", "LFE", "3", "4", "5", "6", "7", "8"},
     {"L", "R", "C", "IN4"},
     false},
    {"5.1 Surround",
     {0, 0, 1, 2, 3, 3, 3, 3},
     {1, 2, 3, 4, 5, 6},
     {1, 2, 3, 4, 5, 6},
     {},
     {"Front", "Cntr", "LFE", "Side", "5", "6", "7", "8"},
     {"L", "R", "C", "Lfe"},
     false},
    {"Dual Mono",
     {0, 1, 1, 1, 1, 1, 1, 1},
     {1, 2},
     {1, 2},
     {},
     {"Left", "Right", "3", "4", "5", "6", "7", "8"},
     {"L", "R", "IN3", "IN4"},
     false},
    {"Mid-Side Stereo",
     {0, 1, 1, 1, 1, 1, 1, 1},
     {1, 2},
     {1, 2},
     {1, 1},
     {"Mid", "Side", "3", "4", "5", "6", "7", "8"},
     {"L", "R", "IN3", "IN4"},
     false},
    {"Mono To Stereo",
     {0, 0, 1, 1, 2, 2, 3, 3},
     {1},
     {1, 1},
     {},
     {"1", "2", "3", "4", "5", "6", "7", "8"},
     {"L", "R", "IN3", "IN4"},
     false},
    {"Stereo Side-Chain",
     {0, 0, 1, 1, 2, 2, 3, 3},
     {1, 2, 3, 4},
     {1, 2},
     {},
     {"1", "2", "3", "4", "5", "6", "7", "8"},
     {"L", "R", "scL", "scR"},
     true},
    {"Mono Side-Chain",
     {0, 0, 1, 1, 2, 2, 3, 3},
     {1, 2},
     {1},
     {},
     {"1", "2", "3", "4", "5", "6", "7", "8"},
     {"L", "scL", "IN3", "IN4"},
     true},
    {"Force Mono",
     {0, 0, 1, 1, 2, 2, 3, 3},
     {1},
     {1},
     {},
     {"1", "2", "3", "4", "5", "6", "7", "8"},
     {"L", "R", "IN3", "IN4"},
     true},
};
inline constexpr int kRoutingCount = 9;

}  // namespace tarv::factory
