#include "Audio/Visuals/CAudioVizSource.h"

#include "Audio/Visuals/CAudioVizCollector.h"

namespace tarv {

CAudioVizSwitch::~CAudioVizSwitch() {
    if (param_) {
        param_->removeListener(*this);
    }
}

void CAudioVizSwitch::bind(CAudioParam& param) {
    param_ = &param;
    param.addListener(*this);
    update();
}

void CAudioVizSwitch::update() {
    // Held while the value is read and stored, so that the later one of two concurrent changes stays.
    CLockScope scope(lock_);
    isOn_.store(param_ && param_->value(0, 0) >= 0.5, std::memory_order_relaxed);
}

void CAudioVizSwitch::onParamChanged(CAudioParam&, int32_t, int32_t, int32_t) {
    update();
}

CAudioVizSource::CAudioVizSource(CAudioVizCollector& collector, const CString& name, uint32_t number,
                                 CAudioVizKind kind, int32_t recordsPerFrame, int32_t capacity)
    : collector_(collector), name_(name), number_(number), kind_(kind), recordsPerFrame_(recordsPerFrame) {
    const int32_t count = recordsPerFrame * kFramesKept;
    free_.makeRoom(count);
    for (int32_t i = 0; i < count; ++i) {
        records_.append(new CRecord(*this, CAudioVizData::create(static_cast<uint32_t>(kind), capacity)));
        free_.put(records_.last());
    }
}

CAudioVizData* CAudioVizSource::beginRecord() {
    if (open_) {
        return open_->data;
    }
    if (!collector_.isEnabled() || !switch_.isOn()) {
        return nullptr;
    }
    if (frame_ != collector_.frame()) {
        frame_ = collector_.frame();
        begunInFrame_ = 0;
    }
    if (frame_ == 0 || begunInFrame_ == recordsPerFrame_) {
        return nullptr;
    }
    ++begunInFrame_;
    open_ = free_.take();
    if (!open_) {
        dropped_.fetch_add(1, std::memory_order_relaxed);
        return nullptr;
    }
    open_->data->source = number_;
    open_->data->time = collector_.position();
    return open_->data;
}

void CAudioVizSource::endRecord() {
    if (open_) {
        collector_.ready_.put(open_);
        open_ = nullptr;
    }
}

}  // namespace tarv
