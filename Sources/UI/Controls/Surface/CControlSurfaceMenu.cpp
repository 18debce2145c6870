// What a right press opens: the rows of a value list, or a short menu.

#include <algorithm>
#include <cmath>

#include "Audio/Client/CAudioInterfaceClient.h"
#include "Core/CGlobalSettings.h"
#include "Core/CObjectWatch.h"
#include "Platform/Clock.h"
#include "UI/Binding/CParamBridge.h"
#include "UI/Binding/CUIParam.h"
#include "UI/Controls/Lists/CValueList.h"
#include "UI/Controls/Surface/CControlSurface.h"
#include "UI/Controls/Surface/CRuler.h"
#include "UI/Text/CPopupList.h"
#include "UI/Views/CViewReading.h"
#include "UI/Windows/CWindow.h"

namespace tarv {

namespace {

constexpr const char* kClientPath = "ui.interface-client";
/// Seconds; a busy system takes its time.
constexpr double kKeysReturn = 2.0;
constexpr const char* kTypeRow = "type";
constexpr const char* kResetRow = "reset";
constexpr const char* kResetAllRow = "reset-all";
constexpr const char* kCopyRow = "copy";

}  // namespace

CError* CControlSurface::mousePressR(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    const CSurfacePointer pointer = CSurfacePointer::of(params);
    TARV_TRY(CView::mousePressR(params));
    const int32_t point = watch.isAlive() ? pointAt(pointer.x, pointer.y) : -1;
    if (point < 0) {
        return nullptr;
    }
    menuPoint_ = point;
    TARV_TRY(markMenuPoint());
    if (!watch.isAlive()) {
        return nullptr;
    }
    const bool hasList = editable_->param(CRole::Popup) != nullptr;
    CObject* list = hasList ? editable_->findChild("value-list") : this;
    if (!list) {
        TARV_FAIL("@tarvstr_CControlSurface_mousePressR_NoValueList Control surface popup value list not found");
    }
    CAttributeMap popup;
    popup["actual-x"] = CAttributeValue::fromReal(pointer.x);
    popup["actual-y"] = CAttributeValue::fromReal(pointer.y);
    popup["is-manual-coords"] = CAttributeValue::fromBool(true);
    popup["is-popup-toggle-always-create"] = CAttributeValue::fromBool(true);
    popup["shift-x"] = CAttributeValue::fromReal(1.0);
    popup["shift-y"] = CAttributeValue::fromReal(1.0);
    popup["popup-text-source"] = CAttributeValue::fromString(list->fullName());
    if (hasList) {
        const double selected = editable_->paramValue(CRole::Popup, point);
        const CValueList* values = popupValues();
        const int32_t row = values ? values->indexOf(selected) : static_cast<int32_t>(std::lround(selected));
        popup["selected-item"] = CAttributeValue::fromInt(row);
    }
    if (hasAttr("popup-inner-border")) {
        popup["popup-inner-border"] = CAttributeValue::fromString(getAttrString("popup-inner-border"));
    }
    menuMark_ = CMenuMark::Open;
    CError* error = CPopupList::open(*this, *this, popup);
    auto* shown = watch.isAlive() ? dynamic_cast<CWindow*>(window()) : nullptr;
    if (shown && !shown->popups().popupOf(*this)) {
        menuMark_ = CMenuMark::None;
    }
    return error;
}

/// The menu takes the keys, and the system gives them back some time behind its end: its column stays marked meanwhile.
CError* CControlSurface::inputEvent(const CString& name, CAttributeMap& params) {
    if (menuMark_ == CMenuMark::Open && name == CString("popup-closed")) {
        menuMark_ = CMenuMark::Closed;
        menuEnd_ = clockSeconds() + kKeysReturn;
        startTimer();
    }
    return CView::inputEvent(name, params);
}

/// No column stays marked if the keys have gone elsewhere.
bool CControlSurface::animate(double now) {
    const CObjectWatch watch(*this);
    if (menuMark_ == CMenuMark::Closed) {
        const CViewBase* const taker = window() ? window()->keyFocusView() : nullptr;
        if (taker || clockSeconds() >= menuEnd_) {
            menuMark_ = CMenuMark::None;
            TARV_CONSUME(taker == this ? nullptr : select(-1));
        }
    }
    return !watch.isAlive() || CView::animate(now) || menuMark_ == CMenuMark::Closed;
}

/// The column that the menu acts on is the one that is marked: for the pointer, and for keys if they go here.
CError* CControlSurface::markMenuPoint() {
    const CObjectWatch watch(*this);
    if (!globalSettings().isTabletMode) {
        TARV_TRY(setHovered(menuPoint_));
    }
    const bool hasKeys = watch.isAlive() && window() && window()->keyFocusView() == this;
    return hasKeys ? select(menuPoint_) : nullptr;
}

/// The items behind the rows of the popup; null where its rows are mere texts, whose value is their index.
const CValueList* CControlSurface::popupValues() const {
    return dynamic_cast<const CValueList*>(editable_->findChild("value-list"));
}

/// The group that the curve can be copied to: that of the linked list.
const CUIParam* CControlSurface::copyTarget() const {
    const CControlSurfaceGroup* linked = editable_ ? groupNamed(editable_->linkedGroup()) : nullptr;
    const CUIParam* source = editable_ ? editable_->param(editable_->barRole()) : nullptr;
    const CUIParam* target = linked ? linked->param(linked->barRole()) : nullptr;
    const bool isOther =
        source && target && source->bridge() && source->bridge() == target->bridge() &&
        source->bridge()->storedGroup(source->group()) != source->bridge()->storedGroup(target->group());
    return isOther ? target : nullptr;
}

CRuler* CControlSurface::typingRuler(int32_t point) {
    findRulers();
    for (CRuler* ruler : rulers_) {
        if (ruler->isEditable(point)) {
            return ruler;
        }
    }
    return nullptr;
}

CError* CControlSurface::generateSubList(const CString&, CDynamicListRows& rows) {
    if (typingRuler(menuPoint_)) {
        rows.add("Type a value", kTypeRow);
    }
    rows.add("Reset", kResetRow);
    if (editable_ && editable_->count() > 1) {
        rows.add("Reset all", kResetAllRow);
    }
    if (const CUIParam* target = copyTarget()) {
        const auto* client = findObjectOf<CAudioInterfaceClient>(kClientPath);
        const CString name = client ? client->groupName(target->group()) : CString::fromInt(target->group() + 1);
        rows.add(CString("Copy to group ") + CViewReader::withMarks(name), kCopyRow);
    }
    return nullptr;
}

CError* CControlSurface::popupResult(CAttributeMap& params) {
    const bool isThere = editable_ && editable_->isActive() && menuPoint_ >= 0 && menuPoint_ < editable_->count();
    if (!isThere) {
        return nullptr;
    }
    if (editable_->param(CRole::Popup)) {
        return setPopupValue(params["index"].asInt());
    }
    const CString& id = params["id"].asString();
    if (id == CString(kTypeRow)) {
        CRuler* ruler = typingRuler(menuPoint_);
        return ruler ? ruler->edit(menuPoint_) : nullptr;
    }
    if (id == CString(kResetRow)) {
        return resetPoints(menuPoint_, 1);
    }
    if (id == CString(kResetAllRow)) {
        return resetPoints(0, editable_->count());
    }
    return id == CString(kCopyRow) ? copyToLinked() : nullptr;
}

CError* CControlSurface::setPopupValue(int32_t row) {
    const CValueList* values = popupValues();
    if (row < 0 || (values && row >= values->count())) {
        return nullptr;
    }
    const double value = values ? (*values)[row].value : row;
    const CObjectWatch watch(*this);
    CError* error = gesture_.begin();
    error = error || !watch.isAlive() ? error : gesture_.write(*editable_->param(CRole::Popup), value, menuPoint_);
    return error || !watch.isAlive() ? error : gesture_.end();
}

/// By `copy-target`, or else the bars alone.
CError* CControlSurface::copyToLinked() {
    const CUIParam* target = copyTarget();
    if (!target) {
        return nullptr;
    }
    const CString& path = getAttrString("copy-target");
    if (CObject* copier = path.isEmpty() ? nullptr : findObject(path)) {
        CAttributeMap params;
        params["index"] = CAttributeValue::fromInt(target->group());
        return deliverEvent(*copier, "copy-group", params);
    }
    CParamBridge& bridge = *target->bridge();
    const int32_t from = editable_->param(editable_->barRole())->group();
    const int32_t to = target->group();
    const CObjectWatch watch(*this);
    CError* error = gesture_.begin();
    error = error || !watch.isAlive() ? error : bridge.copyGroup(from, to, gesture_.edit(bridge));
    return error || !watch.isAlive() ? error : gesture_.end();
}

}  // namespace tarv
