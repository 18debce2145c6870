#include "Audio/Modules/CModMute.h"

#include "Audio/Kernels/KernelNames.h"
#include "Audio/Kernels/NoiseKernels.h"

namespace tarv {

CAudioProcessBase* CModMuteDef::createProcess() const {
    return new CModMute;
}

void CModMute::registerKernels() {
    registerNoiseKernels(context());
}

void CModMuteModule::bindParams() {
    process().regModuleParam(0, muteSlot_);
}

void CModMuteModule::resolveKernels() {
    noiseKernel_ = context().findKernel(KernelName::kDenormN);
}

CBufferHandle CModMuteModule::run(CBufferHandle in, CBufferHandle, int32_t count) {
    return isMuted_ ? noise(seed_, noiseKernel_, count) : forward(in);
}

}  // namespace tarv
