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
void clear(Sample* target, int32_t frames) {
    for (int32_t i = 0; i < frames; ++i) {
        target[i] = 0;
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
        const double** const end = runner_.outputs_ + runner_.graph_.shared().hostOutputs;
        for (int32_t i = 0; i < count(); ++i) {
            const double* const signal = runner_.inputs_[i];
            fill(i, signal != nullptr && std::find(runner_.outputs_, end, signal) != end);
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
    for (int32_t h = 0; outputs != nullptr && h < count; ++h) {
        if (outputs[h] != nullptr) {
            clear(outputs[h], frames);
        }
    }
}

template <class Sample>
void CAudioBlockRunner::process(const Sample* const* inputs, Sample* const* outputs, int32_t frames) {
    for (int32_t offset = 0; offset < frames; offset += CAudioInstanceGraph::kMaxRun) {
        const int32_t end = std::min(frames, offset + CAudioInstanceGraph::kMaxRun);
        for (int32_t position = offset; position < end;) {
            const int32_t count = pieceLength(end - position);
            run(inputs, outputs, position, count);
            graph_.makeRoomIfNeeded();
            position += count;
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

template <class Sample>
void CAudioBlockRunner::run(const Sample* const* inputs, Sample* const* outputs, int32_t offset, int32_t frames) {
    CAudioGraph& shared = graph_.shared();
    const bool isRepetition = isSteady(reinterpret_cast<const void* const*>(inputs), frames);
    if (isRepetition && shared.context->isRecorded() && takeQuietChanges()) {
        repeat(inputs, offset, frames);
        giveOutputs(outputs, offset, frames);
        return;
    }
    const uint64_t deliveries = shared.collector->deliveries();
    takeInputs(inputs, frames);
    CInputs<Sample> filler(*this, inputs, offset, frames);
    shared.beginRun();
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
    noteRun(frames, deliveries);
    if (isRecorded) {
        filler.fillOutputs();
    }
    if (!isRepetition) {
        shared.context->dropRecording();
    }
    giveOutputs(outputs, offset, frames);
    graph_.output().clearBuffers();
}

/// Whether a run would issue the same operations as the last one, but for changes: the same inputs have buffers, and no
/// fade ends.
bool CAudioBlockRunner::isSteady(const void* const* inputs, int32_t frames) const {
    const CAudioGraph& shared = graph_.shared();
    if (!shared.isSteady() || frames != frames_ || frames > shared.fadeLeft() || shared.observer != nullptr) {
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

/// Runs the recorded kernel calls again, with these inputs.
template <class Sample>
void CAudioBlockRunner::repeat(const Sample* const* inputs, int32_t offset, int32_t frames) {
    for (int32_t i = 0; i < graph_.shared().hostInputs; ++i) {
        if (isRead_[i]) {
            widen(inputs_[i], inputs[i] + offset, frames);
        }
    }
    graph_.shared().context->repeat();
    graph_.shared().noteRepetition(frames);
}

template <class Sample>
void CAudioBlockRunner::giveOutputs(Sample* const* outputs, int32_t offset, int32_t frames) {
    const int32_t count = outputs != nullptr ? graph_.shared().hostOutputs : 0;
    int32_t good = frames;
    for (int32_t h = 0; h < count; ++h) {
        if (outputs[h] == nullptr) {
            continue;
        }
        const double* const block = outputs_[h];
        if (block == nullptr) {
            clear(outputs[h] + offset, frames);
        } else if (!round(outputs[h] + offset, block, frames)) {
            good = std::min(good, firstUnfit<Sample>(block, frames));
        }
    }
    if (good < frames) {
        for (int32_t h = 0; h < count; ++h) {
            if (outputs[h] != nullptr) {
                clear(outputs[h] + offset + good, frames - good);
            }
        }
        graph_.reset();
    }
}

void CAudioBlockRunner::noteRun(int32_t frames, uint64_t deliveries) {
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
