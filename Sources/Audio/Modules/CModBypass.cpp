#include "Audio/Modules/CModBypass.h"

#include "Audio/Kernels/KernelNames.h"
#include "Audio/Kernels/NoiseKernels.h"

namespace tarv {

CAudioProcessBase* CModBypassDef::createProcess() const {
    return new CModBypass;
}

CError* CModBypass::init() {
    TARV_TRY(CAudioProcessTerminal::init());
    needInput(1);
    return nullptr;
}

void CModBypass::registerKernels() {
    registerNoiseKernels(context());
}

void CModBypassModule::bindParams() {
    process().regModuleParam(0, enableSlot_);
    process().regModuleParam(1, soloSlot_);
}

void CModBypassModule::resolveKernels() {
    noiseKernel_ = context().findKernel(KernelName::kDenormN);
}

bool CModBypassModule::isSoloedAway() const {
    if (soloSlot_ == nullptr || !soloSlot_->data.isValid()) {
        return false;
    }
    // One value for each group, in the elements of the list.
    bool isAnySoloed = false;
    for (int32_t i = 0; i < process().graph().groupCount; ++i) {
        if (soloSlot_->data.value(0, i) > 0.5) {
            if (i == group()) {
                return false;
            }
            isAnySoloed = true;
        }
    }
    return isAnySoloed;
}

CModBypassModule::CChoice CModBypassModule::choose() const {
    if (isSoloedAway()) {
        return CChoice::Noise;
    }
    return read(enableSlot_, 0.0) > 0.5 ? CChoice::Dry : CChoice::Processed;
}

CBufferHandle CModBypassModule::run(CBufferHandle in, CBufferHandle second, int32_t count) {
    if (choice_ == CChoice::Processed) {
        return forward(in);
    }
    if (choice_ == CChoice::Dry && second != kNoBuffer) {
        return forward(second);
    }
    return noise(seed_, noiseKernel_, count);
}

}  // namespace tarv
