// Builds, starts and runs the process graph of an instance.

#include "Audio/Instance/CAudioInstanceGraph.h"

#include "Audio/Instance/CAudioInstanceObjects.h"
#include "Audio/Kernels/Wave/WaveJoiners.h"
#include "Audio/Modules/CModOutput.h"
#include "Audio/Modules/CQPLEXContextObject.h"
#include "Audio/Parameters/CAudioParamCollector.h"

namespace tarv {

namespace {

/// Blocks that a channel holds at most at one time: in, dry, both modules of a fade, their mix, and those that are
/// freed only when a process has run.
constexpr int32_t kBlocksPerChannel = 8;
constexpr int32_t kStatesPerVoice = 3;
constexpr int32_t kLargeStateBytes = 256;

}  // namespace

CAudioInstanceGraph::CAudioInstanceGraph() = default;

CAudioInstanceGraph::~CAudioInstanceGraph() = default;

CError* CAudioInstanceGraph::init(const CAudioInstanceObjects& objects, int32_t channelCount, int32_t groupCount) {
    graph_.context = objects.context->context();
    graph_.collector = objects.paramCollector;
    graph_.env = objects.env;
    graph_.channelCount = channelCount;
    graph_.groupCount = groupCount;

    main_.reset(objects.mainDef->instantiate());
    main_->place({&graph_, nullptr, objects.mainDef, "plugin.modMain", "modMain", -1});
    TARV_TRY(main_->init());
    main_->needInput(0);
    main_->needOutput(0);

    CAudioProcessBase* const output = objects.outputDef->instantiate();
    output_.reset(dynamic_cast<CModOutput*>(output));
    if (!output_) {
        delete output;
        TARV_FAIL(
            "@tarvstr_CAudioWrapper_init_InvalidOutput Output process object 'shared::audio.modOutput' is not of "
            "required 'CModOutput' type.");
    }
    output_->place({&graph_, nullptr, objects.outputDef, "plugin.modOutput", "modOutput", -1});
    TARV_TRY(output_->init());
    setWaveJoiners(*graph_.context);
    return nullptr;
}

void CAudioInstanceGraph::destroyProcesses() {
    output_.reset();
    main_.reset();
}

void CAudioInstanceGraph::setHostChannels(int32_t inputs, int32_t outputs) {
    graph_.hostInputs = inputs;
    graph_.hostOutputs = outputs;
}

void CAudioInstanceGraph::start(double rate, int32_t blockSize) {
    graph_.setRunning(false);
    graph_.hostRate = rate;
    blockSize_ = blockSize;
    prepare();
    graph_.setRunning(true);
}

void CAudioInstanceGraph::stop() {
    graph_.setRunning(false);
    reset();
}

bool CAudioInstanceGraph::isStartedFor(double rate, int32_t blockSize) const {
    return rate == graph_.hostRate && blockSize == blockSize_;
}

void CAudioInstanceGraph::reset() {
    graph_.context->flush();
    main_->reset();
    output_->reset();
}

CAudioPort& CAudioInstanceGraph::input() const {
    return main_->input(0);
}

void CAudioInstanceGraph::prepare() {
    reset();
    // Takes the pending changes in place. The run of no samples behind it makes every process, module and order that
    // the first block will need.
    graph_.collector->applyPendingChanges(graph_.now);
    for (int32_t i = 0; i < graph_.hostInputs; ++i) {
        input().add(0, i, 0, graph_.context->takeBuffer(sizeof(double)));
    }
    run(0);
    output_->clearBuffers();
    graph_.context->flush();
    makeRoom();
    placeDelays();
}

void CAudioInstanceGraph::run(int32_t frames) {
    input().samples = frames;
    input().rate = graph_.hostRate;
    main_->process();
    output_->input(0).takeFrom(main_->output(0), *graph_.context);
    output_->process();
    graph_.context->endProcess();
}

bool CAudioInstanceGraph::takeQuietChanges() {
    graph_.beginQuietChanges();
    return main_->takeQuietChanges() && output_->takeQuietChanges();
}

void CAudioInstanceGraph::makeRoomIfNeeded() {
    if (graph_.isRoomWanted()) {
        makeRoom();
    }
}

void CAudioInstanceGraph::makeRoom() {
    const CAudioGraph::CUse before = graph_.use();
    graph_.beginUse();
    main_->makeSpares();
    const CAudioGraph::CUse& use = graph_.use();
    // As many voices as before, at the same rate, use the blocks that the earlier ones gave back.
    if (graph_.isRunning() && use == before) {
        return;
    }

    const double factor = use.widestRate / graph_.hostRate;
    const auto blockBytes = static_cast<int32_t>(kMaxRun * factor * sizeof(double) + 0.5);
    graph_.context->reserveBuffers(graph_.hostInputs + kBlocksPerChannel * (use.channels + 1), blockBytes);
    // Each voice needs new states, coefficients and a ramp for a fade while the old ones are still in use.
    graph_.context->reserveBuffers(kStatesPerVoice * use.voices, static_cast<int32_t>(sizeof(double)));
    graph_.context->reserveBuffers(use.voices, kLargeStateBytes);
}

void CAudioInstanceGraph::placeDelaysIfNeeded() {
    if (!graph_.areDelaysValid()) {
        placeDelays();
    }
}

void CAudioInstanceGraph::placeDelays() {
    output_->placeDelay(main_->placeDelay(0));
    output_->updateParams();
    graph_.confirmDelays();
}

}  // namespace tarv
