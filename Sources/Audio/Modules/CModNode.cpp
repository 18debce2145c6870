#include "Audio/Modules/CModNode.h"

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

}  // namespace tarv
