#include "UI/Views/CViewColor.h"

#include <cmath>

namespace tarv {

namespace {

constexpr uint32_t kMixSteps = 64;

CPixel mixedPixel(CPixel from, CPixel to, uint32_t step) {
    CPixel mixed = 0;
    for (const int32_t shift : {0, 8, 16}) {
        const uint32_t sum = (from >> shift & 255) * (kMixSteps - step) + (to >> shift & 255) * step;
        mixed |= (sum + kMixSteps / 2) / kMixSteps << shift;
    }
    return mixed;
}

}  // namespace

bool CViewColor::find(const CPalette& palette, const CString& base, const CString* states, int32_t stateCount,
                      uint32_t frame) {
    for (; stateCount >= 0; --stateCount) {
        name_ = base;
        for (int32_t i = 0; i < stateCount; ++i) {
            name_ += i == 0 ? CString("_") + states[i] : states[i];
        }
        frameCount_ = palette.getFrameCount(name_);
        if (frameCount_ > 0 || palette.findColor(name_)) {
            setFrame(palette, frame);
            return target_ != nullptr;
        }
    }
    clear();
    return false;
}

void CViewColor::clear() {
    target_ = nullptr;
    frameCount_ = 0;
    isMorphing_ = false;
}

void CViewColor::setFrame(const CPalette& palette, uint32_t frame) {
    target_ = palette.findColor(name_, CString(), frame);
}

void CViewColor::beginMorph() {
    if (!shown()) {
        return;
    }
    if (!from_) {
        from_ = std::make_unique<CColor>();
        mix_ = std::make_unique<CColor>();
    }
    *from_ = *shown();
    *mix_ = *from_;
    isMorphing_ = true;
}

void CViewColor::mix(double ratio) {
    if (!isMorphing_ || !target_) {
        isMorphing_ = false;
        return;
    }
    const auto step = static_cast<uint32_t>(std::lround(ratio * kMixSteps));
    for (int32_t i = 0; i < kRampLength; ++i) {
        mix_->ramp[i] = mixedPixel(from_->ramp[i], target_->ramp[i], step);
    }
    mix_->opacity = from_->opacity + (target_->opacity - from_->opacity) * step / kMixSteps;
}

}  // namespace tarv
