#include "UI/Controls/Buttons/CControlArray.h"

#include <algorithm>
#include <cmath>

#include "Core/CObjectWatch.h"
#include "UI/Binding/CParamBridge.h"
#include "UI/Binding/CUIParam.h"
#include "UI/Controls/Buttons/CButton.h"
#include "UI/Text/CPopupList.h"

namespace tarv {

namespace {

constexpr const char* kParams[] = {"ui-param-count", "ui-param-values", "ui-param-selected-object"};
// However many a parameter or a definition asks for.
constexpr int32_t kMostObjects = 1024;
constexpr int32_t kMaxRounds = 16;

}  // namespace

CControlArray::~CControlArray() {
    endInput();
}

CError* CControlArray::initClass(CClassDescriptor& descriptor) {
    for (const char* name : {"object-count", "max-item-count", "object-color", "object-text-color", "is-hide-reserve",
                             "separator-char", "update-objects"}) {
        descriptor.addHandler<&CControlArray::updateAll>(name);
    }
    for (const char* name : {"object-title-list", "object-value-list"}) {
        descriptor.addHandler<&CControlArray::listsChanged>(name);
    }
    descriptor.addHandler<&CControlArray::widthChanged>("element-width");
    descriptor.addHandler<&CControlArray::statePathChanged>("object-state-path");
    descriptor.addHandler<&CControlArray::objectReleased>("object-released");
    descriptor.addHandler<&CControlArray::popupResult>("popup-result");
    return CView::initClass(descriptor);
}

CError* CControlArray::init() {
    TARV_TRY(CView::init());
    if (getAttrString("object-tag").isEmpty()) {
        TARV_FAIL("@tarvstr_CControlArray_init_NoTag Object tag not defined.");
    }
    return nullptr;
}

CError* CControlArray::finishInit() {
    TARV_TRY(CView::finishInit());
    findParams();
    if (bridge()) {
        listenObject(bridge()->fullName(), "param-change", "update-objects");
    }
    statePath_ = getAttrString("object-state-path");
    return listsChanged();
}

CError* CControlArray::listsChanged() {
    for (const char* name : {"object-value-list", "object-title-list"}) {
        const CValueList* const found = state() == CObjectState::Finished ? list(name) : nullptr;
        if (found) {
            listenObject(found->fullName(), CValueList::kChangedEvent, "update-objects");
        }
    }
    return updateAll();
}

CError* CControlArray::widthChanged() {
    const CString width = getAttrString("element-width");
    const CObjectWatch watch(*this);
    for (int32_t i = 0; i < objects_.count() && !width.isEmpty(); ++i) {
        CError* error = objects_[i]->setAttribute("width", width);
        if (error || !watch.isAlive()) {
            return error;
        }
    }
    return nullptr;
}

/// The views that had the states lose them.
CError* CControlArray::statePathChanged() {
    if (state() != CObjectState::Finished) {
        return nullptr;
    }
    const CObjectWatch watch(*this);
    for (int32_t i = 0; i < objects_.count(); ++i) {
        for (const char* name : {"dimmed", "active"}) {
            CError* error = showState(*objects_[i], name, false);
            if (error || !watch.isAlive()) {
                return error;
            }
        }
    }
    statePath_ = getAttrString("object-state-path");
    return updateAll();
}

void CControlArray::findParams() {
    for (int32_t i = 0; i < kRoleCount; ++i) {
        params_[i] = dynamic_cast<CUIParam*>(findChild(kParams[i]));
    }
}

void CControlArray::removeChild(CObject* child) {
    for (int32_t i = objects_.count() - 1; i >= 0; --i) {
        if (static_cast<CObject*>(objects_[i]) == child) {
            objects_.removeAt(i);
        }
    }
    CView::removeChild(child);
}

CParamBridge* CControlArray::bridge() const {
    return params_[Values] ? params_[Values]->bridge() : nullptr;
}

const CValueList* CControlArray::list(const char* attribute) const {
    const CString& path = getAttrString(attribute);
    return path.isEmpty() ? nullptr : findObjectOf<CValueList>(path);
}

uint16_t CControlArray::separator() const {
    const CString& given = getAttrString("separator-char");
    return given.isEmpty() ? uint16_t{';'} : given.at(0);
}

int32_t CControlArray::wantedCount() const {
    const CUIParam* const counted = params_[Count];
    const CString& titles = getAttrString("object-title-list");
    const CValueList* const named = list("object-title-list");
    int32_t count = getAttrIntOr("object-count", -1);
    if (count < 0 && counted) {
        count = counted->isActive() ? static_cast<int32_t>(std::lround(counted->getValue())) : 0;
    } else if (count < 0 && !titles.isEmpty() && (!named || named != list("object-value-list"))) {
        count = named ? named->count() : titles.split(separator()).count();
    } else if (count < 0 && bridge()) {
        count = bridge()->elementCount(params_[Values]->group()) - params_[Values]->getElement();
    } else if (count < 0) {
        count = params_[Values] ? 1 : 0;
    }
    const int32_t most = getAttrIntOr("max-item-count", -1);
    return std::clamp(count, 0, most < 0 ? kMostObjects : std::min(most, kMostObjects));
}

CError* CControlArray::onParamChanged(CUIParam&) {
    return updateAll();
}

CError* CControlArray::onParamActivity(CUIParam&) {
    return updateAll();
}

void CControlArray::onParamRemoved(CUIParam& param) {
    for (CUIParam*& own : params_) {
        own = own == &param ? nullptr : own;
    }
}

CError* CControlArray::updateAll() {
    if (state() != CObjectState::Finished) {
        return nullptr;
    }
    isStale_ = true;
    if (isUpdating_) {
        return nullptr;
    }
    const CObjectWatch watch(*this);
    isUpdating_ = true;
    CError* error = nullptr;
    // A control that changes a value has the others brought up to date, too.
    for (int32_t i = 0; i < kMaxRounds && isStale_ && !error; ++i) {
        isStale_ = false;
        error = updateOnce();
        if (!watch.isAlive()) {
            return error;
        }
    }
    isUpdating_ = false;
    return error;
}

CError* CControlArray::updateOnce() {
    const CObjectWatch watch(*this);
    setInactive(params_[Values] && !params_[Values]->isActive());
    CError* error = watch.isAlive() ? changeObjectCount() : nullptr;
    return error || !watch.isAlive() ? error : updateObjects();
}

CError* CControlArray::changeObjectCount() {
    const int32_t wanted = wantedCount();
    const CObjectWatch watch(*this);
    while (watch.isAlive() && objects_.count() > wanted) {
        delete objects_.last();
    }
    CError* error = nullptr;
    while (!error && watch.isAlive() && objects_.count() < wanted) {
        error = makeObject(objects_.count());
    }
    return error;
}

CError* CControlArray::makeObject(int32_t index) {
    CAttributeMap attributes;
    attributes["object-index"] = CAttributeValue::fromInt(index);
    attributes["object-index-incr"] = CAttributeValue::fromInt(index + 1);
    const CString& width = getAttrString("element-width");
    if (!width.isEmpty()) {
        attributes["width"] = CAttributeValue::fromString(width);
    }
    CObject* made = nullptr;
    TARV_TRY(createChild(made, getAttrString("object-tag"), "object", true, &attributes));
    auto* view = dynamic_cast<CView*>(made);
    if (!view) {
        delete made;
        TARV_FAIL("@tarvstr_CControlArray_changeObjectCount_NotView Object is not a view.");
    }
    objects_.append(view);
    const bool isButton = dynamic_cast<const CButton*>(view) != nullptr;
    listenObject(view->fullName(), isButton ? "button-released" : "mouse-release", "object-released");
    return nullptr;
}

int32_t CControlArray::indexOfSender(const CAttributeMap& params) const {
    const auto sender = params.find("sender");
    for (int32_t i = 0; sender != params.end() && i < objects_.count(); ++i) {
        if (objects_[i]->fullName() == sender->second.asString()) {
            return i;
        }
    }
    return -1;
}

CError* CControlArray::objectReleased(CAttributeMap& params) {
    const int32_t index = indexOfSender(params);
    if (index < 0) {
        return nullptr;
    }
    if (list("object-value-list")) {
        return openList(index);
    }
    return params_[Selected] ? params_[Selected]->setValue(index) : nullptr;
}

CError* CControlArray::openList(int32_t index) {
    const CValueList* const values = list("object-value-list");
    CAttributeMap params;
    params["popup-text-source"] = CAttributeValue::fromString(values->fullName());
    params["result-target"] = CAttributeValue::fromString(fullName());
    params["list-id"] = CAttributeValue::fromInt(index);
    params["selected-item"] = CAttributeValue::fromInt(values->indexOf(valueOf(index)));
    params["is-least-width"] = CAttributeValue::fromBool(true);
    return CPopupList::open(*this, *objects_[index], params);
}

/// The answer of a list.
CError* CControlArray::popupResult(CAttributeMap& params) {
    const CValueList* const values = list("object-value-list");
    const int32_t index = params["list-id"].asInt();
    const int32_t chosen = params["index"].asInt();
    const bool isMeant = values && chosen >= 0 && chosen < values->count() && index < objects_.count();
    return isMeant && (*values)[chosen].value != valueOf(index) ? setObjectValue(index, (*values)[chosen].value)
                                                                : nullptr;
}

CError* CControlArray::setObjectValue(int32_t index, double value) {
    CUIParam* const param = params_[Values];
    return param ? gesture_.notch(*param, value, index) : nullptr;
}

int32_t CControlArray::objectAt(double x, double y) const {
    for (int32_t i = 0; i < objects_.count(); ++i) {
        if (objects_[i]->isShown() && objects_[i]->visibleRect().holds(x, y)) {
            return i;
        }
    }
    return -1;
}

/// A notch is one entry; up is towards the beginning of the list.
CError* CControlArray::mouseWheel(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    CError* error = CView::mouseWheel(params);
    if (error || !watch.isAlive() || isHandled(params)) {
        return error;
    }
    const CValueList* const values = list("object-value-list");
    const int32_t index = objectAt(params["actual-x"].asReal(), params["actual-y"].asReal());
    if (!values || index < 0 || values->count() == 0) {
        return nullptr;
    }
    setHandled(params);
    wheelRest_ = (index == wheeled_ ? wheelRest_ : 0.0) + params["delta"].asReal();
    wheeled_ = index;
    const double notches = std::trunc(wheelRest_);
    wheelRest_ -= notches;
    const int32_t current = values->indexOf(valueOf(index));
    const int32_t last = values->count() - 1;
    const int32_t next = std::clamp(std::max(current, 0) - static_cast<int32_t>(notches), 0, last);
    return notches != 0.0 && next != current ? setObjectValue(index, (*values)[next].value) : nullptr;
}

}  // namespace tarv
