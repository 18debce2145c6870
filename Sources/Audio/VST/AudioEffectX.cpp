// Turns the C calls of a host into virtual calls, with checked pointers, and calls the host.

#include "Audio/VST/AudioEffectX.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace tarv {

namespace {

struct CDispatchCall {
    int32_t index;
    intptr_t value;
    void* ptr;
    float opt;

    char* text() const { return static_cast<char*>(ptr); }
    template <class T>
    T* as() const {
        return static_cast<T*>(ptr);
    }
    template <class T>
    T* valueAs() const {
        return reinterpret_cast<T*>(value);
    }
};

using DispatchHandler = intptr_t (*)(AudioEffectX& effect, const CDispatchCall& call);

struct CDispatchRow {
    vst::EffectOpcode opcode;
    bool needsPtr;
    DispatchHandler handler;
};

/// Catches every exception (out of memory, say) before it reaches the host, and returns `failed`.
template <class Result, class Body>
Result atBoundary(Result failed, Body body) {
    try {
        return body();
    } catch (...) {
        return failed;
    }
}

AudioEffectX* effectOf(vst::AEffect* effect) {
    return effect && effect->magic == vst::kEffectMagic ? static_cast<AudioEffectX*>(effect->object) : nullptr;
}

}  // namespace

/// The table of opcodes and the C functions that the host calls.
struct AudioEffectDispatch {
    static const CDispatchRow kRows[];

    static intptr_t mainsChanged(AudioEffectX& e, const CDispatchCall& c) {
        if (c.value) {
            e.resume();
        } else {
            e.suspend();
        }
        return 0;
    }

    static intptr_t close(AudioEffectX& e, const CDispatchCall&) {
        delete &e;
        return 1;
    }

    static intptr_t canBeAutomated(AudioEffectX& e, const CDispatchCall& c) {
        return c.index >= 0 && c.index < e.effect_.numParams;
    }

    static intptr_t setSpeakerArrangement(AudioEffectX& e, const CDispatchCall& c) {
        return e.setSpeakerArrangement(c.valueAs<vst::SpeakerArrangement>(), c.as<vst::SpeakerArrangement>());
    }

    static intptr_t getSpeakerArrangement(AudioEffectX& e, const CDispatchCall& c) {
        auto** input = c.valueAs<vst::SpeakerArrangement*>();
        return input && e.getSpeakerArrangement(input, c.as<vst::SpeakerArrangement*>());
    }

    static intptr_t editGetRect(AudioEffectX& e, const CDispatchCall& c) {
        return e.editor_ && e.editor_->getRect(c.as<vst::Rect*>());
    }

    static intptr_t editOpen(AudioEffectX& e, const CDispatchCall& c) { return e.editor_ && e.editor_->open(c.ptr); }

    static intptr_t editClose(AudioEffectX& e, const CDispatchCall&) {
        if (e.editor_) {
            e.editor_->close();
        }
        return 0;
    }

    static intptr_t editIdle(AudioEffectX& e, const CDispatchCall&) {
        if (e.editor_) {
            e.editor_->idle();
        }
        return 0;
    }

    static intptr_t dispatch(vst::AEffect* effect, int32_t opcode, int32_t index, intptr_t value, void* ptr, float opt);

    static void process(vst::AEffect* effect, float** inputs, float** outputs, int32_t frames) {
        if (AudioEffectX* e = effectOf(effect)) {
            atBoundary(0, [&] { return e->processAccumulating(inputs, outputs, frames), 0; });
        }
    }

    static void processReplacing(vst::AEffect* effect, float** inputs, float** outputs, int32_t frames) {
        if (AudioEffectX* e = effectOf(effect)) {
            atBoundary(0, [&] { return e->processReplacing(inputs, outputs, frames), 0; });
        }
    }

    static void processDoubleReplacing(vst::AEffect* effect, double** inputs, double** outputs, int32_t frames) {
        if (AudioEffectX* e = effectOf(effect)) {
            atBoundary(0, [&] { return e->processDoubleReplacing(inputs, outputs, frames), 0; });
        }
    }

    static void setParameter(vst::AEffect* effect, int32_t index, float value) {
        if (AudioEffectX* e = effectOf(effect)) {
            atBoundary(0, [&] { return e->setParameter(index, value), 0; });
        }
    }

    static float getParameter(vst::AEffect* effect, int32_t index) {
        AudioEffectX* e = effectOf(effect);
        return e ? atBoundary(0.0f, [&] { return e->getParameter(index); }) : 0.0f;
    }
};

// Opcodes without a row answer 0, which a host reads as "not supported".
const CDispatchRow AudioEffectDispatch::kRows[] = {
    {vst::kEffectClose, false, &close},
    {vst::kEffectSetProgram, false,
     [](AudioEffectX& e, const CDispatchCall& c) -> intptr_t {
         return e.setProgram(static_cast<int32_t>(c.value)), 0;
     }},
    {vst::kEffectGetProgram, false, [](AudioEffectX& e, const CDispatchCall&) -> intptr_t { return e.getProgram(); }},
    {vst::kEffectSetProgramName, true,
     [](AudioEffectX& e, const CDispatchCall& c) -> intptr_t { return e.setProgramName(c.text()), 0; }},
    {vst::kEffectGetProgramName, true,
     [](AudioEffectX& e, const CDispatchCall& c) -> intptr_t { return e.getProgramName(c.text()), 0; }},
    {vst::kEffectGetParamLabel, true,
     [](AudioEffectX& e, const CDispatchCall& c) -> intptr_t { return e.getParameterLabel(c.index, c.text()), 0; }},
    {vst::kEffectGetParamDisplay, true,
     [](AudioEffectX& e, const CDispatchCall& c) -> intptr_t { return e.getParameterDisplay(c.index, c.text()), 0; }},
    {vst::kEffectGetParamName, true,
     [](AudioEffectX& e, const CDispatchCall& c) -> intptr_t { return e.getParameterName(c.index, c.text()), 0; }},
    {vst::kEffectSetSampleRate, false,
     [](AudioEffectX& e, const CDispatchCall& c) -> intptr_t { return e.setSampleRate(c.opt), 0; }},
    {vst::kEffectSetBlockSize, false,
     [](AudioEffectX& e, const CDispatchCall& c) -> intptr_t { return e.setBlockSize(c.value), 0; }},
    {vst::kEffectMainsChanged, false, &mainsChanged},
    {vst::kEffectEditGetRect, true, &editGetRect},
    {vst::kEffectEditOpen, false, &editOpen},
    {vst::kEffectEditClose, false, &editClose},
    {vst::kEffectEditIdle, false, &editIdle},
    {vst::kEffectIdentify, false, [](AudioEffectX&, const CDispatchCall&) -> intptr_t { return vst::kIdentity; }},
    {vst::kEffectGetChunk, true,
     [](AudioEffectX& e, const CDispatchCall& c) -> intptr_t { return e.getChunk(c.as<void*>(), c.index != 0); }},
    {vst::kEffectSetChunk, true,
     [](AudioEffectX& e, const CDispatchCall& c) -> intptr_t { return e.setChunk(c.ptr, c.value, c.index != 0); }},
    {vst::kEffectProcessEvents, true,
     [](AudioEffectX& e, const CDispatchCall& c) -> intptr_t { return e.processEvents(c.as<vst::Events>()); }},
    {vst::kEffectCanBeAutomated, false, &canBeAutomated},
    {vst::kEffectString2Parameter, false,
     [](AudioEffectX& e, const CDispatchCall& c) -> intptr_t { return e.setParameterText(c.index, c.text()); }},
    {vst::kEffectGetProgramNameIndexed, true,
     [](AudioEffectX& e, const CDispatchCall& c) -> intptr_t { return e.getProgramNameIndexed(c.index, c.text()); }},
    {vst::kEffectGetPlugCategory, false,
     [](AudioEffectX& e, const CDispatchCall&) -> intptr_t { return e.getPlugCategory(); }},
    {vst::kEffectSetSpeakerArrangement, false, &setSpeakerArrangement},
    {vst::kEffectGetSpeakerArrangement, true, &getSpeakerArrangement},
    {vst::kEffectGetEffectName, true,
     [](AudioEffectX& e, const CDispatchCall& c) -> intptr_t { return e.getEffectName(c.text()); }},
    {vst::kEffectGetVendorString, true,
     [](AudioEffectX& e, const CDispatchCall& c) -> intptr_t { return e.getVendorString(c.text()); }},
    {vst::kEffectGetProductString, true,
     [](AudioEffectX& e, const CDispatchCall& c) -> intptr_t { return e.getProductString(c.text()); }},
    {vst::kEffectGetVendorVersion, false,
     [](AudioEffectX& e, const CDispatchCall&) -> intptr_t { return e.getVendorVersion(); }},
    {vst::kEffectVendorSpecific, false,
     [](AudioEffectX& e, const CDispatchCall& c) { return e.vendorSpecific(c.index, c.value, c.ptr, c.opt); }},
    {vst::kEffectCanDo, true, [](AudioEffectX& e, const CDispatchCall& c) { return e.canDo(c.text()); }},
    {vst::kEffectGetVstVersion, false,
     [](AudioEffectX&, const CDispatchCall&) -> intptr_t { return vst::kInterfaceVersion; }},
    {vst::kEffectSetProcessPrecision, false,
     [](AudioEffectX& e, const CDispatchCall& c) -> intptr_t {
         return e.setProcessPrecision(static_cast<int32_t>(c.value));
     }},
};

intptr_t AudioEffectDispatch::dispatch(vst::AEffect* effect, int32_t opcode, int32_t index, intptr_t value, void* ptr,
                                       float opt) {
    static const auto byOpcode = [] {
        std::array<const CDispatchRow*, vst::kEffectOpcodeCount> rows{};
        for (const CDispatchRow& row : kRows) {
            rows[row.opcode] = &row;
        }
        return rows;
    }();
    AudioEffectX* e = effectOf(effect);
    if (!e || opcode < 0 || opcode >= vst::kEffectOpcodeCount) {
        return 0;
    }
    const CDispatchRow* row = byOpcode[static_cast<size_t>(opcode)];
    if (!row || (row->needsPtr && !ptr)) {
        return 0;
    }
    return atBoundary(intptr_t{0}, [&] { return row->handler(*e, CDispatchCall{index, value, ptr, opt}); });
}

AudioEffectX::AudioEffectX(vst::HostCallback host, int32_t numPrograms, int32_t numParams) : host_(host) {
    effect_.magic = vst::kEffectMagic;
    effect_.dispatcher = &AudioEffectDispatch::dispatch;
    effect_.process = &AudioEffectDispatch::process;
    effect_.setParameter = &AudioEffectDispatch::setParameter;
    effect_.getParameter = &AudioEffectDispatch::getParameter;
    effect_.processReplacing = &AudioEffectDispatch::processReplacing;
    effect_.processDoubleReplacing = &AudioEffectDispatch::processDoubleReplacing;
    effect_.numPrograms = numPrograms;
    effect_.numParams = numParams;
    effect_.ioRatio = 1.0f;
    effect_.object = this;
    effect_.version = 1;
}

AudioEffectX::~AudioEffectX() {
    delete editor_;
}

bool AudioEffectX::getSpeakerArrangement(vst::SpeakerArrangement** input, vst::SpeakerArrangement** output) {
    *input = nullptr;
    *output = nullptr;
    return false;
}

void AudioEffectX::setFlag(vst::EffectFlag flag, bool on) {
    effect_.flags = on ? effect_.flags | flag : effect_.flags & ~flag;
}

void AudioEffectX::setEditor(AEffEditor* editor) {
    delete editor_;
    editor_ = editor;
    setFlag(vst::kFlagHasEditor, editor != nullptr);
}

void AudioEffectX::setSampleRate(float rate) {
    // No audio device runs outside these bounds, and filters and fades cannot be designed for such rates.
    constexpr float kLeastRate = 1000.0f;
    constexpr float kMostRate = 1.0e7f;
    if (rate >= kLeastRate && rate <= kMostRate) {
        sampleRate_ = rate;
        formatChanged();
    }
}

void AudioEffectX::setBlockSize(intptr_t frames) {
    constexpr intptr_t kMostFrames = 1 << 24;
    if (frames > 0 && frames <= kMostFrames) {
        blockSize_ = static_cast<int32_t>(frames);
        formatChanged();
    }
}

void AudioEffectX::processAccumulating(float** inputs, float** outputs, int32_t frames) {
    float block[kMaxAccumulated][kAccumulateFrames];
    float* into[kMaxAccumulated];
    float* from[kMaxAccumulated];
    const int32_t numOutputs = std::min(effect_.numOutputs, kMaxAccumulated);
    const int32_t numInputs = std::min(effect_.numInputs, kMaxAccumulated);
    for (int32_t done = 0; done < frames; done += kAccumulateFrames) {
        const int32_t count = std::min(frames - done, kAccumulateFrames);
        for (int32_t c = 0; c < numInputs; ++c) {
            from[c] = inputs && inputs[c] ? inputs[c] + done : nullptr;
        }
        for (int32_t c = 0; c < numOutputs; ++c) {
            into[c] = block[c];
            std::fill_n(block[c], count, 0.0f);
        }
        processReplacing(from, into, count);
        for (int32_t c = 0; c < numOutputs && outputs; ++c) {
            for (int32_t i = 0; outputs[c] && i < count; ++i) {
                outputs[c][done + i] += block[c][i];
            }
        }
    }
}

intptr_t AudioEffectX::callHost(int32_t opcode, int32_t index, intptr_t value, void* ptr, float opt) {
    return host_ ? host_(&effect_, opcode, index, value, ptr, opt) : 0;
}

int32_t AudioEffectX::getMasterVersion() {
    return static_cast<int32_t>(callHost(vst::kHostVersion));
}

bool AudioEffectX::getHostText(int32_t opcode, char (&text)[65]) {
    // Larger than the interface allows: some hosts write more.
    char answer[512] = {};
    const bool answered = callHost(opcode, 0, 0, answer) != 0;
    std::memcpy(text, answer, sizeof text - 1);
    text[sizeof text - 1] = 0;
    return answered;
}

int32_t AudioEffectX::getCurrentProcessLevel() {
    return static_cast<int32_t>(callHost(vst::kHostGetProcessLevel));
}

const vst::TimeInfo* AudioEffectX::getTimeInfo(int32_t wantedFlags) {
    return reinterpret_cast<const vst::TimeInfo*>(callHost(vst::kHostGetTime, 0, wantedFlags));
}

void AudioEffectX::setParameterAutomated(int32_t index, float value) {
    callHost(vst::kHostAutomate, index, 0, nullptr, value);
}

}  // namespace tarv
