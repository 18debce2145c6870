#include "Audio/Graph/CAudioProcess.h"

#include "Audio/Graph/CAudioGraphObserver.h"
#include "Audio/Graph/CAudioProcessLinkDef.h"

namespace tarv {

CError* CAudioProcess::init() {
    const auto* processDef = dynamic_cast<const CAudioProcessDef*>(&def());
    if (processDef == nullptr) {
        TARV_FAIL("@tarvstr_CAudioProcess_init_ProcessDefClassInvalid Audio process def of invalid class supplied.");
    }
    TARV_TRY(CAudioProcessBase::init());
    needInput(0);
    needOutput(0);
    TARV_TRY(buildChildren(*processDef));
    buildLinks(*processDef);
    TARV_TRY(findRates());
    buildStates(*processDef);
    isStructureDirty_ = true;
    return nullptr;
}

CError* CAudioProcess::buildChildren(const CAudioProcessDef& processDef) {
    for (const CAudioProcessDefBase* child : processDef.childDefs()) {
        if (!child->isPrototype()) {
            TARV_TRY(addProcess(*child, child->name()));
        }
    }
    return nullptr;
}

CError* CAudioProcess::addProcess(const CAudioProcessDefBase& childDef, const CString& childName) {
    if (names_.contains(childName)) {
        TARV_FAIL("@tarvstr_CAudioProcess_addProcess_DupeName Duplicate audio process name '%1'.", childName);
    }
    CAudioProcessBase* child = childDef.instantiate();
    children_.append(child);
    names_[childName] = child;
    child->place({&graph(), this, &childDef, path() + "." + childName, childName, stackIndex()});
    TARV_TRY(child->init());
    isStructureDirty_ = true;
    return nullptr;
}

CAudioProcessBase* CAudioProcess::findProcess(const CString& childName) const {
    const auto found = names_.find(childName);
    return found == names_.end() ? nullptr : found->second;
}

void CAudioProcess::buildLinks(const CAudioProcessDef& processDef) {
    if (processDef.isAutoLinks()) {
        CAudioProcessBase* previous = nullptr;
        for (CAudioProcessBase* child : children_) {
            if (!child->def().isOutOfOrder()) {
                addLink({previous, 0, child, 0, nullptr});
                previous = child;
            }
        }
        addLink({previous, 0, nullptr, 0, nullptr});
    }
    for (const CAudioProcessLinkDef* link : processDef.links()) {
        const CAudioLinkEnd& src = link->src();
        const CAudioLinkEnd& dst = link->dst();
        // No process is made of a prototype, so its links have no end.
        if ((src.child != nullptr && src.child->isPrototype()) || (dst.child != nullptr && dst.child->isPrototype())) {
            continue;
        }
        addLink({src.child != nullptr ? findProcess(src.child->name()) : nullptr, src.port,
                 dst.child != nullptr ? findProcess(dst.child->name()) : nullptr, dst.port, link});
    }
}

void CAudioProcess::addLink(const CLink& link) {
    if (link.src != nullptr) {
        link.src->needOutput(link.srcPort);
    } else {
        needInput(link.srcPort);
    }
    if (link.dst != nullptr) {
        link.dst->needInput(link.dstPort);
    } else {
        needOutput(link.dstPort);
    }
    links_.append(link);
}

void CAudioProcess::buildStates(const CAudioProcessDef& processDef) {
    for (const CAudioProcessBypassStateDef* state : processDef.bypassStates()) {
        auto* evaluator = new CAudioBypassEvaluator(*state);
        states_.append(evaluator);
        bindRelative(state->condition().param, evaluator->slot());
        if (!state->andCondition().param.isEmpty()) {
            bindRelative(state->andCondition().param, evaluator->andSlot());
        }
        evaluator->evaluate();
    }
}

void CAudioProcess::slotChanged(CAudioParamSlot& slot) {
    for (CAudioBypassEvaluator* state : states_) {
        if (&state->slot() == &slot || &state->andSlot() == &slot) {
            isStructureDirty_ |= state->evaluate();
        }
    }
}

void CAudioProcess::setLinkState(int32_t state) {
    if (state != linkState_) {
        linkState_ = state;
        isStructureDirty_ = true;
        graph().invalidateRun();
    }
}

void CAudioProcess::clearBuffers() {
    CAudioProcessBase::clearBuffers();
    for (CAudioProcessBase* child : children_) {
        child->clearBuffers();
    }
}

void CAudioProcess::reset() {
    CAudioProcessBase::reset();
    for (CAudioProcessBase* child : children_) {
        child->reset();
    }
}

void CAudioProcess::makeSpares() {
    for (CAudioProcessBase* child : children_) {
        child->makeSpares();
    }
}

void CAudioProcess::visitChildren(void (*visit)(void* user, CAudioProcessBase& child), void* user) const {
    for (CAudioProcessBase* child : order_) {
        visit(user, *child);
    }
}

bool CAudioProcess::takeQuietChanges() {
    if (isStructureDirty_ || !CAudioProcessBase::takeQuietChanges()) {
        return false;
    }
    for (CAudioProcessBase* child : idle_) {
        child->updateIdle();
    }
    for (const CStep& step : steps_) {
        if (step.child != nullptr && !step.child->takeQuietChanges()) {
            return false;
        }
    }
    return true;
}

void CAudioProcess::updateIdle() {
    updateParams();
    for (CAudioProcessBase* child : children_) {
        child->updateIdle();
    }
}

void CAudioProcess::process() {
    // Before the order is checked, so that a change acts from its sample on, independent of how the host cuts blocks.
    updateParams();
    if (isStructureDirty_) {
        rebuildOrder();
    }
    for (CAudioProcessBase* child : idle_) {
        child->updateIdle();
    }
    for (int32_t port = 0; port < outputCount(); ++port) {
        output(port).release(context());
        output(port).samples = CAudioPort::kUnlimited;
    }
    for (const CStep& step : steps_) {
        if (step.child != nullptr) {
            step.child->process();
            if (graph().observer != nullptr) {
                graph().observer->processed(*step.child);
            }
        }
        runTransfers(step);
    }
    releaseInputs();
}

void CAudioProcess::runTransfers(const CStep& step) {
    const CTransfer* transfer = transfers_.data() + step.firstTransfer;
    const CTransfer* const end = transfer + step.transferCount;
    for (; transfer != end; ++transfer) {
        CAudioPort& src = *transfer->src;
        CAudioPort& dst = *transfer->dst;
        if (transfer->isLast && !transfer->mayMerge) {
            dst.takeFrom(src, context());
            continue;
        }
        dst.samples = src.samples < dst.samples ? src.samples : dst.samples;
        dst.rate = src.rate;
        dst.layout = transfer->isFirst ? src.layout : mixSerial(dst.layout, src.layout);
        for (const CAudioChannel& channel : src.channels) {
            if (!transfer->isLast) {
                context().addReference(channel.handle);
            }
            if (transfer->mayMerge) {
                mergeChannel(dst, channel);
            } else {
                dst.channels.append(channel);
            }
        }
        if (transfer->isLast) {
            src.channels.clear();
        }
    }
}

void CAudioProcess::mergeChannel(CAudioPort& dst, const CAudioChannel& channel) {
    CQPLEXContext& ctx = context();
    for (CAudioChannel& there : dst.channels) {
        if (there.group == channel.group && there.element == channel.element) {
            const CBufferHandle sum = ctx.takeSignal(dst.samples);
            ctx.issue(ctx.commonKernel(CCommonKernel::Add2), dst.samples, 0.0, {sum, there.handle, channel.handle});
            ctx.releaseReference(there.handle);
            ctx.releaseReference(channel.handle);
            there.handle = sum;
            there.serial = mixSerial(there.serial, channel.serial);
            return;
        }
    }
    dst.channels.append(channel);
}

}  // namespace tarv
