#include "UI/Binding/CParamBridge.h"

#include "Core/CKeptParams.h"
#include "Core/CNotifyServer.h"
#include "UI/Binding/CParamGesture.h"
#include "UI/Binding/CUIParam.h"

namespace tarv {

CParamBridge::~CParamBridge() {
    releaseParams();
}

void CParamBridge::releaseParams() {
    while (!gestures_.isEmpty()) {
        CParamGesture* const gesture = gestures_.last();
        gesture->bridgeGone(*this);
    }
    // A param's handler may destroy others.
    while (!params_.isEmpty()) {
        CUIParam* param = params_.last();
        params_.removeLast();
        if (param) {
            param->bridgeGone();
        }
    }
}

void CParamBridge::addGesture(CParamGesture& gesture) {
    gestures_.append(&gesture);
}

void CParamBridge::removeGesture(const CParamGesture& gesture) {
    for (int32_t i = gestures_.count() - 1; i >= 0; --i) {
        if (gestures_[i] == &gesture) {
            gestures_.removeAt(i);
        }
    }
}

template <class Call>
bool CParamBridge::callGestures(Call&& call) {
    const CObjectWatch watch(*this);
    for (int32_t i = gestures_.count() - 1; watch.isAlive() && i >= 0; --i) {
        if (i < gestures_.count()) {
            call(*gestures_[i]);
        }
    }
    return watch.isAlive();
}

void CParamBridge::paramMoved(const CUIParam& param) {
    callGestures([&param](CParamGesture& gesture) { gesture.paramMoved(param); });
}

void CParamBridge::cancelGesture(int32_t key) {
    callGestures([key](CParamGesture& gesture) { gesture.refused(key); });
}

CError* CParamBridge::beginEdit(int32_t, int32_t, int32_t, int32_t) {
    return nullptr;
}

CError* CParamBridge::endEdit(int32_t, bool) {
    return nullptr;
}

CError* CParamBridge::beginStep(const CString&, int32_t) {
    return nullptr;
}

CError* CParamBridge::endStep() {
    return nullptr;
}

void CParamBridge::removeParam(const CUIParam& param) {
    paramMoved(param);
    for (int32_t i = 0; i < params_.count(); ++i) {
        if (params_[i] == &param && calls_ > 0) {
            params_[i] = nullptr;
        } else if (params_[i] == &param) {
            params_.removeAt(i);
        } else {
            continue;
        }
        return;
    }
}

template <class Call>
bool CParamBridge::callEach(Call&& call) {
    const CObjectWatch watch(*this);
    ++calls_;
    for (int32_t i = 0; i < params_.count(); ++i) {
        if (params_[i]) {
            TARV_CONSUME(call(*params_[i]));
            if (!watch.isAlive()) {
                return false;
            }
        }
    }
    if (--calls_ == 0) {
        for (int32_t i = params_.count() - 1; i >= 0; --i) {
            if (!params_[i]) {
                params_.removeAt(i);
            }
        }
    }
    return true;
}

bool CParamBridge::send(const CString& eventName, CAttributeMap& params) {
    const CObjectWatch watch(*this);
    if (notifyServer() && notifyServer()->hasListeners(fullName(), eventName)) {
        TARV_CONSUME(sendEvent(eventName, params, false));
    }
    return watch.isAlive();
}

void CParamBridge::activityChanged() {
    const bool isNow = isActive();
    if (!isNow && !callGestures([this](CParamGesture& gesture) { gesture.bridgeGone(*this); })) {
        return;
    }
    callEach([isNow](CUIParam& param) { return param.setActive(isNow); });
}

void CParamBridge::rangeChanged() {
    callEach([](CUIParam& param) { return param.rangeChanged(); });
}

void CParamBridge::valuesChanged(int32_t group, int32_t first, int32_t count, bool isReplacing) {
    callGestures([&](CParamGesture& gesture) { gesture.valuesCame(*this, group); });
    const bool isAlive = callEach([&](CUIParam& param) -> CError* {
        const int32_t element = param.getElement();
        const bool isMeant = element + param.followedElements() > first && (isReplacing || element - first < count);
        return isMeant && storedGroup(param.group()) == group ? param.valueChanged() : nullptr;
    });
    static const CString kEvent("param-change");
    if (!isAlive || !notifyServer() || !notifyServer()->hasListeners(fullName(), kEvent)) {
        return;
    }
    CKeptParams change(*this, change_, 4);
    change.params["group"] = CAttributeValue::fromInt(group);
    change.params["element-offset"] = CAttributeValue::fromInt(first);
    change.params["element-count"] = CAttributeValue::fromInt(count);
    change.params["is-replacing"] = CAttributeValue::fromBool(isReplacing);
    send(kEvent, change.params);
}

void CParamBridge::groupCountChanged() {
    CAttributeMap none;
    if (callEach([](CUIParam& param) { return param.valueChanged(); })) {
        send("group-change", none);
    }
}

}  // namespace tarv
