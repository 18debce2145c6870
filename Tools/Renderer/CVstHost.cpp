// Answers an effect's calls and makes the host's.

#include "CVstHost.h"

#include <cstdio>
#include <cstring>

namespace tarv::host {

namespace {

// The effect calls its host before `user` can point to this object.
thread_local CVstHost* openingHost = nullptr;

intptr_t copyText(void* ptr, const std::string& text, size_t size) {
    if (!ptr) {
        return 0;
    }
    const size_t count = text.size() < size ? text.size() : size - 1;
    std::memcpy(ptr, text.data(), count);
    static_cast<char*>(ptr)[count] = 0;
    return 1;
}

}  // namespace

CVstHost::~CVstHost() {
    close();
}

bool CVstHost::create(vst::EntryProc entry) {
    openingHost = this;
    effect_ = entry(&CVstHost::callback);
    openingHost = nullptr;
    if (!effect_ || effect_->magic != vst::kEffectMagic) {
        effect_ = nullptr;
        return false;
    }
    effect_->user = this;
    return true;
}

bool CVstHost::open(vst::EntryProc entry) {
    if (!create(entry)) {
        return false;
    }
    dispatch(vst::kEffectOpen);
    return true;
}

void CVstHost::close() {
    if (effect_) {
        dispatch(vst::kEffectClose);
    }
    effect_ = nullptr;
}

intptr_t CVstHost::dispatch(int32_t opcode, int32_t index, intptr_t value, void* ptr, float opt) {
    return effect_->dispatcher(effect_, opcode, index, value, ptr, opt);
}

std::string CVstHost::text(int32_t opcode, int32_t index) {
    // Some plug-ins write beyond the interface's length.
    char buffer[512] = {};
    dispatch(opcode, index, 0, buffer);
    buffer[sizeof buffer - 1] = 0;
    return buffer;
}

bool CVstHost::canDo(const char* question, intptr_t wanted) {
    // The answer is 32 bits wide in some plug-ins and sign-extended in others.
    const intptr_t got = dispatch(vst::kEffectCanDo, 0, 0, const_cast<char*>(question));
    return static_cast<uint32_t>(got) == static_cast<uint32_t>(wanted);
}

int32_t CVstHost::findParameter(const std::string& name) {
    for (int32_t i = 0; i < effect_->numParams; ++i) {
        if (text(vst::kEffectGetParamName, i) == name) {
            return i;
        }
    }
    return -1;
}

void CVstHost::prepare(double rate, int32_t blockSize, int32_t precision) {
    answers.rate = rate;
    answers.blockSize = blockSize;
    dispatch(vst::kEffectSetSampleRate, 0, 0, nullptr, static_cast<float>(rate));
    dispatch(vst::kEffectSetBlockSize, 0, blockSize);
    dispatch(vst::kEffectSetProcessPrecision, 0, precision);
}

intptr_t CVstHost::callback(vst::AEffect* effect, int32_t opcode, int32_t index, intptr_t value, void* ptr, float opt) {
    CVstHost* host = effect && effect->user ? static_cast<CVstHost*>(effect->user) : openingHost;
    if (!host) {
        return 0;
    }
    host->noteEdit(opcode, index, opt);
    return host->answer(opcode, index, value, ptr);
}

void CVstHost::noteEdit(int32_t opcode, int32_t index, float value) {
    char text[48] = "";
    switch (opcode) {
        case vst::kHostBeginEdit:
            std::snprintf(text, sizeof text, "begin %d", static_cast<int>(index));
            break;
        case vst::kHostAutomate:
            std::snprintf(text, sizeof text, "automate %d %.3f", static_cast<int>(index), static_cast<double>(value));
            break;
        case vst::kHostEndEdit:
            std::snprintf(text, sizeof text, "end %d", static_cast<int>(index));
            break;
        case vst::kHostUpdateDisplay:
            std::snprintf(text, sizeof text, "update");
            break;
        default:
            return;
    }
    edits.emplace_back(text);
}

intptr_t CVstHost::answer(int32_t opcode, int32_t index, intptr_t value, void* ptr) {
    using Answer = intptr_t (*)(CVstHost & host, int32_t index, intptr_t value, void* ptr);
    static constexpr struct {
        vst::HostOpcode opcode;
        Answer answer;
    } kAnswers[] = {
        {vst::kHostVersion, [](CVstHost& h, int32_t, intptr_t, void*) -> intptr_t { return h.answers.masterVersion; }},
        {vst::kHostAutomate,
         [](CVstHost& h, int32_t i, intptr_t, void*) -> intptr_t { return h.automated.push_back(i), 1; }},
        {vst::kHostIoChanged, [](CVstHost& h, int32_t, intptr_t, void*) -> intptr_t { return ++h.ioChanges, 1; }},
        {vst::kHostUpdateDisplay,
         [](CVstHost& h, int32_t, intptr_t, void*) -> intptr_t { return ++h.displayUpdates, 1; }},
        {vst::kHostGetTime, [](CVstHost& h, int32_t, intptr_t wanted, void*) { return h.timeInfo(wanted); }},
        {vst::kHostGetSampleRate,
         [](CVstHost& h, int32_t, intptr_t, void*) { return static_cast<intptr_t>(h.answers.rate); }},
        {vst::kHostGetBlockSize, [](CVstHost& h, int32_t, intptr_t, void*) -> intptr_t { return h.answers.blockSize; }},
        {vst::kHostGetProcessLevel,
         [](CVstHost& h, int32_t, intptr_t, void*) -> intptr_t { return h.answers.processLevel; }},
        {vst::kHostGetVendorString,
         [](CVstHost& h, int32_t, intptr_t, void* p) { return copyText(p, h.answers.vendor, vst::kMaxVendorText); }},
        {vst::kHostGetProductString,
         [](CVstHost& h, int32_t, intptr_t, void* p) { return copyText(p, h.answers.product, vst::kMaxProductText); }},
    };
    for (const auto& row : kAnswers) {
        if (row.opcode == opcode) {
            return row.answer(*this, index, value, ptr);
        }
    }
    return 0;
}

std::string CVstHost::chunk(bool isProgram) {
    void* data = nullptr;
    const intptr_t size = dispatch(vst::kEffectGetChunk, isProgram ? 1 : 0, 0, &data);
    return data && size > 0 ? std::string(static_cast<const char*>(data), static_cast<size_t>(size)) : std::string();
}

bool CVstHost::setChunk(const std::string& bytes, bool isProgram) {
    std::string copy(bytes);
    return dispatch(vst::kEffectSetChunk, isProgram ? 1 : 0, static_cast<intptr_t>(copy.size()), copy.data()) != 0;
}

intptr_t CVstHost::timeInfo(intptr_t wanted) {
    time_.sampleRate = answers.rate;
    time_.tempo = answers.tempo;
    time_.flags = answers.hasTempo ? static_cast<int32_t>(wanted) & vst::kTimeTempoValid : 0;
    return reinterpret_cast<intptr_t>(&time_);
}

}  // namespace tarv::host
