#include "Audio/Graph/CAudioProcessStack.h"

#include <cmath>

#include "Audio/Parameters/CAudioParamNames.h"

namespace tarv {

CError* CAudioProcessStack::init() {
    // The parameters of the definition belong to the instances; the stack itself reads only its count.
    needInput(0);
    needOutput(0);
    if (!def().stackParam().isEmpty()) {
        bindShared(resolveParamName(path(), def().stackParam()), countSlot_);
    }
    while (instances_.count() < wantedCount()) {
        TARV_TRY(addInstance());
    }
    return nullptr;
}

void CAudioProcessStack::slotChanged(CAudioParamSlot& slot) {
    isSizeDirty_ |= &slot == &countSlot_;
}

void CAudioProcessStack::updateParams() {
    CAudioProcessBase::updateParams();
    for (int32_t i = count_; i < instances_.count(); ++i) {
        instances_[i]->updateIdle();
    }
}

void CAudioProcessStack::updateIdle() {
    updateParams();
    for (int32_t i = 0; i < count_; ++i) {
        instances_[i]->updateIdle();
    }
}

CError* CAudioProcessStack::addInstance() {
    CAudioProcessBase* instance = def().createProcess();
    const int32_t index = instances_.count();
    instances_.append(instance);
    // Its path is the stack's own, so that all instances find the same parameters; it adds no name to theirs.
    instance->place({&graph(), this, &def(), path(), CString(), index + def().stackIndexShift()});
    TARV_TRY(instance->init());
    return nullptr;
}

int32_t CAudioProcessStack::wantedCount() const {
    const double wanted = countSlot_.data.isValid() ? std::round(countSlot_.data.value(0, 0)) : 1.0;
    return static_cast<int32_t>(wanted < 0.0 ? 0.0 : wanted > kMaxCount ? kMaxCount : wanted);
}

void CAudioProcessStack::sizeStack() {
    isSizeDirty_ = false;
    graph().isSteady = false;
    const int32_t wanted = wantedCount();
    while (instances_.count() < wanted) {
        if (CError* error = addInstance()) {
            logError(error);
            delete instances_.last();
            instances_.removeLast();
            break;
        }
    }
    const int32_t count = wanted < instances_.count() ? wanted : instances_.count();
    // Both those that come and those that go: neither may keep a history of another time.
    for (int32_t i = count < count_ ? count : count_; i < instances_.count(); ++i) {
        instances_[i]->reset();
    }
    count_ = count;
    placeDelay(inputDelay());
}

void CAudioProcessStack::process() {
    updateParams();
    if (isSizeDirty_) {
        sizeStack();
    }
    CAudioProcessBase* previous = this;
    for (int32_t i = 0; i < count_; ++i) {
        CAudioProcessBase* instance = instances_[i];
        instance->input(0).takeFrom(i == 0 ? input(0) : previous->output(0), context());
        instance->process();
        if (graph().observer != nullptr) {
            graph().observer->processed(*instance);
        }
        previous = instance;
    }
    if (count_ == 0) {
        forwardInput();
    } else {
        output(0).takeFrom(previous->output(0), context());
    }
    releaseInputs();
}

void CAudioProcessStack::clearBuffers() {
    CAudioProcessBase::clearBuffers();
    for (CAudioProcessBase* instance : instances_) {
        instance->clearBuffers();
    }
}

void CAudioProcessStack::reset() {
    CAudioProcessBase::reset();
    for (CAudioProcessBase* instance : instances_) {
        instance->reset();
    }
}

void CAudioProcessStack::makeSpares() {
    for (CAudioProcessBase* instance : instances_) {
        instance->makeSpares();
    }
}

int32_t CAudioProcessStack::placeDelay(int32_t inputDelay) {
    int32_t delay = inputDelay;
    for (int32_t i = 0; i < count_; ++i) {
        delay = instances_[i]->placeDelay(delay);
    }
    setDelays(inputDelay, delay);
    return delay;
}

void CAudioProcessStack::visitChildren(void (*visit)(void* user, CAudioProcessBase& child), void* user) const {
    for (int32_t i = 0; i < count_; ++i) {
        visit(user, *instances_[i]);
    }
}

}  // namespace tarv
