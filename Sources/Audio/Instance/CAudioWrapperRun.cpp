// Suspend, resume and block processing of an instance.

#include <cmath>
#include <limits>
#include <utility>

#include "Audio/Engine/CAudioInterfaceBase.h"
#include "Audio/Graph/CAudioProcessBase.h"
#include "Audio/Instance/CAudioWrapper.h"
#include "Audio/Modules/CModOutput.h"
#include "Audio/Parameters/CAudioEnv.h"
#include "Audio/Parameters/CAudioParamCollector.h"
#include "Audio/Visuals/CAudioVizCollector.h"

namespace tarv {

namespace {

constexpr int32_t kOfflineLevel = 4;

/// Widens one channel; what is not finite counts as 0, since a host must not be able to poison a recursion.
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

void CAudioWrapper::suspend() {
    {
        CLockScope scope(env_->lock());
        if (!env_->isRunning()) {
            return;
        }
        env_->setRunning(false);
    }
    graph_.setRunning(false);
    resetGraph();
    vizCollector_->stop();
    TARV_CONSUME(interfaceBase_->notify("clear"));
    interfaceBase_->stop();
}

void CAudioWrapper::resume() {
    if (env_->isRunning()) {
        return;
    }
    bool isRateNew = false;
    {
        CLockScope scope(env_->lock());
        isRateNew = std::exchange(sampleRateChanged_, false);
    }
    if (isRateNew) {
        TARV_CONSUME(interfaceBase_->notify("update-sample-rate"));
    }
    if (inputCount_ != graph_.hostInputs || outputCount_ != graph_.hostOutputs) {
        graph_.hostInputs = inputCount_;
        graph_.hostOutputs = outputCount_;
        interfaceBase_->setIoCounts(inputCount_, outputCount_, 0);
    }
    // Also when the audio thread has found it out already: it leaves the values that users read alone.
    setOffline(hostProcessLevel() == kOfflineLevel);
    // The host takes the latency anew behind a resume.
    if (isLatencyMarked_.exchange(false, std::memory_order_relaxed)) {
        hostLatencyParam_->setValue(0, 0, 0.0);
    }
    startGraph();
    isFirstBlock_ = true;
    vizCollector_->start();
    interfaceBase_->start();
    CLockScope scope(env_->lock());
    env_->setRunning(true);
}

void CAudioWrapper::resetGraph() {
    graph_.context->flush();
    mainProcess_->reset();
    outputProcess_->reset();
}

void CAudioWrapper::prepareGraph() {
    resetGraph();
    // Changes made while suspended are taken here, in place. A run of no samples then makes every process, module and
    // order that the first block will need.
    paramCollector_->applyPendingChanges(graph_.now);
    for (int32_t i = 0; i < inputCount_; ++i) {
        mainProcess_->input(0).add(0, i, 0, graph_.context->takeBuffer(sizeof(double)));
    }
    runGraph(0);
    outputProcess_->clearBuffers();
    graph_.context->flush();
    makeRoom();
    placeDelays();
}

void CAudioWrapper::startGraph() {
    graph_.setRunning(false);
    graph_.hostRate = env_->sampleRate();
    startedBlockSize_ = env_->blockSize();
    prepareGraph();
    graph_.setRunning(true);
}

void CAudioWrapper::beginBlock() {
    const bool isFormatNew = env_->sampleRate() != graph_.hostRate || env_->blockSize() != startedBlockSize_;
    const uint64_t deliveries = paramCollector_->deliveries();
    pollHost();
    vizCollector_->setPosition(env_->position());
    paramCollector_->applyPendingChanges(graph_.now);
    // Hosts that set a rate while running, or the state behind the resume, would otherwise hear filters of the old
    // rate, or a fade from values that nobody chose.
    if (isFormatNew || (isFirstBlock_ && paramCollector_->deliveries() != deliveries)) {
        startGraph();
    }
    isFirstBlock_ = false;
}

void CAudioWrapper::makeRoom() {
    const CAudioGraph::CUse before = graph_.use();
    graph_.beginUse();
    mainProcess_->makeSpares();
    const CAudioGraph::CUse& use = graph_.use();
    // As many voices as before, at the same rate, live on what the earlier ones gave back.
    if (graph_.isRunning() && use == before) {
        return;
    }

    const double factor = use.widestRate / graph_.hostRate;
    const auto blockBytes = static_cast<int32_t>(kMaxSubBlock * factor * sizeof(double) + 0.5);
    graph_.context->reserveBuffers(inputCount_ + kBlocksPerChannel * (use.channels + 1), blockBytes);
    // Each voice needs new states, coefficients and a ramp for a fade while the old ones are still in use.
    graph_.context->reserveBuffers(kStatesPerVoice * use.voices, static_cast<int32_t>(sizeof(double)));
    graph_.context->reserveBuffers(use.voices, kLargeStateBytes);
}

void CAudioWrapper::placeDelays() {
    outputProcess_->placeDelay(mainProcess_->placeDelay(0));
    outputProcess_->updateParams();
    graph_.confirmDelays();
}

void CAudioWrapper::runGraph(int32_t frames) {
    CAudioPort& in = mainProcess_->input(0);
    in.samples = frames;
    in.rate = graph_.hostRate;
    mainProcess_->process();
    outputProcess_->input(0).takeFrom(mainProcess_->output(0), *graph_.context);
    outputProcess_->process();
    graph_.context->flush();
}

void CAudioWrapper::pollHost() {
    const bool isOffline = hostProcessLevel() == kOfflineLevel;
    if (isOffline != isOffline_) {
        // On the audio thread: straight to the processes, without a lock or a pooled record of the host's side.
        isOffline_ = isOffline;
        hostOfflineParam_->setEngineValue(0, 0, isOffline ? 1.0 : 0.0);
    }
    const int32_t stages = isOffline ? oversamplingLevel() : 0;
    if (stages != hostStages_) {
        hostStages_ = stages;
        hostOversamplingParam_->setEngineValue(0, 0, stages);
    }
    double bpm = 0.0;
    if (useHostBpm_ && hostTempo(bpm) && bpm != lastBpm_) {
        lastBpm_ = bpm;
        hostBpmParam_->setEngineValue(0, 0, bpm);
    }
}

/// Whether a run would do what the last one did: nothing has changed, and the same inputs are there.
bool CAudioWrapper::isRunSteady(const void* const* inputs, int32_t frames) const {
    if (!graph_.isSteady() || frames != run_.frames || paramCollector_->deliveries() != run_.deliveries ||
        graph_.observer != nullptr) {
        return false;
    }
    for (int32_t i = 0; i < graph_.hostInputs; ++i) {
        const bool isThere = inputs != nullptr && inputs[i] != nullptr;
        if (isThere != (run_.inputs[i] != nullptr)) {
            return false;
        }
    }
    return true;
}

template <class Sample>
void CAudioWrapper::takeInputs(const Sample* const* inputs, int32_t offset, int32_t frames) {
    for (int32_t i = 0; i < graph_.hostInputs; ++i) {
        run_.inputs[i] = nullptr;
        // An input without a buffer is left out: the router makes silence for whoever asks for it.
        const bool isThere = inputs != nullptr && inputs[i] != nullptr;
        const CBufferHandle block = isThere ? graph_.context->takeSignal(frames) : kNoBuffer;
        if (block != kNoBuffer) {
            run_.inputs[i] = graph_.context->signal(block);
            widen(run_.inputs[i], inputs[i] + offset, frames);
            mainProcess_->input(0).add(0, i, 0, block);
        }
    }
}

template <class Sample>
void CAudioWrapper::giveOutputs(Sample* const* outputs, int32_t offset, int32_t frames) {
    int32_t good = frames;
    for (int32_t h = 0; outputs != nullptr && h < graph_.hostOutputs; ++h) {
        if (outputs[h] == nullptr) {
            continue;
        }
        const double* const block = run_.outputs[h];
        if (block == nullptr) {
            clear(outputs[h] + offset, frames);
        } else if (!convert(outputs[h] + offset, block, frames)) {
            const int32_t first = firstUnfit<Sample>(block, frames);
            good = first < good ? first : good;
        }
    }
    if (good < frames) {
        for (int32_t h = 0; h < graph_.hostOutputs; ++h) {
            if (outputs[h] != nullptr) {
                clear(outputs[h] + offset + good, frames - good);
            }
        }
        resetGraph();
    }
}

/// The last run once more, with these inputs.
template <class Sample>
void CAudioWrapper::repeatRun(const Sample* const* inputs, int32_t offset, int32_t frames) {
    for (int32_t i = 0; i < graph_.hostInputs; ++i) {
        if (run_.inputs[i] != nullptr) {
            widen(run_.inputs[i], inputs[i] + offset, frames);
        }
    }
    graph_.context->repeat();
}

void CAudioWrapper::noteRun(int32_t frames, uint64_t deliveries) {
    run_.frames = frames;
    run_.deliveries = deliveries;
    for (int32_t h = 0; h < graph_.hostOutputs; ++h) {
        const CBufferHandle block = outputProcess_->block(h);
        run_.outputs[h] = block != kNoBuffer ? graph_.context->signal(block) : nullptr;
    }
}

template <class Sample>
void CAudioWrapper::runOnce(const Sample* const* inputs, Sample* const* outputs, int32_t offset, int32_t frames) {
    const bool isSteady = isRunSteady(reinterpret_cast<const void* const*>(inputs), frames);
    if (isSteady && graph_.context->isRecorded()) {
        repeatRun(inputs, offset, frames);
        giveOutputs(outputs, offset, frames);
        return;
    }
    const uint64_t deliveries = paramCollector_->deliveries();
    takeInputs(inputs, offset, frames);
    graph_.beginRun();
    if (isSteady) {
        graph_.context->startRecording();
    }
    runGraph(frames);
    if (isSteady) {
        graph_.context->endRecording();
    }
    noteRun(frames, deliveries);
    giveOutputs(outputs, offset, frames);
    outputProcess_->clearBuffers();
}

template <class Sample>
void CAudioWrapper::processAny(const Sample* const* inputs, Sample* const* outputs, int32_t frames) {
    if (frames <= 0) {
        return;
    }
    if (!env_->isRunning()) {
        for (int32_t h = 0; outputs != nullptr && h < outputCount_; ++h) {
            if (outputs[h] != nullptr) {
                clear(outputs[h], frames);
            }
        }
        return;
    }
    const int32_t latencyBefore = env_->latency();
    beginBlock();
    for (int32_t offset = 0; offset < frames; offset += kMaxSubBlock) {
        const int32_t count = frames - offset < kMaxSubBlock ? frames - offset : kMaxSubBlock;
        runOnce(inputs, outputs, offset, count);
        graph_.now += count;
        if (graph_.isRoomWanted()) {
            makeRoom();
        }
    }
    env_->advancePosition(frames / graph_.hostRate);
    if (!graph_.areDelaysValid()) {
        placeDelays();
    }
    if (env_->latency() != latencyBefore) {
        isLatencyMarked_.store(true, std::memory_order_relaxed);
        hostLatencyParam_->setEngineValue(0, 0, 1.0);
        hostIoChanged();
    }
}

void CAudioWrapper::processBlock(const float* const* inputs, float* const* outputs, int32_t frames) {
    processAny(inputs, outputs, frames);
}

void CAudioWrapper::processBlock(const double* const* inputs, double* const* outputs, int32_t frames) {
    processAny(inputs, outputs, frames);
}

}  // namespace tarv
