// The run order of a composite: which links are live, in which order the children run, and which blocks move behind
// each. Rebuilt on the audio thread when a bypass state, a link state or the set of children changed.

#include "Audio/Graph/CAudioProcess.h"
#include "Audio/Graph/CAudioProcessLinkDef.h"
#include "Core/Log.h"

namespace tarv {

void CAudioProcess::rebuildOrder() {
    isStructureDirty_ = false;
    graph().invalidateRun();
    collectLiveLinks();
    sortChildren();
    idle_.clear();
    for (CAudioProcessBase* child : children_) {
        if (order_.indexOf(child) < 0) {
            // Its history is out of date when it runs again.
            child->reset();
            idle_.append(child);
        }
    }
    buildSteps();
    placeDelay(inputDelay());
}

bool CAudioProcess::isStateActive(int32_t id) const {
    for (const CAudioBypassEvaluator* state : states_) {
        if (state->def().id() == id && state->isActive()) {
            return true;
        }
    }
    return false;
}

bool CAudioProcess::isBypassed(const CAudioProcessBase* child) const {
    return child != nullptr && child->def().bypassStateId() >= 0 && isStateActive(child->def().bypassStateId());
}

bool CAudioProcess::isLive(const CLink& link) const {
    if (link.def == nullptr) {
        return true;
    }
    if (link.def->stateId() >= 0 && link.def->stateId() != linkState_) {
        return false;
    }
    bool isWanted = link.def->bypassStateIds().isEmpty();
    for (const int32_t id : link.def->bypassStateIds()) {
        isWanted |= isStateActive(id);
    }
    return isWanted;
}

void CAudioProcess::collectLiveLinks() {
    liveLinks_.clear();
    for (const CLink& link : links_) {
        if (isLive(link) && !isBypassed(link.dst)) {
            appendSources(link, children_.count());
        }
    }
}

void CAudioProcess::appendSources(const CLink& link, int32_t depth) {
    if (!isBypassed(link.src)) {
        liveLinks_.append(link);
        return;
    }
    // A bypassed child's input 0 is connected through. The depth ends a ring of bypassed children.
    for (const CLink& before : links_) {
        if (depth > 0 && before.dst == link.src && before.dstPort == 0 && isLive(before)) {
            appendSources({before.src, before.srcPort, link.dst, link.dstPort, link.def}, depth - 1);
        }
    }
}

bool CAudioProcess::isReady(const CAudioProcessBase* child) const {
    for (const CLink& link : liveLinks_) {
        if (link.dst == child && link.src != nullptr && order_.indexOf(link.src) < 0) {
            return false;
        }
    }
    return true;
}

void CAudioProcess::sortChildren() {
    order_.clear();
    int32_t wanted = 0;
    for (CAudioProcessBase* child : children_) {
        wanted += isBypassed(child) ? 0 : 1;
    }
    for (bool hasTaken = true; hasTaken;) {
        hasTaken = false;
        for (CAudioProcessBase* child : children_) {
            if (!isBypassed(child) && order_.indexOf(child) < 0 && isReady(child)) {
                order_.append(child);
                hasTaken = true;
            }
        }
    }
    if (order_.count() != wanted) {
        logLineIn("process seq err", path());
    }
}

void CAudioProcess::addStep(CAudioProcessBase* child) {
    const int32_t first = transfers_.count();
    for (const CLink& link : liveLinks_) {
        if (link.src != child || (link.dst != nullptr && order_.indexOf(link.dst) < 0)) {
            continue;
        }
        CTransfer transfer{};
        transfer.src = child != nullptr ? &child->output(link.srcPort) : &input(link.srcPort);
        transfer.dst = link.dst != nullptr ? &link.dst->input(link.dstPort) : &output(link.dstPort);
        transfer.isLast = true;
        transfer.isFirst = true;
        for (const CTransfer& earlier : transfers_) {
            transfer.isFirst &= earlier.dst != transfer.dst;
        }
        for (const CLink& other : liveLinks_) {
            transfer.mayMerge |= &other != &link && other.dst == link.dst && other.dstPort == link.dstPort;
        }
        for (int32_t i = first; i < transfers_.count(); ++i) {
            if (transfers_[i].src == transfer.src) {
                transfers_[i].isLast = false;
            }
        }
        transfers_.append(transfer);
    }
    steps_.append({child, first, transfers_.count() - first});
}

void CAudioProcess::buildSteps() {
    steps_.clear();
    transfers_.clear();
    addStep(nullptr);
    for (CAudioProcessBase* child : order_) {
        addStep(child);
    }
}

int32_t CAudioProcess::placeDelay(int32_t inputDelay) {
    int32_t outputDelay = inputDelay;
    for (CAudioProcessBase* child : order_) {
        child->placeDelay(delayBefore(child, inputDelay));
    }
    if (!links_.isEmpty()) {
        outputDelay = delayBefore(nullptr, inputDelay);
    }
    setDelays(inputDelay, outputDelay);
    return outputDelay;
}

int32_t CAudioProcess::delayBefore(const CAudioProcessBase* process, int32_t inputDelay) const {
    int32_t delay = 0;
    for (const CLink& link : liveLinks_) {
        if (link.dst == process) {
            const int32_t before = link.src != nullptr ? link.src->outputDelay() : inputDelay;
            delay = before > delay ? before : delay;
        }
    }
    return delay;
}

}  // namespace tarv
