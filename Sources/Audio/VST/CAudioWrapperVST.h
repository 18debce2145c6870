#pragma once

#include <atomic>
#include <memory>

#include "Audio/Instance/CAudioWrapper.h"
#include "Audio/VST/AudioEffectX.h"
#include "Audio/VST/CSpeakerLabels.h"

namespace tarv {

/// The VST 2 effect: joins the host's interface with the core of an instance, and is the only place that knows hosts by
/// name. Owned by the host from create to its close call. Threads and states of its overrides stand at AudioEffectX and
/// CAudioWrapper.
class CAudioWrapperVST : public AudioEffectX, public CAudioWrapper {
public:
    /// What the exported entry point does: an effect for `host`, or null when the host has no version or the instance
    /// cannot be built (which is shown to the user). [main thread]
    static vst::AEffect* create(vst::HostCallback host);

    explicit CAudioWrapperVST(vst::HostCallback host);
    ~CAudioWrapperVST() override;
    static void* operator new(size_t size) { return CHeapObject::operator new(size); }
    static void operator delete(void* p) { CHeapObject::operator delete(p); }

    [[nodiscard]] CError* init() override;

    void suspend() override;
    void resume() override;
    void formatChanged() override;
    void processReplacing(float** inputs, float** outputs, int32_t frames) override;
    void processDoubleReplacing(double** inputs, double** outputs, int32_t frames) override;
    void setParameter(int32_t index, float value) override;
    float getParameter(int32_t index) override;
    int32_t getProgram() override;
    /// The current program again, and an index out of range, change nothing.
    void setProgram(int32_t index) override;
    void setProgramName(const char* text) override;
    int32_t getChunk(void** data, bool isProgram) override;
    int32_t setChunk(const void* data, intptr_t size, bool isProgram) override;
    void getProgramName(char* text) override;
    void getParameterLabel(int32_t index, char* text) override;
    void getParameterDisplay(int32_t index, char* text) override;
    void getParameterName(int32_t index, char* text) override;
    bool getProgramNameIndexed(int32_t index, char* text) override;
    bool setSpeakerArrangement(const vst::SpeakerArrangement* input, const vst::SpeakerArrangement* output) override;
    bool getSpeakerArrangement(vst::SpeakerArrangement** input, vst::SpeakerArrangement** output) override;
    bool setProcessPrecision(int32_t precision) override;
    int32_t processEvents(const vst::Events* events) override;
    bool getEffectName(char* text) override;
    bool getVendorString(char* text) override;
    bool getProductString(char* text) override;
    int32_t getVendorVersion() override;
    intptr_t vendorSpecific(int32_t index, intptr_t value, void* ptr, float opt) override;
    intptr_t canDo(const char* text) override;
    int32_t getPlugCategory() override;

    int32_t hostProcessLevel() override { return getCurrentProcessLevel(); }
    bool hostTempo(double& bpm) override;
    void hostIoChanged() override;
    void hostParamChanged(int32_t index, const CAudioExtParam& param) override;

    const CString& hostVendor() const { return hostVendor_; }
    const CString& hostProduct() const { return hostProduct_; }
    bool isManyChannels() const { return isManyChannels_; }
    bool isDoublePrecision() const { return isDoublePrecision_; }
    bool hasProcessLock() const { return processLock_ != nullptr; }
    /// Names of the host's channels as it described them, under the environment's lock.
    const CSpeakerLabels& inputSpeakers() const { return inputSpeakers_; }
    const CSpeakerLabels& outputSpeakers() const { return outputSpeakers_; }

    /// The category behind its name in the project, 0 for an unknown one.
    static int32_t plugCategory(const CString& name);
    /// Whether a mouse press in an editor takes the keyboard focus: in every host but one. Of the whole process.
    static bool isFocusTaken();

private:
    class CProcessScope;
    class CHostCall;

    void askHost();
    void takeFormat();
    bool isHostCalling() const;
    void programChanged(CCheckedObject* sender);

    CString hostVendor_;
    CString hostProduct_;
    bool isManyChannels_ = false;
    bool isDoublePrecision_ = false;
    bool hasSpeakers_ = false;
    CSpeakerLabels inputSpeakers_;
    CSpeakerLabels outputSpeakers_;
    std::unique_ptr<CLock> processLock_;
    CByteBuffer programChunk_;
    CByteBuffer bankChunk_;
    /// The thread in which the host sets a program or a chunk: it knows of what comes of that.
    std::atomic<uint64_t> callingThread_{0};
    CProgramChangeBridge<CAudioWrapperVST> programBridge_{this, &CAudioWrapperVST::programChanged};
};

}  // namespace tarv
