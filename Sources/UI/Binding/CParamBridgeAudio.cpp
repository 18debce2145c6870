#include "UI/Binding/CParamBridgeAudio.h"

#include <algorithm>

#include "Audio/Client/CAudioInterfaceClient.h"
#include "Audio/Parameters/CAudioParamInfo.h"
#include "Core/CObjectWatch.h"

namespace tarv {

CParamBridgeAudio::~CParamBridgeAudio() {
    releaseParams();
}

CError* CParamBridgeAudio::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CParamBridgeAudio::countsChanged>("update-group-count");
    descriptor.addHandler<&CParamBridgeAudio::editRefused>("edit-refused");
    return nullptr;
}

CError* CParamBridgeAudio::init() {
    TARV_TRY(CParamBridge::init());
    const CString& path = getAttrString("interface-client");
    auto* client = findObjectOf<CAudioInterfaceClient>(path);
    if (!client) {
        TARV_FAIL("@tarvstr_CParamBridgeAudio_init_NoInterfaceClient No interfacing object '%1' found.", path);
    }
    param_ = getAttrString("param");
    TARV_TRY(client->addParamListener(param_, *this));
    groupCount_ = client->engineState().counts.groups;
    for (const char* event : {"engine-state", "update-group-count"}) {
        listenObject(client->fullName(), event, "update-group-count");
    }
    listenObject(client->fullName(), "edit-refused", "edit-refused");
    return nullptr;
}

CError* CParamBridgeAudio::countsChanged() {
    const int32_t count = client() ? client()->engineState().counts.groups : 0;
    if (count != groupCount_) {
        groupCount_ = count;
        groupCountChanged();
    }
    return nullptr;
}

void CParamBridgeAudio::onParamChanged(const CAudioParamData&, int32_t group, int32_t first, int32_t count,
                                       bool isReplacing) {
    const CObjectWatch watch(*this);
    const CAudioParamInfo* const known = info_;
    info_ = client()->paramInfo(*this);
    if (!known) {
        activityChanged();
    } else if (known != info_) {
        rangeChanged();
    }
    if (watch.isAlive()) {
        valuesChanged(group, first, count, isReplacing);
    }
}

void CParamBridgeAudio::onParamGone() {
    isGone_ = true;
    activityChanged();
}

/// While active.
const CAudioParamData& CParamBridgeAudio::data() const {
    return *client()->paramData(*this);
}

int32_t CParamBridgeAudio::elementCount(int32_t group) const {
    return isActive() ? data().elementCount(storedGroup(group)) : 0;
}

int32_t CParamBridgeAudio::storedGroup(int32_t group) const {
    return info_ && info_->isSingleGroup() ? 0 : group;
}

double CParamBridgeAudio::value(int32_t group, int32_t element) const {
    return isActive() ? info_->converter(0)->valueToShown(data().value(group, element)) : 0.0;
}

CString CParamBridgeAudio::valueText(int32_t group, int32_t element, CAudioTextMode mode) const {
    CString text;
    if (isActive()) {
        info_->converter(0)->valueToText(text, *info_, 0, {data().value(group, element), data()}, mode);
    }
    return text;
}

const CAudioParamConverter* CParamBridgeAudio::converter() const {
    return info_ ? info_->converter(0) : nullptr;
}

CString CParamBridgeAudio::unit() const {
    return isActive() ? info_->converter(0)->label() : CString();
}

double CParamBridgeAudio::defaultValue(int32_t element) const {
    const bool isNumber = isActive() && !info_->isString();
    return isNumber ? info_->converter(0)->valueToShown(data().defaultValue(element)) : 0.0;
}

double CParamBridgeAudio::minimum() const {
    return isActive() ? info_->converter(0)->valueToShown(std::min(info_->minimum(0), info_->maximum(0))) : 0.0;
}

double CParamBridgeAudio::maximum() const {
    return isActive() ? info_->converter(0)->valueToShown(std::max(info_->minimum(0), info_->maximum(0))) : 0.0;
}

CError* CParamBridgeAudio::beginEdit(int32_t key, int32_t group, int32_t first, int32_t count) {
    if (!isActive()) {
        return nullptr;
    }
    const int32_t stored = storedGroup(group);
    if (key != touchKey_) {
        touched_.clear();
        touchKey_ = key;
    }
    for (int32_t element = first; element < first + count; ++element) {
        touched_.append({stored, element, value(group, element), data().value(group, element)});
    }
    return client()->beginEdit(key, param_, stored, first, count);
}

// The unit that a person reads and back is not the same number to the last bit.
double CParamBridgeAudio::realOf(int32_t group, int32_t element, double shown, const CParamEdit& edit) const {
    if (edit.isHeld && edit.key == touchKey_) {
        for (const CTouched& touched : touched_) {
            if (touched.group == group && touched.element == element && touched.shown == shown) {
                return touched.real;
            }
        }
    }
    return shown == defaultValue(element) ? data().defaultValue(element) : info_->converter(0)->shownToValue(shown);
}

CError* CParamBridgeAudio::endEdit(int32_t key, bool isTakenBack) {
    return isActive() ? client()->endEdit(key, isTakenBack) : nullptr;
}

CError* CParamBridgeAudio::editRefused(CAttributeMap& params) {
    cancelGesture(params["key"].asInt());
    return nullptr;
}

CError* CParamBridgeAudio::beginStep(const CString& label, int32_t key) {
    return isActive() ? client()->beginStep(label, key) : nullptr;
}

CError* CParamBridgeAudio::endStep() {
    return isActive() ? client()->endStep() : nullptr;
}

CString CParamBridgeAudio::undoLabel(int32_t group, const char* action) const {
    const CString& name = info_->visualName().isEmpty() ? info_->displayPath() : info_->visualName();
    if (group == CAudioParamData::kAllGroups || info_->isSingleGroup()) {
        return name + " " + action;
    }
    return name + " (" + client()->groupName(group) + ") " + action;
}

CInterfaceUndo CParamBridgeAudio::undoOf(int32_t group, const char* action, const CParamEdit& edit) const {
    return {edit.isRecorded, undoLabel(group, action), edit.key, edit.isHeld};
}

template <class RealAt>
CError* CParamBridgeAudio::sendNumbers(int32_t group, int32_t first, int32_t count, bool isReplacing,
                                       const CParamEdit& edit, RealAt&& realAt) {
    const int32_t size = info_->elementSize();
    CArray<double, 16> numbers;
    for (int32_t i = 0; i < count; ++i) {
        numbers.append(realAt(i));
        for (int32_t k = 1; k < size; ++k) {
            numbers.append(data().value(group, first + i, k));
        }
    }
    const int32_t stored = group == CAudioParamData::kAllGroups ? group : storedGroup(group);
    return client()->setNumbers(param_, stored, first, numbers.data(), count, size, undoOf(group, "change", edit),
                                isReplacing);
}

CError* CParamBridgeAudio::setValues(int32_t group, int32_t first, const double* values, int32_t count,
                                     bool isReplacing, const CParamEdit& edit) {
    if (!isActive() || info_->isString()) {
        return nullptr;
    }
    return sendNumbers(group, first, count, isReplacing, edit,
                       [&](int32_t i) { return realOf(storedGroup(group), first + i, values[i], edit); });
}

CError* CParamBridgeAudio::setText(int32_t group, int32_t element, const CString& text, bool& isTaken,
                                   const CParamEdit& edit) {
    double real = 0.0;
    isTaken = isActive() && (info_->isString() || info_->converter(0)->typedToValue(*info_, 0, text, real));
    if (!isTaken) {
        return nullptr;
    }
    if (info_->isString()) {
        CTextList texts;
        texts.append(text);
        return client()->setTexts(param_, storedGroup(group), element, texts, undoOf(group, "change", edit));
    }
    return sendNumbers(group, element, 1, false, edit, [real](int32_t) { return real; });
}

/// Sends the first `count` elements of a group as the whole of another one.
CError* CParamBridgeAudio::sendGroup(int32_t group, int32_t target, int32_t count, const CInterfaceUndo& undo) {
    if (info_->isString()) {
        CTextList texts;
        for (int32_t i = 0; i < count; ++i) {
            texts.append(data().text(group, i));
        }
        return client()->setTexts(param_, target, 0, texts, undo, true);
    }
    CArray<double, 16> numbers;
    for (int32_t i = 0; i < count; ++i) {
        for (int32_t k = 0; k < info_->elementSize(); ++k) {
            numbers.append(data().value(group, i, k));
        }
    }
    return client()->setNumbers(param_, target, 0, numbers.data(), count, info_->elementSize(), undo, true);
}

CError* CParamBridgeAudio::copyGroup(int32_t group, int32_t target, const CParamEdit& edit) {
    if (!isActive() || storedGroup(group) == storedGroup(target)) {
        return nullptr;
    }
    const CString label =
        CString("Group ") + client()->groupName(group) + " to " + client()->groupName(target) + " copy";
    const CObjectWatch watch(*this);
    CError* error = sendGroup(group, target, elementCount(group), {edit.isRecorded, label, edit.key, edit.isHeld});
    if (error || !watch.isAlive()) {
        return error;
    }
    CAttributeMap params;
    params["group"] = CAttributeValue::fromInt(group);
    params["index"] = CAttributeValue::fromInt(target);
    send("copy-group", params);
    return nullptr;
}

CError* CParamBridgeAudio::resetGroup(int32_t group, const CParamEdit& edit) {
    if (!isActive()) {
        return nullptr;
    }
    const CObjectWatch watch(*this);
    CError* error = sendGroup(group, storedGroup(group), 0, undoOf(group, "reset", edit));
    if (error || !watch.isAlive()) {
        return error;
    }
    CAttributeMap params;
    params["group"] = CAttributeValue::fromInt(group);
    send("reset-group", params);
    return nullptr;
}

}  // namespace tarv
