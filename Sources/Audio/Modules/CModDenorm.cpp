#include "Audio/Modules/CModDenorm.h"

#include "Audio/Kernels/KernelNames.h"
#include "Audio/Kernels/NoiseKernels.h"

namespace tarv {

CAudioProcessBase* CModDenormDef::createProcess() const {
    return new CModDenorm;
}

void CModDenorm::registerKernels() {
    registerNoiseKernels(context());
}

void CModDenormModule::resolveKernels() {
    kernel_ = context().findKernel(KernelName::kDenorm);
}

void CModDenormModule::design(double, CModDenormModule* from) {
    if (from != this) {
        drop(seed_);
        seed_ = takeSeed();
    }
}

CBufferHandle CModDenormModule::run(CBufferHandle in, CBufferHandle, int32_t count) {
    const CBufferHandle out = takeSignal(count);
    context().issue(kernel_, count, 0.0, {out, seed_, in});
    return out;
}

}  // namespace tarv
