#pragma once

#include "Audio/Instance/CAudioWrapper.h"
#include "Audio/VST/AudioEffectX.h"
#include "Audio/VST/CHostCalls.h"
#include "Audio/VST/CHostSpeakers.h"
#include "Audio/VST/CHostTraits.h"
#include "Audio/VST/CProcessLock.h"
#include "Audio/VST/CVstTexts.h"

namespace tarv {

/// The VST 2 effect: joins the host's interface with the core of an instance. The host owns it from create to its close
/// call. Threads and states of its overrides are documented at AudioEffectX and CAudioWrapper.
class CAudioWrapperVST : public AudioEffectX, public CAudioWrapper {
public:
    /// Creates an effect for the exported entry point. Null if `host` answers no version, or if the instance cannot be
    /// built, which is shown to the user. [main thread]
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
    /// The current program and an index out of range change nothing.
    void setProgram(int32_t index) override;
    void setProgramName(const char* text) override;
    int32_t getChunk(void** data, bool isProgram) override;
    int32_t setChunk(const void* data, intptr_t size, bool isProgram) override;
    void getProgramName(char* text) override;
    void getParameterLabel(int32_t index, char* text) override;
    void getParameterDisplay(int32_t index, char* text) override;
    void getParameterName(int32_t index, char* text) override;
    bool setParameterText(int32_t index, const char* text) override;
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
    void hostParamEdited(int32_t index, bool isBegin) override;

    const CHostTraits& hostTraits() const { return traits_; }
    bool isDoublePrecision() const { return isDoublePrecision_; }
    bool hasProcessLock() const { return processLock_.isEnabled(); }
    /// The host's channels as it described them, under the environment's lock.
    const CHostSpeakers& speakers() const { return speakers_; }

    /// CHostTraits::isFocusTaken of the host, for the whole process. [any thread]
    static bool isFocusTaken();

private:
    void askHost();
    void takeFormat();
    void programChanged(CCheckedObject* sender);

    CHostTraits traits_;
    CHostSpeakers speakers_;
    CProcessLock processLock_;
    CHostCalls hostCalls_;
    const uint64_t firstThread_ = currentThreadId();
    CVstTexts texts_{*this};
    bool isDoublePrecision_ = false;
    CByteBuffer programChunk_;
    CByteBuffer bankChunk_;
    CProgramChangeBridge<CAudioWrapperVST> programBridge_{this, &CAudioWrapperVST::programChanged};
};

}  // namespace tarv
