// Start, state, suspend, resume and blocks of an instance.

#include "Audio/Instance/CAudioWrapper.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Audio/Engine/CAudioInterfaceBase.h"
#include "Audio/Modules/CQPLEXContextObject.h"
#include "Audio/Parameters/CAudioEnv.h"
#include "Audio/Parameters/CAudioExtParam.h"
#include "Audio/Parameters/CAudioGlobalParam.h"
#include "Audio/Parameters/CAudioParamCollector.h"
#include "Audio/Stores/CAudioDefaultPreset.h"
#include "Audio/Visuals/CAudioVizCollector.h"
#include "Core/CApplication.h"
#include "Core/CompressedBlock.h"

namespace tarv {

namespace {

constexpr int32_t kOfflineLevel = 4;

int32_t hostChannelCount(int32_t count) {
    return std::clamp(count, 1, CAudioBlockRunner::kMaxHostChannels);
}

}  // namespace

/// Carries changes that the engine makes to one external parameter to the host.
class CAudioWrapper::CExtParamBridge final : public CHeapObject, public CAudioExtParamHostBridge {
public:
    CExtParamBridge(CAudioWrapper& owner, int32_t index) : owner_(owner), index_(index) {}
    void onExtParamChanged(const CAudioExtParam& param) override { owner_.hostParamChanged(index_, param); }
    void onExtParamEdited(const CAudioExtParam&, bool isBegin) override { owner_.hostParamEdited(index_, isBegin); }

private:
    CAudioWrapper& owner_;
    int32_t index_;
};

CAudioWrapper::CAudioWrapper() = default;

CAudioWrapper::~CAudioWrapper() {
    stopMessages();
    hostParams_.disconnect();
    if (extParamList() != nullptr) {
        for (int32_t i = 0; i < extParamList()->count(); ++i) {
            extParamList()->param(i)->setHostBridge(nullptr);
        }
    }
    extParamBridges_.deleteAll();
    globalParams_.deleteAll();
    graph_.destroyProcesses();
    if (paramCollector() != nullptr) {
        paramCollector()->detachConsumers();
    }
    delete root_;
}

void CAudioWrapper::stopMessages() {
    if (interfaceBase() != nullptr) {
        interfaceBase()->stopMessages();
    }
}

CQPLEXContext* CAudioWrapper::context() const {
    return objects_.context != nullptr ? objects_.context->context() : nullptr;
}

CError* CAudioWrapper::init() {
    if (!CApplication::exists()) {
        TARV_FAIL("@tarvstr_CAudioWrapper_init_NoApplication No application object created.");
    }
    TARV_TRY(createTree());
    TARV_TRY(info_.read(*project_));
    TARV_TRY(objects_.find(*root_));
    hostParams_.init(*paramCollector());
    TARV_TRY(graph_.init(objects_, internalChannelCount(), groupCount()));
    paramCollector()->closeCollection();
    createGlobalParams();
    startWithDefaultPreset();  // before the bridges: the host does not have the instance yet
    interfaceBase()->setGroupCount(groupCount());
    interfaceBase()->setInternalChannelCount(internalChannelCount());
    connectHost();
    sampleRateChanged_ = true;
    hostParams_.followSetting();
    return nullptr;
}

CError* CAudioWrapper::createTree() {
    TARV_TRY(CApplication::initRootObject(root_));
    CObject* created = nullptr;
    TARV_TRY(root_->createChild(created, "plugin", "plugin", true));
    const CObject* const plugin = root_->findChild("plugin");
    if (plugin == nullptr) {
        TARV_FAIL("@tarvstr_CAudioWrapper_init_NoPlugin Plug-in tree object with the name 'plugin' is required.");
    }
    useHostBpm_ = plugin->getAttrBool("use-host-bpm");
    project_ = root_->findObject("shared::project");
    if (project_ == nullptr) {
        TARV_FAIL("@tarvstr_CAudioWrapper_init_NoProject Shared project root 'shared::project' object is required.");
    }
    return nullptr;
}

void CAudioWrapper::createGlobalParams() {
    CLocalData& local = CLocalData::instance();
    CGlobalData& global = CGlobalData::instance();
    const struct {
        const char* param;
        const char* key;
        CApplicationData& store;
    } rows[] = {
        {"plugin.modMain.meter-rmstime", "integration-time", local},
        {"plugin.modMain.meter-releasetime", "release-time", local},
        {"plugin.modMain.meter-peaktime", "peak-level-hold-time", local},
        {"plugin.modMain.denorm-enable", "denorm-enable", global},
    };
    for (const auto& row : rows) {
        CAudioParam* param = paramCollector()->getParam(row.param);
        // Without a definition there is no value to share with other instances.
        if (param->isDefined()) {
            globalParams_.append(new CAudioGlobalParam(*param, row.store, row.key));
        }
    }
}

void CAudioWrapper::startWithDefaultPreset() {
    CByteBuffer stream;
    CAudioDefaultPreset::read(stream);
    if (!stream.isEmpty()) {
        CMemoryReader reader(stream.data(), static_cast<uint32_t>(stream.count()));
        // A damaged preset changes nothing.
        TARV_CONSUME(paramRegistry()->activatePreset(reader, {-1, false, false}));
    }
}

void CAudioWrapper::connectHost() {
    for (int32_t i = 0; i < extParamList()->count(); ++i) {
        auto* bridge = new CExtParamBridge(*this, i);
        extParamBridges_.append(bridge);
        extParamList()->param(i)->setHostBridge(bridge);
    }
    interfaceBase()->setHostParams(extParamList());
}

CError* CAudioWrapper::getState(CByteBuffer& chunk, bool isProgram) {
    CByteBuffer stream;
    CBufferWriter writer(stream);
    TARV_TRY(isProgram ? paramRegistry()->acquirePreset(false, -1, -1, writer, false)
                       : paramRegistry()->acquireBank(false, writer, false));
    CByteBuffer packed;
    CBufferWriter packedWriter(packed);
    TARV_TRY(packedWriter.writeCompressedData(stream, isProgram ? kPresetBlockId : kBankBlockId));
    chunk = std::move(packed);
    return nullptr;
}

CError* CAudioWrapper::setState(const void* data, int64_t size, bool isProgram, bool checkHeader) {
    const uint32_t id = isProgram ? kPresetBlockId : kBankBlockId;
    if (checkHeader && size <= kChunkPrefix) {
        return nullptr;
    }
    if (size < 0 || size > UINT32_MAX) {
        TARV_FAIL("@tarvstr_CAudioWrapper_setState_InvalidSize Invalid chunk size %1.", CString::fromInt(size));
    }
    CMemoryReader reader(data, static_cast<uint32_t>(size));
    if (checkHeader) {
        uint32_t first = 0;
        TARV_TRY(reader.readValue(first));
        TARV_TRY(reader.setPosition(first == id ? 0 : kChunkPrefix));
    }
    CByteBuffer bytes;
    TARV_TRY(reader.readCompressedData(bytes, id));
    CMemoryReader stream(bytes.data(), static_cast<uint32_t>(bytes.count()));
    const CPresetRequest request{-1, true, false};
    TARV_TRY(isProgram ? paramRegistry()->activatePreset(stream, request)
                       : paramRegistry()->activateBank(stream, request));
    interfaceBase()->sendState();
    return nullptr;
}

bool CAudioWrapper::isActive() const {
    return env() != nullptr && env()->isRunning();
}

int32_t CAudioWrapper::latency() const {
    return env() != nullptr ? env()->latency() : 0;
}

void CAudioWrapper::setSampleRate(double rate) {
    if (!(rate > 0.0) || !std::isfinite(rate) || rate == env()->sampleRate()) {
        return;
    }
    {
        CLockScope scope(env()->lock());
        env()->setSampleRate(rate);
        sampleRateChanged_ = true;
    }
    TARV_CONSUME(interfaceBase()->notify("update-sample-rate"));
}

void CAudioWrapper::setBlockSize(int32_t frames) {
    CLockScope scope(env()->lock());
    env()->setBlockSize(frames > 0 ? frames : 1);
}

void CAudioWrapper::setChannelCounts(int32_t inputs, int32_t outputs) {
    inputCount_ = hostChannelCount(inputs);
    outputCount_ = hostChannelCount(outputs);
    // An editor that opens before the first resume lists them.
    interfaceBase()->setIoCounts(inputCount_, outputCount_, 0);
}

void CAudioWrapper::suspend() {
    {
        CLockScope scope(env()->lock());
        if (!env()->isRunning()) {
            return;
        }
        env()->setRunning(false);
    }
    graph_.stop();
    objects_.vizCollector->stop();
    TARV_CONSUME(interfaceBase()->notify("clear"));
    interfaceBase()->stop();
}

void CAudioWrapper::resume() {
    if (env()->isRunning()) {
        return;
    }
    bool isRateNew = false;
    {
        CLockScope scope(env()->lock());
        isRateNew = std::exchange(sampleRateChanged_, false);
    }
    if (isRateNew) {
        TARV_CONSUME(interfaceBase()->notify("update-sample-rate"));
    }
    if (inputCount_ != graph().hostInputs || outputCount_ != graph().hostOutputs) {
        graph_.setHostChannels(inputCount_, outputCount_);
    }
    // Needed even if the audio thread has set it: the values that users read follow here.
    setOffline(hostProcessLevel() == kOfflineLevel);
    // The host takes the latency anew behind a resume.
    hostParams_.clearLatencyMark();
    graph_.start(env()->sampleRate(), env()->blockSize());
    isFirstBlock_ = true;
    objects_.vizCollector->start();
    interfaceBase()->start();
    CLockScope scope(env()->lock());
    env()->setRunning(true);
}

/// Takes over what the host, its user and editors set since the last block.
void CAudioWrapper::beginBlock() {
    const double rate = env()->sampleRate();
    const int32_t blockSize = env()->blockSize();
    const uint64_t deliveries = paramCollector()->deliveries();
    hostParams_.takeOffline(hostProcessLevel() == kOfflineLevel);
    if (double bpm = 0.0; useHostBpm_ && hostTempo(bpm)) {
        hostParams_.takeBpm(bpm);
    }
    objects_.vizCollector->setPosition(env()->position());
    paramCollector()->applyPendingChanges(graph().now);
    // Hosts that set a rate while running would otherwise get filters of the old rate. Hosts that set the state behind
    // the resume would get a fade from the former values.
    const bool isFirstState = isFirstBlock_ && paramCollector()->deliveries() != deliveries;
    const bool isFormatNew = !graph_.isStartedFor(rate, blockSize);
    if (isFirstState || isFormatNew) {
        graph_.start(rate, blockSize);
    }
    if (isFormatNew && !isFirstBlock_) {
        interfaceBase()->clearAtTick();  // a suspend would notify; the audio thread must not
    }
    isFirstBlock_ = false;
}

void CAudioWrapper::endBlock(int32_t frames, int32_t latencyBefore) {
    env()->advancePosition(frames / graph().hostRate);
    graph_.placeDelaysIfNeeded();
    if (env()->latency() != latencyBefore) {
        hostParams_.markLatency();
        hostIoChanged();
    }
}

template <class Sample>
void CAudioWrapper::processAny(const Sample* const* inputs, Sample* const* outputs, int32_t frames) {
    if (frames <= 0) {
        return;
    }
    if (!env()->isRunning()) {
        CAudioBlockRunner::silence(outputs, outputCount_, frames);
        return;
    }
    const int32_t latencyBefore = env()->latency();
    beginBlock();
    runner_.process(inputs, outputs, frames);
    endBlock(frames, latencyBefore);
}

void CAudioWrapper::processBlock(const float* const* inputs, float* const* outputs, int32_t frames) {
    processAny(inputs, outputs, frames);
}

void CAudioWrapper::processBlock(const double* const* inputs, double* const* outputs, int32_t frames) {
    processAny(inputs, outputs, frames);
}

}  // namespace tarv
