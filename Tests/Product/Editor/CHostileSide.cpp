#include "CHostileSide.h"

#include <algorithm>
#include <sstream>

#include "Audio/Parameters/CAudioEnv.h"
#include "Audio/Parameters/CAudioParam.h"
#include "Audio/Parameters/CAudioParamCollector.h"
#include "Platform/ByHand/CWindowByHand.h"
#include "Platform/ThreadId.h"
#include "Tests/System/AudioThreadWatch.h"
#include "UI/Windows/CWindow.h"
#include "UI/Windows/CWindowSharedData.h"

namespace tarv {

namespace {

/// Blocks behind a change of the layout that build what it needs.
constexpr int32_t kBlocksToCalm = 3;

constexpr int32_t kOversamplingParam = 17;

/// The effect calls its host before `user` points anywhere.
CHostileSide* openingSide = nullptr;

/// What the graph is built by.
constexpr const char* kLayoutParams[] = {"io-params.in-routing", "io-params.out-routing", "io-params.grouping",
                                         "io-params.ms-pairs",   "oversampling",          "host-oversampling-mode"};

}  // namespace

CHostileSide::CHostileSide(CWindowSystemByHand& system, int32_t x, uint32_t seed)
    : system_(system), x_(x), thread_(currentThreadId()), random_(seed) {
    openingSide = this;
    effect_ = CAudioWrapperVST::create(&answer);
    openingSide = nullptr;
    effect_->user = this;
    renewParent();
    dispatch(vst::kEffectOpen);
    dispatch(vst::kEffectSetSampleRate, 0, 0, nullptr, 44100.0F);
    dispatch(vst::kEffectSetBlockSize, 0, kLongestBlock);
    dispatch(vst::kEffectSetProcessPrecision, 0, vst::kPrecision64);
    rooms_.assign(static_cast<size_t>(effect_->numInputs + effect_->numOutputs), std::vector<double>(kLongestBlock));
    std::uniform_real_distribution<double> level(-0.5, 0.5);
    for (size_t i = 0; i < rooms_.size(); ++i) {
        std::generate(rooms_[i].begin(), rooms_[i].end(), [&] { return level(random_); });
        (i < static_cast<size_t>(effect_->numInputs) ? ins_ : outs_).push_back(rooms_[i].data());
    }
    setRunning(true);
}

CHostileSide::~CHostileSide() {
    meanwhile = nullptr;
    closeEditor();
    setRunning(false);
    dispatch(vst::kEffectClose);
    system_.desktop().destroy(parent_);
}

CAudioWrapperVST& CHostileSide::wrapper() const {
    return *dynamic_cast<CAudioWrapperVST*>(static_cast<AudioEffectX*>(effect_->object));
}

CAudioParam& CHostileSide::param(const std::string& name) const {
    return *wrapper().paramCollector()->findParam(CString(("plugin.modMain." + name).c_str()));
}

std::string CHostileSide::chunk(bool isProgram) {
    void* data = nullptr;
    const intptr_t size = dispatch(vst::kEffectGetChunk, isProgram ? 1 : 0, 0, &data);
    return data ? std::string(static_cast<const char*>(data), static_cast<size_t>(size)) : std::string();
}

bool CHostileSide::setChunk(const std::string& bytes, bool isProgram) {
    std::string copy(bytes);
    return dispatch(vst::kEffectSetChunk, isProgram ? 1 : 0, static_cast<intptr_t>(copy.size()), copy.data()) != 0;
}

void CHostileSide::setRunning(bool isRunning) {
    isRunning_ = isRunning;
    calmAfter_ = kBlocksToCalm;
    dispatch(vst::kEffectMainsChanged, 0, isRunning ? 1 : 0);
}

void CHostileSide::automate() {
    for (int32_t i = 0; i < kParams; ++i) {
        const bool isKept = i == kOversamplingParam && random_() % 24 != 0;
        setParameter(i, isKept ? effect_->getParameter(effect_, i) : static_cast<float>(random_() % 1001) / 1000.0f);
    }
}

void CHostileSide::process(int32_t frames) {
    if (!isRunning_) {
        return;
    }
    std::string now = layout();
    if (now != layout_) {
        layout_ = std::move(now);
        calmAfter_ = kBlocksToCalm;
    }
    const engine::CAudioThreadWatch watch(&wrapper().env()->lock());
    effect_->processDoubleReplacing(effect_, ins_.data(), outs_.data(), frames);
    const engine::CWatched seen = watch.seen();
    if (calmAfter_ > 0) {
        --calmAfter_;
    } else if (++calmBlocks_; isPoolShared ? seen.allocations + seen.frees + seen.locks > 0 : !seen.isQuiet()) {
        std::ostringstream text;
        text << "a block was not calm: " << seen;
        addFault(text.str());
    }
}

std::string CHostileSide::layout() const {
    std::string text;
    for (const char* name : kLayoutParams) {
        CAudioParam& of = param(name);
        for (int32_t i = 0; i < CAudioParam::kReadyElements; ++i) {
            text += std::to_string(of.value(0, i)) + ' ';
        }
    }
    return text;
}

void CHostileSide::openEditor() {
    dispatch(vst::kEffectEditOpen, 0, 0, reinterpret_cast<void*>(parent_));
}

void CHostileSide::renewParent() {
    if (parent_ != 0) {
        system_.desktop().destroy(parent_);
    }
    parent_ = system_.desktop().openHost({x_, 60, x_ + 900, 860});
}

CWindow* CHostileSide::mainWindow() const {
    for (const CWindowByHand* window : system_.desktop().windows()) {
        if (window->container() == parent_) {
            // The base that the system calls is a private one.
            return static_cast<CWindow*>(dynamic_cast<void*>(window->handler()));
        }
    }
    return nullptr;
}

std::vector<CWindow*> CHostileSide::windows() const {
    std::vector<CWindow*> all;
    if (const CWindow* main = mainWindow()) {
        for (CWindow* window : main->sharedData().windows()) {
            if (window->isOpen() && !window->isClosing()) {
                all.push_back(window);
            }
        }
    }
    return all;
}

void CHostileSide::addFault(const std::string& text) {
    const std::lock_guard<std::mutex> lock(faultLock_);
    faults_ += text + '\n';
}

std::string CHostileSide::faults() const {
    const std::lock_guard<std::mutex> lock(faultLock_);
    return faults_;
}

std::string CHostileSide::openEdits() const {
    std::string text;
    for (int32_t i = 0; i < kParams; ++i) {
        if (open_[i] != 0) {
            text += "parameter " + std::to_string(i) + " has " + std::to_string(open_[i]) + " begins without an end\n";
        }
    }
    return text;
}

intptr_t CHostileSide::answer(vst::AEffect* effect, int32_t opcode, int32_t index, intptr_t, void*, float) {
    CHostileSide* side = effect && effect->user ? static_cast<CHostileSide*>(effect->user) : openingSide;
    return side ? side->heard(opcode, index) : 0;
}

intptr_t CHostileSide::heard(int32_t opcode, int32_t index) {
    switch (opcode) {
        case vst::kHostVersion:
            return vst::kInterfaceVersion;
        case vst::kHostGetSampleRate:
            return 44100;
        case vst::kHostGetBlockSize:
            return kLongestBlock;
        case vst::kHostBeginEdit:
            if (open_[index]++ != 0) {
                addFault("begin inside an edit of " + std::to_string(index));
            }
            break;
        case vst::kHostEndEdit:
            if (open_[index]-- != 1) {
                addFault("end without a begin of " + std::to_string(index));
            }
            break;
        case vst::kHostAutomate:
            if (open_[index] != 1) {
                addFault("automation outside an edit of " + std::to_string(index));
            }
            ++automations_;
            break;
        case vst::kHostUpdateDisplay:
        case vst::kHostIoChanged:
            break;
        default:
            return 0;
    }
    if (meanwhile && currentThreadId() == thread_) {
        meanwhile();
    }
    return 1;
}

}  // namespace tarv
