#include "Audio/Modules/CAudioModule.h"

#include "Audio/Modules/CAudioProcessTerminalBase.h"

namespace tarv {

void CAudioModule::attach(CAudioProcessTerminalBase& process) {
    process_ = &process;
    context_ = &process.context();
}

double CAudioModule::read(const CAudioParamSlot* slot, double unset, int32_t offset) const {
    return process_->slotValue(slot, group_, process_->paramElement() + offset, unset);
}

CBufferHandle CAudioModule::takeSeed() const {
    const CBufferHandle seed = context().takeBuffer(sizeof(double));
    if (seed != kNoBuffer) {
        *static_cast<uint32_t*>(context().data(seed)) = 0;
    }
    return seed;
}

CBufferHandle CAudioModule::noise(CBufferHandle& seed, int32_t kernel, int32_t count) const {
    if (seed == kNoBuffer) {
        seed = takeSeed();
    }
    const CBufferHandle out = takeSignal(count);
    context().issue(kernel, count, 0.0, {out, seed});
    return out;
}

void CAudioModule::drop(CBufferHandle& handle) const {
    context().releaseReference(handle);
    handle = kNoBuffer;
}

}  // namespace tarv
