#include "UI/Drawing/CColorMixes.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <tuple>

namespace tarv {

namespace {

constexpr int32_t kSteps = CColorMixes::kSteps;
constexpr int32_t kChannelShifts[] = {0, 8, 16};

/// Rounded half up.
CPixel mixPixels(CPixel from, CPixel to, uint32_t step) {
    CPixel mixed = 0;
    for (const int32_t shift : kChannelShifts) {
        const uint32_t sum = (from >> shift & 255) * (kSteps - step) + (to >> shift & 255) * step;
        mixed |= (sum + kSteps / 2) / kSteps << shift;
    }
    return mixed;
}

}  // namespace

void CColorMixes::mixInto(const CColor& from, const CColor& to, int32_t step, CColor& mixed) {
    mixed.opacity = from.opacity + (to.opacity - from.opacity) * step / kSteps;
    for (int32_t i = 0; i < kRampLength; ++i) {
        mixed.ramp[i] = mixPixels(from.ramp[i], to.ramp[i], static_cast<uint32_t>(step));
    }
}

int32_t CColorMixes::stepOf(double ratio) {
    return ratio > 0.0 ? static_cast<int32_t>(std::lround(std::min(ratio, 1.0) * kSteps)) : 0;
}

bool CColorMixes::isBelow(const CMix& a, const CMix& b) {
    return std::tuple(reinterpret_cast<uintptr_t>(a.from), reinterpret_cast<uintptr_t>(a.to), a.step) <
           std::tuple(reinterpret_cast<uintptr_t>(b.from), reinterpret_cast<uintptr_t>(b.to), b.step);
}

const CColor& CColorMixes::mix(const CColor& from, const CColor& to, double ratio) {
    CMix wanted{&from, &to, stepOf(ratio), 0, nullptr};
    if (wanted.step == 0 || &from == &to) {
        return from;
    }
    if (wanted.step == kSteps) {
        return to;
    }
    const CMix* found = std::lower_bound(mixes_.begin(), mixes_.end(), wanted, &isBelow);
    if (found != mixes_.end() && !isBelow(wanted, *found)) {
        return *found->color;
    }
    wanted.serial = ++lastSerial_;
    wanted.color = takeOldest();
    mixInto(from, to, wanted.step, *wanted.color);
    const auto at = std::lower_bound(mixes_.begin(), mixes_.end(), wanted, &isBelow) - mixes_.begin();
    mixes_.insert(static_cast<int32_t>(at), wanted);
    return *wanted.color;
}

/// Room for one more: new, or that of the mix that was made first.
CColor* CColorMixes::takeOldest() {
    if (mixes_.count() < kMaxMixes) {
        colors_.append(new CColor);
        return colors_.last();
    }
    const CMix* oldest = std::min_element(mixes_.begin(), mixes_.end(),
                                          [](const CMix& a, const CMix& b) { return a.serial < b.serial; });
    CColor* color = oldest->color;
    mixes_.removeAt(static_cast<int32_t>(oldest - mixes_.begin()));
    return color;
}

void CColorMixes::clear() {
    mixes_.clear();
    colors_.deleteAll();
}

}  // namespace tarv
