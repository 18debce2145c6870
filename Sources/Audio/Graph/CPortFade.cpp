// The crossfade of whole ports, by which a stack passes from one count of instances to another.

#include "Audio/Graph/CPortFade.h"

namespace tarv {

void CPortFade::start(int32_t samples, CQPLEXContext& context) {
    end(context);
    length_ = samples;
    left_ = samples;
}

bool CPortFade::isAlike(const CAudioPort& a, const CAudioPort& b) {
    bool isAlike = a.rate == b.rate && a.samples == b.samples && a.channels.count() == b.channels.count();
    for (int32_t i = 0; isAlike && i < a.channels.count(); ++i) {
        isAlike = a.channels[i].isSameAs(b.channels[i]);
    }
    return isAlike;
}

void CPortFade::mix(CAudioPort& target, const CAudioPort& from, const CAudioPort& to, CQPLEXContext& context) {
    for (int32_t i = 0; i < target.channels.count(); ++i) {
        if (position_ == ramps_.count()) {
            ramps_.append(context.takeBuffer(3 * static_cast<int32_t>(sizeof(double))));
            context.issue(context.commonKernel(CCommonKernel::Xfadei), length_, 0.0, {ramps_.last()});
        }
        const CBufferHandle mixed = context.takeSignal(target.samples);
        context.issue(context.commonKernel(CCommonKernel::Xfade), target.samples, 0.0,
                      {mixed, ramps_[position_], to.channels[i].handle, from.channels[i].handle});
        context.releaseReference(target.channels[i].handle);
        target.channels[i].handle = mixed;
        ++position_;
    }
}

void CPortFade::advance(int32_t samples, CQPLEXContext& context) {
    position_ = 0;
    left_ -= samples;
    if (left_ <= 0) {
        end(context);
    }
}

void CPortFade::end(CQPLEXContext& context) {
    for (const CBufferHandle ramp : ramps_) {
        context.releaseReference(ramp);
    }
    ramps_.clear();
    position_ = 0;
    left_ = 0;
}

}  // namespace tarv
