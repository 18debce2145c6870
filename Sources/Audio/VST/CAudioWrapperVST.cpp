// The calls of a VST 2 host, passed to the core of the instance.

#include "Audio/VST/CAudioWrapperVST.h"

#include <atomic>
#include <cstring>

#include "Audio/Engine/CAudioInterfaceBase.h"
#include "Audio/Parameters/CAudioEnv.h"
#include "Audio/Parameters/CAudioExtParam.h"
#include "Audio/VST/CAudioWrapperVSTEditor.h"
#include "Audio/VST/CPluginFace.h"
#include "Audio/VST/VstAnswers.h"
#include "Core/SystemText.h"

namespace tarv {

namespace {

std::atomic<bool> focusIsTaken{true};

}  // namespace

vst::AEffect* CAudioWrapperVST::create(vst::HostCallback host) {
    if (!host || host(nullptr, vst::kHostVersion, 0, 0, nullptr, 0.0f) == 0) {
        return nullptr;
    }
    auto* wrapper = new CAudioWrapperVST(host);
    if (CError* error = wrapper->init()) {
        showError(error);
        delete wrapper;
        return nullptr;
    }
    return wrapper->getAeffect();
}

// init sets the true counts, which the tree holds.
CAudioWrapperVST::CAudioWrapperVST(vst::HostCallback host) : AudioEffectX(host, 1, 1) {}

CAudioWrapperVST::~CAudioWrapperVST() {
    setEditor(nullptr);
    stopMessages();
    programBridge_.disconnect();
    if (isActive()) {
        CAudioWrapper::suspend();
    }
}

bool CAudioWrapperVST::isFocusTaken() {
    return focusIsTaken.load(std::memory_order_relaxed);
}

CError* CAudioWrapperVST::init() {
    TARV_TRY(CAudioWrapper::init());
    askHost();
    const bool isStereo = ownFace() == CPluginFace::kStereo;
    uint32_t code = pluginCode();
    if (isStereo) {
        TARV_TRY(acquirePluginCode(project()->getAttrString("plugin-code-stereo"), code));
    }
    setUniqueID(code);
    setVersion(getVendorVersion());
    setNumPrograms(paramRegistry()->programCount());
    setNumParams(extParamList()->count());
    programsAreChunks(true);
    canProcessReplacing(true);
    canDoubleReplacing(true);
    const int32_t channels = traits_.isManyChannels && !isStereo ? internalChannelCount() : 2;
    setNumInputs(channels);
    setNumOutputs(channels);
    // Some hosts process before the first resume: all of their outputs are cleared.
    setChannelCounts(channels, channels);
    programBridge_.subscribe(*paramRegistry());
    if (project()->getAttrBool("has-editor")) {
        setEditor(new CAudioWrapperVSTEditor(*this));
    }
    return nullptr;
}

void CAudioWrapperVST::askHost() {
    const int32_t masterVersion = getMasterVersion();
    char vendor[65];
    char product[65];
    getHostVendorString(vendor);
    getHostProductString(product);
    traits_ = traitsOfHost(masterVersion, vendor, product);
    if (traits_.needsProcessLock) {
        processLock_.enable();
    }
    focusIsTaken.store(traits_.isFocusTaken, std::memory_order_relaxed);
}

void CAudioWrapperVST::suspend() {
    CProcessLock::CScope scope(processLock_);
    CAudioWrapper::suspend();
}

void CAudioWrapperVST::resume() {
    CProcessLock::CScope scope(processLock_);
    takeFormat();
    CAudioWrapper::resume();
    // A format that another thread announced since the first call was not forwarded: the effect was suspended.
    takeFormat();
    setInitialDelay(latency());
}

void CAudioWrapperVST::takeFormat() {
    CAudioWrapper::setBlockSize(AudioEffectX::blockSize());
    CAudioWrapper::setSampleRate(static_cast<double>(AudioEffectX::sampleRate()));
}

void CAudioWrapperVST::formatChanged() {
    // Audacity sets the rate behind `mains on` without another resume; its sound would have filters of the old rate.
    if (isActive()) {
        takeFormat();
    }
}

void CAudioWrapperVST::processReplacing(float** inputs, float** outputs, int32_t frames) {
    CProcessLock::CScope scope(processLock_);
    processBlock(inputs, outputs, frames);
}

void CAudioWrapperVST::processDoubleReplacing(double** inputs, double** outputs, int32_t frames) {
    CProcessLock::CScope scope(processLock_);
    processBlock(inputs, outputs, frames);
}

void CAudioWrapperVST::setParameter(int32_t index, float value) {
    extParamList()->setParameter(index, static_cast<double>(value));
}

float CAudioWrapperVST::getParameter(int32_t index) {
    return static_cast<float>(extParamList()->getParameter(index));
}

int32_t CAudioWrapperVST::getProgram() {
    return paramRegistry()->currentProgram();
}

void CAudioWrapperVST::setProgram(int32_t index) {
    CHostCalls::CScope call(hostCalls_);
    paramRegistry()->selectProgram(index);
}

void CAudioWrapperVST::setProgramName(const char* text) {
    CHostCalls::CScope call(hostCalls_);
    paramRegistry()->renameProgram(paramRegistry()->currentProgram(), textOfUnknownEncoding(text, std::strlen(text)));
}

int32_t CAudioWrapperVST::getChunk(void** data, bool isProgram) {
    CByteBuffer& chunk = isProgram ? programChunk_ : bankChunk_;
    if (CError* error = getState(chunk, isProgram)) {
        TARV_CONSUME(error);
        return 0;
    }
    *data = chunk.data();
    return chunk.count();
}

int32_t CAudioWrapperVST::setChunk(const void* data, intptr_t size, bool isProgram) {
    CHostCalls::CScope call(hostCalls_);
    if (CError* error = setState(data, size, isProgram, true)) {
        TARV_CONSUME(error);
        return 0;
    }
    return 1;
}

void CAudioWrapperVST::programChanged(CCheckedObject*) {
    if (!hostCalls_.isInside()) {
        updateDisplay();
    }
}

void CAudioWrapperVST::getProgramName(char* text) {
    texts_.currentProgramName(text);
}

bool CAudioWrapperVST::getProgramNameIndexed(int32_t index, char* text) {
    return texts_.programName(index, text);
}

void CAudioWrapperVST::getParameterLabel(int32_t index, char* text) {
    texts_.parameterLabel(index, text);
}

void CAudioWrapperVST::getParameterDisplay(int32_t index, char* text) {
    texts_.parameterDisplay(index, text);
}

void CAudioWrapperVST::getParameterName(int32_t index, char* text) {
    texts_.parameterName(index, text);
}

bool CAudioWrapperVST::setParameterText(int32_t index, const char* text) {
    CAudioExtParam* param = extParamList()->param(index);
    return param && (!text || param->setText(textOfUnknownEncoding(text, std::strlen(text))));
}

bool CAudioWrapperVST::setSpeakerArrangement(const vst::SpeakerArrangement* input,
                                             const vst::SpeakerArrangement* output) {
    if (!input || !output) {
        return false;
    }
    speakers_.set(*input, *output, env()->lock());
    CTextList labels;
    for (int32_t i = 0; i < speakers_.inputs().labelCount; ++i) {
        labels.append(speakers_.inputs().labels[i]);
    }
    interfaceBase()->setChannelLabels(labels);
    CTextList outputs;
    for (int32_t i = 0; i < speakers_.outputs().labelCount; ++i) {
        outputs.append(speakers_.outputs().labels[i]);
    }
    interfaceBase()->setOutputLabels(outputs);
    return true;
}

bool CAudioWrapperVST::getSpeakerArrangement(vst::SpeakerArrangement** input, vst::SpeakerArrangement** output) {
    return speakers_.get(input, output);
}

bool CAudioWrapperVST::setProcessPrecision(int32_t precision) {
    if (precision != vst::kPrecision32 && precision != vst::kPrecision64) {
        return false;
    }
    isDoublePrecision_ = precision == vst::kPrecision64;
    return true;
}

// Accepts and ignores events: some hosts route notes to effects that accept them, and no controller is in use.
int32_t CAudioWrapperVST::processEvents(const vst::Events*) {
    return 1;
}

bool CAudioWrapperVST::getEffectName(char* text) {
    texts_.effectName(text);
    return true;
}

bool CAudioWrapperVST::getVendorString(char* text) {
    texts_.vendor(text);
    return true;
}

bool CAudioWrapperVST::getProductString(char* text) {
    texts_.product(text);
    return true;
}

int32_t CAudioWrapperVST::getVendorVersion() {
    const int32_t(&v)[3] = version();
    return v[0] << 16 | v[1] << 8 | v[2];
}

intptr_t CAudioWrapperVST::vendorSpecific(int32_t index, intptr_t value, void* ptr, float opt) {
    if (index == vst::kVendorMagic && value == vst::kVendorMouseWheel && editor()) {
        return editor()->onWheel(opt);
    }
    if (index != vst::kCockosDisplayRequest || !ptr) {
        return 0;
    }
    texts_.parameterDisplayFor(value, static_cast<double>(opt), static_cast<char*>(ptr));
    return vst::kCockosDisplayAnswer;
}

intptr_t CAudioWrapperVST::canDo(const char* text) {
    return vstCanDo(text);
}

int32_t CAudioWrapperVST::getPlugCategory() {
    return vstCategory(project()->getAttrString("plugin-category-vst"));
}

bool CAudioWrapperVST::hostTempo(double& bpm) {
    const vst::TimeInfo* time = getTimeInfo(vst::kTimeTempoValid);
    if (!time || !(time->flags & vst::kTimeTempoValid)) {
        return false;
    }
    bpm = time->tempo;
    return true;
}

void CAudioWrapperVST::hostIoChanged() {
    // A host may read the latency inside this call, without a suspend.
    setInitialDelay(latency());
    ioChanged();
}

void CAudioWrapperVST::hostParamChanged(int32_t index, const CAudioExtParam& param) {
    if (!hostCalls_.isInside()) {
        setParameterAutomated(index, static_cast<float>(param.getValue()));
    }
}

void CAudioWrapperVST::hostParamEdited(int32_t index, bool isBegin) {
    if (!traits_.needsEditsOnFirstThread || currentThreadId() == firstThread_) {
        isBegin ? beginEdit(index) : endEdit(index);
    }
}

}  // namespace tarv
