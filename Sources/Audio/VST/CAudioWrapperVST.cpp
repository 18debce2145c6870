#include "Audio/VST/CAudioWrapperVST.h"

#include <atomic>
#include <cstring>
#include <utility>

#include "Audio/Engine/CAudioInterfaceBase.h"
#include "Audio/Parameters/CAudioEnv.h"
#include "Audio/Parameters/CAudioExtParam.h"
#include "Audio/VST/CPluginFace.h"
#include "Audio/VST/VstAnswers.h"
#include "Core/SystemText.h"
#include "Platform/ThreadId.h"

namespace tarv {

namespace {

// Special cases for hosts, each with what it is there for.
/// Hosts of an older interface know two channels.
constexpr int32_t kManyChannelsVersion = 2300;
/// Knows two channels, whatever version it announces.
constexpr const char* kTwoChannelProduct = "Sony ACID Pro";
/// Calls suspend and resume from one thread while a block runs on another: the graph would be reset under the block.
constexpr const char* kLockedProduct = "WaveLab";
/// Keeps the keyboard focus. In all others a mouse press in an editor takes it, or typed keys would go to the host.
constexpr const char* kFocusKeepingVendor = "Steinberg";

std::atomic<bool> focusIsTaken{true};

/// Writes at most `size` bytes, the terminator included; a character that would not fit whole is left out.
void copyText(char* to, const CString& text, int32_t size) {
    const std::string bytes = text.toUtf8();
    size_t count = std::min(bytes.size(), static_cast<size_t>(size - 1));
    while (count > 0 && count < bytes.size() && (static_cast<unsigned char>(bytes[count]) & 0xc0) == 0x80) {
        --count;
    }
    std::memcpy(to, bytes.data(), count);
    to[count] = 0;
}

}  // namespace

/// Holds the process lock where the host needs one.
class CAudioWrapperVST::CProcessScope {
public:
    explicit CProcessScope(CAudioWrapperVST& wrapper) : lock_(wrapper.processLock_.get()) {
        if (lock_) {
            lock_->enter();
        }
    }
    ~CProcessScope() {
        if (lock_) {
            lock_->leave();
        }
    }
    CProcessScope(const CProcessScope&) = delete;
    CProcessScope& operator=(const CProcessScope&) = delete;

private:
    CLock* lock_;
};

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

// The true counts are known when the tree is built.
CAudioWrapperVST::CAudioWrapperVST(vst::HostCallback host) : AudioEffectX(host, 1, 1) {}

CAudioWrapperVST::~CAudioWrapperVST() {
    setEditor(nullptr);
    stopMessages();
    processLock_.reset();
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
    const int32_t channels = isManyChannels_ && !isStereo ? internalChannelCount() : 2;
    setNumInputs(channels);
    setNumOutputs(channels);
    // Before the first resume a host may process already: all of its outputs are to be silent.
    setChannelCounts(channels, channels);
    programBridge_.subscribe(*paramRegistry());
    return nullptr;
}

void CAudioWrapperVST::askHost() {
    char text[65];
    const int32_t masterVersion = getMasterVersion();
    getHostVendorString(text);
    hostVendor_ = text;
    getHostProductString(text);
    hostProduct_ = text;
    isManyChannels_ = masterVersion >= kManyChannelsVersion && hostProduct_ != kTwoChannelProduct;
    if (std::strstr(text, kLockedProduct)) {
        processLock_ = std::make_unique<CLock>();
    }
    focusIsTaken.store(hostVendor_ != kFocusKeepingVendor, std::memory_order_relaxed);
}

void CAudioWrapperVST::suspend() {
    CProcessScope scope(*this);
    CAudioWrapper::suspend();
}

void CAudioWrapperVST::resume() {
    CProcessScope scope(*this);
    takeFormat();
    CAudioWrapper::resume();
    // What another thread announced meanwhile found the effect suspended, and was not forwarded.
    takeFormat();
    setInitialDelay(latency());
}

void CAudioWrapperVST::takeFormat() {
    CAudioWrapper::setBlockSize(AudioEffectX::blockSize());
    CAudioWrapper::setSampleRate(static_cast<double>(AudioEffectX::sampleRate()));
}

void CAudioWrapperVST::formatChanged() {
    // Audacity sets the rate behind `mains on` and sends no other: without this its sound has filters of the old rate.
    if (isActive()) {
        takeFormat();
    }
}

void CAudioWrapperVST::processReplacing(float** inputs, float** outputs, int32_t frames) {
    CProcessScope scope(*this);
    processBlock(inputs, outputs, frames);
}

void CAudioWrapperVST::processDoubleReplacing(double** inputs, double** outputs, int32_t frames) {
    CProcessScope scope(*this);
    processBlock(inputs, outputs, frames);
}

void CAudioWrapperVST::setParameter(int32_t index, float value) {
    extParamList()->setParameter(index, static_cast<double>(value));
}

float CAudioWrapperVST::getParameter(int32_t index) {
    return static_cast<float>(extParamList()->getParameter(index));
}

/// Stands while the host sets a program or a chunk: what changes then is not told to it again.
class CAudioWrapperVST::CHostCall {
public:
    explicit CHostCall(CAudioWrapperVST& wrapper)
        : wrapper_(wrapper), before_(wrapper.callingThread_.exchange(currentThreadId())) {}
    ~CHostCall() { wrapper_.callingThread_.store(before_); }
    CHostCall(const CHostCall&) = delete;
    CHostCall& operator=(const CHostCall&) = delete;

private:
    CAudioWrapperVST& wrapper_;
    uint64_t before_;
};

bool CAudioWrapperVST::isHostCalling() const {
    return callingThread_.load() == currentThreadId();
}

int32_t CAudioWrapperVST::getProgram() {
    return paramRegistry()->currentProgram();
}

void CAudioWrapperVST::setProgram(int32_t index) {
    CHostCall call(*this);
    paramRegistry()->selectProgram(index);
}

void CAudioWrapperVST::setProgramName(const char* text) {
    CHostCall call(*this);
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
    CHostCall call(*this);
    if (CError* error = setState(data, size, isProgram, true)) {
        TARV_CONSUME(error);
        return 0;
    }
    return 1;
}

void CAudioWrapperVST::programChanged(CCheckedObject*) {
    if (!isHostCalling()) {
        updateDisplay();
    }
}

void CAudioWrapperVST::getProgramName(char* text) {
    copyText(text, paramRegistry()->programName(paramRegistry()->currentProgram()), vst::kMaxProgramName);
}

bool CAudioWrapperVST::getProgramNameIndexed(int32_t index, char* text) {
    if (index < 0 || index >= paramRegistry()->programCount()) {
        return false;
    }
    copyText(text, paramRegistry()->programName(index), vst::kMaxProgramName);
    return true;
}

void CAudioWrapperVST::getParameterLabel(int32_t index, char* text) {
    if (const CAudioExtParam* param = extParamList()->param(index)) {
        CString label;
        param->getLabel(label);
        copyText(text, label, vst::kMaxParamText);
    }
}

void CAudioWrapperVST::getParameterDisplay(int32_t index, char* text) {
    if (const CAudioExtParam* param = extParamList()->param(index)) {
        CString display;
        param->getDisplay(display);
        copyText(text, display, vst::kMaxParamText);
    }
}

void CAudioWrapperVST::getParameterName(int32_t index, char* text) {
    if (const CAudioExtParam* param = extParamList()->param(index)) {
        copyText(text, param->extName(), vst::kMaxParamText);
    }
}

bool CAudioWrapperVST::setSpeakerArrangement(const vst::SpeakerArrangement* input,
                                             const vst::SpeakerArrangement* output) {
    if (!input || !output) {
        return false;
    }
    // Made outside the lock, which the audio thread waits for.
    CSpeakerLabels newInput;
    CSpeakerLabels newOutput;
    newInput.assign(*input);
    newOutput.assign(*output);
    CTextList labels;
    for (int32_t i = 0; i < newInput.labelCount; ++i) {
        labels.append(newInput.labels[i]);
    }
    {
        CLockScope scope(env()->lock());
        std::swap(inputSpeakers_, newInput);
        std::swap(outputSpeakers_, newOutput);
        hasSpeakers_ = true;
    }
    interfaceBase()->setChannelLabels(labels);
    return true;
}

bool CAudioWrapperVST::getSpeakerArrangement(vst::SpeakerArrangement** input, vst::SpeakerArrangement** output) {
    *input = hasSpeakers_ ? &inputSpeakers_.arrangement : nullptr;
    *output = hasSpeakers_ ? &outputSpeakers_.arrangement : nullptr;
    return hasSpeakers_;
}

bool CAudioWrapperVST::setProcessPrecision(int32_t precision) {
    if (precision != vst::kPrecision32 && precision != vst::kPrecision64) {
        return false;
    }
    isDoublePrecision_ = precision == vst::kPrecision64;
    return true;
}

// Events are accepted, since hosts route notes to what takes them, but nothing here listens to a controller yet.
int32_t CAudioWrapperVST::processEvents(const vst::Events*) {
    return 1;
}

bool CAudioWrapperVST::getEffectName(char* text) {
    copyText(text, pluginName(), vst::kMaxEffectName);
    return true;
}

bool CAudioWrapperVST::getVendorString(char* text) {
    copyText(text, vendorName(), vst::kMaxVendorText);
    return true;
}

bool CAudioWrapperVST::getProductString(char* text) {
    copyText(text, vendorName() + " " + pluginName(), vst::kMaxProductText);
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
    const bool isIndex = value >= 0 && value < extParamList()->count();
    if (const CAudioExtParam* param = isIndex ? extParamList()->param(static_cast<int32_t>(value)) : nullptr) {
        CString text;
        CString label;
        param->getDisplayFor(text, static_cast<double>(opt));
        param->getLabel(label);
        copyText(static_cast<char*>(ptr), text + label, vst::kMaxParamText);
    }
    return vst::kCockosDisplayAnswer;
}

intptr_t CAudioWrapperVST::canDo(const char* text) {
    return vstCanDo(text);
}

int32_t CAudioWrapperVST::plugCategory(const CString& name) {
    return vstCategory(name);
}

int32_t CAudioWrapperVST::getPlugCategory() {
    return plugCategory(project()->getAttrString("plugin-category-vst"));
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
    // A host reads the latency anew when it is told, and may do so without a suspend.
    setInitialDelay(latency());
    ioChanged();
}

void CAudioWrapperVST::hostParamChanged(int32_t index, const CAudioExtParam& param) {
    if (!isHostCalling()) {
        setParameterAutomated(index, static_cast<float>(param.getValue()));
    }
}

}  // namespace tarv
