// An editor of lists of points: its attributes, and what belongs to it.

#include "UI/Controls/Surface/CControlSurface.h"

#include <algorithm>

#include "Core/CGlobalSettings.h"
#include "Core/CObjectWatch.h"
#include "Core/CTimer.h"
#include "Core/Log.h"
#include "UI/Binding/CColorSwatch.h"
#include "UI/Binding/CParamBridge.h"
#include "UI/Binding/CUIParam.h"
#include "UI/Controls/Surface/CRuler.h"
#include "UI/Drawing/CFramePieces.h"

namespace tarv {

namespace {

constexpr double kUpdateFps = 40.0;
constexpr double kPointsAlpha = 0.75;

constexpr const char* kAxisAttributes[] = {"min-max", "min-max-x", "min-max-y", "min-max-y-alt"};
constexpr const char* kSettings[] = {"is-slider-mode", "control-points-alpha", "is-use-margins", "editable-group"};
constexpr const char* kBarsAlpha = "control-bars-alpha";
constexpr const char* kCursorLook[] = {"curpos-alignment", "curpos-active-color", "curpos-show-labels",
                                       "curpos-show-values"};
constexpr const char* kAxisUpdate = "axis-update";
constexpr const char* kTimerTick = "update-tick";

}  // namespace

CControlSurface::~CControlSurface() {
    endInput();
    isFinished_ = false;
    for (CRuler* ruler : joined_) {
        ruler->surfaceGone(*this);
    }
    // Groups leave it one by one.
    destroyChildren();
}

CError* CControlSurface::initClass(CClassDescriptor& descriptor) {
    for (const char* name : kAxisAttributes) {
        descriptor.addHandler<&CControlSurface::axesChanged>(name);
    }
    for (const char* name : kSettings) {
        descriptor.addHandler<&CControlSurface::settingsChanged>(name);
    }
    descriptor.addHandler<&CControlSurface::barsAlphaChanged>(kBarsAlpha);
    descriptor.addHandler<&CControlSurface::findSwatch>("color-swatch");
    descriptor.addHandler<&CControlSurface::hairlinesChanged>("is-show-hairlines");
    descriptor.addHandler<&CControlSurface::numbersChanged>("is-point-number-shown");
    for (const char* name : kCursorLook) {
        descriptor.addHandler<&CControlSurface::cursorChanged>(name);
    }
    descriptor.addHandler<&CControlSurface::updateFps>("update-fps");
    descriptor.addHandler<&CControlSurface::rulersChanged>("ruler");
    descriptor.addHandler<&CControlSurface::mappingChanged>(kAxisUpdate);
    descriptor.addHandler<&CControlSurface::timerTick>(kTimerTick);
    descriptor.addHandler<&CControlSurface::hairlinesUpdate>("hairlines-update");
    descriptor.addHandler<&CControlSurface::popupResult>("popup-result");
    return CView::initClass(descriptor);
}

CError* CControlSurface::init() {
    TARV_TRY(CView::init());
    if (!findObjectOf<CGlobalSettings>("ui.global-settings")) {
        TARV_FAIL("@tarvstr_CControlSurface_init_NoGlobalSettings Unable to locate global settings object.");
    }
    // The set has no pictures without a name; the view itself draws none.
    if (!hasAttr("image-set-range")) {
        TARV_TRY(setAttribute("image-set-range", CString("Pit")));
    }
    askForAreaUpdates();
    TARV_TRY(settingsChanged());
    imageRangeChanged();
    return nullptr;
}

CError* CControlSurface::finishInit() {
    TARV_TRY(CView::finishInit());
    isFinished_ = true;
    findEditable();
    findRulers();
    readMargins();
    TARV_TRY(axesChanged());
    TARV_TRY(hairlinesChanged());
    TARV_TRY(numbersChanged());
    TARV_TRY(cursorChanged());
    groupColorsChanged();
    const CObject* timer = findChild("update-timer");
    if (!timer) {
        CAttributeMap attributes;
        attributes["interval"] = CAttributeValue::fromReal(1.0 / kUpdateFps);
        CTimer* made = nullptr;
        TARV_TRY(createChildOf(made, "core:timer", "update-timer", false, &attributes));
        timer = made;
    }
    listenObject(timer->fullName(), "tick", kTimerTick);
    return updateFps();
}

CViewRole CControlSurface::role() const {
    return getAttrString("role").isEmpty() ? CViewRole::Slider : CView::role();
}

/// The texts of the values of the group that takes the mouse.
CString CControlSurface::readableValue() const {
    const CUIParam* param = editable_ ? editable_->param(editable_->barRole()) : nullptr;
    CString texts;
    for (int32_t i = 0; param && param->isActive() && i < editable_->count(); ++i) {
        const CParamBridge* bridge = param->bridge();
        const CString text = bridge ? bridge->valueText(param->group(), param->getElement() + i, CAudioTextMode::Full)
                                    : param->getValueText(CAudioTextMode::Full);
        texts = texts.isEmpty() ? text : texts + ", " + text;
    }
    return texts;
}

CError* CControlSurface::updateFps() {
    CObject* timer = isFinished_ ? findChild("update-timer") : nullptr;
    const double fps = getAttrRealOr("update-fps", kUpdateFps);
    const double interval = 1.0 / (fps > 0.0 ? fps : kUpdateFps);
    return timer && timer->getAttrReal("interval") != interval
               ? timer->setAttribute("interval", CAttributeValue::fromReal(interval))
               : nullptr;
}

CError* CControlSurface::settingsChanged() {
    isSliderMode_ = getAttrBool("is-slider-mode");
    isUsingMargins_ = getAttrBool("is-use-margins");
    pointOpacity_ = getAttrRealOr("control-points-alpha", kPointsAlpha);
    findEditable();
    readMargins();
    return mappingChanged();
}

/// A value stands elsewhere from now on: what a hand holds would jump.
CError* CControlSurface::mappingChanged() {
    const CObjectWatch watch(*this);
    CError* error = dragged_ ? cancelDragOf(*dragged_) : nullptr;
    return error || !watch.isAlive() ? error : viewUpdated();
}

/// Unlike the settings it leaves a drag alone.
CError* CControlSurface::barsAlphaChanged() {
    barOpacity_ = std::clamp(getAttrRealOr(kBarsAlpha, 1.0), 0.0, 1.0);
    if (!isSliderMode_ || !isFinished_ || !hasArea()) {
        requestRedraw();
        return nullptr;
    }
    for (const CControlSurfaceGroup* group : groups_) {
        for (int32_t i = 0; group->isVisible() && i < group->count(); ++i) {
            requestRedraw(shownRect(*group, i));
        }
    }
    return nullptr;
}

CError* CControlSurface::findAxis(const char* attribute, const CMinMax*& found) {
    const CString& path = getAttrString(attribute);
    const CMinMax* former = found;
    found = path.isEmpty() ? nullptr : findObjectOf<CMinMax>(path);
    if (!found && !path.isEmpty()) {
        TARV_FAIL("@tarvstr_CControlSurface_findAxis_NoMinMax Unable to locate min-max object '%1'.", path);
    }
    if (found && found != former) {
        listenObject(found->fullName(), CMinMax::kUpdateEvent, kAxisUpdate);
    }
    return nullptr;
}

CError* CControlSurface::axesChanged() {
    TARV_TRY(findAxis("min-max", minMax_));
    TARV_TRY(findAxis("min-max-x", minMaxX_));
    TARV_TRY(findAxis("min-max-y", minMaxY_));
    TARV_TRY(findAxis("min-max-y-alt", minMaxYAlt_));
    return mappingChanged();
}

/// An axis without its own range has that of what it shows.
void CControlSurface::updateAxes() {
    const CControlSurfaceGroup* shown = editable_ ? editable_ : groups_.isEmpty() ? nullptr : groups_[0];
    double low = 0.0;
    double high = 1.0;
    if (shown) {
        shown->paramRange(CRole::X, low, high);
    }
    const bool isBarAlongX = isSliderMode_ && shown && !shown->isVertical();
    axisX_.set(minMaxX_ ? minMaxX_ : isBarAlongX ? minMax_ : nullptr, low, high);
    if (shown) {
        shown->paramRange(CRole::Y, low, high);
    }
    axisY_.set(minMaxY_ ? minMaxY_ : minMax_, low, high);
}

const CSurfaceAxis& CControlSurface::axis(CControlSurfaceGroup::CRole role) const {
    return role == CRole::X ? axisX_ : axisY_;
}

CError* CControlSurface::viewUpdated() {
    if (!isFinished_) {
        return nullptr;
    }
    updateAxes();
    placeNumbers();
    requestRedraw();
    return notifyRulers();
}

void CControlSurface::findEditable() {
    const CString& name = getAttrString("editable-group");
    editable_ = nullptr;
    for (CControlSurfaceGroup* group : groups_) {
        const bool isMeant = name.isEmpty() || group->name() == name;
        if (isMeant && group->isEditable() && group->isVisible() && !editable_) {
            editable_ = group;
        }
    }
}

CControlSurfaceGroup* CControlSurface::groupNamed(const CString& name) const {
    for (CControlSurfaceGroup* group : groups_) {
        if (!name.isEmpty() && group->name() == name) {
            return group;
        }
    }
    return nullptr;
}

void CControlSurface::groupAdded(CControlSurfaceGroup& group) {
    groups_.append(&group);
}

void CControlSurface::groupGone(CControlSurfaceGroup& group) {
    if (dragged_ == &group) {
        dragged_ = nullptr;
        drag_.stop();
    }
    if (editable_ == &group) {
        hovered_ = -1;
        selected_ = -1;
    }
    // What follows the list may end this view: not while a child of it goes.
    isListStale_ = true;
    groups_.removeAt(groups_.indexOf(&group));
    findEditable();
    groupColorsChanged();
}

/// Objects of points follow them; after a group has gone, the numbers, the rulers and the hovered point do.
CError* CControlSurface::followGroups() {
    const CObjectWatch watch(*this);
    for (int32_t i = 0; i < groups_.count(); ++i) {
        CError* error = groups_[i]->showObjects();
        if (error || !watch.isAlive()) {
            return error;
        }
    }
    if (!isListStale_) {
        return nullptr;
    }
    isListStale_ = false;
    CError* error = makeNumbers();
    error = error || !watch.isAlive() ? error : viewUpdated();
    return error || !watch.isAlive() ? error : showHovered();
}

CError* CControlSurface::groupChanged(CControlSurfaceGroup& group) {
    if (!isFinished_) {
        return nullptr;
    }
    findEditable();
    const CObjectWatch watch(*this);
    const bool isOver = dragged_ && (dragged_ == &group || dragged_ != editable_);
    CError* error = isOver ? cancelDragOf(*dragged_) : nullptr;
    if (error || !watch.isAlive()) {
        return error;
    }
    const int32_t count = editable_ ? editable_->count() : 0;
    selected_ = selected_ < count ? selected_ : -1;
    error = hovered_ >= count ? setHovered(-1) : nullptr;
    if (error || !watch.isAlive()) {
        return error;
    }
    error = makeNumbers();
    return error || !watch.isAlive() ? error : viewUpdated();
}

void CControlSurface::pointMoves(const CControlSurfaceGroup& group, int32_t index) {
    isExportStale_ = isExportStale_ || (&group == editable_ && index == hovered_);
    if (isFinished_ && group.isVisible() && hasArea()) {
        requestRedraw(shownRect(group, index));
        placeNumbers();
    }
}

CError* CControlSurface::findSwatch() {
    const CString& path = getAttrString("color-swatch");
    swatch_ = path.isEmpty() ? nullptr : findObjectOf<CColorSwatch>(path);
    if (!swatch_ && !path.isEmpty()) {
        TARV_FAIL("@tarvstr_CControlSurface_findSwatch_NoSwatch Unable to locate color swatch");
    }
    groupColorsChanged();
    return nullptr;
}

void CControlSurface::groupColorsChanged() {
    if (!isFinished_) {
        return;
    }
    colorNames_.clear();
    for (const CControlSurfaceGroup* group : groups_) {
        const int32_t index = group->colorIndex();
        const CString* name = swatch_ ? swatch_->color(index) : nullptr;
        const bool isKnown = swatch_ ? name != nullptr : index >= 0;
        if (!isKnown) {
            logLine(CString("WRONG COLOR INDEX ") + CString::fromInt(index));
        }
        colorNames_.append(name ? *name : CString("Custom") + CString::fromInt(isKnown ? index + 1 : 1));
    }
    classColorsChanged();
}

int32_t CControlSurface::classColorCount() const {
    return kOwnColors + 2 * colorNames_.count();
}

CString CControlSurface::classColorText(int32_t index) const {
    static constexpr const char* kNames[kOwnColors] = {"CSSliderBarPit", "CSSliderBarPit_Hover", "/CSSelectLine",
                                                       "/CSSelectBG",    "CSSliderBarUnderlay",  "Disabled",
                                                       "CSPointOff"};
    if (index < kOwnColors) {
        return kNames[index];
    }
    const CString& name = colorNames_[(index - kOwnColors) / 2];
    return (index - kOwnColors) % 2 == 0 ? name : name + "_Hover";
}

void CControlSurface::imageRangeChanged() {
    static constexpr const char* kNames[kParts] = {"Pit",          "Bar",    "BarDown",  "BarRight", "Underlay",
                                                   "UnderlayDown", "Select", "SelectBG", "Point",    "Anchor"};
    COverhang most;
    for (int32_t i = 0; i < kParts; ++i) {
        CPartRange& part = parts_[i];
        part.isFound = imageSet() && imageSet()->findRange(kNames[i], part.first, part.last);
        const COverhang over = part.isFound ? CFramePieces(*imageSet(), part.first, part.last).overhang() : COverhang();
        most = {std::max(most.left, over.left), std::max(most.top, over.top), std::max(most.right, over.right),
                std::max(most.bottom, over.bottom)};
    }
    overhang_ = most;
    if (hasArea()) {
        area().setOverhang({static_cast<double>(most.bottom), static_cast<double>(most.left),
                            static_cast<double>(most.right), static_cast<double>(most.top)});
    }
}

CError* CControlSurface::onAreaChanged(const CViewRect& visibleRect, const CViewRect& wholeRect) {
    const CObjectWatch watch(*this);
    TARV_TRY(CView::onAreaChanged(visibleRect, wholeRect));
    if (watch.isAlive()) {
        placeNumbers();
    }
    return nullptr;
}

}  // namespace tarv
