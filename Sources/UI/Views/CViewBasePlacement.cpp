#include "UI/Views/CViewBasePlacement.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "Core/CApplication.h"
#include "Core/Log.h"
#include "UI/Views/CInputListener.h"
#include "UI/Views/CViewWindow.h"

namespace tarv {

namespace {

constexpr int32_t kStaticStep = 1000;
constexpr int32_t kDynamicStep = 1500;
// The children of a root stand this far from one another.
constexpr int64_t kRootStep = 100000;
constexpr double kLeastRatio = 0.0001;
constexpr double kSameOpacity = std::numeric_limits<double>::epsilon();

struct CSetter {
    const char* attribute;
    CHandlerFunction function;
};

template <CError* (CViewBasePlacement::*Method)()>
CError* call(CObject& object, CAttributeMap*) {
    auto& view = static_cast<CViewBasePlacement&>(object);
    return view.isPlaced() ? (view.*Method)() : nullptr;
}

// In the order in which they are served at load: what others depend on first.
constexpr CSetter kSetters[] = {
    {"is-decorative", &call<&CViewBasePlacement::attrDecorative>},
    {"is-dynamic", &call<&CViewBasePlacement::attrDynamic>},
    {"is-force-non-dynamic", &call<&CViewBasePlacement::attrForceNonDynamic>},
    {"opacity", &call<&CViewBasePlacement::attrOpacity>},
    {"placement", &call<&CViewBasePlacement::attrPlacement>},
    {"placement-match", &call<&CViewBasePlacement::attrPlacementMatch>},
    {"outer-border", &call<&CViewBasePlacement::attrOuterBorder>},
    {"inner-border", &call<&CViewBasePlacement::attrInnerBorder>},
    {"spread", &call<&CViewBasePlacement::attrSpread>},
    {"min-width", &call<&CViewBasePlacement::attrMinWidth>},
    {"min-height", &call<&CViewBasePlacement::attrMinHeight>},
    {"width", &call<&CViewBasePlacement::attrWidth>},
    {"height", &call<&CViewBasePlacement::attrHeight>},
    {"compact-width", &call<&CViewBasePlacement::attrCompactWidth>},
    {"compact-height", &call<&CViewBasePlacement::attrCompactHeight>},
    {"alignment-h", &call<&CViewBasePlacement::attrAlignmentH>},
    {"alignment-v", &call<&CViewBasePlacement::attrAlignmentV>},
    {"inline-alignment-h", &call<&CViewBasePlacement::attrInlineAlignmentH>},
    {"inline-alignment-v", &call<&CViewBasePlacement::attrInlineAlignmentV>},
    {"is-inline-vertical", &call<&CViewBasePlacement::attrInlineVertical>},
    {"is-new-inline-row", &call<&CViewBasePlacement::attrNewInlineRow>},
    {"is-visible", &call<&CViewBasePlacement::attrVisible>},
    {"unclip-level", &call<&CViewBasePlacement::attrUnclipLevel>},
    {"scroller-width", &call<&CViewBasePlacement::attrScrollerWidth>},
    {"scroller-height", &call<&CViewBasePlacement::attrScrollerHeight>},
    {"min-ratio-x", &call<&CViewBasePlacement::attrMinRatioX>},
    {"min-ratio-y", &call<&CViewBasePlacement::attrMinRatioY>},
    {"ratio-x", &call<&CViewBasePlacement::attrRatioX>},
    {"ratio-y", &call<&CViewBasePlacement::attrRatioY>},
    {"offset-x", &call<&CViewBasePlacement::attrOffsetX>},
    {"offset-y", &call<&CViewBasePlacement::attrOffsetY>},
};

}  // namespace

CViewBasePlacement::~CViewBasePlacement() {
    // An area outlives those of the children.
    endInput();
}

CError* CViewBasePlacement::initClass(CClassDescriptor& descriptor) {
    for (const CSetter& setter : kSetters) {
        descriptor.add(setter.attribute, setter.function);
    }
    return CViewBaseState::initClass(descriptor);
}

CError* CViewBasePlacement::init() {
    TARV_TRY(CViewBaseState::init());
    parentPlacement_ = dynamic_cast<CViewBasePlacement*>(parentView());
    if (!isRootView() && !parentPlacement_) {
        TARV_FAIL("@tarvstr_CViewBasePlacement_init_NoParentView Unable to locate parent view.");
    }
    if (!rootView() || (parentPlacement_ && !parentPlacement_->hasArea())) {
        TARV_FAIL("@tarvstr_CViewBasePlacement_init_NoRootView Unable to locate root view.");
    }
    const bool isScrollable = isScrollableView();
    area_ = parentPlacement_ ? std::make_unique<CViewArea>(areaHandler(), parentPlacement_->area(), isScrollable)
                             : std::make_unique<CViewArea>(areaHandler(), isScrollable);
    if (!area_->isValid()) {
        TARV_FAIL("@tarvstr_CViewBasePlacement_init_NoCells Too many views in one window.");
    }
    updateInherited();
    inheritUnclipLevel();
    stackingNumber_ = computeStackingNumber();
    for (const CSetter& setter : kSetters) {
        if (isSetEarly_ && hasAttr(setter.attribute)) {
            TARV_TRY(setter.function(*this, nullptr));
        }
    }
    return nullptr;
}

/// What is set before the view has its place waits for init.
bool CViewBasePlacement::isPlaced() {
    isSetEarly_ = isSetEarly_ || !area_;
    return hasArea();
}

/// A child of a view that a number of ancestors do not clip escapes the same ones.
void CViewBasePlacement::inheritUnclipLevel() {
    const int32_t level = parentPlacement_ ? parentPlacement_->area().unclipLevel() : 0;
    if (level != 0 && getAttrString("unclip-level").isEmpty()) {
        area_->setUnclipLevel(level > 0 ? level + 1 : level);
    }
}

int64_t CViewBasePlacement::computeStackingNumber() {
    const CString text(getAttrString("z-index"));
    const int32_t blank = text.indexOf(' ');
    const int32_t own = CString::toInt(blank < 0 ? text : text.substring(0, blank));
    if (parentPlacement_) {
        ++parentPlacement_->childrenMade_;
    }
    if (blank >= 0) {
        const CString path = text.substring(blank + 1);
        if (const auto* target = findObjectOf<CViewBasePlacement>(path)) {
            return target->stackingNumber() + own;
        }
        logLineIn(CString("Z-index target not found: ") + path, fullName());
    }
    if (!parentPlacement_) {
        return own;
    }
    const char* attribute = isDynamic_ ? "z-index-dynamic-childs" : "z-index-static-childs";
    const CString& base = parentPlacement_->getAttrString(attribute);
    int64_t number = own + (base.isEmpty() ? parentPlacement_->stackingNumber() : CString::toInt(base));
    number += parentPlacement_->childrenMade_ + (isDynamic_ ? kDynamicStep : kStaticStep);
    if (parentPlacement_->isRootView()) {
        number += parentPlacement_->childrenMade_ * kRootStep;
    }
    return number;
}

/// What a view has of its ancestors, here and below: opacity, is-decorative and is-dynamic.
void CViewBasePlacement::updateInherited() {
    const CViewBasePlacement* above = parentPlacement_;
    const double opacity = opacity_ * (above ? above->effectiveOpacity_ : 1.0);
    const bool isDecorative = getAttrBoolOr("is-decorative", isDecorativeByClass() || (above && above->isDecorative_));
    const bool isDynamic =
        (getAttrBool("is-dynamic") || (above && above->isDynamic_)) && !getAttrBool("is-force-non-dynamic");
    const bool isOther = std::abs(opacity - effectiveOpacity_) > kSameOpacity || isDynamic != isDynamic_;
    if (!isOther && isDecorative == isDecorative_) {
        return;
    }
    effectiveOpacity_ = opacity;
    isDecorative_ = isDecorative;
    isDynamic_ = isDynamic;
    if (isOther) {
        requestRedraw();
    }
    for (CObject* child : children()) {
        auto* view = dynamic_cast<CViewBasePlacement*>(child);
        if (view && view->parentPlacement_ == this) {
            view->updateInherited();
        }
    }
}

CError* CViewBasePlacement::attrDecorative() {
    updateInherited();
    return nullptr;
}

CError* CViewBasePlacement::attrDynamic() {
    updateInherited();
    return nullptr;
}

CError* CViewBasePlacement::attrForceNonDynamic() {
    updateInherited();
    return nullptr;
}

CError* CViewBasePlacement::attrOpacity() {
    opacity_ = std::clamp(getAttrRealOr("opacity", 1.0), 0.0, 1.0);
    updateInherited();
    return nullptr;
}

CError* CViewBasePlacement::attrPlacement() {
    const CString& text = getAttrString("placement");
    CViewPlacement placement = CViewPlacement::Inline;
    if (!text.isEmpty() && !parsePlacement(text, placement)) {
        TARV_FAIL("@tarvstr_CViewBasePlacement_attrPlacement_InvalidPlacement Invalid placement '%1'.", text);
    }
    CViewArea* target = nullptr;
    if (placement == CViewPlacement::Match) {
        const CString& path = getAttrString("placement-match");
        const auto* view = findObjectOf<CViewBasePlacement>(path);
        if (!view || view == this || !view->hasArea() || &view->area().root() != &area_->root()) {
            TARV_FAIL("@tarvstr_CViewBasePlacement_attrPlacement_InvalidMatch Invalid match '%1'.", path);
        }
        target = &view->area();
    }
    area_->setMatchTarget(target);
    area_->setPlacement(placement);
    return nullptr;
}

CError* CViewBasePlacement::attrPlacementMatch() {
    return getAttrString("placement") == CString("match") ? attrPlacement() : nullptr;
}

void CViewBasePlacement::readBorders(const char* attribute, bool isRounded,
                                     void (CViewArea::*setter)(const CViewBorders&)) {
    (*area_.*setter)(parseBorders(getAttrString(attribute), CApplication::uiScale(), isRounded));
}

CError* CViewBasePlacement::attrOuterBorder() {
    readBorders("outer-border", true, &CViewArea::setOuterBorders);
    return nullptr;
}

CError* CViewBasePlacement::attrInnerBorder() {
    readBorders("inner-border", true, &CViewArea::setInnerBorders);
    return nullptr;
}

CError* CViewBasePlacement::attrSpread() {
    readBorders("spread", false, &CViewArea::setSpread);
    return nullptr;
}

void CViewBasePlacement::readLength(const char* attribute, const char* fallback,
                                    void (CViewArea::*setter)(const CViewLength&)) {
    const CString& text = getAttrString(attribute);
    (*area_.*setter)(parseLength(text.isEmpty() ? CString(fallback) : text, CApplication::uiScale()));
}

CError* CViewBasePlacement::attrMinWidth() {
    readLength("min-width", "0", &CViewArea::setMinWidth);
    return nullptr;
}

CError* CViewBasePlacement::attrMinHeight() {
    readLength("min-height", "0", &CViewArea::setMinHeight);
    return nullptr;
}

CError* CViewBasePlacement::attrWidth() {
    readLength("width", "compact", &CViewArea::setWidth);
    return nullptr;
}

CError* CViewBasePlacement::attrHeight() {
    readLength("height", "compact", &CViewArea::setHeight);
    return nullptr;
}

CError* CViewBasePlacement::attrCompactWidth() {
    if (!getAttrString("compact-width").isEmpty()) {
        readReal("compact-width", 0.0, CApplication::uiScale(), &CViewArea::setCompactWidth);
    }
    return nullptr;
}

CError* CViewBasePlacement::attrCompactHeight() {
    if (!getAttrString("compact-height").isEmpty()) {
        readReal("compact-height", 0.0, CApplication::uiScale(), &CViewArea::setCompactHeight);
    }
    return nullptr;
}

CError* CViewBasePlacement::readAlignment(const char* attribute, const char* low, const char* high, const char* message,
                                          void (CViewArea::*setter)(int32_t)) {
    const CString& text = getAttrString(attribute);
    int32_t alignment = 0;
    if (!text.isEmpty() && !parseAlignment(text, low, high, alignment)) {
        TARV_FAIL(message, text);
    }
    (*area_.*setter)(alignment);
    return nullptr;
}

CError* CViewBasePlacement::attrAlignmentH() {
    return readAlignment("alignment-h", "left", "right",
                         "@tarvstr_CViewBasePlacement_attrAlignmentH_InvalidAlignmentH Invalid alignment-h '%1'.",
                         &CViewArea::setAlignmentH);
}

CError* CViewBasePlacement::attrAlignmentV() {
    return readAlignment("alignment-v", "top", "bottom",
                         "@tarvstr_CViewBasePlacement_attrAlignmentV_InvalidAlignmentV Invalid alignment-v '%1'.",
                         &CViewArea::setAlignmentV);
}

CError* CViewBasePlacement::attrInlineAlignmentH() {
    return readAlignment(
        "inline-alignment-h", "left", "right",
        "@tarvstr_CViewBasePlacement_attrInlineAlignmentH_InvalidAlignment Invalid inline-alignment-h '%1'.",
        &CViewArea::setInlineAlignmentH);
}

CError* CViewBasePlacement::attrInlineAlignmentV() {
    return readAlignment(
        "inline-alignment-v", "top", "bottom",
        "@tarvstr_CViewBasePlacement_attrInlineAlignmentV_InvalidAlignment Invalid inline-alignment-v '%1'.",
        &CViewArea::setInlineAlignmentV);
}

CError* CViewBasePlacement::attrInlineVertical() {
    area_->setInlineVertical(getAttrBool("is-inline-vertical"));
    return nullptr;
}

CError* CViewBasePlacement::attrNewInlineRow() {
    area_->setNewInlineRow(getAttrBool("is-new-inline-row"));
    return nullptr;
}

CError* CViewBasePlacement::attrVisible() {
    const bool wasShown = isShown();
    area_->setVisible(getAttrBoolOr("is-visible", true));
    if (wasShown && !isShown() && window() && window()->input()) {
        window()->input()->viewsChanged();
    }
    return nullptr;
}

CError* CViewBasePlacement::attrUnclipLevel() {
    area_->setUnclipLevel(getAttrInt("unclip-level"));
    return nullptr;
}

void CViewBasePlacement::readReal(const char* attribute, double fallback, double scale,
                                  void (CViewArea::*setter)(double)) {
    (*area_.*setter)(getAttrRealOr(attribute, fallback) * scale);
}

CError* CViewBasePlacement::attrScrollerWidth() {
    readReal("scroller-width", 0.0, CApplication::uiScale(), &CViewArea::setScrollerWidth);
    return nullptr;
}

CError* CViewBasePlacement::attrScrollerHeight() {
    readReal("scroller-height", 0.0, CApplication::uiScale(), &CViewArea::setScrollerHeight);
    return nullptr;
}

CError* CViewBasePlacement::attrMinRatioX() {
    readReal("min-ratio-x", kLeastRatio, 1.0, &CViewArea::setMinRatioX);
    return nullptr;
}

CError* CViewBasePlacement::attrMinRatioY() {
    readReal("min-ratio-y", kLeastRatio, 1.0, &CViewArea::setMinRatioY);
    return nullptr;
}

CError* CViewBasePlacement::attrRatioX() {
    readReal("ratio-x", 1.0, 1.0, &CViewArea::setRatioX);
    return nullptr;
}

CError* CViewBasePlacement::attrRatioY() {
    readReal("ratio-y", 1.0, 1.0, &CViewArea::setRatioY);
    return nullptr;
}

CError* CViewBasePlacement::attrOffsetX() {
    readReal("offset-x", 0.0, 1.0, &CViewArea::setOffsetX);
    return nullptr;
}

CError* CViewBasePlacement::attrOffsetY() {
    readReal("offset-y", 0.0, 1.0, &CViewArea::setOffsetY);
    return nullptr;
}

}  // namespace tarv
