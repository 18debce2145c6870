// The scale beside a view: what it rules, and where its ticks are.

#include "UI/Controls/Surface/CRuler.h"

#include <algorithm>
#include <cmath>

#include "Core/CApplication.h"
#include "Core/CObjectWatch.h"
#include "UI/Binding/CMinMax.h"
#include "UI/Controls/Surface/CControlSurface.h"
#include "UI/Controls/Surface/CRulerScale.h"

namespace tarv {

namespace {

constexpr double kStepMajor = 6.0;
constexpr double kStepMinor = 3.0;
constexpr double kLabelSize = 13.0;
constexpr double kRulerSize = 25.0;
// Render ticks in which the ruled view is looked for: it may stand behind its rulers.
constexpr int32_t kTries = 10;

constexpr const char* kPlaceChanged = "ruled-view-moved";
constexpr const char* kUpdate = "ruler-update";

constexpr const char* kSources[] = {"min-max",          "titles",       "step-major",        "step-minor",
                                    "is-labels-linear", "label-format", "is-show-hairlines", "is-hairline-inward",
                                    "is-show-labels",   "label-shift",  "label-size",        "ruled-view",
                                    "label-gap"};
constexpr const char* kLabelSources[] = {
    "label-tag",      "label-text-align", "label-unclip-level", "bridge",
    "group-selector", "tab-group",        "accept-chars",       "virtual-keyboard-minus-char"};

}  // namespace

CRuler::~CRuler() {
    endInput();
    for (CControlSurface* surface : surfaces_) {
        surface->rulerGone(*this);
    }
    // Labels leave it one by one.
    destroyChildren();
}

CError* CRuler::initClass(CClassDescriptor& descriptor) {
    for (const char* name : kSources) {
        descriptor.addHandler<&CRuler::sourcesChanged>(name);
    }
    for (const char* name : kLabelSources) {
        descriptor.addHandler<&CRuler::labelsChanged>(name);
    }
    descriptor.addHandler<&CRuler::sizeChanged>("ruler-size");
    descriptor.addHandler<&CRuler::update>(kUpdate);
    descriptor.addHandler<&CRuler::placeChanged>(kPlaceChanged);
    return CView::initClass(descriptor);
}

CError* CRuler::init() {
    TARV_TRY(CView::init());
    return attrPlacement();
}

CError* CRuler::finishInit() {
    TARV_TRY(CView::finishInit());
    isFinished_ = true;
    startTimer();
    return sourcesChanged();
}

CError* CRuler::attrPlacement() {
    TARV_TRY(CView::attrPlacement());
    const CViewPlacement placement = hasArea() ? area().placement() : CViewPlacement::Top;
    side_ = placement == CViewPlacement::Left     ? CSide::Left
            : placement == CViewPlacement::Right  ? CSide::Right
            : placement == CViewPlacement::Bottom ? CSide::Below
                                                  : CSide::Above;
    TARV_TRY(attrWidth());
    return attrHeight();
}

/// Its thickness is `ruler-size`; without a length it is as long as there is room.
CError* CRuler::attrWidth() {
    TARV_TRY(CView::attrWidth());
    if (!hasArea()) {
        return nullptr;
    }
    if (isVertical()) {
        const double size = getAttrRealOr("ruler-size", kRulerSize) * CApplication::uiScale();
        area().setWidth({CViewLengthMode::Fixed, std::floor(std::max(size, 0.0))});
    } else if (!hasAttr("width")) {
        area().setWidth({CViewLengthMode::Percentage, 1.0});
    }
    return nullptr;
}

CError* CRuler::attrHeight() {
    TARV_TRY(CView::attrHeight());
    if (!hasArea()) {
        return nullptr;
    }
    if (!isVertical()) {
        const double size = getAttrRealOr("ruler-size", kRulerSize) * CApplication::uiScale();
        area().setHeight({CViewLengthMode::Fixed, std::floor(std::max(size, 0.0))});
    } else if (!hasAttr("height")) {
        area().setHeight({CViewLengthMode::Percentage, 1.0});
    }
    return nullptr;
}

CError* CRuler::sourcesChanged() {
    if (!isFinished_) {
        return nullptr;
    }
    const CString& path = getAttrString("min-max");
    minMax_ = path.isEmpty() ? nullptr : findObjectOf<CMinMax>(path);
    if (!minMax_ && !path.isEmpty()) {
        TARV_FAIL("@tarvstr_CRuler_sourcesChanged_NoMinMax Unable to locate min-max object '%1'.", path);
    }
    if (minMax_) {
        listenObject(minMax_->fullName(), CMinMax::kUpdateEvent, kUpdate);
    }
    isBound_ = false;
    TARV_TRY(bind());
    return update();
}

CError* CRuler::sizeChanged() {
    TARV_TRY(attrWidth());
    return attrHeight();
}

CError* CRuler::labelsChanged() {
    if (isFinished_ && !cutLabels(0)) {
        return nullptr;
    }
    readoutForm_ = {};
    return update();
}

/// The ruled view may not be there yet: then it is looked for at render ticks.
CError* CRuler::bind() {
    CObject* titles = getAttrString("titles").isEmpty() ? nullptr : findObject(getAttrString("titles"));
    if (titles) {
        listenObject(titles->fullName(), "values-changed", kUpdate);
        listenObject(titles->fullName(), "titles-update", kUpdate);
    }
    const CView* ruled = ruledView();
    const bool isMissing = !ruled && !getAttrString("ruled-view").isEmpty();
    if (ruled) {
        listenObject(ruled->fullName(), "ruled-view-update", kPlaceChanged);
        listenObject(ruled->fullName(), "view-area-update", kPlaceChanged);
    }
    isBound_ = !isMissing && (titles || getAttrString("titles").isEmpty());
    if (!isBound_) {
        tries_ = 0;
        startTimer();
    }
    return nullptr;
}

bool CRuler::animate(double now) {
    if (isFinished_ && !isBound_ && tries_ < kTries) {
        ++tries_;
        const int32_t tries = tries_;
        const CObjectWatch watch(*this);
        CError* error = bind();
        error = !error && isBound_ ? update() : error;
        logError(error);
        if (!watch.isAlive()) {
            return true;
        }
        tries_ = tries;
    }
    const bool isFollowing = hasReadouts() && isInColumns();
    const CObjectWatch watch(*this);
    if (isFollowing) {
        followReadouts();
    }
    const bool isMoving = !watch.isAlive() || CView::animate(now);
    return !watch.isAlive() || isMoving || isFollowing || (!isBound_ && tries_ < kTries);
}

CView* CRuler::ruledView() const {
    const CString& path = getAttrString("ruled-view");
    return path.isEmpty() ? nullptr : findObjectOf<CView>(path);
}

CIntRect CRuler::box() const {
    const CViewRect& rect = areaRect(kBoxArea);
    const auto pixel = [](double position) { return static_cast<int32_t>(std::lround(position)); };
    return {pixel(rect.x), pixel(rect.y), pixel(rect.right()), pixel(rect.bottom())};
}

/// Columns and range of what is ruled; without a view, of the ruler itself.
CSurfaceLayout CRuler::layout() const {
    const CView* ruled = ruledView();
    if (const auto* surface = dynamic_cast<const CControlSurface*>(ruled)) {
        const CSurfaceLayout columns = surface->layout();
        const bool isSame = isInColumns() ? columns.isVertical() != isVertical() && columns.count() == labels_.count()
                                          : columns.isVertical() == isVertical();
        if (isSame) {
            return columns;
        }
        return CSurfaceLayout(columns.box(), isInColumns() != isVertical(), labels_.count(), false, 1.0);
    }
    const CViewRect rect = ruled && ruled->hasArea() ? ruled->area().box() : areaRect(kBoxArea);
    const auto pixel = [](double position) { return static_cast<int32_t>(std::lround(position)); };
    const CIntRect whole{pixel(rect.x), pixel(rect.y), pixel(rect.right()), pixel(rect.bottom())};
    return CSurfaceLayout(whole, isInColumns() != isVertical(), labels_.count(), false, 1.0);
}

bool CRuler::isInColumns() const {
    return !getAttrString("titles").isEmpty() && (getAttrBool("is-labels-linear") || !minMax_);
}

int32_t CRuler::margin() const {
    const double size = getAttrRealOr("label-size", kLabelSize) * CApplication::uiScale();
    return isInColumns() || !getAttrBoolOr("is-show-labels", true) ? 0 : static_cast<int32_t>(std::ceil(size / 2.0));
}

CError* CRuler::update() {
    if (!isFinished_) {
        return nullptr;
    }
    values_.clear();
    minors_.clear();
    if (minMax_) {
        CRulerScale::multiples(minMax_->lowest(), minMax_->highest(), getAttrRealOr("step-major", kStepMajor), values_);
        CRulerScale::multiples(minMax_->lowest(), minMax_->highest(), getAttrRealOr("step-minor", kStepMinor), minors_);
    }
    const CObjectWatch watch(*this);
    CError* error = readTexts();
    error = error || !watch.isAlive() ? error : updateLabels();
    error = error || !watch.isAlive() ? error : updateLines();
    if (!error && watch.isAlive()) {
        requestRedraw();
    }
    return error;
}

/// The lines go with the event, so that each view can follow it; a surface takes them from here.
CError* CRuler::updateLines() {
    CSurfaceLines lines;
    lines.isVertical = !isVertical();
    if (getAttrBoolOr("is-show-hairlines", true) && getAttrBoolOr("is-hairline-inward", true) && minMax_) {
        lines.values = values_;
    }
    CView* ruled = ruledView();
    const bool hasLines = !lines.values.isEmpty() || !lines_.values.isEmpty();
    lines_ = lines;
    if (!ruled || !hasLines) {
        return nullptr;
    }
    if (auto* surface = dynamic_cast<CControlSurface*>(ruled)) {
        surfaceJoined(*surface);
    }
    static const CString kEvent("hairlines-update");
    CAttributeMap params;
    params["sender"] = CAttributeValue::fromString(fullName());
    return deliverEvent(*ruled, kEvent, params);
}

CError* CRuler::placeChanged() {
    if (isFinished_) {
        placeLabels();
        requestRedraw();
    }
    return nullptr;
}

CError* CRuler::onAreaChanged(const CViewRect& visibleRect, const CViewRect& wholeRect) {
    const CObjectWatch watch(*this);
    TARV_TRY(CView::onAreaChanged(visibleRect, wholeRect));
    return watch.isAlive() ? placeChanged() : nullptr;
}

void CRuler::surfaceJoined(CControlSurface& surface) {
    if (surfaces_.indexOf(&surface) < 0) {
        surfaces_.append(&surface);
        surface.rulerJoined(*this);
    }
}

void CRuler::surfaceGone(CControlSurface& surface) {
    const int32_t index = surfaces_.indexOf(&surface);
    if (index >= 0) {
        surfaces_.removeAt(index);
    }
}

void CRuler::setHovered(CControlSurface&, int32_t point) {
    if (point != hovered_) {
        hovered_ = point;
        markHovered();
    }
}

void CRuler::imageRangeChanged() {
    static constexpr const char* kNames[kTicks] = {"", "Minor", "Zero"};
    for (int32_t i = 0; i < kTicks; ++i) {
        uint32_t first = 0;
        uint32_t last = 0;
        const bool isFound = imageSet() && imageSet()->findRange(kNames[i], first, last);
        const uint32_t index = first + static_cast<uint32_t>(side_);
        ticks_[i] = isFound && index <= last ? imageSet()->getImage(index) : nullptr;
    }
}

/// Pixels of the longest tick that has a label, without what its picture leaves free.
int32_t CRuler::tickLength() const {
    int32_t longest = 0;
    for (const CTick kind : {Major, Zero}) {
        if (ticks_[kind] && minMax_) {
            const CImageVersion& version = ticks_[kind]->layer(0).version();
            longest = std::max(longest, isVertical() ? version.storedWidth() : version.storedHeight());
        }
    }
    return longest;
}

CError* CRuler::draw() {
    if (isInColumns() || !minMax_) {
        return nullptr;
    }
    const CSurfaceLayout layout = this->layout();
    for (const double value : minors_) {
        drawTick(value, layout);
    }
    for (const double value : values_) {
        drawTick(value, layout);
    }
    return nullptr;
}

void CRuler::drawTick(double value, const CSurfaceLayout& layout) {
    const double major = getAttrRealOr("step-major", kStepMajor);
    const CTick kind = value == 0.0 ? Zero : CRulerScale::isMultiple(value, major) ? Major : Minor;
    const CImage* image = ticks_[kind];
    const CColor* color = this->color(0);
    if (!image || !color) {
        return;
    }
    const CIntRect whole = box();
    const int32_t along = layout.linePixel(minMax_->position(value));
    const int32_t x = side_ == CSide::Left    ? whole.right - image->getWidth()
                      : side_ == CSide::Right ? whole.left
                                              : along;
    const int32_t y = side_ == CSide::Above   ? whole.bottom - image->getHeight()
                      : side_ == CSide::Below ? whole.top
                                              : along;
    for (int32_t i = 0; i < image->layerCount(); ++i) {
        drawImageLayer(image->layer(i), x, y, kWholeArea, *color, 1.0, false);
    }
    if (kind != Minor && getAttrBoolOr("is-show-hairlines", true) && !getAttrBoolOr("is-hairline-inward", true)) {
        const CIntRect line = isVertical() ? CIntRect{whole.left, along, whole.right, along + 1}
                                           : CIntRect{along, whole.top, along + 1, whole.bottom};
        target().bitmap->fillRect(line.moved(-target().originX, -target().originY).intersection(target().clip), *color,
                                  1.0);
    }
}

}  // namespace tarv
