#include "Audio/Processes/CModMute.h"

#include "Audio/Processes/KernelNames.h"
#include "Audio/Processes/NoiseKernels.h"

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
