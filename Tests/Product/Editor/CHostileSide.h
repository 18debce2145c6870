#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <random>
#include <string>
#include <vector>

#include "Audio/VST/CAudioWrapperVST.h"
#include "Platform/ByHand/CWindowSystemByHand.h"

namespace tarv {

class CView;
class CWindow;

/// One effect with its host and the host's window, its editor opened by the host's call. Keeps the host's record: each
/// begin of edit has one end, and a block of audio that no change of the layout waits for neither allocates nor locks.
/// Thread: that of the test; `automate` and `process` may be called by one other thread.
class CHostileSide {
public:
    static constexpr int32_t kParams = 18;
    static constexpr int32_t kLongestBlock = 512;

    CHostileSide(CWindowSystemByHand& system, int32_t x, uint32_t seed);
    ~CHostileSide();
    CHostileSide(const CHostileSide&) = delete;
    CHostileSide& operator=(const CHostileSide&) = delete;

    intptr_t dispatch(int32_t opcode, int32_t index = 0, intptr_t value = 0, void* ptr = nullptr, float opt = 0.0f) {
        return effect_->dispatcher(effect_, opcode, index, value, ptr, opt);
    }
    CAudioWrapperVST& wrapper() const;
    CAudioParam& param(const std::string& name) const;
    std::string chunk(bool isProgram);
    bool setChunk(const std::string& bytes, bool isProgram);
    void setRunning(bool isRunning);
    void setRate(float hertz) { dispatch(vst::kEffectSetSampleRate, 0, 0, nullptr, hertz); }
    void setParameter(int32_t index, float value) { effect_->setParameter(effect_, index, value); }
    /// All parameters, each to a random value; the one that changes the layout once in a while.
    void automate();
    /// A block of noise. Without effect while suspended.
    void process(int32_t frames);
    /// Counts of the pool of blocks are those of all threads: with others at work they say nothing of this one.
    bool isPoolShared = false;
    /// Blocks that were to be calm.
    int32_t calmBlocks() const { return calmBlocks_; }

    void openEditor();
    void closeEditor() { dispatch(vst::kEffectEditClose); }
    /// The host's window goes with all that stands in it, and another one takes its place.
    void renewParent();
    CWindowHandle parent() const { return parent_; }
    /// Null without an open editor.
    CWindow* mainWindow() const;
    /// Of the editor, in the order of their opening; empty without one.
    std::vector<CWindow*> windows() const;

    /// Runs inside each call of the host's on the test's thread that an editor's act may bring.
    std::function<void()> meanwhile;
    /// Begins without an end: one line for each, empty for none.
    std::string openEdits() const;
    /// What the host has met against the rules, empty for nothing.
    std::string faults() const;
    /// Heard from the editor.
    int32_t automations() const { return automations_; }

private:
    static intptr_t answer(vst::AEffect* effect, int32_t opcode, int32_t index, intptr_t value, void* ptr, float opt);
    intptr_t heard(int32_t opcode, int32_t index);
    std::string layout() const;
    void addFault(const std::string& text);

    CWindowSystemByHand& system_;
    const int32_t x_;
    const uint64_t thread_;
    vst::AEffect* effect_ = nullptr;
    CWindowHandle parent_ = 0;
    std::atomic<bool> isRunning_ = false;
    int32_t open_[kParams] = {};
    int32_t automations_ = 0;
    mutable std::mutex faultLock_;
    std::string faults_;
    std::mt19937 random_;
    std::vector<std::vector<double>> rooms_;
    std::vector<double*> ins_;
    std::vector<double*> outs_;
    std::string layout_;
    int32_t calmAfter_ = 0;
    std::atomic<int32_t> calmBlocks_ = 0;
};

}  // namespace tarv
