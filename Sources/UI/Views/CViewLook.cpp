// The look of a view: its colours and their morphs, the animation of colours, and its range of pictures.

#include <algorithm>
#include <cmath>

#include "Core/Log.h"
#include "UI/Views/CView.h"
#include "UI/Views/CViewWindow.h"

namespace tarv {

namespace {

// Frames a second where no view from here up has `gradient-fps`.
constexpr double kDefaultGradientFps = 20.0;

constexpr const char* kDisabled = "Disabled";

}  // namespace

void CView::updateImageRange() {
    findImageRange();
    updateOverhang();
    updateGradient();
    imageRangeChanged();
}

void CView::findImageRange() {
    hasRange_ = false;
    if (!imageSet_) {
        return;
    }
    hasRange_ = imageSet_->findRange(imageRange(), firstImage_, lastImage_);
    if (hasRange_) {
        return;
    }
    // A set may have no pictures for a state.
    const CString& own = getAttrString("image-set-range");
    hasRange_ = isImageRangeOfState() && imageSet_->findRange(own, firstImage_, lastImage_);
    if (!hasRange_) {
        logLineIn(CString("Range not found <") + own + ">", fullName());
    }
}

/// The pixels of a root view are those of its window: nothing of it lies beyond.
void CView::updateOverhang() {
    if (!hasArea() || isRootView()) {
        return;
    }
    COverhang overhang;
    if (imageSet_ && hasRange_) {
        overhang = CFramePieces(*imageSet_, firstImage_, lastImage_).overhang();
    }
    area().setOverhang({static_cast<double>(overhang.bottom), static_cast<double>(overhang.left),
                        static_cast<double>(overhang.right), static_cast<double>(overhang.top)});
}

bool CView::isFrameRange() const {
    return imageSet_ && hasRange_ && CFramePieces(*imageSet_, firstImage_, lastImage_).isFrame();
}

const CImage* CView::currentImage() const {
    if (!imageSet_ || !hasRange_) {
        return nullptr;
    }
    const CFramePieces pieces(*imageSet_, firstImage_, lastImage_);
    const uint32_t step = pieces.isFrame() ? CFramePieces::kPieces : 1;
    return imageSet_->getImage(firstImage_ + frame_ % pieces.frameCount() * step);
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

void CView::classColorsChanged() {
    resolveColors(0.0);
}

void CView::disabledChanged() {
    resolveColors(0.0);
    CViewBasePlacement::disabledChanged();
}

/// As the view, a slot or the class of the view has it.
CString CView::colorText(int32_t index) const {
    const int32_t slots = colorSlots().count();
    if (index > slots) {
        return classColorText(index - slots - 1);
    }
    return index > 0 ? colorSlots()[index - 1]->color() : getAttrString("color");
}

/// The base name that a text means.
CString CView::colorBase(const CString& text) const {
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
    const bool isSlot = index > 0 && index <= colorSlots().count();
    const CViewColorSlot* slot = isSlot ? colorSlots()[index - 1] : nullptr;
    const CString text = colorText(index);
    color.parentIndex = text.startsWith("^") ? std::max(CString::toInt(text.substring(1)), 0) : -1;
    if (color.isOfParent() || !palette_) {
        color.clear();
        return true;
    }
    const bool isDimmed = index == 0 && isDisabled() && palette_->findColor(kDisabled);
    const CString base = isDimmed ? CString(kDisabled) : colorBase(text);
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
    colors_.resize(1 + colorSlots().count() + classColorCount());
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
    if (index < 0 || index > colorSlots().count() || colors_.isEmpty()) {
        logLine(CString("WRONG COLOR INDEX ") + CString::fromInt(index));
        index = 0;
    }
    return shownColor(index);
}

const CColor* CView::classColor(int32_t index) const {
    return shownColor(1 + colorSlots().count() + index);
}

const CColor* CView::shownColor(int32_t index) const {
    if (index < 0 || index >= colors_.count()) {
        return nullptr;
    }
    if (colors_[index].isOfParent()) {
        const auto* parent = dynamic_cast<const CView*>(parentView());
        return parent ? parent->color(colors_[index].parentIndex) : nullptr;
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
            if (color.isOfParent()) {
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
                color.mix(ratio, window() ? window()->colorMixes() : nullptr);
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

/// Runs while the view is animated, and one of its colours or its range of pictures has frames.
void CView::updateGradient() {
    bool hasFrames = imageSet_ && hasRange_ && CFramePieces(*imageSet_, firstImage_, lastImage_).frameCount() > 1;
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
