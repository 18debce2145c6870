#include "UI/Binding/CParamGesture.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <utility>

#include "Core/CObjectWatch.h"
#include "Platform/Clock.h"
#include "UI/Binding/CParamBridge.h"
#include "UI/Binding/CUIParam.h"

namespace tarv {

namespace {

// Of a value that has been to the engine and back, which holds it in another unit.
constexpr double kAnswerTolerance = 1e-9;

/// A key that no gesture of the process has had: a drag after reopening is no part of one before.
int32_t newKey() {
    static std::atomic<uint32_t> lastKey{0};
    return static_cast<int32_t>(lastKey.fetch_add(1, std::memory_order_relaxed) & 0x7fffffff);
}

}  // namespace

CParamGesture::~CParamGesture() {
    TARV_CONSUME(end());
    forget([](const CElement&) { return true; });
}

CError* CParamGesture::begin() {
    CError* error = end();
    if (!error) {
        forget([](const CElement&) { return true; });
        key_ = newKey();
    }
    return error;
}

CError* CParamGesture::begin(CParamBridge& bridge, const CString& label) {
    TARV_TRY(begin());
    join(bridge);
    isStep_ = true;
    return bridge.beginStep(label, key_);
}

CParamEdit CParamGesture::edit(CParamBridge& bridge) {
    if (isActive()) {
        join(bridge);
    }
    return CParamEdit::held(key_);
}

CError* CParamGesture::touch(CUIParam& param, int32_t offset, int32_t count) {
    CParamBridge* const bridge = param.bridge();
    if (!isActive() || !param.isActive() || !bridge) {
        return nullptr;
    }
    join(*bridge);
    for (int32_t i = 0; i < count; ++i) {
        add(param, offset + i);
    }
    return bridge->beginEdit(key_, param.group(), param.getElement() + offset, count);
}

CError* CParamGesture::write(CUIParam& param, const double* values, int32_t count, int32_t offset) {
    return isActive() ? send(param, values, count, offset, CParamEdit::held(key_)) : nullptr;
}

CError* CParamGesture::send(CUIParam& param, const double* values, int32_t count, int32_t offset,
                            const CParamEdit& edit) {
    if (!param.isActive() || count <= 0) {
        return nullptr;
    }
    CParamBridge* const bridge = param.bridge();
    if (!bridge) {
        return param.setValue(values[0]);
    }
    keepWritten(param, values, count, offset);
    const CObjectWatch watch(*bridge);
    CError* error = bridge->setValues(param.group(), param.getElement() + offset, values, count, false, edit);
    if (error && watch.isAlive()) {
        // No value comes back.
        forget([&](const CElement& element) { return element.bridge == bridge; });
    }
    return error;
}

CError* CParamGesture::end() {
    return end(false);
}

CError* CParamGesture::takeBack() {
    return end(true);
}

CError* CParamGesture::end(bool isTakenBack) {
    if (!isActive()) {
        return nullptr;
    }
    const int32_t key = std::exchange(key_, -1);
    const bool isStep = std::exchange(isStep_, false);
    CParamBridge* const bridge = bridges_.isEmpty() ? nullptr : bridges_[0];
    // What was written shows until its answer comes, unless it is taken back.
    forget([=](const CElement& element) { return isTakenBack || !element.isWritten || element.isAnswered; });
    return bridge ? endAt(*bridge, key, isStep, isTakenBack) : nullptr;
}

CError* CParamGesture::endAt(CParamBridge& bridge, int32_t key, bool isStep, bool isTakenBack) {
    const CObjectWatch watch(bridge);
    CError* error = isStep ? bridge.endStep() : nullptr;
    return error || !watch.isAlive() ? error : bridge.endEdit(key, isTakenBack);
}

void CParamGesture::cancel() {
    const int32_t key = std::exchange(key_, -1);
    const bool isStep = std::exchange(isStep_, false);
    CParamBridge* const bridge = bridges_.isEmpty() ? nullptr : bridges_[0];
    forget([](const CElement&) { return true; });
    if (!bridge) {
        return;  // nobody can demand it
    }
    const CObjectWatch watch(*bridge);
    TARV_CONSUME(endAt(*bridge, key, isStep));
    if (owner_ && watch.isAlive()) {
        owner_->onGestureCancelled(*this);
    }
}

CError* CParamGesture::notch(CUIParam& param, double value, int32_t offset) {
    if (isActive()) {
        return nullptr;
    }
    const double now = clockSeconds();
    const CElement element{param.bridge(), &param, param.group(), param.getElement() + offset};
    const bool isSame = notchKey_ >= 0 && notched_.param == element.param && notched_.group == element.group &&
                        notched_.element == element.element && now - notchTime_ <= kNotchSeconds;
    notchKey_ = isSame ? notchKey_ : newKey();
    notchTime_ = now;
    notched_ = element;
    return send(param, &value, 1, offset, CParamEdit(notchKey_));
}

double CParamGesture::value(const CUIParam& param, int32_t offset) const {
    const int32_t index = indexOf(param, offset);
    if (index >= 0 && elements_[index].isWritten) {
        return elements_[index].value;
    }
    return param.bridge() ? param.bridge()->value(param.group(), param.getElement() + offset) : param.getValue();
}

int32_t CParamGesture::indexOf(const CUIParam& param, int32_t offset) const {
    for (int32_t i = 0; i < elements_.count(); ++i) {
        const CElement& element = elements_[i];
        if (element.param == &param && element.element == param.getElement() + offset &&
            element.group == element.bridge->storedGroup(param.group())) {
            return i;
        }
    }
    return -1;
}

CParamGesture::CElement& CParamGesture::add(const CUIParam& param, int32_t offset) {
    int32_t index = indexOf(param, offset);
    if (index < 0) {
        index = elements_.count();
        elements_.append(
            {param.bridge(), &param, param.bridge()->storedGroup(param.group()), param.getElement() + offset});
    }
    return elements_[index];
}

void CParamGesture::keepWritten(const CUIParam& param, const double* values, int32_t count, int32_t offset) {
    join(*param.bridge());
    for (int32_t i = 0; i < count; ++i) {
        CElement& element = add(param, offset + i);
        element.value = std::clamp(values[i], param.minimum(), param.maximum());
        element.isWritten = true;
        element.isAnswered = false;
    }
}

void CParamGesture::join(CParamBridge& bridge) {
    if (bridges_.indexOf(&bridge) < 0) {
        bridges_.append(&bridge);
        bridge.addGesture(*this);
    }
}

/// Drops elements, and leaves the bridges that the gesture has no element of, unless it goes on.
template <class Test>
void CParamGesture::forget(Test&& test) {
    for (int32_t i = elements_.count() - 1; i >= 0; --i) {
        if (test(elements_[i])) {
            elements_.removeAt(i);
        }
    }
    for (int32_t i = bridges_.count() - 1; i >= 0 && !isActive(); --i) {
        CParamBridge* const bridge = bridges_[i];
        const bool isUsed = std::any_of(elements_.begin(), elements_.end(),
                                        [bridge](const CElement& element) { return element.bridge == bridge; });
        if (!isUsed) {
            bridges_.removeAt(i);
            bridge->removeGesture(*this);
        }
    }
}

void CParamGesture::paramMoved(const CUIParam& param) {
    const auto isOfParam = [&param](const CElement& element) { return element.param == &param; };
    const bool holds = std::any_of(elements_.begin(), elements_.end(), isOfParam);
    if (holds && isActive()) {
        cancel();
    } else if (holds) {
        forget(isOfParam);
    }
}

void CParamGesture::valuesCame(const CParamBridge& bridge, int32_t group) {
    if (!isActive()) {
        forget([&](const CElement& element) { return element.bridge == &bridge && element.group == group; });
        return;
    }
    // What comes later, such as automation, is what counts when the gesture ends.
    for (CElement& element : elements_) {
        const bool isMeant = element.bridge == &bridge && element.group == group && element.isWritten;
        const double shown = isMeant ? bridge.value(group, element.element) : 0.0;
        const double tolerance = kAnswerTolerance * std::max(1.0, std::fabs(element.value));
        element.isAnswered = element.isAnswered || (isMeant && std::fabs(shown - element.value) <= tolerance);
    }
}

void CParamGesture::refused(int32_t key) {
    if (key == key_) {
        cancel();
    }
}

void CParamGesture::bridgeGone(CParamBridge& bridge) {
    if (isActive()) {
        cancel();
    } else {
        forget([&bridge](const CElement& element) { return element.bridge == &bridge; });
    }
}

}  // namespace tarv
