#include "Audio/Graph/CAudioProcessBase.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "Audio/Parameters/CAudioParamCollector.h"
#include "Audio/Parameters/CAudioParamDef.h"
#include "Audio/Parameters/CAudioParamNames.h"

namespace tarv {

CAudioProcessBase::~CAudioProcessBase() {
    if (place_.graph != nullptr) {
        for (CAudioPort* port : inputs_) {
            port->release(context());
        }
        for (CAudioPort* port : outputs_) {
            port->release(context());
        }
        place_.graph->collector->removeConsumers(queue_);
    }
}

void CAudioProcessBase::place(const CAudioProcessPlace& place) {
    place_ = place;
    paramElement_ = place.stackIndex < 0 || place.def->isElement0() ? 0 : place.stackIndex;
}

CError* CAudioProcessBase::init() {
    registerKernels();
    bindSlots();
    return nullptr;
}

void CAudioProcessBase::clearBuffers() {
    for (CAudioPort* port : inputs_) {
        port->release(context());
    }
    for (CAudioPort* port : outputs_) {
        port->release(context());
    }
}

/// A change is delayed as the samples are that it was posted with: by the processes in front of this one. While no
/// audio runs there are no such samples, and all changes are due.
double CAudioProcessBase::dueTime() const {
    return graph().isRunning() ? graph().now - (def().useTimeShift() ? inputDelay_ : 0)
                               : std::numeric_limits<double>::infinity();
}

bool CAudioProcessBase::areChangesDue() const {
    constexpr double kNever = std::numeric_limits<double>::infinity();
    const bool areDue = queue_.nextTime(kNever) <= dueTime();
    if (!areDue && !queue_.isEmpty()) {
        graph().noteWaitingChanges();
    }
    return areDue;
}

void CAudioProcessBase::updateParams() {
    if (changed_ != 0) {
        graph().invalidateRun();
        takeChanges();
    }
}

void CAudioProcessBase::takeChanges() {
    changed_ = 0;
    constexpr int32_t kRoom = 31;
    CArray<CAudioParamSlot*, kRoom> touched;
    queue_.takeDue(dueTime(), [this, &touched](const CAudioParamChange& change, CAudioParamSlot* slot) {
        slot->data.apply(change);
        if (touched.count() == kRoom) {
            slotChanged(*slot);
        } else if (slot->changed == 0) {
            slot->changed = 1;
            touched.append(slot);
        }
    });
    if (!queue_.isEmpty()) {
        changed_ = 1;
        graph().noteWaitingChanges();
    }
    for (CAudioParamSlot* slot : touched) {
        slot->changed = 0;
        slotChanged(*slot);
    }
}

void CAudioProcessBase::reset() {
    graph().invalidateRun();
    clearBuffers();
}

void CAudioProcessBase::visitChildren(void (*)(void*, CAudioProcessBase&), void*) const {}

void CAudioProcessBase::needInput(int32_t port) {
    while (inputs_.count() <= port) {
        inputs_.append(new CAudioPort(graph().channelCount));
    }
}

void CAudioProcessBase::needOutput(int32_t port) {
    while (outputs_.count() <= port) {
        outputs_.append(new CAudioPort(graph().channelCount));
    }
}

int32_t CAudioProcessBase::placeDelay(int32_t inputDelay) {
    setDelays(inputDelay, inputDelay);
    return inputDelay;
}

void CAudioProcessBase::setDelays(int32_t inputDelay, int32_t outputDelay) {
    if (inputDelay != inputDelay_) {
        changed_ = 1;
        graph().invalidateRun();
    }
    if (outputDelay != outputDelay_) {
        graph().invalidateDelays();
    }
    inputDelay_ = inputDelay;
    outputDelay_ = outputDelay;
}

double CAudioProcessBase::slotValue(const CAudioParamSlot* slot, int32_t group, int32_t element, double unset) const {
    if (slot == nullptr || !slot->data.isValid()) {
        return unset;
    }
    return slot->data.value(def().isGroup0() ? 0 : group, element);
}

int32_t CAudioProcessBase::slotNumber(const CAudioParamSlot* slot, int32_t element) const {
    constexpr double kMost = 1e6;
    return static_cast<int32_t>(std::clamp(std::round(slotValue(slot, 0, element, 0.0)), -kMost, kMost));
}

CString CAudioProcessBase::localName(const CString& name, const CAudioProcessBase& ancestor) const {
    CString local = name;
    for (const CAudioProcessBase* process = this; process != &ancestor; process = process->parent()) {
        if (!process->name().isEmpty()) {
            local = process->name() + "." + local;
        }
    }
    return local;
}

CString CAudioProcessBase::paramFullName(const CString& name, bool& isShared) const {
    for (const CAudioProcessBase* process = this; process != nullptr; process = process->parent()) {
        if (!process->def().mayRemap(name)) {
            continue;  // as most: the name that it would be looked up by is not made
        }
        if (const CAudioParamRemapDef* remap = process->def().findRemap(localName(name, *process))) {
            isShared = true;
            return resolveParamName(process->path(), remap->newName());
        }
    }
    const CString own = fullParamName(path(), name);
    const CAudioParamDef* param = def().findParam(name);
    isShared = graph().collector->hasParam(own) || (param != nullptr && param->info().isGlobal());
    return own;
}

void CAudioProcessBase::bindSlot(const CString& name, CAudioParamSlot& slot, int32_t element) {
    bool isShared = false;
    const CString fullName = paramFullName(name, isShared);
    if (isShared) {
        bindShared(fullName, slot, element);
    } else if (const CAudioParamDef* param = def().findParam(name)) {
        slot.data.resetWithDefaults(param->info(), 0);
    }
}

void CAudioProcessBase::bindShared(const CString& fullName, CAudioParamSlot& slot, int32_t element) {
    CAudioParamCollector& collector = *graph().collector;
    collector.addConsumer(*collector.getParam(fullName), slot, queue_, changed_, -1, element);
}

/// The process to which a relative name leads; `name` becomes its local name there. Null above the graph.
const CAudioProcessBase* CAudioProcessBase::findOwner(CString& name) const {
    const CAudioProcessBase* owner = this;
    const bool isAbove = name.startsWith("^");
    while (owner != nullptr && name.startsWith("^")) {
        // An instance of a stack has its stack's path: both are one step.
        const CString& left = owner->path();
        while (owner != nullptr && owner->path() == left) {
            owner = owner->parent();
        }
        name = name.substring(1);
    }
    if (isAbove && name.startsWith(".")) {
        name = name.substring(1);
    }
    for (int32_t dot = name.indexOf('.'); owner != nullptr && dot >= 0; dot = name.indexOf('.')) {
        const CAudioProcessBase* inner = owner->findInner(name.substring(0, dot));
        if (inner == nullptr) {
            break;
        }
        owner = inner;
        name = name.substring(dot + 1);
    }
    return owner;
}

void CAudioProcessBase::bindRelative(const CString& name, CAudioParamSlot& slot) {
    CString local = name;
    const CAudioProcessBase* owner = name.startsWith("/") ? nullptr : findOwner(local);
    if (owner == nullptr) {
        bindShared(resolveParamName(path(), name), slot);
        return;
    }
    bool isShared = false;
    const CString fullName = owner->paramFullName(local, isShared);
    const CAudioParamDef* param = owner->def().findParamBelow(local);
    // A process that is built later announces its named parameters then; a name without an owner may be announced
    // later.
    const bool isNamed = param == nullptr || param->info().isStorable() || param->info().isPersistent();
    if (isShared || isNamed || param->info().isGlobal()) {
        bindShared(fullName, slot);
    } else {
        slot.data.resetWithDefaults(param->info(), 0);
    }
}

void CAudioProcessBase::bindSlots() {
    for (const CAudioProcessDefBase::CParam& param : def().params()) {
        const CAudioParamInfo& info = param.def->info();
        if (info.isPersistent() || info.isStorable() || info.isGlobal()) {
            graph().collector->define(fullParamName(path(), param.name), info);
        }
    }
    int32_t count = 0;
    for (const CAudioParamAllocDef* alloc : def().allocs()) {
        count = alloc->index() >= count ? alloc->index() + 1 : count;
    }
    while (slots_.count() < count) {
        slots_.append(nullptr);
    }
    // A process of a stack gets the changes of its element; with `count` it reads the elements behind it as well.
    const int32_t element = stackIndex() < 0 || hasCount() ? -1 : paramElement();
    for (const CAudioParamAllocDef* alloc : def().allocs()) {
        if (slots_[alloc->index()] == nullptr) {
            slots_[alloc->index()] = new CAudioParamSlot;
            bindSlot(alloc->paramName(), *slots_[alloc->index()], element);
        }
    }
}

bool CAudioProcessBase::hasCount() const {
    bool isShared = false;
    (void)paramFullName("count", isShared);
    return isShared || def().findParam("count") != nullptr;
}

int32_t CAudioProcessBase::stepLength() const {
    int32_t length = CAudioPort::kUnlimited;
    for (const CAudioPort* port : inputs_) {
        length = port->samples < length ? port->samples : length;
    }
    return length == CAudioPort::kUnlimited ? 0 : length;
}

void CAudioProcessBase::forwardInput() {
    output(0).takeFrom(input(0), context());
}

void CAudioProcessBase::releaseInputs() {
    for (CAudioPort* port : inputs_) {
        port->release(context());
        port->samples = CAudioPort::kUnlimited;
    }
}

}  // namespace tarv
