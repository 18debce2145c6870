#pragma once

#include <atomic>
#include <cstdint>

#include "Audio/Graph/CAudioGraph.h"
#include "Audio/Presets/CAudioParamRegistry.h"
#include "Core/CApplicationData.h"
#include "Core/CObject.h"

namespace tarv {

class CAudioCCTable;
class CAudioEnv;
class CAudioExtParam;
class CAudioExtParamList;
class CAudioGlobalParam;
class CAudioInterfaceBase;
class CAudioParam;
class CAudioParamCollector;
class CAudioProcessBase;
class CAudioProcessDefBase;
class CAudioVizCollector;
class CModOutput;
class CQPLEXContext;
class CQPLEXContextObject;

/// Host-independent core of one plug-in instance: owns the instance's root with its `plugin` tree and the process
/// graph, and is what a host wrapper calls. In brackets: the thread and the state in which a function may be called.
/// The environment's lock guards the active flag, the sample rate and the block size.
class CAudioWrapper : public CCheckedObject {
public:
    /// Bytes of a prefix that a host may keep before a chunk, and of a chunk that is too short to be one.
    static constexpr int64_t kChunkPrefix = 16;

    /// Tells a method of its owner, `void T::method(CCheckedObject* sender)`, that the current program, its name or the
    /// bank changed; on the thread that changed it.
    template <class T>
    class CProgramChangeBridge : public COwnedBridge<T> {
    public:
        using COwnedBridge<T>::COwnedBridge;
        void subscribe(CAudioParamRegistry& registry) { this->connect(registry, CAudioParamRegistry::kProgramUpdate); }
    };

    /// Frames of the longest run of the graph; a longer host block is cut.
    static constexpr int32_t kMaxSubBlock = 512;

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

    /// Waits for the message of an editor that is being processed; later ones fail. The first step of a subclass's
    /// destructor, since a message calls the host through it and the editor may live on another thread. [main thread]
    void stopMessages();
    void suspend();  // [main thread, any state]
    void resume();   // [main thread, any state]
    /// Rate in Hz. Takes effect at the next resume or, while active, before the next block, which then starts as behind
    /// a suspend and a resume. [any thread, any state]
    void setSampleRate(double rate);
    /// Frames of the longest block that the host announces. Takes effect as a rate does. [any thread, any state]
    void setBlockSize(int32_t frames);
    /// Channels that the host hands over and expects; at least 1 each. Takes effect at the next resume.
    /// [main thread, suspended]
    void setChannelCounts(int32_t inputs, int32_t outputs);
    void setOffline(bool isOffline);  // [main thread, suspended]
    void setHostBpm(double bpm);      // [main thread, suspended]

    /// Runs one host block of any length, cut into runs of at most kMaxSubBlock frames. Null channel pointers (or a
    /// null array) are silence on the way in and dropped on the way out. While suspended it only clears the outputs. In
    /// place is allowed. What was set since the resume is there from the first sample of the first block, without a
    /// fade. [audio thread, any state]
    void processBlock(const float* const* inputs, float* const* outputs, int32_t frames);
    void processBlock(const double* const* inputs, double* const* outputs, int32_t frames);

    /// The host's chunk: the current program as a compressed block of id 'aprs', or the session bank as one of id
    /// 'abnk'. All storable and persistent parameters are in it.
    /// [any thread but the audio thread, any state]
    [[nodiscard]] CError* getState(CByteBuffer& chunk, bool isProgram);
    /// Restores what getState gave. With `checkHeader` a chunk of up to kChunkPrefix bytes does nothing, and the block
    /// is taken where its id stands: at the first byte or behind a prefix. Not a step of the history. On failure
    /// nothing changes. [any thread but the audio thread, any state]
    [[nodiscard]] CError* setState(const void* data, int64_t size, bool isProgram, bool checkHeader);

    bool isActive() const;
    /// Latency in host frames, as the graph reported it.
    int32_t latency() const;

    CObject* instanceRoot() const { return root_; }
    CObject* project() const { return project_; }
    CAudioEnv* env() const { return env_; }
    CAudioExtParamList* extParamList() const { return extParamList_; }
    CAudioInterfaceBase* interfaceBase() const { return interfaceBase_; }
    CAudioParamCollector* paramCollector() const { return paramCollector_; }
    CAudioParamRegistry* paramRegistry() const { return paramRegistry_; }
    CAudioProcessBase* mainProcess() const { return mainProcess_; }
    CQPLEXContext* context() const;
    const CString& pluginName() const { return pluginName_; }
    const CString& vendorName() const { return vendorName_; }
    /// Four characters, the first in the highest byte.
    uint32_t pluginCode() const { return pluginCode_; }
    /// Major, minor and third number.
    const int32_t (&version() const)[3] { return version_; }
    int32_t internalChannelCount() const { return channelCount_; }
    int32_t groupCount() const { return groupCount_; }
    /// The stored oversampling level: a number of stages used while the host renders off-line. Follows the setting.
    int32_t oversamplingLevel() const { return oversamplingLevel_.load(std::memory_order_relaxed); }
    CAudioGraph& graph() { return graph_; }

    [[nodiscard]] static CError* parseVersion(const CString& text, int32_t (&version)[3]);
    [[nodiscard]] static CError* acquirePluginCode(const CString& text, uint32_t& code);

private:
    class CExtParamBridge;
    static constexpr int32_t kMaxHostChannels = 32;
    /// Blocks that a channel holds at most at one time: in, dry, both modules of a fade, their mix, and what is freed
    /// only when a process has run.
    static constexpr int32_t kBlocksPerChannel = 8;
    static constexpr int32_t kStatesPerVoice = 3;
    static constexpr int32_t kLargeStateBytes = 256;

    template <class Sample>
    void processAny(const Sample* const* inputs, Sample* const* outputs, int32_t frames);
    bool isRunSteady(const void* const* inputs, int32_t frames) const;
    template <class Sample>
    void runOnce(const Sample* const* inputs, Sample* const* outputs, int32_t offset, int32_t frames);
    template <class Sample>
    void repeatRun(const Sample* const* inputs, int32_t offset, int32_t frames);
    void noteRun(int32_t frames, uint64_t deliveries);
    template <class Sample>
    void takeInputs(const Sample* const* inputs, int32_t offset, int32_t frames);
    template <class Sample>
    void giveOutputs(Sample* const* outputs, int32_t offset, int32_t frames);
    template <class T>
    [[nodiscard]] CError* findRequired(const char* path, const char* message, T*& found) const;
    [[nodiscard]] CError* readProject();
    [[nodiscard]] CError* findRequiredObjects();
    [[nodiscard]] CError* createProcesses();
    [[nodiscard]] CError* createGlobalParams();
    void readOversamplingLevel(CCheckedObject* sender);
    void startWithDefaultPreset();
    void resetGraph();
    void prepareGraph();
    /// Takes rate and block size over from the environment and makes the graph ready for them, in silence and with all
    /// values in place: a resume's part for the graph.
    void startGraph();
    /// Brings host, visual frames and pending changes up to the block that begins.
    void beginBlock();
    /// Makes the modules and buffers that fades will need with the channels and rates of now.
    void makeRoom();
    void placeDelays();
    void runGraph(int32_t frames);
    void pollHost();

    CObject* root_ = nullptr;
    CObject* plugin_ = nullptr;
    CObject* project_ = nullptr;
    CString pluginName_;
    CString vendorName_;
    uint32_t pluginCode_ = 0;
    int32_t version_[3] = {0, 0, 0};
    int32_t channelCount_ = 0;
    int32_t groupCount_ = 0;
    bool hasSidechain_ = false;
    bool useHostBpm_ = false;

    CQPLEXContextObject* contextObject_ = nullptr;
    CAudioEnv* env_ = nullptr;
    CAudioParamCollector* paramCollector_ = nullptr;
    CAudioVizCollector* vizCollector_ = nullptr;
    CAudioInterfaceBase* interfaceBase_ = nullptr;
    CAudioExtParamList* extParamList_ = nullptr;
    CAudioCCTable* ccTable_ = nullptr;
    CAudioParamRegistry* paramRegistry_ = nullptr;
    CAudioProcessDefBase* mainDef_ = nullptr;
    CAudioProcessDefBase* outputDef_ = nullptr;
    CAudioProcessBase* mainProcess_ = nullptr;
    CModOutput* outputProcess_ = nullptr;
    CAudioGraph graph_;

    CAudioParam* hostOversamplingParam_ = nullptr;
    CAudioParam* hostOfflineParam_ = nullptr;
    CAudioParam* hostLatencyParam_ = nullptr;
    CAudioParam* hostBpmParam_ = nullptr;
    CAudioParam* bypassParam_ = nullptr;
    COwnedArray<CAudioGlobalParam> globalParams_;
    COwnedArray<CExtParamBridge, 32> extParamBridges_;

    /// The last run of the graph: what the next one must be like to be its repetition, and where its signals lie.
    struct CRun {
        int32_t frames = 0;
        uint64_t deliveries = 0;
        double* inputs[kMaxHostChannels] = {};         ///< by host channel; null: the host gave none
        const double* outputs[kMaxHostChannels] = {};  ///< null: silence
    };
    CRun run_;

    bool isOffline_ = false;
    double lastBpm_ = 0.0;
    int32_t hostStages_ = 0;  ///< as host-oversampling-mode was set last
    std::atomic<int32_t> oversamplingLevel_{1};
    std::atomic<bool> isLatencyMarked_{false};  ///< host-latency-change is set
    int32_t inputCount_ = 1;
    int32_t outputCount_ = 1;
    bool sampleRateChanged_ = false;
    CApplicationDataBridge<CAudioWrapper> oversamplingBridge_;
    /// The block size that the graph was started with; its rate stands in the graph.
    int32_t startedBlockSize_ = 0;
    /// No block has run since the resume.
    bool isFirstBlock_ = false;
};

}  // namespace tarv
