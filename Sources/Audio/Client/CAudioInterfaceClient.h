#pragma once

#include <memory>

#include "Audio/Client/CAudioInterfaceListeners.h"
#include "Audio/Client/CAudioPresetStore.h"
#include "Audio/Client/CInterfaceUndo.h"
#include "Audio/Messages/CAudioInterfaceClientConnector.h"
#include "Core/CObject.h"

namespace tarv {

class CAudioParamInfo;

/// The editor's end of the exchange with the engine (`audio:interface-client`): what editor code subscribes, sets and
/// asks for. Everything that is set comes back from the engine, in order. Each operation fails if the engine has gone
/// or refuses the message, and may close this editor if the engine calls a host. The editor's thread. Events of this
/// object: `engine-state` (the full state has come), `update-sample-rate`, `update-io-channel-counts`,
/// `update-group-count`, `update-internal-channel-count`, `clear`, `undo-history-changed`, `group-names-changed`,
/// `bound-value-changed` (`id`), `input-labels-changed`, `output-labels-changed`, `kept-bytes-came`, `data-passed`,
/// `edit-refused` (`key`), `default-preset-update`, `shared-banks-update`
/// (`store-name`: an editor of this process wrote that store), `engine-gone`.
class CAudioInterfaceClient : public CObject, public CAudioInterfaceClientTarget {
public:
    CAudioInterfaceClient();
    ~CAudioInterfaceClient() override;
    /// Asks for the full state, and subscribes the names of the groups if `group-names-param` is there.
    [[nodiscard]] CError* init() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

    /// Subscribes a parameter of a full name; its values come with the first call of the listener.
    [[nodiscard]] CError* addParamListener(const CString& param, CAudioInterfaceParamListener& listener);
    /// Subscribes a registry of a path; its state comes with the first call.
    [[nodiscard]] CError* addRegistryListener(const CString& registry, CAudioInterfaceRegistryListener& listener);
    /// Subscribes the records of a source, empty for every one.
    [[nodiscard]] CError* addVizProcessor(const CString& source, CAudioInterfaceVizProcessor& processor);
    /// Ends all that a listener subscribed. A listener of another client is left alone.
    void removeListener(CAudioInterfaceListener& listener);
    /// An editor's tick: asks for the visual records that gathered since the last one, and for the values that the
    /// engine has set itself (off-line state, tempo, latency).
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
    /// A gesture of a key edits elements from now on, and ends: the host is notified. Keys are from 0 on, each of one
    /// gesture of the process. Values that the engine takes no more, since the history moved or a preset came, are
    /// answered by the event `edit-refused`.
    [[nodiscard]] CError* beginEdit(int32_t key, const CString& param, int32_t group, int32_t first, int32_t elements);
    /// With `isTakenBack` the gesture's values become what they were before it, and no step of the history stays of it.
    [[nodiscard]] CError* endEdit(int32_t key, bool isTakenBack = false);
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
    /// As they came last; requested at the start.
    bool hasDefaultPreset() const;
    const CString& defaultPresetName() const;
    [[nodiscard]] CError* swapAB(const CString& registry);
    [[nodiscard]] CError* copyToAlternate(const CString& registry);
    [[nodiscard]] CError* resetState(const CString& registry);
    [[nodiscard]] CError* masterReset(const CString& registry);

    /// The presets that a user's editors share under a `store-name`, as long as this object lives; read at the first
    /// call.
    [[nodiscard]] CError* findPresetStore(const CString& storeName, CAudioPresetStore*& store);

    /// Follows a value of the engine by one of the names that kBindValue lists; gives the id to read it by.
    [[nodiscard]] CError* bindValue(const CString& name, int32_t count, uint32_t& id);
    [[nodiscard]] CError* unbindValue(uint32_t id);
    /// Number of a bound value, 0.0 until it has come.
    double boundValue(uint32_t id, int32_t index = 0) const;
    /// Bytes for the other clients of this engine, and those that came last from one of them.
    [[nodiscard]] CError* passData(const CByteBuffer& bytes);
    const CByteBuffer& passedData() const;
    /// What the host calls an input or an output, from 0; empty for one without a name.
    CString inputLabel(int32_t input) const;
    CString outputLabel(int32_t output) const;
    /// The engine keeps bytes under a key while it lives, in no preset and no chunk: what an editor remembers until it
    /// is opened again. Up to 65536 bytes under each of 16 keys; none: forgotten.
    [[nodiscard]] CError* keepBytes(const CString& key, const CByteBuffer& bytes);
    /// What was kept last under a key; empty for nothing, and before the engine's state has come.
    const CByteBuffer& keptBytes(const CString& key) const;
    /// Asks for the rate and the counts once more.
    [[nodiscard]] CError* requestCounts();

    /// As the engine sent it last.
    const CInterfaceState& engineState() const;
    /// Name of a group, or its number counted from 1 if it has none.
    CString groupName(int32_t group) const;

    /// One message of the engine. Of the connector.
    [[nodiscard]] CError* processMessage(CPosInputStream& stream) override;
    /// Requests all that was subscribed again. Of the connector.
    [[nodiscard]] CError* refresh() override;
    /// Notifies the listeners that no message comes any more. Of the connector.
    void engineGone() override;
    void connectorGone() override;

private:
    class CGroupNamesParamListener;
    struct CParts;

    void attach(CAudioInterfaceListener& listener);
    [[nodiscard]] CError* moveInHistory(CHistoryMove move, int32_t position, int32_t count);
    [[nodiscard]] CError* presetStoreChanged();

    CAudioInterfaceClientConnector* connector_ = nullptr;
    CArray<CAudioInterfaceListener*, 16> listeners_;  // each once, also those that only wait for an answer
    std::unique_ptr<CParts> parts_;
};

}  // namespace tarv
