// The look of a view: its colours and their morphs, the animation of colours, and its range of pictures.

#include <cmath>

#include "Core/Log.h"
#include "UI/Views/CView.h"

namespace tarv {

namespace {

// Frames a second where no view from here up has `gradient-fps`.
constexpr double kDefaultGradientFps = 20.0;

}  // namespace

void CView::updateImageRange() {
    hasRange_ = false;
    if (!imageSet_) {
        return;
    }
    uint32_t last = 0;
    hasRange_ = imageSet_->findRange(imageRange(), firstImage_, last);
    if (hasRange_) {
        return;
    }
    // A set may have no pictures for a state.
    const CString& own = getAttrString("image-set-range");
    hasRange_ = isImageRangeOfState() && imageSet_->findRange(own, firstImage_, last);
    if (!hasRange_) {
        logLineIn(CString("Range not found <") + own + ">", fullName());
    }
}

const CImage* CView::currentImage() const {
    return imageSet_ && hasRange_ ? imageSet_->getImage(firstImage_) : nullptr;
}

void CView::lookChanged(double morphSeconds) {
    updateImageRange();
    resolveColors(morphSeconds);
}

CError* CView::attrColor() {
    resolveColors(0.0);
    return nullptr;
}

void CView::colorSlotsChanged() {
    if (state() == CObjectState::Finished) {
        resolveColors(0.0);
    }
}

/// The base name that a text means; empty for the colour of the parent.
CString CView::colorBase(const CString& text) const {
    if (text == CString("^")) {
        return {};
    }
    if (!text.startsWith("/")) {
        return text.isEmpty() ? CString("Panel") : text;
    }
    const CString name = text.substring(1);
    const CObject* shared = rootView() ? rootView()->findChild("shared-color") : nullptr;
    const CObject* slot = shared ? shared->findChild(name) : nullptr;
    return slot && !slot->getAttrString("color").isEmpty() ? slot->getAttrString("color") : name;
}

/// False for a colour that the palette lacks.
bool CView::resolveColor(int32_t index, CViewColor& color) {
    const CViewColorSlot* slot = index > 0 ? colorSlots()[index - 1] : nullptr;
    const CString base = colorBase(slot ? slot->color() : getAttrString("color"));
    color.isOfParent = base.isEmpty();
    if (color.isOfParent || !palette_) {
        color.clear();
        return true;
    }
    // A slot's own state comes first; one with a slash stands alone.
    CArray<CString, 4> states;
    const CString own = slot ? slot->colorState() : CString();
    const bool isWhole = own.startsWith("/");
    if (own.length() > (isWhole ? 1 : 0)) {
        states.append(isWhole ? own.substring(1) : own);
    }
    if (!isWhole) {
        states.append(colorStates().data(), colorStates().count());
    }
    if (!color.find(*palette_, base, states.data(), states.count(), frame_)) {
        logLineIn(CString("Color not found <") + base + ">", fullName());
        return false;
    }
    return true;
}

void CView::resolveColors(double morphSeconds) {
    colors_.resize(1 + colorSlots().count());
    isColorMorphing_ = false;
    for (int32_t i = 0; i < colors_.count(); ++i) {
        CViewColor& color = colors_[i];
        const CColor* const former = color.shown();
        if (morphSeconds > 0.0) {
            color.beginMorph();
        } else {
            color.endMorph();
        }
        const bool isFound = resolveColor(i, color);
        const bool isSame = !isFound || !former || color.target() == former;
        if (isSame) {
            color.endMorph();
        }
        isColorMorphing_ = isColorMorphing_ || color.isMorphing();
    }
    if (isColorMorphing_) {
        colorMorph_ = {now(), now() + morphSeconds};
        startTimer();
    }
    updateGradient();
    colorShownChanged();
}

const CColor* CView::color(int32_t index) const {
    if (index < 0 || index >= colors_.count()) {
        logLine(CString("WRONG COLOR INDEX ") + CString::fromInt(index));
        index = 0;
    }
    if (colors_.isEmpty()) {
        return nullptr;
    }
    if (colors_[index].isOfParent) {
        const auto* parent = dynamic_cast<const CView*>(parentView());
        return parent ? parent->color(0) : nullptr;
    }
    return colors_[index].shown();
}

/// This view is drawn anew, and those that show its colour.
void CView::colorShownChanged() {
    requestRedraw();
    for (CObject* child : children()) {
        auto* view = dynamic_cast<CView*>(child);
        if (!view || view->parentView() != this) {
            continue;
        }
        for (const CViewColor& color : view->colors_) {
            if (color.isOfParent) {
                view->colorShownChanged();
                break;
            }
        }
    }
}

bool CView::animate(double time) {
    bool isOther = false;
    if (isColorMorphing_) {
        const double ratio = colorMorph_.ratioAt(time);
        isColorMorphing_ = ratio < 1.0;
        for (CViewColor& color : colors_) {
            if (isColorMorphing_) {
                color.mix(ratio);
            } else {
                color.endMorph();
            }
        }
        isOther = true;
    }
    const double fps = isGradientRunning_ ? gradientFps() : 0.0;
    if (isGradientRunning_ && !hasFrameTime_) {
        // Views are there before their clock is.
        nextFrameTime_ = time + 1.0 / fps;
        hasFrameTime_ = true;
    }
    if (isGradientRunning_ && time >= nextFrameTime_) {
        // Steps by the clock, not by the tick.
        const double steps = std::floor((time - nextFrameTime_) * fps) + 1.0;
        nextFrameTime_ += steps / fps;
        stepFrames(static_cast<uint32_t>(std::fmod(steps, 4294967296.0)));
    }
    if (isOther) {
        colorShownChanged();
    }
    return isColorMorphing_ || isGradientRunning_;
}

double CView::gradientFps() const {
    for (const CObject* view = this; view; view = view->parent()) {
        const double fps = view->getAttrReal("gradient-fps");
        if (fps > 0.0) {
            return fps;
        }
    }
    return kDefaultGradientFps;
}

CError* CView::attrGradient() {
    updateGradient();
    return nullptr;
}

/// Runs while the view is animated and one of its colours has frames.
void CView::updateGradient() {
    bool hasFrames = false;
    for (const CViewColor& color : colors_) {
        hasFrames = hasFrames || color.frameCount() > 1;
    }
    const bool wasRunning = isGradientRunning_;
    isGradientRunning_ = hasFrames && getAttrBool("is-gradient-animated");
    if (isGradientRunning_ && !wasRunning) {
        hasFrameTime_ = window() != nullptr;
        nextFrameTime_ = now() + 1.0 / gradientFps();
        startTimer();
    }
}

void CView::stepFrames(uint32_t count) {
    frame_ += count;
    for (CViewColor& color : colors_) {
        if (palette_ && color.frameCount() > 0) {
            color.setFrame(*palette_, frame_);
        }
    }
    colorShownChanged();
}

CError* CView::gradientTimer() {
    stepFrames(1);
    return nullptr;
}

}  // namespace tarv
