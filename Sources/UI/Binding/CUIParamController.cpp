#include "UI/Binding/CUIParamController.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "Core/CGlobalSettings.h"
#include "Core/CObjectWatch.h"
#include "UI/Binding/CParamBridge.h"
#include "UI/Binding/CUIParam.h"

namespace tarv {

namespace {

constexpr const char* kSettings = "ui.global-settings";
constexpr const char* kTimer = "update-timer";
constexpr double kUpdatesPerSecond = 40.0;
/// Pixels that double the distance from the axis at a precision of 1.
constexpr double kPixelsPerOctave = 50.0;
/// Doublings beyond which every value is at its limit or at the axis; the factor stays finite.
constexpr double kMostOctaves = 64.0;
constexpr double kMostValues = 1024.0;

}  // namespace

CError* CUIParamController::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CUIParamController::startScale>("start-scale");
    descriptor.addHandler<&CUIParamController::advanceScale>("advance-scale");
    descriptor.addHandler<&CUIParamController::finishScale>("finish-scale");
    descriptor.addHandler<&CUIParamController::takeBackScale>("take-back-scale");
    descriptor.addHandler<&CUIParamController::invertScale>("invert-scale");
    descriptor.addHandler<&CUIParamController::tick>(kTimer);
    return nullptr;
}

CError* CUIParamController::init() {
    TARV_TRY(CObject::init());
    if (!findObject(kSettings)) {
        TARV_FAIL("@tarvstr_CUIParamController_init_NoGlobalSettings Unable to locate global settings object.");
    }
    return nullptr;
}

void CUIParamController::readValues() {
    start_.clear();
    param_ = findObjectOf<CUIParam>(getAttrString("ui-param"));
    if (!param_ || !param_->isActive()) {
        return;
    }
    const CParamBridge* const bridge = param_->bridge();
    isOfSetting_ = !bridge;
    const auto* counter = findObjectOf<CUIParam>(getAttrString("ui-param-count"));
    double count = bridge ? bridge->elementCount(param_->group()) - param_->getElement() : 1.0;
    if (counter && counter->isActive()) {
        count = std::round(counter->getValue());
    }
    const double most = bridge ? kMostValues : 1.0;
    for (int32_t i = 0; i < std::clamp(count, 0.0, most); ++i) {
        start_.append(gesture_.value(*param_, i));
    }
    values_ = start_;
}

bool CUIParamController::hasParam() {
    if (gesture_.isActive() && isOfSetting_ && findObjectOf<CUIParam>(getAttrString("ui-param")) != param_) {
        onGestureCancelled(gesture_);
        TARV_CONSUME(gesture_.end());  // a gesture of a setting is none of host and history
    }
    return gesture_.isActive();
}

bool CUIParamController::beginAnew(CError*& error) {
    const CObjectWatch watch(*this);
    error = finishScale();
    if (error || !watch.isAlive()) {
        return false;
    }
    readValues();
    return !start_.isEmpty();
}

CError* CUIParamController::startScale() {
    CError* error = nullptr;
    if (!beginAnew(error)) {
        return error;
    }
    const double sum = std::accumulate(start_.begin(), start_.end(), 0.0);
    axis_ = getAttrBool("is-axis-zero") ? 0.0 : sum / start_.count();
    pixelsThere_ = countedThere_ = pixels_ = counted_ = 0.0;
    isShift_ = false;
    TARV_TRY(startTimer());
    TARV_TRY(gesture_.begin());
    return gesture_.touch(*param_, 0, start_.count());
}

CError* CUIParamController::advanceScale(CAttributeMap& params) {
    if (!hasParam()) {
        return nullptr;
    }
    const bool isShift = params["is-shift"].asBool();
    if (isShift != isShift_) {
        isShift_ = isShift;
        pixelsThere_ = pixels_;
        countedThere_ = counted_;
    }
    const double precision = isShift ? globalSettings().shiftKeyPrecision.load() : 1.0;
    pixels_ = params["scale"].asReal();
    counted_ = countedThere_ + (pixels_ - pixelsThere_) * precision;
    scaleValues(counted_);
    return nullptr;
}

void CUIParamController::scaleValues(double pixels) {
    const double octaves = pixels * globalSettings().dragPrecision / kPixelsPerOctave;
    const double factor = std::exp2(std::isfinite(octaves) ? std::clamp(octaves, -kMostOctaves, kMostOctaves) : 0.0);
    for (int32_t i = 0; i < start_.count(); ++i) {
        // Exactly at the start: the sum below may round.
        values_[i] = factor == 1.0 ? start_[i] : axis_ + (start_[i] - axis_) * factor;
    }
    isPending_ = true;
}

CError* CUIParamController::writeValues() {
    isPending_ = false;
    for (double& value : values_) {
        value = param_->bridge() ? std::clamp(value, param_->minimum(), param_->maximum()) : value;
    }
    return gesture_.write(*param_, values_.data(), values_.count());
}

CError* CUIParamController::tick() {
    return hasParam() && isPending_ ? writeValues() : nullptr;
}

CError* CUIParamController::finishScale() {
    if (!hasParam()) {
        return nullptr;
    }
    stopTimer();
    const CObjectWatch watch(*this);
    CError* error = isPending_ ? writeValues() : nullptr;
    if (!watch.isAlive()) {
        return error;
    }
    param_ = nullptr;
    if (error) {
        TARV_CONSUME(gesture_.end());
        return error;
    }
    return gesture_.end();
}

CError* CUIParamController::takeBackScale() {
    if (!hasParam()) {
        return nullptr;
    }
    stopTimer();
    isPending_ = false;
    const CObjectWatch watch(*this);
    CUIParam* const setting = isOfSetting_ ? param_ : nullptr;
    param_ = nullptr;
    CError* error = setting ? gesture_.write(*setting, start_[0]) : nullptr;
    if (!watch.isAlive()) {
        return error;
    }
    CError* ended = gesture_.takeBack();
    if (error) {
        delete ended;
    }
    return error ? error : ended;
}

void CUIParamController::onGestureCancelled(CParamGesture&) {
    stopTimer();
    isPending_ = false;
    param_ = nullptr;
}

CError* CUIParamController::invertScale() {
    CError* error = nullptr;
    if (!beginAnew(error)) {
        return error;
    }
    for (int32_t i = 0; i < start_.count(); ++i) {
        values_[i] = 0.0 - start_[i];  // no negative zero
    }
    TARV_TRY(gesture_.begin());
    isPending_ = true;
    return finishScale();
}

CError* CUIParamController::startTimer() {
    if (const CObject* declared = findChild(kTimer)) {
        listenObject(declared->fullName(), "tick", kTimer);
        return nullptr;
    }
    const double given = getAttrReal("update-fps");
    CAttributeMap attributes;
    attributes["interval"] =
        CAttributeValue::fromReal(1.0 / (std::isfinite(given) && given > 0.0 ? given : kUpdatesPerSecond));
    CObject* timer = nullptr;
    TARV_TRY(createChild(timer, "core:timer", kTimer, false, &attributes));
    isTimerOwn_ = true;
    listenObject(timer->fullName(), "tick", kTimer);
    return nullptr;
}

void CUIParamController::stopTimer() {
    if (isTimerOwn_) {
        isTimerOwn_ = false;
        delete firstChildNamed(kTimer);
    }
}

}  // namespace tarv
