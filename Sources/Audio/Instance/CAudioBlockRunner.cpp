// Runs the graph over a host's block, in the host's sample format.

#include "Audio/Instance/CAudioBlockRunner.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "Audio/Instance/CAudioInstanceGraph.h"
#include "Audio/Modules/CModOutput.h"
#include "Audio/Parameters/CAudioParamCollector.h"

namespace tarv {

namespace {

/// Widens one channel. What is not finite becomes 0: it would stay in a recursion for ever.
template <class Sample>
void widen(double* target, const Sample* source, int32_t frames) {
    for (int32_t i = 0; i < frames; ++i) {
        const double value = source[i];
        target[i] = std::fabs(value) <= std::numeric_limits<double>::max() ? value : 0.0;
    }
}

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

/// Rounds one channel; false if the host's format cannot hold all of it.
template <class Sample>
bool convert(Sample* target, const double* source, int32_t frames) {
    bool isFit = true;
    for (int32_t i = 0; i < frames; ++i) {
        const auto value = static_cast<Sample>(source[i]);
        target[i] = value;
        isFit &= std::fabs(value) <= std::numeric_limits<Sample>::max();
    }
    return isFit;
}

template <class Sample>
void clear(Sample* target, int32_t frames) {
    for (int32_t i = 0; i < frames; ++i) {
        target[i] = 0;
    }
}

}  // namespace

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
        const int32_t count = std::min(frames - offset, CAudioInstanceGraph::kMaxRun);
        run(inputs, outputs, offset, count);
        graph_.shared().now += count;
        graph_.makeRoomIfNeeded();
    }
}

template <class Sample>
void CAudioBlockRunner::run(const Sample* const* inputs, Sample* const* outputs, int32_t offset, int32_t frames) {
    CAudioGraph& shared = graph_.shared();
    const bool isRepetition = isSteady(reinterpret_cast<const void* const*>(inputs), frames);
    if (isRepetition && shared.context->isRecorded()) {
        repeat(inputs, offset, frames);
        giveOutputs(outputs, offset, frames);
        return;
    }
    const uint64_t deliveries = shared.collector->deliveries();
    takeInputs(inputs, offset, frames);
    shared.beginRun();
    if (isRepetition) {
        holdInputs();
        shared.context->startRecording();
    }
    graph_.run(frames);
    if (isRepetition) {
        releaseInputs();
        shared.context->endRecording();
    }
    noteRun(frames, deliveries);
    if (shared.context->isRecorded()) {
        noteReads(frames);
    }
    giveOutputs(outputs, offset, frames);
    graph_.output().clearBuffers();
}

/// Whether a run would issue the same operations as the last one: nothing has changed, and the same inputs have
/// buffers.
bool CAudioBlockRunner::isSteady(const void* const* inputs, int32_t frames) const {
    const CAudioGraph& shared = graph_.shared();
    if (!shared.isSteady() || frames != frames_ || shared.collector->deliveries() != deliveries_ ||
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

template <class Sample>
void CAudioBlockRunner::takeInputs(const Sample* const* inputs, int32_t offset, int32_t frames) {
    CQPLEXContext& context = *graph_.shared().context;
    for (int32_t i = 0; i < graph_.shared().hostInputs; ++i) {
        inputs_[i] = nullptr;
        // An input without a buffer is left out: the router makes silence for a channel that needs it.
        const bool isThere = inputs != nullptr && inputs[i] != nullptr;
        const CBufferHandle block = isThere ? context.takeSignal(frames) : kNoBuffer;
        blocks_[i] = block;
        if (block != kNoBuffer) {
            inputs_[i] = context.signal(block);
            widen(inputs_[i], inputs[i] + offset, frames);
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

/// Most hosts pass all inputs, of which a routing takes two. An output may be an input as it came.
void CAudioBlockRunner::noteReads(int32_t frames) {
    const CAudioGraph& shared = graph_.shared();
    const double** const end = outputs_ + shared.hostOutputs;
    for (int32_t i = 0; i < shared.hostInputs; ++i) {
        const double* const signal = inputs_[i];
        isRead_[i] = signal != nullptr &&
                     (shared.context->recordedRun().touches(signal, frames) || std::find(outputs_, end, signal) != end);
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
        } else if (!convert(outputs[h] + offset, block, frames)) {
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
