#include "Audio/Processes/CAudioModule.h"

#include "Audio/Processes/CAudioProcessTerminal.h"

namespace tarv {

void CAudioModule::attach(CAudioProcessTerminalBase& process) {
    process_ = &process;
    context_ = &process.context();
}

double CAudioModule::read(const CAudioParamSlot* slot, double unset, int32_t offset) const {
    return process_->slotValue(slot, group_, process_->paramElement() + offset, unset);
}

namespace {

/// The first seeds of neighbouring elements differ by this: an odd number, since generators whose seeds differ by a
/// multiple of a high power of 2 give the same noise.
constexpr uint32_t kSeedOfElement = 0x9e3779b9;

}  // namespace

CBufferHandle CAudioModule::takeSeed() const {
    const CBufferHandle seed = context().takeBuffer(sizeof(double));
    if (seed != kNoBuffer) {
        *static_cast<uint32_t*>(context().data(seed)) = static_cast<uint32_t>(element()) * kSeedOfElement;
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
