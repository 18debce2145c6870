#include "Audio/Modules/CModRouter.h"

namespace tarv {

CError* CModRouterDef::init() {
    TARV_TRY(CAudioProcessDefBase::init());
    isOutput_ = getAttrBool("is-output");
    return nullptr;
}

CAudioProcessBase* CModRouterDef::createProcess() const {
    return new CModRouter;
}

CError* CModRouter::init() {
    TARV_TRY(CAudioProcessBase::init());
    needInput(0);
    needOutput(0);
    readTables();
    return nullptr;
}

void CModRouter::slotChanged(CAudioParamSlot&) {
    readTables();
}

void CModRouter::readTables() {
    for (int32_t e = 0; e < kMaxElements; ++e) {
        const int32_t source = slotNumber(slot(0), e);
        const int32_t group = slotNumber(slot(1), e);
        if (source != routing_[e]) {
            routing_[e] = source;
            ++serials_[e];
        }
        grouping_[e] = group < 0 ? 0 : group < graph().groupCount ? group : graph().groupCount - 1;
        layout_ = mixSerial(mixSerial(layout_, serials_[e]), static_cast<uint64_t>(grouping_[e]));
    }
}

const CAudioChannel* CModRouter::findElement(const CAudioPort& port, int32_t element) {
    for (const CAudioChannel& channel : port.channels) {
        if (channel.element == element) {
            return &channel;
        }
    }
    return nullptr;
}

CBufferHandle CModRouter::silence(int32_t samples) const {
    const CBufferHandle block = context().takeSignal(samples);
    context().issue(context().commonKernel(CCommonKernel::Fill0), samples, 0.0, {block});
    return block;
}

void CModRouter::routeInputs() {
    const CAudioPort& in = input(0);
    CAudioPort& out = output(0);
    for (int32_t e = 0; e < graph().channelCount && e < kMaxElements; ++e) {
        if (routing_[e] < 1) {
            continue;
        }
        const CAudioChannel* source = findElement(in, routing_[e] - 1);
        CBufferHandle block;
        if (source != nullptr) {
            block = source->handle;
            context().addReference(block);
        } else {
            block = silence(out.samples);
        }
        out.add(grouping_[e], e, serials_[e], block);
    }
}

void CModRouter::routeOutputs() {
    const CAudioPort& in = input(0);
    const int32_t hostCount = graph().hostOutputs < kMaxElements ? graph().hostOutputs : kMaxElements;
    const CAudioChannel* reached[kMaxElements] = {};
    // The channels of the output and their signals depend on those of the input.
    output(0).layout = mixSerial(layout_, in.layout);
    for (const CAudioChannel& channel : in.channels) {
        const int32_t target = channel.element < kMaxElements ? routing_[channel.element] : 0;
        if (target >= 1 && target <= hostCount) {
            reached[target - 1] = &channel;
        }
    }
    const CAudioChannel* sources[kMaxElements] = {};
    for (int32_t h = 0; h < hostCount; ++h) {
        sources[h] = reached[h];
        if (sources[h] == nullptr && h < graph().channelCount && routing_[h] >= 1 && findElement(in, h) == nullptr) {
            sources[h] = findElement(in, routing_[h] - 1);
        }
        if (sources[h] != nullptr) {
            context().addReference(sources[h]->handle);
            output(0).add(0, h, sources[h]->serial, sources[h]->handle);
        }
    }
}

void CModRouter::process() {
    updateParams();
    CAudioPort& out = output(0);
    out.release(context());
    out.samples = stepLength();
    out.rate = input(0).rate;
    out.layout = layout_;
    if (routerDef().isOutput()) {
        routeOutputs();
    } else {
        routeInputs();
    }
    releaseInputs();
}

}  // namespace tarv
