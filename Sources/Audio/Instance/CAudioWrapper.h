#pragma once

#include <cstdint>

#include "Audio/Instance/CAudioBlockRunner.h"
#include "Audio/Instance/CAudioHostParams.h"
#include "Audio/Instance/CAudioInstanceGraph.h"
#include "Audio/Instance/CAudioInstanceObjects.h"
#include "Audio/Instance/CAudioProjectInfo.h"
#include "Audio/Presets/CAudioParamRegistry.h"

namespace tarv {

class CAudioExtParam;
class CAudioGlobalParam;
class CQPLEXContext;

/// Host-independent core of one plug-in instance: owns the instance's root with its `plugin` tree and the process
/// graph, and is what a host wrapper calls. In brackets: the thread and the state in which a function may be called.
/// The environment's lock guards the active flag, the sample rate and the block size.
class CAudioWrapper : public CCheckedObject {
public:
    /// Bytes of the prefix that a host may put before a chunk. A chunk of as many bytes or fewer is ignored.
    static constexpr int64_t kChunkPrefix = 16;

    /// Calls a method of its owner, `void T::method(CCheckedObject* sender)`, when the current program, its name or the
    /// bank changed; on the thread that changed it.
    template <class T>
    class CProgramChangeBridge : public COwnedBridge<T> {
    public:
        using COwnedBridge<T>::COwnedBridge;
        void subscribe(CAudioParamRegistry& registry) { this->connect(registry, CAudioParamRegistry::kProgramUpdate); }
    };

    CAudioWrapper();
    ~CAudioWrapper() override;

    /// The host's process level as VST 2 numbers it; 4 is off-line rendering. [audio thread, running; main thread at
    /// resume]
    virtual int32_t hostProcessLevel() = 0;
    /// Builds the instance: root, `plugin` tree, process graph. A host wrapper's override calls this first.
    /// [main thread, new]
    [[nodiscard]] virtual CError* init();
    /// Asks the host for its tempo with a valid-tempo request; false if it has none. [audio thread, running]
    virtual bool hostTempo(double& bpm) = 0;
    /// The count of channels or the latency changed. [audio thread, running]
    virtual void hostIoChanged() = 0;
    /// The engine changed an external parameter; the host's automation gets its value. [any thread but the audio
    /// thread]
    virtual void hostParamChanged(int32_t index, const CAudioExtParam& param) = 0;
    /// A person begins or ends to edit an external parameter in an editor. [editor's thread]
    virtual void hostParamEdited(int32_t /*index*/, bool /*isBegin*/) {}

    /// Waits for the message of an editor that is being processed; later ones fail. The first step of a subclass's
    /// destructor, since a message calls the host through it and the editor may live on another thread. [main thread]
    void stopMessages();
    void suspend();  // [main thread, any state]
    void resume();   // [main thread, any state]
    /// Rate in Hz. Takes effect at the next resume or, while active, before the next block, which then starts as behind
    /// a suspend and a resume; editors get their `clear` at their next tick. A rate that is not positive or not finite
    /// is ignored. [any thread, any state]
    void setSampleRate(double rate);
    /// Frames of the longest block that the host announces, at least 1. Takes effect as a rate does.
    /// [any thread, any state]
    void setBlockSize(int32_t frames);
    /// Channels that the host hands over and expects, 1 to 32 each. Editors get them at once, the sound at the next
    /// resume.
    /// [main thread, suspended]
    void setChannelCounts(int32_t inputs, int32_t outputs);
    void setOffline(bool isOffline) { hostParams_.setOffline(isOffline); }  // [main thread, suspended]
    void setHostBpm(double bpm) { hostParams_.setBpm(bpm); }                // [main thread, suspended]

    /// Runs one host block of any length; see CAudioBlockRunner. While suspended it only clears the outputs. What was
    /// set since the resume is there from the first sample of the first block, without a fade.
    /// [audio thread, any state]
    void processBlock(const float* const* inputs, float* const* outputs, int32_t frames);
    void processBlock(const double* const* inputs, double* const* outputs, int32_t frames);

    /// The host's chunk: the current program as a compressed block of id 'aprs', or the session bank as one of id
    /// 'abnk'. All storable and persistent parameters are in it.
    /// [any thread but the audio thread, any state]
    [[nodiscard]] CError* getState(CByteBuffer& chunk, bool isProgram);
    /// Restores what getState gave. With `checkHeader` a chunk of up to kChunkPrefix bytes does nothing, and the block
    /// begins where its id is found: at the first byte or behind a prefix. Not a step of the history. On failure
    /// nothing changes. [any thread but the audio thread, any state]
    [[nodiscard]] CError* setState(const void* data, int64_t size, bool isProgram, bool checkHeader);

    bool isActive() const;
    /// Latency in host frames, as the graph reported it.
    int32_t latency() const;

    CObject* instanceRoot() const { return root_; }
    CObject* project() const { return project_; }
    CAudioEnv* env() const { return objects_.env; }
    CAudioExtParamList* extParamList() const { return objects_.extParamList; }
    CAudioInterfaceBase* interfaceBase() const { return objects_.interfaceBase; }
    CAudioParamCollector* paramCollector() const { return objects_.paramCollector; }
    CAudioParamRegistry* paramRegistry() const { return objects_.paramRegistry; }
    CAudioProcessBase* mainProcess() const { return graph_.main(); }
    CQPLEXContext* context() const;
    const CString& pluginName() const { return info_.name(); }
    const CString& vendorName() const { return info_.vendor(); }
    uint32_t pluginCode() const { return info_.code(); }
    const int32_t (&version() const)[3] { return info_.version(); }
    int32_t internalChannelCount() const { return info_.channelCount(); }
    int32_t groupCount() const { return info_.groupCount(); }
    int32_t oversamplingLevel() const { return hostParams_.oversamplingLevel(); }
    CAudioGraph& graph() { return graph_.shared(); }

    [[nodiscard]] static CError* parseVersion(const CString& text, int32_t (&version)[3]) {
        return CAudioProjectInfo::parseVersion(text, version);
    }
    [[nodiscard]] static CError* acquirePluginCode(const CString& text, uint32_t& code) {
        return CAudioProjectInfo::acquirePluginCode(text, code);
    }

private:
    class CExtParamBridge;

    [[nodiscard]] CError* createTree();
    void createGlobalParams();
    void startWithDefaultPreset();
    void connectHost();
    template <class Sample>
    void processAny(const Sample* const* inputs, Sample* const* outputs, int32_t frames);
    void beginBlock();
    void endBlock(int32_t frames, int32_t latencyBefore);

    CObject* root_ = nullptr;
    CObject* project_ = nullptr;
    CAudioProjectInfo info_;
    CAudioInstanceObjects objects_;
    CAudioInstanceGraph graph_;
    CAudioBlockRunner runner_{graph_};
    CAudioHostParams hostParams_;
    COwnedArray<CAudioGlobalParam> globalParams_;
    COwnedArray<CExtParamBridge, 32> extParamBridges_;
    bool useHostBpm_ = false;
    int32_t inputCount_ = 1;
    int32_t outputCount_ = 1;
    bool sampleRateChanged_ = false;  // under the environment's lock
    /// No block has run since the resume.
    bool isFirstBlock_ = false;
};

}  // namespace tarv
