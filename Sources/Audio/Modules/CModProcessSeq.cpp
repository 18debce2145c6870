#include "Audio/Modules/CModProcessSeq.h"

#include "Audio/Graph/CAudioGraphObserver.h"

namespace tarv {

CError* CModProcessSeq::init() {
    TARV_TRY(CAudioProcessBase::init());
    needInput(0);
    needOutput(0);
    return nullptr;
}

CError* CModProcessSeq::appendChild(const CAudioProcessDefBase& childDef, const CString& childName) {
    CAudioProcessBase* child = childDef.instantiate();
    children_.append(child);
    child->place({&graph(), this, &childDef, path() + "." + childName, childName, stackIndex()});
    TARV_TRY(child->init());
    return nullptr;
}

void CModProcessSeq::setSequence(int32_t first, int32_t end) {
    first_ = first;
    end_ = end;
    // The history of children that come is out of date, and that of children that go will be.
    for (CAudioProcessBase* child : children_) {
        child->reset();
    }
}

void CModProcessSeq::updateParams() {
    CAudioProcessBase::updateParams();
    for (int32_t i = 0; i < allCount(); ++i) {
        if (i < first_ || i >= end_) {
            children_[i]->updateIdle();
        }
    }
}

bool CModProcessSeq::takeQuietChanges() {
    if (!CAudioProcessBase::takeQuietChanges()) {
        return false;
    }
    for (int32_t i = 0; i < allCount(); ++i) {
        if (i < first_ || i >= end_) {
            children_[i]->updateIdle();
        } else if (!children_[i]->takeQuietChanges()) {
            return false;
        }
    }
    return true;
}

void CModProcessSeq::process() {
    updateParams();
    updateSequence();
    CAudioPort* source = &input(0);
    for (int32_t i = first_; i < end_; ++i) {
        CAudioProcessBase& child = *children_[i];
        child.input(0).takeFrom(*source, context());
        child.process();
        if (graph().observer != nullptr) {
            graph().observer->processed(child);
        }
        source = &child.output(0);
    }
    output(0).takeFrom(*source, context());
    releaseInputs();
}

void CModProcessSeq::updateIdle() {
    updateParams();
    for (int32_t i = first_; i < end_; ++i) {
        children_[i]->updateIdle();
    }
}

void CModProcessSeq::clearBuffers() {
    CAudioProcessBase::clearBuffers();
    for (CAudioProcessBase* child : children_) {
        child->clearBuffers();
    }
}

void CModProcessSeq::reset() {
    CAudioProcessBase::reset();
    for (CAudioProcessBase* child : children_) {
        child->reset();
    }
}

void CModProcessSeq::makeSpares() {
    for (int32_t i = first_; i < end_; ++i) {
        children_[i]->makeSpares();
    }
}

int32_t CModProcessSeq::placeDelay(int32_t inputDelay) {
    int32_t delay = inputDelay;
    for (int32_t i = first_; i < end_; ++i) {
        delay = children_[i]->placeDelay(delay);
    }
    setDelays(inputDelay, delay);
    return delay;
}

void CModProcessSeq::visitChildren(void (*visit)(void* user, CAudioProcessBase& child), void* user) const {
    for (int32_t i = first_; i < end_; ++i) {
        visit(user, *children_[i]);
    }
}

}  // namespace tarv
