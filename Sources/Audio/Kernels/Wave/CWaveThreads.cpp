#include "Audio/Kernels/Wave/CWaveThreads.h"

#include <algorithm>

namespace tarv {

namespace {

// Operands of the kernels.
constexpr int32_t kStateOperand = 1;
constexpr int32_t kNewOperand = 2;
constexpr int32_t kOldOperand = 3;
constexpr int32_t kFeedOperand = 3;
constexpr int32_t kGainSource = 1;

/// Nobody else reads what stands in operand `j` of operation `i`.
bool isLastRead(const CRecordedCall& call, int32_t i, int32_t j) {
    return (call.lastReads[i] >> j & 1) != 0;
}

}  // namespace

const double* CWaveThreads::CRest::filtered() const {
    if (oldFilter != nullptr) {
        return fade != nullptr ? fade->signal(0) : nullptr;
    }
    return filter != nullptr ? filter->signal(0) : nullptr;
}

bool CWaveThreads::CThread::isWhole() const {
    return channel.bandCount > 0 && (rest.isEmpty() || (rest.isBehind() && rest.isSourceOwn));
}

void CWaveThreads::CThread::endBands() {
    channel.filterBehind = rest.filter;
    channel.highPassBehind = rest.highPass;
    rest = {};
    isEnded = true;
}

/// The filter that was taken stands in front of the bands.
void CWaveThreads::CThread::takeBefore() {
    channel.before = rest.filter;
    output = rest.filter->signal(0);
    isInput = false;
    rest = {};
}

void CWaveThreads::clear() {
    count_ = 0;
    states_.reset();
}

CWaveThreads::CThread* CWaveThreads::begin(const double* signal) {
    // What the wave would have to write before can't be its input.
    if (count_ == kMostChannels || writes(signal)) {
        return nullptr;
    }
    CThread& thread = threads_[count_++];
    thread = {.channel = {}, .rest = {}, .output = signal, .isInput = true, .isEnded = false};
    return &thread;
}

/// The channel that may read a signal with a new filter.
CWaveThreads::CThread* CWaveThreads::reading(const double* signal) {
    for (int32_t t = 0; t < count_; ++t) {
        CThread& thread = threads_[t];
        if (thread.output == signal && !thread.isEnded) {
            return &thread;
        }
        const bool isFront = thread.channel.bandCount == 0 && thread.channel.before == nullptr;
        if (isFront && thread.rest.isFilter() && thread.rest.filter->signal(0) == signal) {
            thread.takeBefore();
            return &thread;
        }
    }
    return nullptr;
}

/// The channel whose filters gave a signal that waits for a high-pass.
CWaveThreads::CThread* CWaveThreads::filtering(const double* signal) {
    const auto found = std::find_if(threads_, threads_ + count_, [=](const CThread& t) {
        return t.rest.highPass == nullptr && t.rest.filtered() == signal;
    });
    return found != threads_ + count_ ? found : nullptr;
}

/// The channel whose high-pass gave a signal.
CWaveThreads::CThread* CWaveThreads::passing(const double* signal) {
    const auto found = std::find_if(threads_, threads_ + count_, [=](const CThread& t) {
        return t.rest.highPass != nullptr && t.rest.highPass->signal(0) == signal;
    });
    return found != threads_ + count_ ? found : nullptr;
}

bool CWaveThreads::takeFilter(const CRecordedCall& call, int32_t i) {
    const COperation& o = call.operations[i];
    const double* const source = o.signal(kLinkOperand);
    if (uses(o.pointers[kStateOperand])) {
        return false;
    }
    CThread* thread = reading(source);
    if (thread == nullptr) {
        thread = begin(source);
    }
    if (thread == nullptr) {
        return false;
    }
    if (thread->rest.isEmpty()) {
        thread->rest.filter = &o;
        thread->rest.isSourceOwn = isLastRead(call, i, kLinkOperand);
    } else if (thread->rest.isFilter()) {
        thread->rest.oldFilter = &o;
    } else {
        return false;
    }
    noteState(o);
    return true;
}

bool CWaveThreads::takeFade(const CRecordedCall& call, int32_t i) {
    const COperation& o = call.operations[i];
    if (uses(o.pointers[kStateOperand]) || !isLastRead(call, i, kNewOperand) || !isLastRead(call, i, kOldOperand)) {
        return false;
    }
    for (int32_t t = 0; t < count_; ++t) {
        CRest& rest = threads_[t].rest;
        if (rest.oldFilter == nullptr || rest.fade != nullptr) {
            continue;
        }
        if (rest.filter->signal(0) == o.signal(kNewOperand) && rest.oldFilter->signal(0) == o.signal(kOldOperand)) {
            rest.fade = &o;
            noteState(o);
            return true;
        }
    }
    return false;
}

bool CWaveThreads::takeHighPass(const CRecordedCall& call, int32_t i) {
    const COperation& o = call.operations[i];
    CThread* const thread = filtering(o.signal(kLinkOperand));
    if (thread == nullptr || uses(o.pointers[kStateOperand]) || !isLastRead(call, i, kLinkOperand)) {
        return false;
    }
    thread->rest.highPass = &o;
    noteState(o);
    return true;
}

bool CWaveThreads::takeTube(const CRecordedCall& call, int32_t i) {
    const COperation& o = call.operations[i];
    CThread* const thread = passing(o.signal(kLinkOperand));
    if (thread == nullptr || uses(o.pointers[kStateOperand]) || !isLastRead(call, i, kLinkOperand) ||
        o.signal(kFeedOperand) != thread->output || !(thread->isInput || isLastRead(call, i, kFeedOperand)) ||
        thread->channel.bandCount == kMostWaveBands) {
        return false;
    }
    const CRest& rest = thread->rest;
    thread->channel.bands[thread->channel.bandCount++] = {rest.filter, rest.highPass, &o, rest.oldFilter, rest.fade};
    thread->rest = {};
    thread->output = o.signal(0);
    thread->isInput = false;
    noteState(o);
    return true;
}

bool CWaveThreads::takeGain(const CRecordedCall& call, int32_t i) {
    const COperation& o = call.operations[i];
    CThread* const thread = passing(o.signal(kGainSource));
    if (thread == nullptr || !isLastRead(call, i, kGainSource) || !thread->isWhole()) {
        return false;
    }
    thread->endBands();
    thread->channel.gainBehind = &o;
    return true;
}

bool CWaveThreads::areWhole() const {
    return count_ > 0 && std::all_of(threads_, threads_ + count_, [](const CThread& t) { return t.isWhole(); });
}

void CWaveThreads::finish() {
    for (int32_t t = 0; t < count_; ++t) {
        if (!threads_[t].rest.isEmpty()) {
            threads_[t].endBands();
        }
    }
}

/// Whether `is` is true of an operation that was taken.
template <class Is>
bool CWaveThreads::isAny(Is&& is) const {
    const auto isOf = [&](const COperation* o) { return o != nullptr && is(*o); };
    return std::any_of(threads_, threads_ + count_, [&](const CThread& t) {
        const CWaveChannel& c = t.channel;
        return isOf(c.before) || isOf(c.filterBehind) || isOf(c.highPassBehind) || isOf(c.gainBehind) ||
               isOf(t.rest.filter) || isOf(t.rest.oldFilter) || isOf(t.rest.fade) || isOf(t.rest.highPass) ||
               std::any_of(c.bands, c.bands + c.bandCount, [&](const CWaveChannel::CBand& b) {
                   return isOf(b.filter) || isOf(b.oldFilter) || isOf(b.fade) || isOf(b.highPass) || isOf(b.tube);
               });
    });
}

bool CWaveThreads::writes(const double* signal) const {
    return isAny([=](const COperation& o) { return o.signal(0) == signal; });
}

bool CWaveThreads::uses(const void* state) const {
    return states_.test(hashOf(state)) &&
           isAny([=](const COperation& o) { return o.pointers[kStateOperand] == state; });
}

}  // namespace tarv
