#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace tarv {

/// A colour as it is shown: sRGB, 0 to 255 each.
struct CRgb {
    uint8_t red = 0;
    uint8_t green = 0;
    uint8_t blue = 0;

    bool operator==(const CRgb&) const = default;
};

using CRamp = std::array<CRgb, 256>;

/// "RRGGBB" in hexadecimal digits; false for anything else.
bool parseColor(std::string_view text, CRgb& color);

/// The colour with its perceived lightness (OKLab's, 0 to 1) moved by `amount`, as far as there is room. Hue stays. A
/// colour is lifted only as far as a screen can show it with 85 % of its chroma; a darker one loses what can't be
/// shown.
CRgb movedLightness(CRgb color, double amount);
/// A mix in perceived steps: `share` (0 to 1) of `other` in `color`.
CRgb mixed(CRgb color, CRgb other, double share);
/// Every part times `factor` (0 to 1): less light, same hue.
CRgb shaded(CRgb color, double factor);

/// 256 steps from near black to the colour itself. In the dark the hue turns towards that of `dark`, by 14 degrees at
/// most, and greys take on a little of it; a grey `dark` changes no hue. `bend` is the exponent of the lightness over
/// the steps: 1 is even, below 1 is brighter in the middle.
CRamp darkRamp(CRgb color, double bend, CRgb dark);
/// darkRamp up to the colour at step `face`, from there on to `edge` at step 255.
CRamp litRamp(CRgb color, CRgb edge, int face, CRgb dark);
CRamp flatRamp(CRgb color);
CRamp shadedRamp(const CRamp& ramp, double factor);

}  // namespace tarv
