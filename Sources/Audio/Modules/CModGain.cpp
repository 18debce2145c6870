#include "Audio/Modules/CModGain.h"

#include "Audio/Kernels/KernelNames.h"
#include "Audio/Kernels/NoiseKernels.h"

namespace tarv {

CAudioProcessBase* CModGainDef::createProcess() const {
    return new CModGain;
}

void CModGain::registerKernels() {
    registerNoiseKernels(context());
}

void CModGainModule::bindParams() {
    process().regModuleParam(0, gainSlot_);
    process().regModuleParam(1, muteSlot_);
}

void CModGainModule::resolveKernels() {
    noiseKernel_ = context().findKernel(KernelName::kDenormN);
}

bool CModGainModule::differs() const {
    return read(gainSlot_, 1.0) != gain_ || (read(muteSlot_, 0.0) >= 0.5) != isMuted_;
}

void CModGainModule::design(double, CModGainModule*) {
    gain_ = read(gainSlot_, 1.0);
    isMuted_ = read(muteSlot_, 0.0) >= 0.5;
}

CBufferHandle CModGainModule::run(CBufferHandle in, CBufferHandle, int32_t count) {
    if (isMuted_ || !(gain_ > kNothing)) {
        return noise(seed_, noiseKernel_, count);
    }
    const CBufferHandle out = takeSignal(count);
    context().issue(context().commonKernel(CCommonKernel::Mulc), count, gain_, {out, in});
    return out;
}

}  // namespace tarv
