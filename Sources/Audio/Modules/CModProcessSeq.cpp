#include "Audio/Modules/CModResampler.h"

namespace tarv {

CError* CModProcessSeq::init() {
    TARV_TRY(CAudioProcessBase::init());
    needInput(0);
    needOutput(0);
    return nullptr;
}

CError* CModProcessSeq::insertChild(int32_t position, const CAudioProcessDefBase& childDef, const CString& childName) {
    CAudioProcessBase* child = childDef.instantiate();
    child->place({&graph(), this, &childDef, path() + "." + childName, childName, stackIndex()});
    if (CError* error = child->init()) {
        delete child;
        return addErrorLocation(error, __FILE__, __LINE__, errorContextName(), CString());
    }
    sequence_.insert(position, child);
    return nullptr;
}

void CModProcessSeq::removeChild(int32_t position) {
    CAudioProcessBase* child = sequence_[position];
    sequence_.removeAt(position);
    delete child;
}

void CModProcessSeq::process() {
    updateParams();
    updateSequence();
    CAudioPort* source = &input(0);
    for (CAudioProcessBase* child : sequence_) {
        child->input(0).takeFrom(*source, context());
        child->process();
        if (graph().observer != nullptr) {
            graph().observer->processed(*child);
        }
        source = &child->output(0);
    }
    output(0).takeFrom(*source, context());
    releaseInputs();
}

void CModProcessSeq::updateIdle() {
    updateParams();
    for (CAudioProcessBase* child : sequence_) {
        child->updateIdle();
    }
}

void CModProcessSeq::clearBuffers() {
    CAudioProcessBase::clearBuffers();
    for (CAudioProcessBase* child : sequence_) {
        child->clearBuffers();
    }
}

void CModProcessSeq::reset() {
    CAudioProcessBase::reset();
    for (CAudioProcessBase* child : sequence_) {
        child->reset();
    }
}

void CModProcessSeq::makeSpares() {
    for (CAudioProcessBase* child : sequence_) {
        child->makeSpares();
    }
}

int32_t CModProcessSeq::placeDelay(int32_t inputDelay) {
    int32_t delay = inputDelay;
    for (CAudioProcessBase* child : sequence_) {
        delay = child->placeDelay(delay);
    }
    setDelays(inputDelay, delay);
    return delay;
}

void CModProcessSeq::visitChildren(void (*visit)(void* user, CAudioProcessBase& child), void* user) const {
    for (CAudioProcessBase* child : sequence_) {
        visit(user, *child);
    }
}

}  // namespace tarv
