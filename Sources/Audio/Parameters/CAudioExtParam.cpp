#include "Audio/Parameters/CAudioExtParam.h"

#include <algorithm>
#include <cmath>

#include "Audio/Parameters/CAudioExtParamGathering.h"
#include "Audio/Parameters/CAudioParamCollector.h"
#include "Audio/Parameters/CAudioParamConverter.h"
#include "Platform/ThreadId.h"

namespace tarv {

CAudioExtParam::~CAudioExtParam() {
    if (param_ && isLive(param_)) {
        param_->removeListener(*this);
    }
}

CError* CAudioExtParam::init() {
    TARV_TRY(CObject::init());
    auto* collector = findObjectOf<CAudioParamCollector>(getAttrString("param-collector"));
    if (!collector) {
        TARV_FAIL("@tarvstr_CAudioExtParam_init_NoParamCollector No parameter collector '%1' found.",
                  getAttrString("param-collector"));
    }
    extName_ = getAttrString("ext-name");
    if (extName_.length() > kNameLimit) {
        TARV_FAIL("@tarvstr_CAudioExtParam_init_NameTooLong Externalized parameter name '%1' is too long", extName_);
    }
    group_ = getAttrIntOr("group", 0);
    element_ = getAttrIntOr("element-index", 0);
    param_ = collector->getParam(getAttrString("param-name"));
    list_ = dynamic_cast<CAudioExtParamList*>(parent());
    param_->addListener(*this);
    return nullptr;
}

void CAudioExtParam::setValue(double normalised) {
    if (!param_ || !param_->isDefined() || std::isnan(normalised)) {
        return;
    }
    const CAudioParamInfo& info = param_->info();
    param_->setValue(group_, element_, info.converter(0)->normToValue(info, 0, std::clamp(normalised, 0.0, 1.0)), 0,
                     this);
}

bool CAudioExtParam::setText(const CString& text) {
    if (!param_ || !param_->isDefined() || param_->info().isString()) {
        return false;
    }
    double value = 0.0;
    const bool isRead = param_->info().converter(0)->typedToValue(param_->info(), 0, text, value);
    if (isRead) {
        param_->setValue(group_, element_, value, 0, this);
    }
    return isRead;
}

double CAudioExtParam::getValue() const {
    if (!param_ || !param_->isDefined()) {
        return 0.0;
    }
    const CAudioParamInfo& info = param_->info();
    return std::clamp(info.converter(0)->valueToNorm(info, 0, param_->value(group_, element_)), 0.0, 1.0);
}

void CAudioExtParam::getLabel(CString& text) const {
    text = param_ && param_->isDefined() ? param_->info().converter(0)->label() : CString();
}

void CAudioExtParam::showValue(CString& text, double value) const {
    const CAudioParamInfo& info = param_->info();
    CLockScope scope(param_->lock());
    info.converter(0)->valueToText(text, info, 0, {value, param_->userData()}, CAudioTextMode::Full);
}

void CAudioExtParam::getDisplay(CString& text) const {
    text.clear();
    if (param_ && param_->isDefined()) {
        showValue(text, param_->value(group_, element_));
    }
}

void CAudioExtParam::getDisplayFor(CString& text, double normalised) const {
    text.clear();
    if (param_ && param_->isDefined() && !std::isnan(normalised)) {
        const CAudioParamInfo& info = param_->info();
        showValue(text, info.converter(0)->normToValue(info, 0, std::clamp(normalised, 0.0, 1.0)));
    }
}

bool CAudioExtParam::isAmong(const CAudioParam& param, int32_t group, int32_t first, int32_t count) const {
    const bool isOfGroup =
        group == group_ || group == CAudioParamData::kAllGroups || (param_ && param_->info().isSingleGroup());
    return &param == param_ && isOfGroup && element_ >= first && int64_t{element_} - first < count;
}

void CAudioExtParam::onParamChanged(CAudioParam& param, int32_t group, int32_t first, int32_t count) {
    if (isAmong(param, group, first, count) && !(list_ && list_->keepChange(*this))) {
        notifyHost();
    }
}

void CAudioExtParam::notifyHost() const {
    if (CAudioExtParamHostBridge* bridge = hostBridge_.load(std::memory_order_acquire)) {
        bridge->onExtParamChanged(*this);
    }
}

void CAudioExtParam::notifyHostOfEdit(bool isBegin) const {
    if (CAudioExtParamHostBridge* bridge = hostBridge_.load(std::memory_order_acquire)) {
        bridge->onExtParamEdited(*this, isBegin);
    }
}

CError* CAudioExtParamList::childAdded(CObject* child) {
    TARV_TRY(CObject::childAdded(child));
    if (auto* param = dynamic_cast<CAudioExtParam*>(child)) {
        params_.append(param);
    }
    return nullptr;
}

void CAudioExtParamList::removeChild(CObject* child) {
    for (int32_t i = params_.count() - 1; i >= 0; --i) {
        if (params_[i] == child) {
            params_.removeAt(i);
        }
    }
    CObject::removeChild(child);
}

bool CAudioExtParamList::keepChange(const CAudioExtParam& param) {
    if (gatheringThread_.load(std::memory_order_relaxed) != currentThreadId()) {
        return false;
    }
    for (int32_t i = 0; i < params_.count(); ++i) {
        if (params_[i] == &param) {
            gathering_->note(i);
        }
    }
    return true;
}

CAudioExtParamGathering* CAudioExtParamList::beginGathering(CAudioExtParamGathering& gathering) {
    const bool isNested = gatheringThread_.load(std::memory_order_relaxed) == currentThreadId();
    CAudioExtParamGathering* const outer = isNested ? gathering_ : nullptr;
    gathering_ = &gathering;
    gatheringThread_.store(currentThreadId(), std::memory_order_relaxed);
    return outer;
}

void CAudioExtParamList::endGathering(CAudioExtParamGathering* outer) {
    gathering_ = outer;
    if (!outer) {
        gatheringThread_.store(0, std::memory_order_relaxed);
    }
}

CAudioExtParam* CAudioExtParamList::param(int32_t index) const {
    return index >= 0 && index < params_.count() ? params_[index] : nullptr;
}

void CAudioExtParamList::setParameter(int32_t index, double normalised) {
    if (CAudioExtParam* found = param(index)) {
        found->setValue(normalised);
    }
}

double CAudioExtParamList::getParameter(int32_t index) const {
    const CAudioExtParam* found = param(index);
    return found ? found->getValue() : 0.0;
}

}  // namespace tarv
