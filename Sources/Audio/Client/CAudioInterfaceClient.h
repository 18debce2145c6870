#pragma once

#include <map>
#include <memory>

#include "Audio/Client/CAudioInterfaceListeners.h"
#include "Audio/Client/CAudioPresetStore.h"
#include "Audio/Messages/CAudioInterfaceClientConnector.h"
#include "Core/CObject.h"

namespace tarv {

class CAudioParamInfo;

/// How a change stands in the history of the engine.
struct CInterfaceUndo {
    bool isRecorded = true;
    CString label;     ///< empty: made by the engine from the parameter's and the group's name
    int32_t key = -1;  ///< all changes of one gesture have the same; -1: a step for itself
};

/// The editor's end of the exchange with the engine (`audio:interface-client`): what editor code subscribes, sets and
/// asks for. Everything that is set is heard again from the engine, in order. The editor's thread. Events of this
/// object: `engine-state` (the full state has come), `update-sample-rate`, `update-io-channel-counts`,
/// `update-group-count`, `update-internal-channel-count`, `clear`, `undo-history-changed`, `group-names-changed`,
/// `bound-value-changed` (`id`), `data-passed`, `default-preset-update`, `shared-banks-update`
/// (`store-name`: an editor of this process wrote that store), `engine-gone`.
class CAudioInterfaceClient : public CObject, public CAudioInterfaceClientTarget {
public:
    CAudioInterfaceClient();
    ~CAudioInterfaceClient() override;
    /// Asks for the full state, and for the names of the groups if `group-names-param` is there.
    [[nodiscard]] CError* init() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

    /// Subscribes a parameter of a full name; its values come with the first call of the listener.
    [[nodiscard]] CError* addParamListener(const CString& param, CAudioInterfaceParamListener& listener);
    /// Subscribes a registry of a path; its state comes with the first call.
    [[nodiscard]] CError* addRegistryListener(const CString& registry, CAudioInterfaceRegistryListener& listener);
    /// Subscribes the records of a source, empty for every one.
    [[nodiscard]] CError* addVizProcessor(const CString& source, CAudioInterfaceVizProcessor& processor);
    /// Ends all that a listener subscribed. One that does not listen here is left alone.
    void removeListener(CAudioInterfaceListener& listener);
    /// An editor's tick: has the visual records sent that gathered since the last one, and the values that the engine
    /// has set itself (off-line state, tempo, latency).
    [[nodiscard]] CError* requestFrames();

    /// What is known of a parameter that the listener subscribed: null until its values have come.
    const CAudioParamInfo* paramInfo(const CAudioInterfaceParamListener& listener) const;
    const CAudioParamData* paramData(const CAudioInterfaceParamListener& listener) const;

    /// Sets elements of one group (CAudioParamData::kAllGroups: of all): `numbers` are element after element. With
    /// `isReplacing` the group ends behind them.
    [[nodiscard]] CError* setNumbers(const CString& param, int32_t group, int32_t first, const double* numbers,
                                     int32_t elements, int32_t elementSize = 1, const CInterfaceUndo& undo = {},
                                     bool isReplacing = false);
    [[nodiscard]] CError* setTexts(const CString& param, int32_t group, int32_t first, const CTextList& texts,
                                   const CInterfaceUndo& undo = {}, bool isReplacing = false);
    /// All that is set until endStep is one step of the history.
    [[nodiscard]] CError* beginStep(const CString& label, int32_t key = -1);
    [[nodiscard]] CError* endStep();
    [[nodiscard]] CError* undo(int32_t count = 1);
    [[nodiscard]] CError* redo(int32_t count = 1);
    [[nodiscard]] CError* selectStep(int32_t position);

    [[nodiscard]] CError* setProgram(const CString& registry, int32_t index);
    [[nodiscard]] CError* renameProgram(const CString& registry, int32_t index, const CString& displayName);
    /// Puts a copy of the current state at an index in 0..count of the session bank.
    [[nodiscard]] CError* addProgram(const CString& registry, int32_t index, const CString& displayName);
    /// Fails for the last program that is left.
    [[nodiscard]] CError* deleteProgram(const CString& registry, int32_t index);
    /// Overwrites a program with the current state; its name stays.
    [[nodiscard]] CError* replaceProgram(const CString& registry, int32_t index);
    [[nodiscard]] CError* activateRomPreset(const CString& registry, int32_t index);
    /// A preset or a bank, a compressed block. Group -1: all.
    [[nodiscard]] CError* activateData(const CString& registry, const CByteBuffer& packed, int32_t group = -1);
    /// The answer comes to the listener's onDataAcquired with the number that `request` gets here. Index -1: the
    /// current state.
    [[nodiscard]] CError* acquirePreset(const CString& registry, CAudioInterfaceRegistryListener& listener,
                                        uint32_t& request, bool fromRom = false, int32_t index = -1,
                                        int32_t group = -1);
    [[nodiscard]] CError* acquireBank(const CString& registry, CAudioInterfaceRegistryListener& listener,
                                      uint32_t& request, bool fromRom = false);
    /// Stores a compressed preset of a master registry, with which new instances start. Every editor of the process
    /// gets the event `default-preset-update`.
    [[nodiscard]] CError* setDefaultPreset(const CString& registry, const CByteBuffer& packed);
    /// New instances start as the factory made them.
    [[nodiscard]] CError* clearDefaultPreset();
    [[nodiscard]] CError* requestDefaultPreset();
    /// As they came last; asked for at the start.
    bool hasDefaultPreset() const { return hasDefaultPreset_; }
    const CString& defaultPresetName() const { return defaultPresetName_; }
    [[nodiscard]] CError* swapAB(const CString& registry);
    [[nodiscard]] CError* copyToAlternate(const CString& registry);
    [[nodiscard]] CError* resetState(const CString& registry);
    [[nodiscard]] CError* masterReset(const CString& registry);

    /// The presets that a user's editors share under a `store-name`, as long as this object; read anew at the first
    /// call.
    [[nodiscard]] CError* findPresetStore(const CString& storeName, CAudioPresetStore*& store);

    /// Follows a value of the engine by name (see CAudioInterfaceBase); gives the id to read it by.
    [[nodiscard]] CError* bindValue(const CString& name, int32_t count, uint32_t& id);
    [[nodiscard]] CError* unbindValue(uint32_t id);
    /// Number of a bound value, 0.0 until it has come.
    double boundValue(uint32_t id, int32_t index = 0) const;
    /// Bytes for the other clients of this engine, and those that came last from one of them.
    [[nodiscard]] CError* passData(const CByteBuffer& bytes);
    const CByteBuffer& passedData() const { return passedData_; }
    /// Takes the host's names of the input channels over.
    [[nodiscard]] CError* importChannelLabels();
    /// Asks for the rate and the counts once more.
    [[nodiscard]] CError* requestCounts();

    /// As the engine told it last.
    const CInterfaceState& engineState() const { return state_; }
    /// Name of a group: its own, otherwise its number counted from 1.
    CString groupName(int32_t group) const;

    /// One message of the engine. Of the connector.
    [[nodiscard]] CError* processMessage(CPosInputStream& stream) override;
    /// Asks anew for all that was subscribed.
    [[nodiscard]] CError* refresh() override;
    /// Notifies the listeners that no message comes any more.
    void engineGone() override;
    void connectorGone() override { connector_ = nullptr; }

private:
    class CGroupNamesParamListener;
    struct CParamEntry;
    struct CRegistryEntry;
    struct CVizEntry;
    struct CBoundEntry;
    using CHandler = CError* (CAudioInterfaceClient::*)(CPosInputStream& stream);
    struct CHandlerRow {
        uint32_t type;
        CHandler handle;
    };
    static const CHandlerRow kHandlers[kMessageCount - kFirstBaseMessage];

    template <class Entry>
    void forget(COwnedArray<Entry>& entries, const CAudioInterfaceListener& listener, uint32_t type);
    static void presetStoreWritten(void* user);
    [[nodiscard]] CError* presetStoreChanged();
    [[nodiscard]] CError* requireConnector() const;
    [[nodiscard]] CError* requirePlace(const CString& param, int32_t group, int32_t first, int32_t count) const;
    [[nodiscard]] CError* deliver(const CByteBuffer& message) const;
    template <class... T>
    [[nodiscard]] CError* send(uint32_t type, const T&... fields) const {
        CByteBuffer message;
        TARV_TRY(packMessage(message, type, fields...));
        TARV_TRY(deliver(message));
        return nullptr;
    }
    bool isUsed(uint32_t id) const;
    uint32_t newId();
    void attach(CAudioInterfaceListener& listener);
    template <class Entry>
    static Entry* entryOf(const COwnedArray<Entry>& entries, uint32_t id);
    [[nodiscard]] CError* setHead(COutputStream& stream, const CString& param, int32_t group, int32_t first,
                                  int32_t count, uint32_t flags) const;
    [[nodiscard]] CError* setTail(CMemoryWriteBuffer& stream, const CInterfaceUndo& undo) const;
    [[nodiscard]] CError* tell(const CString& eventName);

    // CAudioInterfaceClientRead.cpp: by message.
    [[nodiscard]] CError* takeState(CPosInputStream& stream);
    [[nodiscard]] CError* takeValues(CPosInputStream& stream);
    [[nodiscard]] CError* takeRegistry(CPosInputStream& stream);
    [[nodiscard]] CError* takeGroupNames(CPosInputStream& stream);
    [[nodiscard]] CError* takeHistory(CPosInputStream& stream);
    [[nodiscard]] CError* takeSampleRate(CPosInputStream& stream);
    [[nodiscard]] CError* takeIoCounts(CPosInputStream& stream);
    [[nodiscard]] CError* takeGroupCount(CPosInputStream& stream);
    [[nodiscard]] CError* takeInternalCount(CPosInputStream& stream);
    [[nodiscard]] CError* takeFrame(CPosInputStream& stream);
    [[nodiscard]] CError* takeDefaultPreset(CPosInputStream& stream);
    [[nodiscard]] CError* takeData(CPosInputStream& stream);
    [[nodiscard]] CError* takeAnswer(CPosInputStream& stream);
    [[nodiscard]] CError* takeBoundValue(CPosInputStream& stream);
    [[nodiscard]] CError* takePassed(CPosInputStream& stream);
    [[nodiscard]] CError* takeWhole(CPosInputStream& stream, CParamEntry& entry);
    [[nodiscard]] CError* takePart(CPosInputStream& stream, CParamEntry& entry);

    CAudioInterfaceClientConnector* connector_ = nullptr;
    CInterfaceState state_;
    uint32_t lastNumber_ = 0;
    CArray<CAudioInterfaceListener*, 16> listeners_;  // each once, also those that only wait for an answer
    COwnedArray<CParamEntry> params_;
    COwnedArray<CRegistryEntry> registries_;
    COwnedArray<CVizEntry> visuals_;
    COwnedArray<CBoundEntry> values_;
    std::map<uint32_t, CAudioInterfaceRegistryListener*, std::less<uint32_t>,
             CHeapAllocator<std::pair<const uint32_t, CAudioInterfaceRegistryListener*>>>
        requests_;
    std::unique_ptr<CGroupNamesParamListener> groupNames_;
    CByteBuffer passedData_;
    bool hasDefaultPreset_ = false;
    CString defaultPresetName_;
    COwnedArray<CAudioPresetStore, 2> presetStores_;
    std::atomic<bool> isStorePosted_{false};
};

}  // namespace tarv
