#include "UI/Views/CViewColor.h"

#include "UI/Drawing/CColorMixes.h"

namespace tarv {

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
    if (isMorphing_ && mixed_ != start_) {
        // A mix is made anew sooner or later: its colour is kept here.
        if (!ownStart_) {
            ownStart_ = std::make_unique<CColor>();
        }
        *ownStart_ = *mixed_;
        start_ = ownStart_.get();
    } else if (!isMorphing_) {
        start_ = target_;
    }
    mixed_ = start_;
    isMorphing_ = true;
}

void CViewColor::mix(double ratio, CColorMixes* mixes) {
    if (!isMorphing_ || !target_) {
        isMorphing_ = false;
        return;
    }
    if (mixes && start_ != ownStart_.get()) {
        mixed_ = &mixes->mix(*start_, *target_, ratio);
        return;
    }
    if (!ownMix_) {
        ownMix_ = std::make_unique<CColor>();
    }
    CColorMixes::mixInto(*start_, *target_, CColorMixes::stepOf(ratio), *ownMix_);
    mixed_ = ownMix_.get();
}

}  // namespace tarv
