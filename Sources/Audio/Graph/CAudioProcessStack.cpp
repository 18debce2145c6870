#include "Audio/Graph/CAudioProcessStack.h"

#include "Audio/Graph/CAudioGraphObserver.h"

#include <cmath>

namespace tarv {

CAudioProcessStack::~CAudioProcessStack() {
    if (isFading()) {
        fade_.end(context());
    }
    for (const auto* ports : {&nearer_, &whole_, &pieces_}) {
        for (CAudioPort* port : *ports) {
            port->release(context());
        }
    }
}

CError* CAudioProcessStack::init() {
    // The parameters of the definition belong to the instances; the stack itself reads only its count.
    needInput(0);
    needOutput(0);
    if (!def().stackParam().isEmpty()) {
        bindRelative(def().stackParam(), countSlot_);
    }
    // All that the parameter's range allows: an instance looks for parameters, which takes locks, and the audio thread
    // must not.
    while (instances_.count() < mostCount()) {
        TARV_TRY(addInstance());
    }
    return nullptr;
}

int32_t CAudioProcessStack::mostCount() const {
    const CAudioParam* param = countSlot_.param;
    if (param == nullptr || !param->isDefined() || param->info().isString()) {
        return wantedCount();
    }
    const double most = std::round(std::fmax(param->info().minimum(0), param->info().maximum(0)));
    return static_cast<int32_t>(most < 0.0 ? 0.0 : most > kMaxCount ? kMaxCount : most);
}

void CAudioProcessStack::needInput(int32_t port) {
    CAudioProcessBase::needInput(port);
    while (whole_.count() < inputCount()) {
        whole_.append(new CAudioPort(graph().channelCount));
    }
    for (CAudioProcessBase* instance : instances_) {
        instance->needInput(port);
    }
}

void CAudioProcessStack::needOutput(int32_t port) {
    CAudioProcessBase::needOutput(port);
    while (nearer_.count() < outputCount()) {
        nearer_.append(new CAudioPort(graph().channelCount));
        pieces_.append(new CAudioPort(graph().channelCount));
    }
}

void CAudioProcessStack::slotChanged(CAudioParamSlot& slot) {
    isSizeDirty_ |= &slot == &countSlot_;
}

void CAudioProcessStack::updateParams() {
    CAudioProcessBase::updateParams();
    for (int32_t i = runningCount(); i < instances_.count(); ++i) {
        instances_[i]->updateIdle();
    }
}

bool CAudioProcessStack::takeQuietChanges() {
    if (isSizeDirty_ || !CAudioProcessBase::takeQuietChanges()) {
        return false;
    }
    for (int32_t i = 0; i < instances_.count(); ++i) {
        if (i >= runningCount()) {
            instances_[i]->updateIdle();
        } else if (!instances_[i]->takeQuietChanges()) {
            return false;
        }
    }
    return true;
}

void CAudioProcessStack::updateIdle() {
    updateParams();
    for (int32_t i = 0; i < runningCount(); ++i) {
        instances_[i]->updateIdle();
    }
}

CError* CAudioProcessStack::addInstance() {
    CAudioProcessBase* instance = def().createProcess();
    const int32_t index = instances_.count();
    instances_.append(instance);
    // All instances have the stack's path, so that they find the same parameters.
    instance->place({&graph(), this, &def(), path(), CString(), index + def().stackIndexShift()});
    TARV_TRY(instance->init());
    instance->needInput(inputCount() - 1);
    if (instance->inputCount() > inputCount()) {
        needInput(instance->inputCount() - 1);
    }
    if (instance->outputCount() > 0) {
        needOutput(instance->outputCount() - 1);
    }
    return nullptr;
}

int32_t CAudioProcessStack::wantedCount() const {
    const double wanted = countSlot_.data.isValid() ? std::round(countSlot_.data.value(0, 0)) : 1.0;
    return static_cast<int32_t>(wanted < 0.0 ? 0.0 : wanted > kMaxCount ? kMaxCount : wanted);
}

void CAudioProcessStack::resetInstances(int32_t first, int32_t end) {
    for (int32_t i = first; i < end; ++i) {
        instances_[i]->reset();
    }
}

void CAudioProcessStack::sizeStack() {
    isSizeDirty_ = false;
    graph().invalidateRun();
    const int32_t wanted = wantedCount();
    while (instances_.count() < wanted) {
        if (CError* error = addInstance()) {
            logError(error);
            delete instances_.last();
            instances_.removeLast();
            break;
        }
    }
    count_ = wanted < instances_.count() ? wanted : instances_.count();
    placeDelay(inputDelay());
}

void CAudioProcessStack::startSize() {
    if (!isSizeDirty_ || isFading()) {
        return;
    }
    formerCount_ = count_;
    sizeStack();
    // The history of new instances is out of date. Those that go run on until the fade has ended.
    resetInstances(formerCount_, count_);
    if (count_ == formerCount_) {
        return;
    }
    if (graph().isRunning() && !isFresh_ && input(0).rate > 0.0) {
        fadeLayout_ = input(0).layout;
        fadeRate_ = input(0).rate;
        const double samples = kFadeSeconds * input(0).rate + 0.5;
        fade_.start(samples < CAudioPort::kUnlimited ? static_cast<int32_t>(samples > 1.0 ? samples : 1.0)
                                                     : CAudioPort::kUnlimited,
                    context());
    } else {
        resetInstances(count_, formerCount_);
    }
}

void CAudioProcessStack::endFade() {
    fade_.end(context());
    resetInstances(count_, formerCount_);
}

void CAudioProcessStack::process() {
    updateParams();
    // Other channels start from silence themselves.
    if (isFading() && (input(0).layout != fadeLayout_ || input(0).rate != fadeRate_)) {
        endFade();
    }
    startSize();
    const int32_t samples = stepLength();
    if (!isFading()) {
        runInstances(0, count_);
        giveOutputs();
    } else if (samples <= fade_.left()) {
        runFading(samples);
    } else {
        runCut(samples);
    }
    isFresh_ = isFresh_ && samples == 0;
    releaseInputs();
}

void CAudioProcessStack::feed(int32_t index) {
    CAudioProcessBase& instance = *instances_[index];
    for (int32_t port = 0; port < instance.inputCount(); ++port) {
        if (port >= instance.outputCount()) {
            copyChannels(instance.input(port), input(port), 0, context());
        } else if (index == 0) {
            instance.input(port).takeFrom(input(port), context());
        } else {
            instance.input(port).takeFrom(instances_[index - 1]->output(port), context());
        }
    }
}

void CAudioProcessStack::runInstances(int32_t first, int32_t end) {
    for (int32_t i = first; i < end; ++i) {
        feed(i);
        instances_[i]->process();
        if (graph().observer != nullptr) {
            graph().observer->processed(*instances_[i]);
        }
    }
}

CAudioPort& CAudioProcessStack::portBehind(int32_t count, int32_t port) {
    if (count > 0 && port < instances_[count - 1]->outputCount()) {
        return instances_[count - 1]->output(port);
    }
    return port < inputCount() ? input(port) : output(port);
}

void CAudioProcessStack::giveOutputs() {
    const int32_t end = runningCount();
    for (int32_t port = 0; port < outputCount(); ++port) {
        CAudioPort& source = portBehind(end, port);
        if (&source != &output(port)) {
            output(port).takeFrom(source, context());
        } else {
            output(port).release(context());
            output(port).samples = CAudioPort::kUnlimited;
        }
    }
}

void CAudioProcessStack::clearBuffers() {
    CAudioProcessBase::clearBuffers();
    for (const auto* ports : {&nearer_, &whole_, &pieces_}) {
        for (CAudioPort* port : *ports) {
            port->release(context());
        }
    }
    for (CAudioProcessBase* instance : instances_) {
        instance->clearBuffers();
    }
}

void CAudioProcessStack::reset() {
    CAudioProcessBase::reset();
    fade_.end(context());
    resetInstances(0, instances_.count());
    isFresh_ = true;
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

void CAudioProcessStack::changeRate(CAudioRate& rate) const {
    CAudioRate each;
    if (!instances_.isEmpty()) {
        instances_[0]->changeRate(each);
    }
    if (!each.isOne()) {
        rate.scale(path(), 1);
    }
}

void CAudioProcessStack::visitChildren(void (*visit)(void* user, CAudioProcessBase& child), void* user) const {
    for (int32_t i = 0; i < count_; ++i) {
        visit(user, *instances_[i]);
    }
}

}  // namespace tarv
