#include "Audio/Modules/CModNode.h"

#include "Audio/Parameters/CAudioEnv.h"

namespace tarv {

CAudioProcessBase* CModNodeDef::createProcess() const {
    return new CModNode;
}

CError* CModNode::init() {
    TARV_TRY(CAudioProcessBase::init());
    needInput(0);
    needOutput(0);
    return nullptr;
}

void CModNode::needInput(int32_t port) {
    CAudioProcessBase::needInput(port);
    needOutput(port);
}

void CModNode::process() {
    updateParams();
    for (int32_t port = 0; port < inputCount(); ++port) {
        output(port).takeFrom(input(port), context());
    }
}

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
