#include "Audio/Modules/CModInterpolator.h"

#include "Audio/Kernels/KernelNames.h"
#include "Audio/Kernels/ResampleKernels.h"

namespace tarv {

CAudioProcessBase* CModInterpolatorDef::createProcess() const {
    return new CModInterpolator;
}

CError* CModInterpolator::init() {
    TARV_TRY(CAudioProcessBase::init());
    needInput(0);
    needOutput(0);
    kernel_ = context().findKernel(KernelName::kInterp2);
    return nullptr;
}

void CModInterpolator::registerKernels() {
    registerResampleKernels(context());
}

void CModInterpolator::process() {
    updateParams();
    const CAudioPort& in = input(0);
    CAudioPort& out = output(0);
    const int32_t count = stepLength();
    out.release(context());
    out.samples = 2 * count;
    out.rate = 2.0 * in.rate;
    out.layout = in.layout;
    for (const CAudioChannel& channel : in.channels) {
        const CBufferHandle block = context().takeSignal(2 * count);
        context().issue(kernel_, count, 0.0, {block, channel.handle});
        out.add(channel.group, channel.element, channel.serial, block);
    }
    releaseInputs();
    context().endProcess();
}

}  // namespace tarv
