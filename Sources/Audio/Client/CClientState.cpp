#include "Audio/Client/CClientState.h"

namespace tarv {

CError* CClientState::sendEvent(const CString& eventName) {
    CAttributeMap none;
    return owner_.sendEvent(eventName, none, false);
}

void CClientState::noteRegistry(const CInterfaceRegistryState& state) {
    for (CInterfaceRegistryState& known : engine_.registries) {
        if (known.path == state.path) {
            known = state;
        }
    }
}

CError* CClientState::takeState(CPosInputStream& stream) {
    uint32_t request = 0;
    CInterfaceState state;
    TARV_TRY(takeMessage(stream, request, state));
    engine_ = std::move(state);
    return sendEvent("engine-state");
}

CError* CClientState::takeHistory(CPosInputStream& stream) {
    CInterfaceHistory history;
    TARV_TRY(takeMessage(stream, history));
    engine_.history = std::move(history);
    return sendEvent("undo-history-changed");
}

CError* CClientState::takeSampleRate(CPosInputStream& stream) {
    uint32_t request = 0;
    double rate = 0.0;
    TARV_TRY(takeMessage(stream, request, rate));
    engine_.sampleRate = rate;
    return sendEvent("update-sample-rate");
}

CError* CClientState::takeIoCounts(CPosInputStream& stream) {
    uint32_t request = 0;
    CInterfaceCounts counts = engine_.counts;
    TARV_TRY(takeMessage(stream, request, counts.inputs, counts.outputs, counts.sidechain));
    engine_.counts = counts;
    return sendEvent("update-io-channel-counts");
}

CError* CClientState::takeGroupCount(CPosInputStream& stream) {
    uint32_t request = 0;
    int32_t count = 0;
    TARV_TRY(takeMessage(stream, request, count));
    engine_.counts.groups = count;
    return sendEvent("update-group-count");
}

CError* CClientState::takeInternalCount(CPosInputStream& stream) {
    uint32_t request = 0;
    int32_t count = 0;
    TARV_TRY(takeMessage(stream, request, count));
    engine_.counts.internalChannels = count;
    return sendEvent("update-internal-channel-count");
}

CError* CClientState::takeDefaultPreset(CPosInputStream& stream) {
    uint32_t request = 0;
    bool isThere = false;
    CString name;
    TARV_TRY(takeMessage(stream, request, isThere, name));
    hasDefaultPreset_ = isThere;
    defaultPresetName_ = name;
    return sendEvent("default-preset-update");
}

CError* CClientState::takeRefusal(CPosInputStream& stream) {
    int32_t key = 0;
    TARV_TRY(takeMessage(stream, key));
    CAttributeMap params;
    params["key"] = CAttributeValue::fromInt(key);
    return owner_.sendEvent("edit-refused", params, false);
}

CError* CClientState::takePassed(CPosInputStream& stream) {
    uint32_t request = 0;
    CByteBuffer bytes;
    TARV_TRY(takeMessage(stream, request, bytes));
    passedData_ = std::move(bytes);
    return sendEvent("data-passed");
}

CError* CClientState::takeClear(CPosInputStream& stream) {
    TARV_TRY(expectMessageEnd(stream));
    return sendEvent("clear");
}

CError* CClientState::takeOutputLabels(CPosInputStream& stream) {
    CTextList labels;
    TARV_TRY(takeMessage(stream, labels));
    outputLabels_ = std::move(labels);
    return sendEvent("output-labels-changed");
}

CError* CClientState::takeInputLabels(CPosInputStream& stream) {
    CTextList labels;
    TARV_TRY(takeMessage(stream, labels));
    inputLabels_ = std::move(labels);
    return sendEvent("input-labels-changed");
}

CError* CClientState::takeKept(CPosInputStream& stream) {
    CArray<CKept, 1> all;
    uint32_t count = 0;
    TARV_TRY(takeField(stream, count));
    for (uint32_t i = 0; i < count; ++i) {
        CKept kept;
        TARV_TRY(takeFields(stream, kept.key, kept.bytes));
        all.append(std::move(kept));
    }
    TARV_TRY(expectMessageEnd(stream));
    kept_ = std::move(all);
    return sendEvent("kept-bytes-came");
}

const CByteBuffer& CClientState::keptBytes(const CString& key) const {
    static const CByteBuffer kNone{};
    for (const CKept& kept : kept_) {
        if (kept.key == key) {
            return kept.bytes;
        }
    }
    return kNone;
}

void CClientState::noteKept(const CString& key, const CByteBuffer& bytes) {
    for (CKept& kept : kept_) {
        if (kept.key == key) {
            kept.bytes = bytes;
            return;
        }
    }
    kept_.append({key, bytes});
}

}  // namespace tarv
