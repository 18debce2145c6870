// Runs the graph over a host's block, in the host's sample format.

#include "Audio/Instance/CAudioBlockRunner.h"

#include <algorithm>
#include <cmath>

#include "Audio/Instance/CAudioInstanceGraph.h"
#include "Audio/Instance/HostSamples.h"
#include "Audio/Modules/CModOutput.h"
#include "Audio/Parameters/CAudioParamCollector.h"

namespace tarv {

namespace {

/// The first sample that the host's format cannot hold, or `frames`.
template <class Sample>
int32_t firstUnfit(const double* source, int32_t frames) {
    for (int32_t i = 0; i < frames; ++i) {
        if (!std::isfinite(static_cast<Sample>(source[i]))) {
            return i;
        }
    }
    return frames;
}

template <class Sample>
constexpr CRunEnds::CFormat kFormat = sizeof(Sample) == sizeof(float) ? CRunEnds::CFormat::Floats
                                                                      : CRunEnds::CFormat::Doubles;

/// Whether buffer `i` of `frames` samples is there and touches none of the others.
template <class Sample>
bool isApart(Sample* const* buffers, int32_t count, int32_t i, int32_t frames) {
    for (int32_t other = 0; other < count; ++other) {
        if (other != i && buffers[other] != nullptr && std::abs(buffers[other] - buffers[i]) < frames) {
            return false;
        }
    }
    return buffers[i] != nullptr;
}

template <class Sample>
void clear(Sample* target, int32_t frames) {
    for (int32_t i = 0; i < frames; ++i) {
        target[i] = 0;
    }
}

/// Null pointers, or a null array, are left out.
template <class Sample>
void clearAll(Sample* const* outputs, int32_t count, int32_t from, int32_t to) {
    for (int32_t h = 0; outputs != nullptr && h < count; ++h) {
        if (outputs[h] != nullptr) {
            clear(outputs[h] + from, to - from);
        }
    }
}

}  // namespace

/// Widens the inputs of a run that somebody reads: most hosts pass all inputs, of which a routing takes two.
template <class Sample>
class CAudioBlockRunner::CInputs final : public CRunInputs {
public:
    CInputs(CAudioBlockRunner& runner, const Sample* const* inputs, int32_t offset, int32_t frames)
        : runner_(runner), inputs_(inputs), offset_(offset), frames_(frames) {}

    void fill() override {
        const CQPLEXContext& context = *runner_.graph_.shared().context;
        for (int32_t i = 0; i < count(); ++i) {
            fill(i, context.isRecordedIn(runner_.blocks_[i]));
        }
    }
    void fillAll() {
        for (int32_t i = 0; i < count(); ++i) {
            fill(i, runner_.inputs_[i] != nullptr);
        }
    }
    /// An output may be an input as it came.
    void fillOutputs() {
        double* const* const end = runner_.outputs_ + runner_.graph_.shared().hostOutputs;
        for (int32_t i = 0; i < count(); ++i) {
            double* const signal = runner_.inputs_[i];
            fill(i, signal != nullptr && std::find<double* const*>(runner_.outputs_, end, signal) != end);
        }
    }

private:
    int32_t count() const { return runner_.graph_.shared().hostInputs; }
    void fill(int32_t i, bool isWanted) {
        if (isWanted && !runner_.isRead_[i]) {
            runner_.isRead_[i] = true;
            widen(runner_.inputs_[i], inputs_[i] + offset_, frames_);
        }
    }

    CAudioBlockRunner& runner_;
    const Sample* const* inputs_;
    int32_t offset_;
    int32_t frames_;
};

template <class Sample>
void CAudioBlockRunner::silence(Sample* const* outputs, int32_t count, int32_t frames) {
    clearAll(outputs, count, 0, frames);
}

template <class Sample>
void CAudioBlockRunner::process(const Sample* const* inputs, Sample* const* outputs, int32_t frames) {
    for (int32_t offset = 0; offset < frames; offset += CAudioInstanceGraph::kMaxRun) {
        const int32_t end = std::min(frames, offset + CAudioInstanceGraph::kMaxRun);
        for (int32_t position = offset; position < end;) {
            const int32_t count = pieceLength(end - position);
            const bool isWhole = run(inputs, outputs, position, count);
            graph_.makeRoomIfNeeded();
            position += count;
            if (!isWhole) {
                clearAll(outputs, graph_.shared().hostOutputs, position, end);
                break;
            }
        }
        graph_.shared().now += end - offset;
    }
}

/// Runs end where a fade ends, so that no process must cut its own block. What is left of a fade at a raised rate may
/// be less than a frame: that frame runs alone.
int32_t CAudioBlockRunner::pieceLength(int32_t left) const {
    const double fadeLeft = graph_.shared().fadeLeft();
    if (fadeLeft <= 0.0 || fadeLeft >= left) {
        return left;
    }
    return std::max(static_cast<int32_t>(fadeLeft), 1);
}

/// False: the rest is silent.
template <class Sample>
bool CAudioBlockRunner::run(const Sample* const* inputs, Sample* const* outputs, int32_t offset, int32_t frames) {
    CAudioGraph& shared = graph_.shared();
    const bool isRepetition = isSteady(reinterpret_cast<const void* const*>(inputs), kFormat<Sample>, frames);
    if (isRepetition && shared.context->isRecorded() && takeQuietChanges()) {
        return repeat(inputs, outputs, offset, frames);
    }
    const uint64_t deliveries = shared.collector->deliveries();
    takeInputs(inputs, frames);
    CInputs<Sample> filler(*this, inputs, offset, frames);
    shared.beginRun();
    ends_.clear();
    const bool isRecorded = isRepetition || isLong(frames);
    if (isRecorded) {
        holdInputs();
        shared.context->startRecording(&filler);
    } else {
        filler.fillAll();
    }
    graph_.run(frames);
    if (isRecorded) {
        shared.context->endRecording();
        releaseInputs();
    }
    noteRun(kFormat<Sample>, frames, deliveries);
    if (isRecorded) {
        filler.fillOutputs();
    }
    if (!isRepetition) {
        shared.context->dropRecording();
    }
    const bool isWhole = giveOutputs(outputs, 0, offset, frames);
    graph_.output().clearBuffers();
    return isWhole;
}

/// Whether a run would issue the same operations as the last one, but for changes: the same inputs have buffers, and no
/// fade ends.
bool CAudioBlockRunner::isSteady(const void* const* inputs, CRunEnds::CFormat format, int32_t frames) const {
    const CAudioGraph& shared = graph_.shared();
    if (!shared.isSteady() || frames != frames_ || format != format_ || frames > shared.fadeLeft() ||
        shared.observer != nullptr) {
        return false;
    }
    for (int32_t i = 0; i < shared.hostInputs; ++i) {
        const bool isThere = inputs != nullptr && inputs[i] != nullptr;
        if (isThere != (inputs_[i] != nullptr)) {
            return false;
        }
    }
    return true;
}

/// Changes that come while a fade is under way wait for its end: the processes take them, and the run can be repeated.
bool CAudioBlockRunner::takeQuietChanges() {
    const CAudioGraph& shared = graph_.shared();
    if (shared.collector->deliveries() == deliveries_ && !shared.areChangesWaiting()) {
        return true;
    }
    deliveries_ = shared.collector->deliveries();
    return graph_.takeQuietChanges();
}

/// Whether the calls of a single run pay for being recorded, since joined ones cost less.
bool CAudioBlockRunner::isLong(int32_t frames) const {
    constexpr double kLongRun = 96.0;  // samples at the highest rate
    const CAudioGraph& shared = graph_.shared();
    return shared.observer == nullptr && frames * shared.use().widestRate >= kLongRun * shared.hostRate;
}

template <class Sample>
void CAudioBlockRunner::takeInputs(const Sample* const* inputs, int32_t frames) {
    CQPLEXContext& context = *graph_.shared().context;
    for (int32_t i = 0; i < graph_.shared().hostInputs; ++i) {
        inputs_[i] = nullptr;
        isRead_[i] = false;
        // An input without a buffer is left out: the router makes silence for a channel that needs it.
        const bool isThere = inputs != nullptr && inputs[i] != nullptr;
        const CBufferHandle block = isThere ? context.takeSignal(frames) : kNoBuffer;
        blocks_[i] = block;
        if (block != kNoBuffer) {
            inputs_[i] = context.signal(block);
            graph_.input().add(0, i, 0, block);
        }
    }
}

/// Nothing else takes the place of an input during a run that is recorded: what touches it there reads it.
void CAudioBlockRunner::holdInputs() {
    CAudioGraph& shared = graph_.shared();
    for (int32_t i = 0; i < shared.hostInputs; ++i) {
        shared.context->addReference(blocks_[i]);
    }
}

void CAudioBlockRunner::releaseInputs() {
    CAudioGraph& shared = graph_.shared();
    for (int32_t i = 0; i < shared.hostInputs; ++i) {
        shared.context->releaseReference(blocks_[i]);
    }
}

/// Runs the recorded kernel calls again, with these inputs and outputs.
template <class Sample>
bool CAudioBlockRunner::repeat(const Sample* const* inputs, Sample* const* outputs, int32_t offset, int32_t frames) {
    if (ends_.format() == CRunEnds::CFormat::None) {
        link<Sample>();
    }
    for (int32_t i = 0; i < graph_.shared().hostInputs; ++i) {
        if (ends_.takesInput(i)) {
            ends_.setInput(i, inputs[i] + offset);
        } else if (isRead_[i]) {
            widen(inputs_[i], inputs[i] + offset, frames);
        }
    }
    const uint32_t direct = giveDirectly(outputs, offset, frames);
    graph_.shared().context->repeat();
    graph_.shared().noteRepetition(frames);
    return giveOutputs(outputs, direct, offset, frames);
}

template <class Sample>
void CAudioBlockRunner::link() {
    CQPLEXContext& context = *graph_.shared().context;
    const double* read[kMaxHostChannels];
    const auto inputs = static_cast<size_t>(graph_.shared().hostInputs);
    const auto outputs = static_cast<size_t>(graph_.shared().hostOutputs);
    for (size_t i = 0; i < inputs; ++i) {
        // An output may be an input as it came.
        const bool isGiven = std::find(outputs_, outputs_ + outputs, inputs_[i]) != outputs_ + outputs;
        read[i] = isRead_[i] && !isGiven ? inputs_[i] : nullptr;
    }
    ends_.link(context.recordedRun(), context.endKernels(), kFormat<Sample>, {read, inputs}, {outputs_, outputs},
               frames_);
}

/// Lets the run write to the host's buffers, or to its own blocks; bit h of the result: output h goes to the host's.
template <class Sample>
uint32_t CAudioBlockRunner::giveDirectly(Sample* const* outputs, int32_t offset, int32_t frames) const {
    uint32_t direct = 0;
    if constexpr (kFormat<Sample> == CRunEnds::CFormat::Doubles) {
        const int32_t count = graph_.shared().hostOutputs;
        for (int32_t h = 0; h < count; ++h) {
            if (ends_.givesOutput(h)) {
                const bool isDirect = outputs != nullptr && isApart(outputs, count, h, frames);
                ends_.setOutput(h, isDirect ? outputs[h] + offset : outputs_[h]);
                direct |= static_cast<uint32_t>(isDirect) << h;
            }
        }
    }
    return direct;
}

/// Bit h of `direct`: the run has written output h to the host's buffer. False: from one sample on all are silent.
template <class Sample>
bool CAudioBlockRunner::giveOutputs(Sample* const* outputs, uint32_t direct, int32_t offset, int32_t frames) {
    const int32_t count = outputs != nullptr ? graph_.shared().hostOutputs : 0;
    int32_t good = frames;
    for (int32_t h = 0; h < count; ++h) {
        if (outputs[h] == nullptr) {
            continue;
        }
        Sample* const target = outputs[h] + offset;
        if (outputs_[h] == nullptr) {
            clear(target, frames);
            continue;
        }
        const bool isDirect = (direct >> h & 1) != 0;
        const double* const source = isDirect ? reinterpret_cast<const double*>(target) : outputs_[h];
        if (!(isDirect ? areFinite(source, frames) : round(target, source, frames))) {
            good = std::min(good, firstUnfit<Sample>(source, frames));
        }
    }
    if (good < frames) {
        clearAll(outputs, count, offset + good, offset + frames);
        graph_.reset();
    }
    return good == frames;
}

void CAudioBlockRunner::noteRun(CRunEnds::CFormat format, int32_t frames, uint64_t deliveries) {
    format_ = format;
    frames_ = frames;
    deliveries_ = deliveries;
    for (int32_t h = 0; h < graph_.shared().hostOutputs; ++h) {
        const CBufferHandle block = graph_.output().block(h);
        outputs_[h] = block != kNoBuffer ? graph_.shared().context->signal(block) : nullptr;
    }
}

template void CAudioBlockRunner::process(const float* const* inputs, float* const* outputs, int32_t frames);
template void CAudioBlockRunner::process(const double* const* inputs, double* const* outputs, int32_t frames);
template void CAudioBlockRunner::silence(float* const* outputs, int32_t count, int32_t frames);
template void CAudioBlockRunner::silence(double* const* outputs, int32_t count, int32_t frames);

}  // namespace tarv
