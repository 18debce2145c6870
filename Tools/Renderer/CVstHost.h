#pragma once

#include <string>
#include <vector>

#include "Audio/VST/Vst2.h"

namespace tarv::host {

/// The answers of the host to a plug-in. May be changed between two calls.
struct CHostAnswers {
    int32_t masterVersion = vst::kInterfaceVersion;
    std::string vendor = "Tarvelo";
    std::string product = "Renderer";
    int32_t processLevel = vst::kLevelOffline;
    double rate = 44100.0;
    int32_t blockSize = 512;
    double tempo = 120.0;
    bool hasTempo = true;
};

/// One effect and a small host around it. Closes the effect when destroyed.
/// Thread: the one that created it; process calls may come from one other thread.
class CVstHost {
public:
    CVstHost() = default;
    explicit CVstHost(const CHostAnswers& answers) : answers(answers) {}
    ~CVstHost();
    CVstHost(const CVstHost&) = delete;
    CVstHost& operator=(const CVstHost&) = delete;

    /// Makes the effect. False when the plug-in gives none, or one of another kind.
    bool create(vst::EntryProc entry);
    /// Makes the effect and opens it.
    bool open(vst::EntryProc entry);
    void close();

    vst::AEffect* effect() const { return effect_; }
    intptr_t dispatch(int32_t opcode, int32_t index = 0, intptr_t value = 0, void* ptr = nullptr, float opt = 0.0f);
    /// The text that the plug-in answers to an opcode.
    std::string text(int32_t opcode, int32_t index = 0);
    bool canDo(const char* question, intptr_t answer = 1);

    float parameter(int32_t index) const { return effect_->getParameter(effect_, index); }
    void setParameter(int32_t index, float value) { effect_->setParameter(effect_, index, value); }
    /// Number of the parameter with this name, or -1.
    int32_t findParameter(const std::string& name);

    /// The plug-in's state as it gives it: its current program, or the whole bank. Empty when it gives none.
    std::string chunk(bool isProgram);
    /// Whether the plug-in took the state.
    bool setChunk(const std::string& bytes, bool isProgram);
    int32_t program() { return static_cast<int32_t>(dispatch(vst::kEffectGetProgram)); }
    void setProgram(int32_t index) { dispatch(vst::kEffectSetProgram, 0, index); }

    /// Suspended set-up and back: rate in Hz, the longest block, 0 or 1 for 32- or 64-bit samples.
    void prepare(double rate, int32_t blockSize, int32_t precision);
    void resume() { dispatch(vst::kEffectMainsChanged, 0, 1); }
    void suspend() { dispatch(vst::kEffectMainsChanged, 0, 0); }
    void process(float** inputs, float** outputs, int32_t frames) {
        effect_->processReplacing(effect_, inputs, outputs, frames);
    }
    void process(double** inputs, double** outputs, int32_t frames) {
        effect_->processDoubleReplacing(effect_, inputs, outputs, frames);
    }

    CHostAnswers answers;
    /// Parameters that the plug-in reported as changed by itself.
    std::vector<int32_t> automated;
    /// What the plug-in reported of edits, in order: "begin 4", "automate 4 0.667", "end 4", "update" of the display.
    std::vector<std::string> edits;
    int32_t ioChanges = 0;
    int32_t displayUpdates = 0;

private:
    static intptr_t callback(vst::AEffect* effect, int32_t opcode, int32_t index, intptr_t value, void* ptr, float opt);
    intptr_t answer(int32_t opcode, int32_t index, intptr_t value, void* ptr);
    void noteEdit(int32_t opcode, int32_t index, float value);
    intptr_t timeInfo(intptr_t wanted);

    vst::AEffect* effect_ = nullptr;
    vst::TimeInfo time_{};
};

}  // namespace tarv::host
