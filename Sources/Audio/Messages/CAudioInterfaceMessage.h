#pragma once

#include "Core/CStreams.h"

namespace tarv {

/// The messages between the engine's interface object and its clients. A message is its type and its fields in the
/// order below, nothing behind them; all as CInputStream reads them: u32, i32 (in the same 32 bits), f64, text. `bytes`
/// are a u32 count and that many; a list is a u32 count and its items; a flag is a u32, 0 or not.
///
/// The upper 16 bits of each listener and request id are the number of the client that made it: answers go there.
/// A registry is named by its path, a parameter by its full name.
enum CInterfaceMessage : uint32_t {
    // From a client.
    kSubscribeParam = 0,    ///< id, parameter, u32 flags (CSubscribeFlag), u32 request (comes back in the answer)
    kUnsubscribeParam = 1,  ///< id
    kRequestValues = 2,     ///< id of a parameter (answer: kParamValues), a bound value (kData), visual data (kFrame);
                            ///< number 0 of a client: an editor's tick. Visual data and a tick send all frames that
                            ///< gathered, and what the engine has set itself since the last time
    kRequestState = 3,      ///< request; answer: kFullState
    kSetValues =
        4,  ///< id (its number 0: none), parameter (empty: the id's), i32 group (9999: all), i32 first element,
            ///< i32 count of elements, u32 flags (CSetFlag), the elements' f64 or texts, text label
            ///< (empty: made from the parameter), i32 coalesce key (-1: none)
    kSubscribeRegistry = 5,    ///< registry, id; answer: kRegistryChanged
    kUnsubscribeRegistry = 6,  ///< id
    kRecord = 7,               ///< request, flag (1 opens a record of the history, 0 ends it), text label, i32 key
    kMoveInHistory = 8,        ///< request, u32 CHistoryMove, i32 position (for Select), i32 count (for the others)
    kSubscribeVisual = 9,      ///< text name of the source (empty: every one), id
    kUnsubscribeVisual = 10,   ///< id
    kSetProgram = 11,          ///< registry, i32 index
    kRenameProgram = 12,       ///< registry, i32 index, text display name
    kActivateRomPreset = 13,   ///< registry, i32 index
    kActivateData = 14,        ///< registry, i32 group (-1: all), bytes: a compressed block, preset or bank by its id
    kAcquirePreset = 15,     ///< registry, request, flag from ROM, i32 index (-1: current), i32 group (-1: all); kData
    kAcquireBank = 16,       ///< registry, request, flag from ROM; answer: kData
    kSwapAB = 17,            ///< registry
    kMasterReset = 18,       ///< registry
    kResetState = 19,        ///< registry
    kCopyToAlternate = 20,   ///< registry
    kBindValue = 21,         ///< id, text name of a value, u32 count of numbers; kData at once and at each change.
                             ///< Names: `sample-rate`, `block-size`, `latency`, `is-running`, `host-bpm`,
                             ///< `io-channel-counts` (3 numbers), `group-count`, `internal-channel-count`, `viz-fps`
    kUnbindValue = 22,       ///< id
    kPass = 23,              ///< request, bytes; every other client gets them in kData
    kAskSampleRate = 24,     ///< request; answer: kSampleRate
    kAskIoCounts = 25,       ///< request; answer: kIoCounts
    kAskGroupCount = 26,     ///< request; answer: kGroupCount
    kAskInternalCount = 27,  ///< request; answer: kInternalCount
    kImportLabels = 28,      ///< nothing
    kAddProgram = 29,        ///< registry, i32 index in 0..count, text display name; a copy of the current state
    kDeleteProgram = 30,     ///< registry, i32 index; not the last one
    kReplaceProgram = 31,    ///< registry, i32 index; its name stays
    kSetDefaultPreset = 32,  ///< registry, bytes: a compressed preset of this registry's prefix; of a master
    kClearDefaultPreset = 33,  ///< nothing
    kAskDefaultPreset = 34,    ///< request; answer: kDefaultPreset
    kBeginEdit =
        35,  ///< request, i32 key, parameter, i32 group, i32 first element, i32 count: a person's gesture edits
             ///< these elements; the host is notified
    kEndEdit =
        36,  ///< request, i32 key, flag (taken back): the gesture ends, for all that it edited; with the flag its
             ///< values become what they were before it, and the history what it was
    kKeepBytes = 37,  ///< text key, bytes: the engine keeps them while it lives, for the editors that open later, in no
                      ///< preset and no chunk; none: forgotten

    // From the engine.
    kFirstBaseMessage = 38,
    kFullState = 38,    ///< request, CInterfaceState
    kParamValues = 39,  ///< id, request (0 for a change), u32 CValuesForm, then for Whole: text path of the definition,
                        ///< the storage record; for Part: i32 group, i32 first, i32 count, i32 elements that the
                        ///< group has now, u32 numbers of an element (0: texts), the elements' f64 or texts
    kRegistryChanged = 40,  ///< id, CInterfaceRegistryState
    kGroupNames = 41,       ///< id, request, list of texts; in place of kParamValues where asked for
    kHistory = 42,          ///< CInterfaceHistory
    kSampleRate = 43,       ///< request or kNoRequest, f64 Hz
    kIoCounts = 44,         ///< request or kNoRequest, u32 inputs, u32 outputs, u32 side-chain inputs
    kGroupCount = 45,       ///< request or kNoRequest, u32
    kInternalCount = 46,    ///< request or kNoRequest, u32 internal channels
    kFrame = 47,            ///< id, list of records (CAudioVizData)
    kData = 48,  ///< u32 CDataKind, then for Answer: request, bytes; Value: id, list of f64; Passed: request of
                 ///< the sender, bytes; Clear: nothing; OutputLabels, InputLabels: what the host calls its channels,
                 ///< list of texts, empty for one without a label; Kept: u32 count, a text key and bytes each. The last
                 ///< three come behind kFullState, if there are any, labels also when they change
    kDefaultPreset = 49,  ///< request or kNoRequest, flag (there is one), text display name
    kEditRefused =
        50,  ///< i32 key: the values of that gesture are taken no more, since the history moved or a preset came
    kMessageCount = 51,
};

/// The request id of a notification, which no client asked for.
inline constexpr uint32_t kNoRequest = 0xffffffff;

/// The step of the history in which the input channels get the host's names.
inline constexpr const char* kLabelImport = "Channel label import";

enum CSubscribeFlag : uint32_t { kSendAtOnce = 1, kAsGroupNames = 2 };
enum CSetFlag : uint32_t {
    kIsReplacing = 1,  ///< the group has first + count elements afterwards
    kIsRecorded = 2,   ///< as a step of the history
    kIsHeld = 4,       ///< part of the gesture of the key, which goes on until kEndEdit; a gesture of its own otherwise
};
enum class CHistoryMove : uint32_t { Undo = 0, Redo = 1, Select = 2 };
enum class CValuesForm : uint32_t { Whole = 0, Part = 1 };
enum class CDataKind : uint32_t {
    Answer = 0,
    Value = 1,
    Passed = 2,
    Clear = 3,
    OutputLabels = 4,
    Kept = 5,
    InputLabels = 6
};

/// Whether a table of rows with a `type` has one row for each type from `first` to before `end`, in order.
template <class Row, size_t Count>
constexpr bool isKeyedByType(const Row (&rows)[Count], uint32_t first, uint32_t end) {
    for (size_t i = 0; i < Count; ++i) {
        if (rows[i].type != first + i) {
            return false;
        }
    }
    return Count == end - first;
}

/// The client that a listener or request id belongs to.
inline int32_t clientOf(uint32_t id) {
    return static_cast<int32_t>(id >> 16);
}

/// The id of a client's tick; no listener has it.
inline uint32_t tickIdOf(int32_t client) {
    return static_cast<uint32_t>(client) << 16;
}

/// Texts of a message. Reading reserves no room for the announced count: each text needs bytes in the message.
using CTextList = CArray<CString, 4>;

/// Numbers of a message, read in the same way.
using CNumberList = CArray<double, 4>;

/// What an editor shows of a registry.
struct CInterfaceRegistryState {
    CString path;
    CString id;
    CString presetNaming;
    bool isMaster = false;
    bool isAlternate = false;
    int32_t currentProgram = 0;
    CString bankName;
    CTextList programs;
    CString romName;
    CTextList romPresets;

    [[nodiscard]] CError* save(COutputStream& stream) const;
    [[nodiscard]] CError* load(CInputStream& stream);
};

/// Labels of the steps, the start first, and the position among them.
struct CInterfaceHistory {
    int32_t position = 0;
    CTextList labels;

    [[nodiscard]] CError* save(COutputStream& stream) const;
    [[nodiscard]] CError* load(CInputStream& stream);
};

/// Counts that the layout of an editor follows.
struct CInterfaceCounts {
    int32_t inputs = 0;
    int32_t outputs = 0;
    int32_t sidechain = 0;
    int32_t groups = 0;
    int32_t internalChannels = 0;

    [[nodiscard]] CError* save(COutputStream& stream) const;
    [[nodiscard]] CError* load(CInputStream& stream);
    bool operator==(const CInterfaceCounts&) const = default;
};

/// Everything that an editor needs at its start.
struct CInterfaceState {
    double sampleRate = 0.0;  ///< Hz
    int32_t blockSize = 0;    ///< frames
    int32_t latency = 0;      ///< frames of the host
    bool isRunning = false;
    CInterfaceCounts counts;
    CArray<CInterfaceRegistryState, 2> registries;
    CInterfaceHistory history;

    [[nodiscard]] CError* save(COutputStream& stream) const;
    [[nodiscard]] CError* load(CInputStream& stream);
};

/// One field of a message.
[[nodiscard]] CError* putField(COutputStream& stream, uint32_t value);
[[nodiscard]] CError* putField(COutputStream& stream, int32_t value);
[[nodiscard]] CError* putField(COutputStream& stream, bool value);
[[nodiscard]] CError* putField(COutputStream& stream, double value);
[[nodiscard]] CError* putField(COutputStream& stream, const CString& text);
[[nodiscard]] CError* putField(COutputStream& stream, const CByteBuffer& bytes);
[[nodiscard]] CError* putField(COutputStream& stream, const CTextList& texts);
[[nodiscard]] CError* putField(COutputStream& stream, const CNumberList& numbers);
CError* putField(COutputStream& stream, const char* text) = delete;
[[nodiscard]] CError* takeField(CInputStream& stream, uint32_t& value);
[[nodiscard]] CError* takeField(CInputStream& stream, int32_t& value);
[[nodiscard]] CError* takeField(CInputStream& stream, bool& value);
[[nodiscard]] CError* takeField(CInputStream& stream, double& value);
[[nodiscard]] CError* takeField(CInputStream& stream, CString& text);
[[nodiscard]] CError* takeField(CInputStream& stream, CByteBuffer& bytes);
[[nodiscard]] CError* takeField(CInputStream& stream, CTextList& texts);
[[nodiscard]] CError* takeField(CInputStream& stream, CNumberList& numbers);
template <class T>
concept CFieldGroup = requires(T& value, CInputStream& in, COutputStream& out) {
    value.load(in);
    value.save(out);
};
template <CFieldGroup T>
[[nodiscard]] CError* putField(COutputStream& stream, const T& value) {
    return value.save(stream);
}
template <CFieldGroup T>
[[nodiscard]] CError* takeField(CInputStream& stream, T& value) {
    return value.load(stream);
}

/// Writes or reads fields in their order, up to the first failure.
template <class... T>
[[nodiscard]] CError* putFields(COutputStream& stream, const T&... fields) {
    CError* error = nullptr;
    static_cast<void>((... && ((error = putField(stream, fields)) == nullptr)));
    TARV_TRY(error);
    return nullptr;
}
template <class... T>
[[nodiscard]] CError* takeFields(CInputStream& stream, T&... fields) {
    CError* error = nullptr;
    static_cast<void>((... && ((error = takeField(stream, fields)) == nullptr)));
    TARV_TRY(error);
    return nullptr;
}
/// Fails unless the message ends here: what is too long is as damaged as what is too short.
[[nodiscard]] CError* expectMessageEnd(CInputStream& stream);
/// The fields of a message up to its end.
template <class... T>
[[nodiscard]] CError* takeMessage(CInputStream& stream, T&... fields) {
    TARV_TRY(takeFields(stream, fields...));
    TARV_TRY(expectMessageEnd(stream));
    return nullptr;
}
/// A whole message in one run of bytes.
template <class... T>
[[nodiscard]] CError* packMessage(CByteBuffer& buffer, uint32_t type, const T&... fields) {
    CMemoryWriteBuffer stream;
    TARV_TRY(putFields(stream, type, fields...));
    stream.copyTo(buffer);
    return nullptr;
}

}  // namespace tarv
