#include "Audio/Modules/CModOutput.h"

#include "Audio/Parameters/CAudioEnv.h"

namespace tarv {

CAudioProcessBase* CModOutputDef::createProcess() const {
    return new CModOutput;
}

CError* CModOutput::init() {
    TARV_TRY(CAudioProcessBase::init());
    needInput(0);
    needOutput(0);
    return nullptr;
}

void CModOutput::updateParams() {
    if (hasChanges()) {
        CAudioProcessBase::updateParams();
        graph().env->setLatency(inputDelay());
    }
}

void CModOutput::process() {
    updateParams();
    forwardInput();
}

CBufferHandle CModOutput::block(int32_t hostChannel) const {
    for (const CAudioChannel& channel : output(0).channels) {
        if (channel.element == hostChannel) {
            return channel.handle;
        }
    }
    return kNoBuffer;
}

}  // namespace tarv
