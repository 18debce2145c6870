// What stands on and beside a surface: hairlines, numbers, rulers.

#include <algorithm>
#include <cmath>

#include "Core/CApplication.h"
#include "Core/CNotifyServer.h"
#include "Core/CObjectWatch.h"
#include "UI/Controls/Surface/CControlSurface.h"
#include "UI/Controls/Surface/CRuler.h"

namespace tarv {

namespace {

// Of the number of a plain point, at scale 1.0.
constexpr double kNumberWidth = 24.0;
// Ticks of the timer in which rulers are looked for that do not stand yet.
constexpr int32_t kRulerTries = 10;

}  // namespace

CError* CControlSurface::hairlinesChanged() {
    if (!isFinished_) {
        return nullptr;
    }
    CObject* lines = findChild("hairlines");
    if (!getAttrBool("is-show-hairlines")) {
        delete lines;
        return nullptr;
    }
    CView* made = nullptr;
    if (!lines) {
        if (!findTemplate("ui:control-surface-hairlines")) {
            TARV_FAIL("@tarvstr_CControlSurface_hairlinesChanged_NoHairlines Unable to create hairlines object");
        }
        TARV_TRY(createChildOf(made, "ui:control-surface-hairlines", "hairlines", true));
    }
    return nullptr;
}

CError* CControlSurface::hairlinesUpdate(CAttributeMap& params) {
    auto* ruler = findObjectOf<CRuler>(params["sender"].asString());
    if (ruler) {
        setLines(*ruler, ruler->lines());
    }
    return nullptr;
}

void CControlSurface::setLines(const CRuler& ruler, const CSurfaceLines& lines) {
    for (int32_t i = lines_.count() - 1; i >= 0; --i) {
        if (lines_[i].ruler == &ruler) {
            lines_.removeAt(i);
        }
    }
    if (!lines.values.isEmpty()) {
        lines_.append({&ruler, lines});
    }
    if (auto* view = dynamic_cast<CView*>(findChild("hairlines"))) {
        view->requestRedraw();
    }
}

CError* CControlSurface::numbersChanged() {
    return isFinished_ ? makeNumbers() : nullptr;
}

/// One for each point of the group that takes the mouse, kept as long as there are as many.
CError* CControlSurface::makeNumbers() {
    const bool isShown = getAttrBool("is-point-number-shown");
    const int32_t count = isShown && editable_ ? editable_->count() : 0;
    while (numbers_.count() > count) {
        CView* last = numbers_.last();
        numbers_.removeLast();
        delete last;
    }
    while (numbers_.count() < count) {
        CAttributeMap attributes;
        attributes["title"] = CAttributeValue::fromString(CString::fromInt(numbers_.count() + 1));
        CView* number = nullptr;
        TARV_TRY(createChildOf(number, "ui:control-surface-point-num", "point-num", true, &attributes));
        numbers_.append(number);
    }
    placeNumbers();
    return nullptr;
}

/// In its column at the top of the range; of a plain point, below it.
void CControlSurface::placeNumbers() {
    if (numbers_.isEmpty() || !editable_ || !hasArea()) {
        return;
    }
    const CSurfaceLayout layout = layoutOf(*editable_);
    const CViewRect& box = areaRect(kBoxArea);
    const auto width = static_cast<int32_t>(std::lround(kNumberWidth * CApplication::uiScale()));
    for (int32_t i = 0; i < std::min(numbers_.count(), editable_->count()); ++i) {
        const CIntRect column = layout.column(i);
        const CSurfacePlace place = placeOf(*editable_, i);
        const double left = isSliderMode_ ? column.left : std::round(place.x) - width / 2;
        const double top = isSliderMode_ ? layout.pit(i).top : std::round(place.y) + width / 2;
        CViewArea& area = numbers_[i]->area();
        area.setWidth({CViewLengthMode::Fixed, static_cast<double>(isSliderMode_ ? column.width() : width)});
        area.setOuterBorders({0.0, left - box.x, 0.0, top - box.y});
    }
}

void CControlSurface::removeChild(CObject* child) {
    CView::removeChild(child);
    cursor_ = static_cast<const CObject*>(cursor_) == child ? nullptr : cursor_;
    for (int32_t i = numbers_.count() - 1; i >= 0; --i) {
        // The other way round it would be a cast of what is no view any more.
        if (static_cast<const CObject*>(numbers_[i]) == child) {
            numbers_.removeAt(i);
        }
    }
}

/// Those of the list that stand now; a ruler leaves it when it goes.
void CControlSurface::findRulers() {
    if (areRulersFound_) {
        return;
    }
    areRulersFound_ = true;
    for (const CString& path : getAttrString("ruler").split(' ')) {
        auto* ruler = path.isEmpty() ? nullptr : findObjectOf<CRuler>(path);
        areRulersFound_ = areRulersFound_ && (ruler || path.isEmpty());
        if (ruler && rulers_.indexOf(ruler) < 0) {
            rulers_.append(ruler);
            ruler->surfaceJoined(*this);
        }
    }
}

CError* CControlSurface::rulersChanged() {
    rulers_.clear();
    areRulersFound_ = false;
    rulerTries_ = 0;
    if (isFinished_) {
        findRulers();
        readMargins();
    }
    return viewUpdated();
}

/// True if others are needed now: the greatest of all rulers in a direction.
bool CControlSurface::readMargins() {
    int32_t x = 0;
    int32_t y = 0;
    for (int32_t i = 0; isUsingMargins_ && i < rulers_.count(); ++i) {
        int32_t& margin = rulers_[i]->isVertical() ? y : x;
        margin = std::max(margin, rulers_[i]->margin());
    }
    const bool isOther = x != marginX_ || y != marginY_;
    marginX_ = x;
    marginY_ = y;
    return isOther;
}

/// Rulers may be made later than this view, and their labels may become larger.
CError* CControlSurface::followRulers() {
    if (!areRulersFound_ && rulerTries_ < kRulerTries) {
        ++rulerTries_;
        findRulers();
    }
    return readMargins() ? viewUpdated() : nullptr;
}

void CControlSurface::rulerJoined(CRuler& ruler) {
    joined_.append(&ruler);
}

void CControlSurface::rulerGone(const CRuler& ruler) {
    areRulersFound_ = false;
    rulerTries_ = 0;
    for (CArray<CRuler*, 4>* list : {&rulers_, &joined_}) {
        for (int32_t i = list->count() - 1; i >= 0; --i) {
            if ((*list)[i] == &ruler) {
                list->removeAt(i);
            }
        }
    }
    setLines(ruler, {});
}

/// Rulers follow by the event; their labels stand by the columns and the axes.
CError* CControlSurface::notifyRulers() {
    static const CString kEvent("ruled-view-update");
    if (!notifyServer() || !notifyServer()->hasListeners(fullName(), kEvent)) {
        return nullptr;
    }
    CAttributeMap none;
    return sendEvent(kEvent, none, false);
}

}  // namespace tarv
