#pragma once

#include <cstddef>
#include <cstdint>

/// Declarations of the VST 2 interface, written for this product: the binary contract between a host and an effect,
/// 64-bit only. A host sees plain data and C functions only; x86-64 has one calling convention for each system.
namespace tarv::vst {

constexpr int32_t fourCc(char a, char b, char c, char d) {
    return static_cast<int32_t>(static_cast<uint32_t>(static_cast<uint8_t>(a)) << 24 |
                                static_cast<uint32_t>(static_cast<uint8_t>(b)) << 16 |
                                static_cast<uint32_t>(static_cast<uint8_t>(c)) << 8 | static_cast<uint8_t>(d));
}

struct AEffect;

/// The function through which an effect calls its host. `effect` may be null only for kHostVersion.
using HostCallback = intptr_t (*)(AEffect* effect, int32_t opcode, int32_t index, intptr_t value, void* ptr, float opt);
using DispatcherProc = intptr_t (*)(AEffect* effect, int32_t opcode, int32_t index, intptr_t value, void* ptr,
                                    float opt);
using ProcessProc = void (*)(AEffect* effect, float** inputs, float** outputs, int32_t frames);
using ProcessDoubleProc = void (*)(AEffect* effect, double** inputs, double** outputs, int32_t frames);
using SetParameterProc = void (*)(AEffect* effect, int32_t index, float value);
using GetParameterProc = float (*)(AEffect* effect, int32_t index);
/// The function that a library exports as `VSTPluginMain` and `main`.
using EntryProc = AEffect* (*)(HostCallback host);

constexpr int32_t kEffectMagic = fourCc('V', 's', 't', 'P');
constexpr int32_t kInterfaceVersion = 2400;

/// One effect as the host sees it. Owned by the effect until kEffectClose.
struct AEffect {
    int32_t magic;  ///< kEffectMagic
    DispatcherProc dispatcher;
    ProcessProc process;  ///< adds to the outputs; older than processReplacing
    SetParameterProc setParameter;
    GetParameterProc getParameter;
    int32_t numPrograms;
    int32_t numParams;
    int32_t numInputs;
    int32_t numOutputs;
    int32_t flags;  ///< kFlag...
    intptr_t reservedForHost1;
    intptr_t reservedForHost2;
    int32_t initialDelay;  ///< latency in frames
    int32_t realQualities;
    int32_t offQualities;
    float ioRatio;
    void* object;  ///< the effect's own pointer
    void* user;    ///< the host's own pointer
    int32_t uniqueId;
    int32_t version;
    ProcessProc processReplacing;
    ProcessDoubleProc processDoubleReplacing;
    char future[56];
};
static_assert(offsetof(AEffect, dispatcher) == 8 && offsetof(AEffect, flags) == 56 &&
                  offsetof(AEffect, initialDelay) == 80 && offsetof(AEffect, object) == 96 &&
                  offsetof(AEffect, uniqueId) == 112 && offsetof(AEffect, processReplacing) == 120 &&
                  sizeof(AEffect) == 192,
              "hosts rely on this layout");

enum EffectFlag : int32_t {
    kFlagHasEditor = 1 << 0,
    kFlagCanReplacing = 1 << 4,
    kFlagProgramChunks = 1 << 5,
    kFlagIsSynth = 1 << 8,
    kFlagNoSoundInStop = 1 << 9,
    kFlagCanDoubleReplacing = 1 << 12,
};

/// Calls of a host to an effect through the dispatcher. Comments name the arguments in use.
enum EffectOpcode : int32_t {
    kEffectOpen = 0,
    kEffectClose = 1,
    kEffectSetProgram = 2,       ///< value: program
    kEffectGetProgram = 3,       ///< returns program
    kEffectSetProgramName = 4,   ///< ptr: text
    kEffectGetProgramName = 5,   ///< ptr: kMaxProgramName bytes
    kEffectGetParamLabel = 6,    ///< index, ptr: kMaxParamText bytes
    kEffectGetParamDisplay = 7,  ///< index, ptr: kMaxParamText bytes
    kEffectGetParamName = 8,     ///< index, ptr: kMaxParamText bytes
    kEffectSetSampleRate = 10,   ///< opt: Hz
    kEffectSetBlockSize = 11,    ///< value: largest number of frames
    kEffectMainsChanged = 12,    ///< value: 0 suspends, 1 resumes
    kEffectEditGetRect = 13,     ///< ptr: Rect**
    kEffectEditOpen = 14,        ///< ptr: the parent window
    kEffectEditClose = 15,
    kEffectEditIdle = 19,
    kEffectIdentify = 22,               ///< returns kIdentity
    kEffectGetChunk = 23,               ///< index: 0 bank, 1 program; ptr: void**; returns bytes
    kEffectSetChunk = 24,               ///< index: 0 bank, 1 program; value: bytes; ptr: data
    kEffectProcessEvents = 25,          ///< ptr: Events*
    kEffectCanBeAutomated = 26,         ///< index
    kEffectString2Parameter = 27,       ///< index, ptr: text
    kEffectGetProgramNameIndexed = 29,  ///< index, ptr: kMaxProgramName bytes
    kEffectGetInputProperties = 33,     ///< index, ptr: PinProperties*
    kEffectGetOutputProperties = 34,    ///< index, ptr: PinProperties*
    kEffectGetPlugCategory = 35,        ///< returns PlugCategory
    kEffectSetSpeakerArrangement = 42,  ///< value: input, ptr: output SpeakerArrangement*
    kEffectSetBypass = 44,              ///< value
    kEffectGetEffectName = 45,          ///< ptr: kMaxEffectName bytes
    kEffectGetVendorString = 47,        ///< ptr: kMaxVendorText bytes
    kEffectGetProductString = 48,       ///< ptr: kMaxProductText bytes
    kEffectGetVendorVersion = 49,
    kEffectVendorSpecific = 50,
    kEffectCanDo = 51,                   ///< ptr: text
    kEffectGetTailSize = 52,             ///< returns frames, 1 for none, 0 for unknown
    kEffectGetParameterProperties = 56,  ///< index, ptr: ParameterProperties*
    kEffectGetVstVersion = 58,
    kEffectGetSpeakerArrangement = 69,  ///< value: SpeakerArrangement** input, ptr: SpeakerArrangement** output
    kEffectStartProcess = 71,
    kEffectStopProcess = 72,
    kEffectSetProcessPrecision = 77,  ///< value: ProcessPrecision
    kEffectOpcodeCount = 80,
};
constexpr int32_t kIdentity = fourCc('N', 'v', 'E', 'f');

/// Calls of an effect to its host.
enum HostOpcode : int32_t {
    kHostAutomate = 0,  ///< index, opt: a parameter was changed by the effect
    kHostVersion = 1,
    kHostCurrentId = 2,
    kHostIdle = 3,
    kHostPinConnected = 4,
    kHostGetTime = 7,  ///< value: wanted TimeFlag bits; returns TimeInfo* or 0
    kHostProcessEvents = 8,
    kHostIoChanged = 13,
    kHostSizeWindow = 15,
    kHostGetSampleRate = 16,
    kHostGetBlockSize = 17,
    kHostGetInputLatency = 18,
    kHostGetOutputLatency = 19,
    kHostGetProcessLevel = 23,  ///< returns ProcessLevel
    kHostGetAutomationState = 24,
    kHostGetVendorString = 32,   ///< ptr: kMaxVendorText bytes
    kHostGetProductString = 33,  ///< ptr: kMaxProductText bytes
    kHostGetVendorVersion = 34,
    kHostVendorSpecific = 35,
    kHostCanDo = 37,  ///< ptr: text
    kHostGetLanguage = 38,
    kHostGetDirectory = 41,
    kHostUpdateDisplay = 42,
    kHostBeginEdit = 43,  ///< index
    kHostEndEdit = 44,    ///< index
};

/// Sizes of the host's text buffers in bytes, terminator included.
constexpr int32_t kMaxProgramName = 24;
constexpr int32_t kMaxParamText = 8;
constexpr int32_t kMaxEffectName = 32;
constexpr int32_t kMaxVendorText = 64;
constexpr int32_t kMaxProductText = 64;

enum ProcessLevel : int32_t {
    kLevelUnknown = 0,
    kLevelUser = 1,
    kLevelRealtime = 2,
    kLevelPrefetch = 3,
    kLevelOffline = 4,
};

enum ProcessPrecision : int32_t { kPrecision32 = 0, kPrecision64 = 1 };

enum PlugCategory : int32_t {
    kCategoryUnknown = 0,
    kCategoryEffect = 1,
    kCategorySynth = 2,
    kCategoryAnalysis = 3,
    kCategoryMastering = 4,
    kCategorySpacializer = 5,
    kCategoryRoomFx = 6,
    kCategorySurroundFx = 7,
    kCategoryRestoration = 8,
    kCategoryOfflineProcess = 9,
    kCategoryShell = 10,
    kCategoryGenerator = 11,
};

/// The editor's place in pixels.
struct Rect {
    int16_t top;
    int16_t left;
    int16_t bottom;
    int16_t right;
};

enum EventType : int32_t { kEventMidi = 1, kEventSysEx = 6 };

struct Event {
    int32_t type;      ///< EventType
    int32_t byteSize;  ///< of the members behind the first two
    int32_t deltaFrames;
    int32_t flags;
    char data[16];
};

struct MidiEvent {
    int32_t type;
    int32_t byteSize;
    int32_t deltaFrames;
    int32_t flags;
    int32_t noteLength;
    int32_t noteOffset;
    uint8_t midiData[4];
    char detune;
    char noteOffVelocity;
    char reserved1;
    char reserved2;
};
static_assert(sizeof(Event) == 32 && sizeof(MidiEvent) == 32, "hosts rely on this layout");

/// A list of `numEvents` pointers, which may be more than the two that are declared.
struct Events {
    int32_t numEvents;
    intptr_t reserved;
    Event* events[2];
};

enum TimeFlag : int32_t {
    kTimeTransportChanged = 1 << 0,
    kTimeTransportPlaying = 1 << 1,
    kTimeCycleActive = 1 << 2,
    kTimeTransportRecording = 1 << 3,
    kTimeNanosValid = 1 << 8,
    kTimePpqPosValid = 1 << 9,
    kTimeTempoValid = 1 << 10,
    kTimeBarsValid = 1 << 11,
    kTimeCyclePosValid = 1 << 12,
    kTimeSignatureValid = 1 << 13,
    kTimeSmpteValid = 1 << 14,
    kTimeClockValid = 1 << 15,
};

struct TimeInfo {
    double samplePos;
    double sampleRate;
    double nanoSeconds;
    double ppqPos;
    double tempo;  ///< beats a minute
    double barStartPos;
    double cycleStartPos;
    double cycleEndPos;
    int32_t timeSigNumerator;
    int32_t timeSigDenominator;
    int32_t smpteOffset;
    int32_t smpteFrameRate;
    int32_t samplesToNextClock;
    int32_t flags;  ///< TimeFlag
};
static_assert(offsetof(TimeInfo, tempo) == 32 && offsetof(TimeInfo, flags) == 84, "hosts rely on this layout");

enum SpeakerType : int32_t {
    kSpeakerM = 0,
    kSpeakerL = 1,
    kSpeakerR = 2,
    kSpeakerC = 3,
    kSpeakerLfe = 4,
    kSpeakerLs = 5,
    kSpeakerRs = 6,
    kSpeakerLc = 7,
    kSpeakerRc = 8,
    kSpeakerS = 9,
    kSpeakerSl = 10,
    kSpeakerSr = 11,
    kSpeakerTm = 12,
    kSpeakerTfl = 13,
    kSpeakerTfc = 14,
    kSpeakerTfr = 15,
    kSpeakerTrl = 16,
    kSpeakerTrc = 17,
    kSpeakerTrr = 18,
    kSpeakerLfe2 = 19,
    kSpeakerUndefined = 0x7fffffff,
};

enum SpeakerArrangementType : int32_t {
    kArrangementUserDefined = -2,
    kArrangementEmpty = -1,
    kArrangementMono = 0,
    kArrangementStereo = 1,
};

struct SpeakerProperties {
    float azimuth;
    float elevation;
    float radius;
    float reserved;
    char name[64];
    int32_t type;  ///< SpeakerType
    char future[28];
};
static_assert(sizeof(SpeakerProperties) == 112, "hosts rely on this layout");

constexpr int32_t kMaxSpeakers = 8;

struct SpeakerArrangement {
    int32_t type;  ///< SpeakerArrangementType
    int32_t numChannels;
    SpeakerProperties speakers[kMaxSpeakers];
};

enum PinFlag : int32_t { kPinActive = 1 << 0, kPinStereo = 1 << 1, kPinUseSpeaker = 1 << 2 };

struct PinProperties {
    char label[64];
    int32_t flags;  ///< PinFlag
    int32_t arrangementType;
    char shortLabel[8];
    char future[48];
};

struct ParameterProperties {
    float stepFloat;
    float smallStepFloat;
    float largeStepFloat;
    char label[64];
    int32_t flags;
    int32_t minInteger;
    int32_t maxInteger;
    int32_t stepInteger;
    int32_t largeStepInteger;
    char shortLabel[8];
    int16_t displayIndex;
    int16_t category;
    int16_t numParametersInCategory;
    int16_t reserved;
    char categoryLabel[24];
    char future[16];
};

/// Questions of a host to kEffectCanDo.
constexpr const char* kCanReceiveMidiEvent = "receiveVstMidiEvent";
constexpr const char* kCanReceiveTimeInfo = "receiveVstTimeInfo";
constexpr const char* kCanCockosExtensions = "hasCockosExtensions";
/// The answer to kCanCockosExtensions, and the result of a display request whose text was written.
constexpr intptr_t kCockosExtensionsAnswer = 0xbeef0000;
constexpr intptr_t kCockosDisplayAnswer = 0xbeef;
/// kEffectVendorSpecific: index of a request for a display text; value: parameter, opt: normalised, ptr: text.
constexpr int32_t kCockosDisplayRequest = 7;
/// kEffectVendorSpecific: index and value of a mouse-wheel report; opt: distance.
constexpr int32_t kVendorMagic = 0x73744341;
constexpr int32_t kVendorMouseWheel = 0x57686565;

}  // namespace tarv::vst
