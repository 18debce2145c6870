#include "UI/Views/CViewBaseState.h"

#include <algorithm>

#include "Core/CObjectWatch.h"
#include "UI/Views/CViewWindow.h"

namespace tarv {

namespace {

constexpr double kDefaultDuration = 0.5;
constexpr double kDefaultMorphDuration = 0.2;

template <class T, int32_t N>
void drop(CArray<T*, N>& list, const CObject* child) {
    for (int32_t i = list.count() - 1; i >= 0; --i) {
        if (static_cast<const CObject*>(list[i]) == child) {
            list.removeAt(i);
        }
    }
}

}  // namespace

CError* deliverEvent(CObject& receiver, const CString& name, CAttributeMap& params) {
    const CObjectWatch watch(receiver);
    const int32_t index = receiver.descriptor()->handlerIndex(name);
    if (index >= 0) {
        CError* error = receiver.descriptor()->handler(index)(receiver, &params);
        if (error || !watch.isAlive()) {
            return error;
        }
    }
    auto* view = dynamic_cast<CViewBaseState*>(&receiver);
    return view ? view->receiveEvent(name, params) : receiver.sendEvent(name, params, false);
}

CError* CViewColorSlot::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CViewColorSlot::colorChanged>("color");
    descriptor.addHandler<&CViewColorSlot::colorChanged>("color-state");
    return nullptr;
}

CError* CViewColorSlot::colorChanged() {
    if (auto* view = dynamic_cast<CViewBaseState*>(parent())) {
        view->colorSlotsChanged();
    }
    return nullptr;
}

CViewBaseState::~CViewBaseState() {
    leaveTimers();
}

CError* CViewBaseState::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CViewBaseState::attrState>("state");
    return CViewBaseCtlEvents::initClass(descriptor);
}

CError* CViewBaseState::init() {
    TARV_TRY(CViewBaseCtlEvents::init());
    timerRoot_ = dynamic_cast<CViewBaseState*>(rootView());
    return nullptr;
}

CError* CViewBaseState::childAdded(CObject* child) {
    TARV_TRY(CViewBaseCtlEvents::childAdded(child));
    if (auto* state = dynamic_cast<CViewState*>(child)) {
        states_.append(state);
    } else if (auto* command = dynamic_cast<CViewCommand*>(child)) {
        commands_.append(command);
    } else if (auto* slot = dynamic_cast<CViewColorSlot*>(child)) {
        slots_.append(slot);
    }
    return nullptr;
}

void CViewBaseState::removeChild(CObject* child) {
    CViewBaseCtlEvents::removeChild(child);
    drop(states_, child);
    drop(commands_, child);
    const int32_t slots = slots_.count();
    drop(slots_, child);
    if (slots_.count() != slots) {
        colorSlotsChanged();
    }
}

CError* CViewBaseState::finishInit() {
    TARV_TRY(CViewBaseCtlEvents::finishInit());
    if (!slots_.isEmpty()) {
        TARV_TRY(setAttribute("color-slots", CAttributeValue::fromInt(slots_.count())));
    }
    for (const auto& active : active_) {
        activate(active.first);
    }
    const CObjectWatch watch(*this);
    TARV_TRY(applyStates(0.0));
    if (watch.isAlive()) {
        lookChanged(0.0);
    }
    return nullptr;
}

double CViewBaseState::now() const {
    return window() ? window()->now() : 0.0;
}

double CViewBaseState::ownMorphSeconds() const {
    return getAttrRealOr("morph-duration", kDefaultMorphDuration);
}

/// Seconds over which a change of that state shows.
double CViewBaseState::morphSecondsOf(const CString& name) const {
    double seconds = ownMorphSeconds();
    for (const CViewState* state : states_) {
        if (state->stateName() == name) {
            seconds = state->morphDuration(ownMorphSeconds());
        }
    }
    return seconds;
}

bool CViewBaseState::hasStateObject(const CString& name) const {
    return std::any_of(states_.begin(), states_.end(),
                       [&](const CViewState* state) { return state->stateName() == name; });
}

/// Joins the set; a state object with a duration lets the state end by itself.
void CViewBaseState::activate(const CString& name) {
    double duration = 0.0;
    for (const CViewState* state : states_) {
        if (state->stateName() == name) {
            duration = std::max(duration, state->duration());
        }
    }
    if (duration > 0.0) {
        activateTimed(name, duration);
    } else {
        active_[name] = CActive();
    }
}

void CViewBaseState::activateTimed(const CString& name, double duration) {
    active_[name] = CActive{now() + duration, true, window() == nullptr};
    startTimer();
}

CString CViewBaseState::activeNames() const {
    CString names;
    for (const auto& active : active_) {
        names += (names.isEmpty() ? CString() : CString(" ")) + active.first;
    }
    return names;
}

CError* CViewBaseState::attrState() {
    if (writing_ && *writing_ == CString("state")) {
        return nullptr;
    }
    const CArray<CString, 4> names = getAttrString("state").split(' ');
    CArray<CString, 4> ended;
    for (const auto& active : active_) {
        if (names.indexOf(active.first) < 0) {
            ended.append(active.first);
        }
    }
    for (const CString& name : ended) {
        active_.erase(name);
    }
    bool isOther = !ended.isEmpty();
    for (const CString& name : names) {
        if (!isStateSet(name)) {
            activate(name);
            isOther = true;
        }
    }
    return isOther ? applyStates(ownMorphSeconds()) : nullptr;
}

CError* CViewBaseState::changeState(const CString& name, bool isSet, CStateChange change) {
    if (isStateSet(name) == isSet) {
        return nullptr;
    }
    if (isSet) {
        activate(name);
    } else {
        active_.erase(name);
    }
    const double seconds = change == CStateChange::AtOnce ? 0.0 : morphSecondsOf(name);
    const bool isLook = hasStateObject(name);
    const CObjectWatch watch(*this);
    CError* error = writeAttribute("state", CAttributeValue::fromString(activeNames()));
    if (error || !watch.isAlive() || !isLook) {
        return error;
    }
    return applyStates(seconds);
}

CError* CViewBaseState::changeEach(const CString& names, CStateChange change, bool (*isSet)(bool wasSet)) {
    const CObjectWatch watch(*this);
    for (const CString& name : names.split(' ')) {
        CError* error = changeState(name, isSet(isStateSet(name)), change);
        if (error || !watch.isAlive()) {
            return error;
        }
    }
    return nullptr;
}

CError* CViewBaseState::setState(const CString& names, CStateChange change) {
    return changeEach(names, change, [](bool) { return true; });
}

CError* CViewBaseState::unsetState(const CString& names, CStateChange change) {
    return changeEach(names, change, [](bool) { return false; });
}

CError* CViewBaseState::toggleState(const CString& names, CStateChange change) {
    return changeEach(names, change, [](bool wasSet) { return !wasSet; });
}

CError* CViewBaseState::setStateTimed(const CString& name) {
    return setStateTimed(name, getAttrRealOr("duration", kDefaultDuration));
}

CError* CViewBaseState::setStateTimed(const CString& name, double duration) {
    const CObjectWatch watch(*this);
    CError* error = changeState(name, true, CStateChange::Morphed);
    if (error || !watch.isAlive() || !isStateSet(name)) {
        return error;
    }
    activateTimed(name, duration);
    return nullptr;
}

CError* CViewBaseState::setInputState(CInputState state, bool isSet) {
    constexpr const char* kNames[] = {"hover", "pushed", "focus"};
    const CString name(kNames[static_cast<int32_t>(state)]);
    // A press and the focus show only where the definition has a look for them.
    if (state != CInputState::Hover && isSet && !hasStateObject(name)) {
        return nullptr;
    }
    return changeState(name, isSet, CStateChange::Morphed);
}

bool CViewBaseState::hasCommandOn(const CString& eventName) const {
    return std::any_of(commands_.begin(), commands_.end(),
                       [&](const CViewCommand* command) { return command->onEvent() == eventName; });
}

bool CViewBaseState::isInputView() const {
    return CViewBaseCtlEvents::isInputView() ||
           std::any_of(commands_.begin(), commands_.end(),
                       [](const CViewCommand* command) { return command->onEvent().startsWith("mouse-"); });
}

bool CViewBaseState::isTakenBack() const {
    static const CString kEvent("mouse-take-back");
    return hasCommandOn(kEvent);
}

CError* CViewBaseState::inputEvent(const CString& name, CAttributeMap& params) {
    // A command may add and remove others.
    CArray<CViewCommand*, 8> commands;
    for (CViewCommand* command : commands_) {
        if (command->onEvent() == name) {
            commands.append(command);
        }
    }
    const CObjectWatch watch(*this);
    for (CViewCommand* command : commands) {
        if (commands_.indexOf(command) >= 0) {
            CError* error = command->run(*this, params);
            if (error || !watch.isAlive()) {
                return error;
            }
        }
    }
    return CViewBaseCtlEvents::inputEvent(name, params);
}

void CViewBaseState::startTimer() {
    if (!isInTimers_ && timerRoot_) {
        timerRoot_->timers_.append(this);
        isInTimers_ = true;
    }
}

void CViewBaseState::leaveTimers() {
    if (isInTimers_) {
        timerRoot_->timers_[timerRoot_->timers_.indexOf(this)] = nullptr;
        isInTimers_ = false;
    }
}

void CViewBaseState::runTimers() {
    const CObjectWatch watch(*this);
    const double time = now();
    for (int32_t i = 0; i < timers_.count(); ++i) {
        if (timers_[i]) {
            TARV_CONSUME(timers_[i]->timer(time));
            if (!watch.isAlive()) {
                return;
            }
        }
    }
    for (int32_t i = timers_.count() - 1; i >= 0; --i) {
        if (!timers_[i]) {
            timers_.removeAt(i);
        }
    }
}

CError* CViewBaseState::timer(double time) {
    const CObjectWatch watch(*this);
    CError* error = stepTracks(time);
    if (!error && watch.isAlive()) {
        error = endStates(time);
    }
    const bool goesOn = watch.isAlive() && animate(time);
    if (watch.isAlive() && !goesOn && !isMoving()) {
        leaveTimers();
    }
    return error;
}

bool CViewBaseState::isMoving() const {
    return std::any_of(std::begin(tracks_), std::end(tracks_), [](const auto& track) { return track.isRunning(); }) ||
           std::any_of(active_.begin(), active_.end(), [](const auto& active) { return active.second.isTimed; });
}

CError* CViewBaseState::endStates(double time) {
    // A handler may set the same state anew, for the next tick to end.
    CArray<CString, 4> ended;
    for (auto& [name, active] : active_) {
        if (active.isWaiting) {
            active.end += time;
            active.isWaiting = false;
        }
        if (active.isTimed && active.end <= time) {
            ended.append(name);
        }
    }
    const CObjectWatch watch(*this);
    for (const CString& name : ended) {
        CError* error = unsetState(name);
        if (error || !watch.isAlive()) {
            return error;
        }
        CAttributeMap params;
        params["state"] = CAttributeValue::fromString(name);
        error = inputEvent("state-ready", params);
        if (error || !watch.isAlive()) {
            return error;
        }
    }
    return nullptr;
}

}  // namespace tarv
