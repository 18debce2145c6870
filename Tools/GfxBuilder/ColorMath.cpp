#include "ColorMath.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numbers>

namespace tarv {

namespace {

/// Lightness 0 to 1, and the two opponent axes green-red and blue-yellow.
struct COklab {
    double lightness;
    double a;
    double b;
};

constexpr double kNearBlack = 0.1;                           // shows as about 3 of 255
constexpr double kDarkTurn = 14.0 * std::numbers::pi / 180;  // how far the darkest step turns towards the dark hue
constexpr double kChromaBend = 0.85;                         // below 1: the dark keeps more than its share of colour
constexpr double kDarkTint = 0.008;                          // what greys, which have no hue to turn, take on half way
constexpr double kGrey = 0.001;                              // chroma below which a colour has no hue
constexpr double kKeptChroma = 0.85;                         // of a colour that is lifted
constexpr int kHalvings = 24;                                // of an interval, until it is below a byte's step

double linearOf(uint8_t value) {
    const double v = value / 255.0;
    return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
}

double shownOf(double linear) {
    return linear <= 0.0031308 ? linear * 12.92 : 1.055 * std::pow(linear, 1 / 2.4) - 0.055;
}

COklab oklabOf(CRgb color) {
    const double r = linearOf(color.red), g = linearOf(color.green), b = linearOf(color.blue);
    const double l = std::cbrt(0.4122214708 * r + 0.5363325363 * g + 0.0514459929 * b);
    const double m = std::cbrt(0.2119034982 * r + 0.6806995451 * g + 0.1073969566 * b);
    const double s = std::cbrt(0.0883024619 * r + 0.2817188376 * g + 0.6299787005 * b);
    return {0.2104542553 * l + 0.7936177850 * m - 0.0040720468 * s,
            1.9779984951 * l - 2.4285922050 * m + 0.4505937099 * s,
            0.0259040371 * l + 0.7827717662 * m - 0.8086757660 * s};
}

std::array<double, 3> linearOf(const COklab& lab) {
    const double l = std::pow(lab.lightness + 0.3963377774 * lab.a + 0.2158037573 * lab.b, 3);
    const double m = std::pow(lab.lightness - 0.1055613458 * lab.a - 0.0638541728 * lab.b, 3);
    const double s = std::pow(lab.lightness - 0.0894841775 * lab.a - 1.2914855480 * lab.b, 3);
    return {4.0767416621 * l - 3.3077115913 * m + 0.2309699292 * s,
            -1.2684380046 * l + 2.6097574011 * m - 0.3413193965 * s,
            -0.0041960863 * l - 0.7034186147 * m + 1.7076147010 * s};
}

bool canBeShown(const std::array<double, 3>& linear) {
    return std::all_of(linear.begin(), linear.end(), [](double v) { return v >= -1e-6 && v <= 1 + 1e-6; });
}

/// The largest value from 0 to 1 at which `holds`, which holds at 0 and fails from some value on.
template <typename T>
double lastThatHolds(const T& holds) {
    if (holds(1.0)) {
        return 1;
    }
    double low = 0, high = 1;
    for (int i = 0; i < kHalvings; ++i) {
        const double middle = (low + high) / 2;
        (holds(middle) ? low : high) = middle;
    }
    return low;
}

/// The nearest colour of the same lightness and hue that a screen can show.
CRgb rgbOf(COklab lab) {
    const double kept = lastThatHolds([&](double share) {
        return canBeShown(linearOf(COklab{lab.lightness, lab.a * share, lab.b * share}));
    });
    const auto linear = linearOf(COklab{lab.lightness, lab.a * kept, lab.b * kept});
    const auto byte = [](double v) {
        return static_cast<uint8_t>(std::lround(shownOf(std::clamp(v, 0.0, 1.0)) * 255));
    };
    return {byte(linear[0]), byte(linear[1]), byte(linear[2])};
}

uint8_t scaled(uint8_t value, double factor) {
    return static_cast<uint8_t>(std::lround(value * factor));
}

COklab between(const COklab& a, const COklab& b, double t) {
    return {std::lerp(a.lightness, b.lightness, t), std::lerp(a.a, b.a, t), std::lerp(a.b, b.b, t)};
}

/// Step `t` (0 to 1) of the ramp of a colour. The darker it is, the nearer its hue is to that of `goal`, unless that is
/// a grey.
CRgb rampStep(const COklab& full, double t, double bend, const COklab& goal) {
    const double dark = std::min(kNearBlack, full.lightness / 2);
    const double lightness = std::lerp(dark, full.lightness, std::pow(t, bend));
    const double chroma =
        std::hypot(full.a, full.b) * std::pow(lightness / std::max(full.lightness, 1e-3), kChromaBend);
    const bool hasGoal = std::hypot(goal.a, goal.b) > kGrey;
    const double goalHue = std::atan2(goal.b, goal.a);
    double hue = std::atan2(full.b, full.a);
    const double away = hasGoal ? std::remainder(goalHue - hue, 2 * std::numbers::pi) : 0;
    hue += std::clamp(away, -kDarkTurn, kDarkTurn) * (1 - t);
    const double tint = hasGoal ? kDarkTint * 4 * t * (1 - t) : 0;
    return rgbOf({lightness, chroma * std::cos(hue) + tint * std::cos(goalHue),
                  chroma * std::sin(hue) + tint * std::sin(goalHue)});
}

}  // namespace

bool parseColor(std::string_view text, CRgb& color) {
    uint32_t value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value, 16);
    if (text.size() != 6 || result.ec != std::errc() || result.ptr != text.data() + text.size()) {
        return false;
    }
    color = {static_cast<uint8_t>(value >> 16), static_cast<uint8_t>(value >> 8), static_cast<uint8_t>(value)};
    return true;
}

CRgb movedLightness(CRgb color, double amount) {
    COklab lab = oklabOf(color);
    if (amount > 0) {
        amount *= lastThatHolds([&](double share) {
            const double lightness = lab.lightness + amount * share;
            return canBeShown(linearOf(COklab{lightness, lab.a * kKeptChroma, lab.b * kKeptChroma}));
        });
    }
    lab.lightness = std::clamp(lab.lightness + amount, 0.0, 1.0);
    return rgbOf(lab);
}

CRgb mixed(CRgb color, CRgb other, double share) {
    return rgbOf(between(oklabOf(color), oklabOf(other), share));
}

CRgb shaded(CRgb color, double factor) {
    return {scaled(color.red, factor), scaled(color.green, factor), scaled(color.blue, factor)};
}

CRamp darkRamp(CRgb color, double bend, CRgb dark) {
    CRamp ramp;
    const COklab full = oklabOf(color), goal = oklabOf(dark);
    for (size_t i = 0; i < ramp.size(); ++i) {
        ramp[i] = rampStep(full, static_cast<double>(i) / 255, bend, goal);
    }
    return ramp;
}

CRamp litRamp(CRgb color, CRgb edge, int face, CRgb dark) {
    CRamp ramp;
    const COklab full = oklabOf(color), lit = oklabOf(edge), goal = oklabOf(dark);
    for (int i = 0; i < 256; ++i) {
        ramp[static_cast<size_t>(i)] = i <= face
                                           ? rampStep(full, static_cast<double>(i) / face, 1, goal)
                                           : rgbOf(between(full, lit, static_cast<double>(i - face) / (255 - face)));
    }
    return ramp;
}

CRamp flatRamp(CRgb color) {
    CRamp ramp;
    ramp.fill(color);
    return ramp;
}

CRamp shadedRamp(const CRamp& ramp, double factor) {
    CRamp result;
    std::transform(ramp.begin(), ramp.end(), result.begin(), [&](CRgb color) { return shaded(color, factor); });
    return result;
}

}  // namespace tarv
