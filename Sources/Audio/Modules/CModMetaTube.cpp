#include "Audio/Modules/CModMetaTube.h"

#include <cstring>

#include "Audio/Kernels/KernelNames.h"
#include "Audio/Kernels/TubeKernels.h"

namespace tarv {

CAudioProcessBase* CModMetaTubeDef::createProcess() const {
    return new CModMetaTube;
}

CError* CModMetaTube::init() {
    TARV_TRY(CAudioProcessTerminal::init());
    needInput(1);
    return nullptr;
}

void CModMetaTube::registerKernels() {
    registerTubeKernels(context());
}

CModMetaTubeModule::~CModMetaTubeModule() {
    retire();
}

void CModMetaTubeModule::bindParams() {
    for (int32_t i = 0; i < kSlotCount; ++i) {
        process().regModuleParam(i, slots_[i]);
    }
}

void CModMetaTubeModule::resolveKernels() {
    runKernel_ = context().findKernel(KernelName::kMetaTube);
    initKernel_ = context().findKernel(KernelName::kMetaTubeInit);
}

void CModMetaTubeModule::readBlock(CTubeBlock& block) const {
    block = {};
    block.ratioA = read(slots_[0], 1.0);
    block.ratioB = read(slots_[1], 1.0);
    block.kneeA = read(slots_[2], 1.0);
    block.kneeB = read(slots_[3], 1.0);
    block.biasI = read(slots_[4], 0.0);
    block.biasV = read(slots_[5], 0.0);
    block.gainI = read(slots_[6], 1.0);
    block.gainV = read(slots_[7], 1.0);
    block.autoGainPoint = read(slots_[8], 1.0);
    block.feedFrequency = read(slots_[9], 1000.0);
    block.feedInverted = read(slots_[10], 0.0) > 0.5 ? 1 : 0;
}

bool CModMetaTubeModule::differs() const {
    CTubeBlock block;
    readBlock(block);
    return !isDesigned_ || std::memcmp(&block, &values_, sizeof(block)) != 0;
}

void CModMetaTubeModule::design(double rate, CModMetaTubeModule*) {
    readBlock(values_);
    isDesigned_ = true;
    drop(block_);
    block_ = context().takeBuffer(sizeof(CTubeBlock));
    if (block_ != kNoBuffer) {
        std::memcpy(context().data(block_), &values_, sizeof(values_));
        context().issue(initKernel_, 1, rate, {block_});
    }
}

CBufferHandle CModMetaTubeModule::run(CBufferHandle in, CBufferHandle second, int32_t count) {
    if (second == kNoBuffer) {
        return forward(in);
    }
    const CBufferHandle out = takeSignal(count);
    context().issue(runKernel_, count, 0.0, {out, block_, in, second});
    return out;
}

void CModMetaTubeModule::retire() {
    drop(block_);
    isDesigned_ = false;
}

}  // namespace tarv
