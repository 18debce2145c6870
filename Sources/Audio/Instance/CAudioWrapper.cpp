#include "Audio/Instance/CAudioWrapper.h"

#include <cmath>

#include "Audio/Engine/CAudioInterfaceBase.h"
#include "Audio/Graph/CAudioProcessBase.h"
#include "Audio/Instance/CAudioCCTable.h"
#include "Audio/Modules/CModOutput.h"
#include "Audio/Modules/CQPLEXContextObject.h"
#include "Audio/Parameters/CAudioEnv.h"
#include "Audio/Parameters/CAudioExtParam.h"
#include "Audio/Parameters/CAudioGlobalParam.h"
#include "Audio/Parameters/CAudioParamCollector.h"
#include "Audio/Stores/CAudioDefaultPreset.h"
#include "Audio/Visuals/CAudioVizCollector.h"
#include "Core/CApplication.h"
#include "Core/CApplicationData.h"
#include "Core/CompressedBlock.h"

namespace tarv {

namespace {

constexpr const char* kOversamplingLevel = "oversampling-level";

}  // namespace

/// Carries changes that the engine makes to one external parameter to the host.
class CAudioWrapper::CExtParamBridge final : public CHeapObject, public CAudioExtParamHostBridge {
public:
    CExtParamBridge(CAudioWrapper& owner, int32_t index) : owner_(owner), index_(index) {}
    void onExtParamChanged(const CAudioExtParam& param) override { owner_.hostParamChanged(index_, param); }

private:
    CAudioWrapper& owner_;
    int32_t index_;
};

CAudioWrapper::CAudioWrapper() : oversamplingBridge_(this, &CAudioWrapper::readOversamplingLevel) {}

CAudioWrapper::~CAudioWrapper() {
    stopMessages();
    oversamplingBridge_.disconnect();
    if (extParamList_ != nullptr) {
        for (int32_t i = 0; i < extParamList_->count(); ++i) {
            extParamList_->param(i)->setHostBridge(nullptr);
        }
    }
    extParamBridges_.deleteAll();
    globalParams_.deleteAll();
    delete outputProcess_;
    delete mainProcess_;
    if (paramCollector_ != nullptr) {
        paramCollector_->detachConsumers();
    }
    delete root_;
}

void CAudioWrapper::stopMessages() {
    if (interfaceBase_ != nullptr) {
        interfaceBase_->stopMessages();
    }
}

CQPLEXContext* CAudioWrapper::context() const {
    return contextObject_ != nullptr ? contextObject_->context() : nullptr;
}

CError* CAudioWrapper::init() {
    if (!CApplication::exists()) {
        TARV_FAIL("@tarvstr_CAudioWrapper_init_NoApplication No application object created.");
    }
    TARV_TRY(CApplication::initRootObject(root_));
    CObject* created = nullptr;
    TARV_TRY(root_->createChild(created, "plugin", "plugin", true));
    plugin_ = root_->findChild("plugin");
    if (plugin_ == nullptr) {
        TARV_FAIL("@tarvstr_CAudioWrapper_init_NoPlugin Plug-in tree object with the name 'plugin' is required.");
    }
    TARV_TRY(readProject());
    TARV_TRY(findRequiredObjects());
    TARV_TRY(createProcesses());
    TARV_TRY(createGlobalParams());
    startWithDefaultPreset();  // before the host's bridges: it has not got the instance yet
    interfaceBase_->setGroupCount(groupCount_);
    interfaceBase_->setInternalChannelCount(channelCount_);
    for (int32_t i = 0; i < extParamList_->count(); ++i) {
        auto* bridge = new CExtParamBridge(*this, i);
        extParamBridges_.append(bridge);
        extParamList_->param(i)->setHostBridge(bridge);
    }
    inputCount_ = 1;
    outputCount_ = 1;
    sampleRateChanged_ = true;
    oversamplingBridge_.subscribe(CGlobalData::instance(), kOversamplingLevel);
    readOversamplingLevel(nullptr);
    return nullptr;
}

CError* CAudioWrapper::readProject() {
    hasSidechain_ = plugin_->getAttrBool("sidechain");
    project_ = root_->findObject("shared::project");
    if (project_ == nullptr) {
        TARV_FAIL("@tarvstr_CAudioWrapper_init_NoProject Shared project root 'shared::project' object is required.");
    }
    pluginName_ = project_->getAttrString("app-name");
    if (pluginName_.isEmpty()) {
        TARV_FAIL("@tarvstr_CAudioWrapper_init_NoPluginName Plug-in name is empty.");
    }
    vendorName_ = project_->getAttrString("app-vendor");
    if (vendorName_.isEmpty()) {
        TARV_FAIL("@tarvstr_CAudioWrapper_init_NoVendorName Vendor name is empty.");
    }
    useHostBpm_ = plugin_->getAttrBool("use-host-bpm");
    channelCount_ = project_->getAttrInt("plugin-intchannel-count");
    if (channelCount_ < 1 || channelCount_ > 32) {
        TARV_FAIL("@tarvstr_CAudioWrapper_init_InvalidChannelCount Invalid 'plugin-intchannel-count' attribute value.");
    }
    groupCount_ = project_->getAttrInt("plugin-group-count");
    if (groupCount_ < 1 || groupCount_ > 8) {
        TARV_FAIL("@tarvstr_CAudioWrapper_init_InvalidGroupCount Invalid 'plugin-group-count' attribute value.");
    }
    TARV_TRY(acquirePluginCode(project_->getAttrString("plugin-code"), pluginCode_));
    TARV_TRY(parseVersion(project_->getAttrString("app-version"), version_));
    return nullptr;
}

CError* CAudioWrapper::acquirePluginCode(const CString& text, uint32_t& code) {
    if (text.length() != 4) {
        TARV_FAIL("@tarvstr_CAudioWrapper_acquirePluginCode_InvalidCode Invalid plug-in code in string '%1'.", text);
    }
    code = 0;
    for (int32_t i = 0; i < 4; ++i) {
        code = (code << 8) + (text.at(i) & 0xff);
    }
    return nullptr;
}

CError* CAudioWrapper::parseVersion(const CString& text, int32_t (&version)[3]) {
    const CArray<CString, 4> parts = text.split('.', true);
    bool isGood = parts.count() == 2 || parts.count() == 3;
    int32_t numbers[3] = {0, 0, 0};
    for (int32_t i = 0; isGood && i < parts.count(); ++i) {
        numbers[i] = CString::toInt(parts[i], &isGood);
        isGood = isGood && numbers[i] >= 0;
    }
    if (!isGood) {
        TARV_FAIL("@tarvstr_CAudioWrapper_parseVersion_InvalidVersion Invalid version specification in string '%1'.",
                  text);
    }
    for (int32_t i = 0; i < 3; ++i) {
        version[i] = numbers[i];
    }
    return nullptr;
}

template <class T>
CError* CAudioWrapper::findRequired(const char* path, const char* message, T*& found) const {
    found = root_->findObjectOf<T>(path);
    if (found == nullptr) {
        TARV_FAIL(message);
    }
    return nullptr;
}

CError* CAudioWrapper::findRequiredObjects() {
    TARV_TRY(findRequired("plugin.qplex-context",
                          "@tarvstr_CAudioWrapper_init_NoContext No valid QPLEX context object with the name "
                          "'plugin.qplex-context' defined.",
                          contextObject_));
    TARV_TRY(findRequired(
        "plugin.audio-env",
        "@tarvstr_CAudioWrapper_init_NoEnv No valid env object with the name 'plugin.audio-env' defined.", env_));
    TARV_TRY(findRequired("plugin.param-collector",
                          "@tarvstr_CAudioWrapper_init_NoParamCollector No valid parameter collector object with the "
                          "name 'plugin.param-collector' defined.",
                          paramCollector_));
    TARV_TRY(findRequired("plugin.viz-collector",
                          "@tarvstr_CAudioWrapper_init_NoVizCollector No valid visual object collector object with the "
                          "name 'plugin.viz-collector' defined.",
                          vizCollector_));
    TARV_TRY(findRequired("plugin.interface-base",
                          "@tarvstr_CAudioWrapper_init_NoInterfaceBase No valid interface base collector object with "
                          "the name 'plugin.interface-base' defined.",
                          interfaceBase_));
    TARV_TRY(findRequired("plugin.ext-param-list",
                          "@tarvstr_CAudioWrapper_init_NoExtParamList No valid CAudioExtParamList* object with the "
                          "name 'plugin.ext-param-list' defined.",
                          extParamList_));
    TARV_TRY(findRequired("plugin.cctable",
                          "@tarvstr_CAudioWrapper_init_NoCCTable No valid CAudioCCTable* object with the name "
                          "'plugin.cctable' defined.",
                          ccTable_));
    TARV_TRY(findRequired("plugin.param-registry",
                          "@tarvstr_CAudioWrapper_init_NoParamRegistry No valid parameter registry object with the "
                          "name 'plugin.param-registry' defined.",
                          paramRegistry_));
    TARV_TRY(findRequired("shared::audio.modMain",
                          "@tarvstr_CAudioWrapper_init_NoMainDef No main process definition object with the name "
                          "'shared::audio.modMain' found.",
                          mainDef_));
    TARV_TRY(findRequired("shared::audio.modOutput",
                          "@tarvstr_CAudioWrapper_init_NoOutputDef No output process definition object with the name "
                          "'shared::audio.modOutput' found.",
                          outputDef_));
    return nullptr;
}

CError* CAudioWrapper::createProcesses() {
    graph_.context = contextObject_->context();
    graph_.collector = paramCollector_;
    graph_.env = env_;
    graph_.channelCount = channelCount_;
    graph_.groupCount = groupCount_;
    hostOversamplingParam_ = paramCollector_->getParam("plugin.modMain.host-oversampling-mode");
    hostOfflineParam_ = paramCollector_->getParam("plugin.modMain.host-offline");
    hostLatencyParam_ = paramCollector_->getParam("plugin.modMain.host-latency-change");
    hostBpmParam_ = paramCollector_->getParam("plugin.modMain.host-bpm");
    bypassParam_ = paramCollector_->getParam("plugin.modMain.modBypass.enable");

    mainProcess_ = mainDef_->instantiate();
    mainProcess_->place({&graph_, nullptr, mainDef_, "plugin.modMain", "modMain", -1});
    TARV_TRY(mainProcess_->init());
    mainProcess_->needInput(0);
    mainProcess_->needOutput(0);

    CAudioProcessBase* output = outputDef_->instantiate();
    outputProcess_ = dynamic_cast<CModOutput*>(output);
    if (outputProcess_ == nullptr) {
        delete output;
        TARV_FAIL(
            "@tarvstr_CAudioWrapper_init_InvalidOutput Output process object 'shared::audio.modOutput' is not of "
            "required 'CModOutput' type.");
    }
    outputProcess_->place({&graph_, nullptr, outputDef_, "plugin.modOutput", "modOutput", -1});
    TARV_TRY(outputProcess_->init());
    paramCollector_->closeCollection();
    return nullptr;
}

CError* CAudioWrapper::createGlobalParams() {
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
        CAudioParam* param = paramCollector_->getParam(row.param);
        // Without a definition there is no value to share with other instances.
        if (param->isDefined()) {
            globalParams_.append(new CAudioGlobalParam(*param, row.store, row.key));
        }
    }
    return nullptr;
}

// Also called by the store when the setting is written, on the writer's thread: the next block asks for the level.
void CAudioWrapper::readOversamplingLevel(CCheckedObject*) {
    bool isNumber = false;
    const int32_t level = CString::toInt(CGlobalData::instance().readText(kOversamplingLevel, "1"), &isNumber);
    oversamplingLevel_.store(isNumber ? level : 1, std::memory_order_relaxed);
}

void CAudioWrapper::startWithDefaultPreset() {
    CByteBuffer stream;
    CAudioDefaultPreset::read(stream);
    if (!stream.isEmpty()) {
        CMemoryReader reader(stream.data(), static_cast<uint32_t>(stream.count()));
        // A damaged one changes nothing.
        TARV_CONSUME(paramRegistry_->activatePreset(reader, {-1, false, false}));
    }
}

CError* CAudioWrapper::getState(CByteBuffer& chunk, bool isProgram) {
    CByteBuffer stream;
    CBufferWriter writer(stream);
    TARV_TRY(isProgram ? paramRegistry_->acquirePreset(false, -1, -1, writer, false)
                       : paramRegistry_->acquireBank(false, writer, false));
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
    TARV_TRY(isProgram ? paramRegistry_->activatePreset(stream, request)
                       : paramRegistry_->activateBank(stream, request));
    interfaceBase_->sendState();
    return nullptr;
}

bool CAudioWrapper::isActive() const {
    return env_ != nullptr && env_->isRunning();
}

int32_t CAudioWrapper::latency() const {
    return env_ != nullptr ? env_->latency() : 0;
}

void CAudioWrapper::setSampleRate(double rate) {
    if (!(rate > 0.0) || !std::isfinite(rate) || rate == env_->sampleRate()) {
        return;
    }
    {
        CLockScope scope(env_->lock());
        env_->setSampleRate(rate);
        sampleRateChanged_ = true;
    }
    TARV_CONSUME(interfaceBase_->notify("update-sample-rate"));
}

void CAudioWrapper::setBlockSize(int32_t frames) {
    CLockScope scope(env_->lock());
    env_->setBlockSize(frames > 0 ? frames : 1);
}

void CAudioWrapper::setChannelCounts(int32_t inputs, int32_t outputs) {
    inputCount_ = inputs < 1 ? 1 : inputs > kMaxHostChannels ? kMaxHostChannels : inputs;
    outputCount_ = outputs < 1 ? 1 : outputs > kMaxHostChannels ? kMaxHostChannels : outputs;
}

void CAudioWrapper::setOffline(bool isOffline) {
    isOffline_ = isOffline;
    hostStages_ = isOffline ? oversamplingLevel() : 0;
    hostOfflineParam_->setValue(0, 0, isOffline ? 1.0 : 0.0);
    hostOversamplingParam_->setValue(0, 0, hostStages_);
}

void CAudioWrapper::setHostBpm(double bpm) {
    lastBpm_ = bpm;
    hostBpmParam_->setValue(0, 0, bpm);
}

}  // namespace tarv
