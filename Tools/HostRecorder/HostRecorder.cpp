// A plug-in that loads the real one and records every call between it and a host, one line a call.

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "Audio/VST/Vst2.h"

namespace {

using namespace tarv;

/// The functions of an effect, which the recorder replaced by its own.
struct COriginal {
    vst::DispatcherProc dispatcher;
    vst::ProcessProc process;
    vst::ProcessProc processReplacing;
    vst::ProcessDoubleProc processDoubleReplacing;
    vst::SetParameterProc setParameter;
    vst::GetParameterProc getParameter;
    int32_t number;
};

/// Writes lines to the file of the environment variable TARV_HOST_TRACE, in the order of the calls of all threads and
/// effects. Threads and effects are numbered in the order of their first calls.
class CTrace {
public:
    static CTrace& instance() {
        static CTrace trace;
        return trace;
    }
    void line(int32_t effect, const std::string& text) {
        std::lock_guard scope(lock_);
        const auto thread = threads_.try_emplace(std::this_thread::get_id(), threads_.size()).first->second;
        if (file_) {
            std::fprintf(file_, "e%d t%zu %s\n", effect, thread, text.c_str());
            std::fflush(file_);
        }
    }
    COriginal original(const vst::AEffect* effect) {
        std::lock_guard scope(lock_);
        return originals_[effect];
    }
    /// Writes the recorder's calls into the effect.
    void take(vst::AEffect& effect);
    int32_t numberOf(const vst::AEffect* effect) { return effect ? original(effect).number : 0; }

    vst::HostCallback host = nullptr;

private:
    CTrace() {
        const char* path = std::getenv("TARV_HOST_TRACE");
        file_ = path ? std::fopen(path, "a") : nullptr;
    }

    std::mutex lock_;
    std::map<std::thread::id, size_t> threads_;
    std::map<const vst::AEffect*, COriginal> originals_;
    int32_t count_ = 0;
    FILE* file_ = nullptr;
};

/// The content behind a pointer: the text of a question; count and check sum of a chunk's bytes.
std::string argument(int32_t opcode, const void* ptr, intptr_t size) {
    if (opcode == vst::kEffectCanDo && ptr) {
        return std::string(" \"") + static_cast<const char*>(ptr) + "\"";
    }
    if (opcode == vst::kEffectSetSpeakerArrangement && ptr) {
        return " outputs " + std::to_string(static_cast<const vst::SpeakerArrangement*>(ptr)->numChannels);
    }
    if ((opcode == vst::kEffectSetChunk || opcode == vst::kEffectGetChunk) && ptr && size > 0) {
        uint32_t sum = 2166136261u;
        for (intptr_t i = 0; i < size; ++i) {
            sum = (sum ^ static_cast<const uint8_t*>(ptr)[i]) * 16777619u;
        }
        return " bytes " + std::to_string(size) + " sum " + std::to_string(sum);
    }
    return "";
}

/// The value is one. That of an opening is the host's connection to the X server, if it gives it.
bool isPointer(int32_t opcode) {
    return opcode == vst::kEffectSetSpeakerArrangement || opcode == vst::kEffectGetSpeakerArrangement ||
           opcode == vst::kEffectEditOpen;
}

std::string number(float value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.9g", static_cast<double>(value));
    return text;
}

intptr_t dispatch(vst::AEffect* effect, int32_t opcode, int32_t index, intptr_t value, void* ptr, float opt) {
    const COriginal original = CTrace::instance().original(effect);
    const std::string call = "dispatch " + std::to_string(opcode) + " index " + std::to_string(index) + " value " +
                             (isPointer(opcode) ? "pointer" : std::to_string(value)) + " opt " + number(opt);
    // Written before the call, so that questions of the effect inside it follow.
    CTrace::instance().line(original.number,
                            call + (opcode == vst::kEffectGetChunk ? "" : argument(opcode, ptr, value)));
    const intptr_t result = original.dispatcher(effect, opcode, index, value, ptr, opt);
    if (opcode == vst::kEffectGetChunk) {
        CTrace::instance().line(original.number, "gave" + argument(opcode, *static_cast<void**>(ptr), result));
    }
    return result;
}

template <class Sample>
void recordBlock(const COriginal& original, const char* name, Sample** inputs, Sample** outputs, int32_t frames) {
    const bool isInPlace = inputs && outputs && inputs[0] == outputs[0];
    char text[64];
    std::snprintf(text, sizeof text, "%s frames %d%s", name, frames, isInPlace ? " in place" : "");
    CTrace::instance().line(original.number, text);
}

void process(vst::AEffect* effect, float** inputs, float** outputs, int32_t frames) {
    const COriginal original = CTrace::instance().original(effect);
    recordBlock(original, "accumulate", inputs, outputs, frames);
    original.process(effect, inputs, outputs, frames);
}

void processReplacing(vst::AEffect* effect, float** inputs, float** outputs, int32_t frames) {
    const COriginal original = CTrace::instance().original(effect);
    recordBlock(original, "process32", inputs, outputs, frames);
    original.processReplacing(effect, inputs, outputs, frames);
}

void processDoubleReplacing(vst::AEffect* effect, double** inputs, double** outputs, int32_t frames) {
    const COriginal original = CTrace::instance().original(effect);
    recordBlock(original, "process64", inputs, outputs, frames);
    original.processDoubleReplacing(effect, inputs, outputs, frames);
}

void setParameter(vst::AEffect* effect, int32_t index, float value) {
    const COriginal original = CTrace::instance().original(effect);
    CTrace::instance().line(original.number, "set " + std::to_string(index) + " to " + number(value));
    original.setParameter(effect, index, value);
}

float getParameter(vst::AEffect* effect, int32_t index) {
    const COriginal original = CTrace::instance().original(effect);
    CTrace::instance().line(original.number, "get " + std::to_string(index));
    return original.getParameter(effect, index);
}

void CTrace::take(vst::AEffect& effect) {
    {
        std::lock_guard scope(lock_);
        originals_[&effect] = {effect.dispatcher,
                               effect.process,
                               effect.processReplacing,
                               effect.processDoubleReplacing,
                               effect.setParameter,
                               effect.getParameter,
                               ++count_};
    }
    effect.dispatcher = &dispatch;
    effect.process = &process;
    effect.processReplacing = &processReplacing;
    effect.processDoubleReplacing = &processDoubleReplacing;
    effect.setParameter = &setParameter;
    effect.getParameter = &getParameter;
}

intptr_t callHost(vst::AEffect* effect, int32_t opcode, int32_t index, intptr_t value, void* ptr, float opt) {
    CTrace& trace = CTrace::instance();
    const intptr_t result = trace.host(effect, opcode, index, value, ptr, opt);
    std::string answer = std::to_string(result);
    if ((opcode == vst::kHostGetVendorString || opcode == vst::kHostGetProductString) && ptr) {
        answer += std::string(" \"") + static_cast<const char*>(ptr) + "\"";
    }
    trace.line(trace.numberOf(effect), "asks " + std::to_string(opcode) + " answer " + answer);
    return result;
}

}  // namespace

/// The library of the environment variable TARV_RECORDED_PLUGIN with its calls recorded; null without it.
extern "C" __attribute__((visibility("default"))) vst::AEffect* VSTPluginMain(vst::HostCallback host) {
    const char* path = std::getenv("TARV_RECORDED_PLUGIN");
    void* library = path ? dlopen(path, RTLD_NOW | RTLD_LOCAL) : nullptr;
    auto entry = library ? reinterpret_cast<vst::EntryProc>(dlsym(library, "VSTPluginMain")) : nullptr;
    if (!entry) {
        std::fprintf(stderr, "HostRecorder: TARV_RECORDED_PLUGIN names no plug-in: %s\n", path ? path : "(unset)");
        return nullptr;
    }
    CTrace::instance().host = host;
    CTrace::instance().line(0, "create");
    vst::AEffect* effect = entry(&callHost);
    if (effect) {
        CTrace::instance().take(*effect);
    }
    return effect;
}
