#pragma once

#include <atomic>

#include "Audio/VST/Vst2.h"
#include "Core/CHeap.h"

namespace tarv {

/// The interface of an effect's editor. Thread: the host's user interface.
class AEffEditor : public CHeapObject {
public:
    virtual ~AEffEditor() = default;
    /// Gives the editor's rectangle in pixels, which is valid as long as the editor. False without one.
    virtual bool getRect(vst::Rect** rect) = 0;
    /// Opens in the host's window. False on failure or when already open.
    virtual bool open(void* parent) = 0;
    virtual void close() = 0;
    virtual bool isOpen() const = 0;
    virtual void idle() = 0;
    /// Takes a step of the mouse wheel, down when negative. True when used.
    virtual bool onWheel(float distance) = 0;
};

/// The effect's side of the VST 2 interface: an AEffect for the host, whose calls arrive at the virtuals below with
/// their pointers checked for null. Texts are written into the host's buffers, whose sizes are in Vst2.h. In
/// brackets: the thread and the state in which hosts make the call. "Main thread" is the host's user interface; a host
/// may have another one for work in the background instead, but makes these calls one at a time.
class AudioEffectX {
public:
    /// `host` may be null: then every question to the host gives 0. [main thread]
    AudioEffectX(vst::HostCallback host, int32_t numPrograms, int32_t numParams);
    virtual ~AudioEffectX();  // [main thread, suspended or, in careless hosts, running]
    AudioEffectX(const AudioEffectX&) = delete;
    AudioEffectX& operator=(const AudioEffectX&) = delete;

    vst::AEffect* getAeffect() { return &effect_; }

    virtual void suspend() {}  // [main thread, any state]
    virtual void resume() {}   // [main thread, any state]
    /// The host announced a rate or a block size, which sampleRate() and blockSize() give. [any thread, any state]
    virtual void formatChanged() {}
    /// Audio in channels of `frames` samples each; the arrays have as many pointers as channels were announced.
    /// [audio thread, running; suspended in careless hosts]
    virtual void processReplacing(float** inputs, float** outputs, int32_t frames) = 0;
    virtual void processDoubleReplacing(double** inputs, double** outputs, int32_t frames) = 0;
    /// Positions from 0 to 1. [any thread, any state]
    virtual void setParameter(int32_t index, float value) = 0;
    virtual float getParameter(int32_t index) = 0;
    /// Programs. [main thread, any state]
    virtual int32_t getProgram() { return 0; }
    virtual void setProgram(int32_t) {}
    virtual void setProgramName(const char*) {}
    virtual void getProgramName(char* text) { *text = 0; }
    virtual bool getProgramNameIndexed(int32_t, char*) { return false; }
    /// The chunk of the current program or of the bank in memory that stays valid until the next call of the same kind;
    /// its size, 0 on failure. [main thread, any state]
    virtual int32_t getChunk(void**, bool) { return 0; }
    /// Nonzero when the chunk was taken. [main thread, any state]
    virtual int32_t setChunk(const void*, intptr_t, bool) { return 0; }
    /// Texts of a parameter. [any thread, any state]
    virtual void getParameterLabel(int32_t, char*) {}
    virtual void getParameterDisplay(int32_t, char*) {}
    virtual void getParameterName(int32_t, char*) {}
    /// Sets a parameter by a text as a person types it; a null text asks whether that can be done at all.
    /// [any thread, any state]
    virtual bool setParameterText(int32_t, const char*) { return false; }
    /// The host's channels. [main thread, suspended]
    virtual bool setSpeakerArrangement(const vst::SpeakerArrangement*, const vst::SpeakerArrangement*) { return false; }
    virtual bool getSpeakerArrangement(vst::SpeakerArrangement** input, vst::SpeakerArrangement** output);
    /// 0 is 32-bit, 1 is 64-bit; false for what is not supported. [main thread, suspended]
    virtual bool setProcessPrecision(int32_t) { return false; }
    /// Events of the block that follows. [audio thread, running]
    virtual int32_t processEvents(const vst::Events*) { return 0; }
    /// Names, version, abilities and category of the effect. [main thread, any state]
    virtual bool getEffectName(char*) { return false; }
    virtual bool getVendorString(char*) { return false; }
    virtual bool getProductString(char*) { return false; }
    virtual int32_t getVendorVersion() { return 0; }
    virtual intptr_t vendorSpecific(int32_t, intptr_t, void*, float) { return 0; }
    virtual intptr_t canDo(const char*) { return 0; }
    virtual int32_t getPlugCategory() { return vst::kCategoryUnknown; }

    /// The rate in Hz and the longest block that the host announced last. Rates outside 1 kHz
    /// to 10 MHz and block sizes outside 1 to 2^24 frames are ignored. [any thread, any state]
    float sampleRate() const { return sampleRate_; }
    int32_t blockSize() const { return blockSize_; }

protected:
    void setUniqueID(uint32_t id) { effect_.uniqueId = static_cast<int32_t>(id); }
    void setVersion(int32_t version) { effect_.version = version; }
    void setNumPrograms(int32_t count) { effect_.numPrograms = count; }
    void setNumParams(int32_t count) { effect_.numParams = count; }
    void setNumInputs(int32_t count) { effect_.numInputs = count; }
    void setNumOutputs(int32_t count) { effect_.numOutputs = count; }
    void setInitialDelay(int32_t frames) { effect_.initialDelay = frames; }
    void canProcessReplacing(bool can) { setFlag(vst::kFlagCanReplacing, can); }
    void canDoubleReplacing(bool can) { setFlag(vst::kFlagCanDoubleReplacing, can); }
    void programsAreChunks(bool are) { setFlag(vst::kFlagProgramChunks, are); }
    /// Takes ownership of the editor, deletes the former one and sets the editor flag; null removes the editor.
    void setEditor(AEffEditor* editor);
    AEffEditor* editor() const { return editor_; }

    /// Questions to the host. Texts get at most 64 characters and a terminating zero.
    intptr_t callHost(int32_t opcode, int32_t index = 0, intptr_t value = 0, void* ptr = nullptr, float opt = 0.0f);
    int32_t getMasterVersion();
    bool getHostVendorString(char (&text)[65]) { return getHostText(vst::kHostGetVendorString, text); }
    bool getHostProductString(char (&text)[65]) { return getHostText(vst::kHostGetProductString, text); }
    int32_t getCurrentProcessLevel();
    /// Null when the host has none. Valid until the end of the block.
    const vst::TimeInfo* getTimeInfo(int32_t wantedFlags);
    bool ioChanged() { return callHost(vst::kHostIoChanged) != 0; }
    /// Notifies the host that programs, names or values changed as a whole.
    bool updateDisplay() { return callHost(vst::kHostUpdateDisplay) != 0; }
    /// Notifies the host that the effect itself changed a parameter.
    void setParameterAutomated(int32_t index, float value);
    /// Notifies the host that a person begins or ends to edit a parameter. [editor's thread]
    void beginEdit(int32_t index) { callHost(vst::kHostBeginEdit, index); }
    void endEdit(int32_t index) { callHost(vst::kHostEndEdit, index); }

private:
    friend struct AudioEffectDispatch;

    static constexpr int32_t kAccumulateFrames = 256;
    static constexpr int32_t kMaxAccumulated = 32;

    void setFlag(vst::EffectFlag flag, bool on);
    bool getHostText(int32_t opcode, char (&text)[65]);
    void setSampleRate(float rate);
    void setBlockSize(intptr_t frames);
    void processAccumulating(float** inputs, float** outputs, int32_t frames);

    vst::AEffect effect_{};
    vst::HostCallback host_;
    AEffEditor* editor_ = nullptr;
    std::atomic<float> sampleRate_{44100.0f};
    std::atomic<int32_t> blockSize_{1024};
};

}  // namespace tarv
