#pragma once

#include "Audio/Messages/CAudioInterfaceMessage.h"
#include "Core/CObject.h"

namespace tarv {

/// What the engine sent last about itself as a whole: each message is noted and followed by an event of the owner.
/// The event's handlers may destroy the owner: a message ends with it. The editor's thread.
class CClientState {
public:
    explicit CClientState(CObject& owner) : owner_(owner) {}

    const CInterfaceState& engine() const { return engine_; }
    bool hasDefaultPreset() const { return hasDefaultPreset_; }
    const CString& defaultPresetName() const { return defaultPresetName_; }
    /// What came last from another client.
    const CByteBuffer& passedData() const { return passedData_; }
    /// What the host calls its inputs and its outputs.
    const CTextList& inputLabels() const { return inputLabels_; }
    const CTextList& outputLabels() const { return outputLabels_; }
    /// What an editor kept under a key, as it came last or was kept since; empty for nothing.
    const CByteBuffer& keptBytes(const CString& key) const;
    void noteKept(const CString& key, const CByteBuffer& bytes);
    /// Keeps a registry's state, if the full state holds that registry. Sends no event.
    void noteRegistry(const CInterfaceRegistryState& state);

    // One message each.
    [[nodiscard]] CError* takeState(CPosInputStream& stream);
    [[nodiscard]] CError* takeHistory(CPosInputStream& stream);
    [[nodiscard]] CError* takeSampleRate(CPosInputStream& stream);
    [[nodiscard]] CError* takeIoCounts(CPosInputStream& stream);
    [[nodiscard]] CError* takeGroupCount(CPosInputStream& stream);
    [[nodiscard]] CError* takeInternalCount(CPosInputStream& stream);
    [[nodiscard]] CError* takeDefaultPreset(CPosInputStream& stream);
    // Of kData, behind its kind.
    [[nodiscard]] CError* takeRefusal(CPosInputStream& stream);
    [[nodiscard]] CError* takePassed(CPosInputStream& stream);
    [[nodiscard]] CError* takeClear(CPosInputStream& stream);
    [[nodiscard]] CError* takeOutputLabels(CPosInputStream& stream);
    [[nodiscard]] CError* takeInputLabels(CPosInputStream& stream);
    [[nodiscard]] CError* takeKept(CPosInputStream& stream);

private:
    [[nodiscard]] CError* sendEvent(const CString& eventName);
    const CString& errorContextName() const { return owner_.fullName(); }

    CObject& owner_;
    CInterfaceState engine_;
    bool hasDefaultPreset_ = false;
    CString defaultPresetName_;
    CByteBuffer passedData_;
    CTextList inputLabels_;
    CTextList outputLabels_;
    struct CKept {
        CString key;
        CByteBuffer bytes;
    };
    CArray<CKept, 1> kept_;
};

}  // namespace tarv
