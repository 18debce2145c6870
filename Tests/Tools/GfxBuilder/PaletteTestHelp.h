#pragma once

// The computed palettes, and measures of their colours.

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <string>

#include "PaletteBuilder.h"
#include "Tests/TestPaths.h"
#include "Tests/Tools/GfxBuilder/GfxTestHelp.h"

namespace tarv {

inline constexpr const char* kPalettes[] = {"Blue", "Default", "Green", "Military", "Red"};

inline const CPaletteSource& computed(const std::string& name) {
    static std::map<std::string, CPaletteSource> palettes;
    const auto [found, isNew] = palettes.emplace(name, CPaletteSource());
    if (isNew) {
        const auto failure =
            computePalette(kSourceFolder + std::string("/Gfx/Palettes/") + name + ".palette", found->second);
        EXPECT_FALSE(failure) << failure->message();
    }
    return found->second;
}

/// Relative luminance of sRGB, and the contrast of two colours, as WCAG 2 defines them.
inline double luminance(CRgb color) {
    const auto linear = [](uint8_t value) {
        const double v = value / 255.0;
        return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

inline double contrast(CRgb a, CRgb b) {
    const double x = luminance(a) + 0.05, y = luminance(b) + 0.05;
    return std::max(x, y) / std::min(x, y);
}

/// Lightness of CIE 1976, 0 to 100.
inline double lightness(CRgb color) {
    const double y = luminance(color);
    return y > 216.0 / 24389 ? 116 * std::cbrt(y) - 16 : y * 24389 / 27;
}

inline CRgb full(const CPaletteSource& palette, const std::string& name) {
    return palette.colors.at(name).ramp[255];
}

inline CRgb face(const CPaletteSource& palette, const std::string& name) {
    return palette.colors.at(name).ramp[kFaceStep];
}

/// Linear red, green and blue, 0 to 1.
using CLinear = std::array<double, 3>;

inline CLinear linear(CRgb color) {
    const auto part = [](uint8_t value) {
        const double v = value / 255.0;
        return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    return {part(color.red), part(color.green), part(color.blue)};
}

/// CIELAB of 1976 for the white of sRGB.
inline CLinear labOf(const CLinear& c) {
    const auto bent = [](double t) { return t > 216.0 / 24389 ? std::cbrt(t) : (t * 24389 / 27 + 16) / 116; };
    const double x = bent((0.4124564 * c[0] + 0.3575761 * c[1] + 0.1804375 * c[2]) / 0.95047);
    const double y = bent(0.2126729 * c[0] + 0.7151522 * c[1] + 0.0721750 * c[2]);
    const double z = bent((0.0193339 * c[0] + 0.1191920 * c[1] + 0.9503041 * c[2]) / 1.08883);
    return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
}

/// Difference of two colours in CIELAB.
inline double difference(const CLinear& a, const CLinear& b) {
    const CLinear x = labOf(a), y = labOf(b);
    return std::hypot(x[0] - y[0], x[1] - y[1], x[2] - y[2]);
}

/// Chroma and hue (in radians) of CIELAB.
inline double chroma(CRgb color) {
    const CLinear lab = labOf(linear(color));
    return std::hypot(lab[1], lab[2]);
}

inline double hue(CRgb color) {
    const CLinear lab = labOf(linear(color));
    return std::atan2(lab[2], lab[1]);
}

}  // namespace tarv
