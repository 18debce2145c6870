#include "Audio/Modules/CModDecimator.h"

#include "Audio/Kernels/KernelNames.h"
#include "Audio/Kernels/ResampleKernels.h"

namespace tarv {

CAudioProcessBase* CModDecimatorDef::createProcess() const {
    return new CModDecimator;
}

CError* CModDecimator::init() {
    TARV_TRY(CAudioProcessBase::init());
    needInput(0);
    needOutput(0);
    evenKernel_ = context().findKernel(KernelName::kDecim2);
    oddKernel_ = context().findKernel(KernelName::kDecim2s);
    return nullptr;
}

void CModDecimator::registerKernels() {
    registerResampleKernels(context());
}

void CModDecimator::process() {
    updateParams();
    const CAudioPort& in = input(0);
    CAudioPort& out = output(0);
    const int32_t count = stepLength();
    const int32_t kept = (count - offset_ + 1) / 2;
    // Above the host's rate a block is a multiple of the host's.
    const double immediate = in.rate > 1.5 * graph().hostRate ? kAlwaysEven : 0.0;
    out.release(context());
    out.samples = kept;
    out.rate = 0.5 * in.rate;
    out.layout = in.layout;
    for (const CAudioChannel& channel : in.channels) {
        const CBufferHandle block = context().takeSignal(kept);
        context().issue(offset_ == 0 ? evenKernel_ : oddKernel_, kept, immediate, {block, channel.handle});
        out.add(channel.group, channel.element, channel.serial, block);
    }
    const int32_t next = offset_ + 2 * kept - count;
    if (next != offset_) {
        graph().invalidateRun();
    }
    offset_ = next;
    releaseInputs();
    context().endProcess();
}

void CModDecimator::reset() {
    CAudioProcessBase::reset();
    offset_ = 0;
}

}  // namespace tarv
