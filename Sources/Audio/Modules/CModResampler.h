#pragma once

#include "Audio/Graph/CAudioProcessBase.h"

namespace tarv {

/// Definitions of the rate-doubling and rate-halving stages (`audio:modInterpolator`, `audio:modDecimator`).
class CModInterpolatorDef : public CAudioProcessDefBase {
public:
    CAudioProcessBase* createProcess() const override;
};
class CModDecimatorDef : public CAudioProcessDefBase {
public:
    CAudioProcessBase* createProcess() const override;
};

/// Doubles the rate: each sample, doubled, and a zero behind it.
class CModInterpolator : public CAudioProcessBase {
public:
    [[nodiscard]] CError* init() override;
    void registerKernels() override;
    void process() override;
    void changeRate(CAudioRate& rate) const override { rate.shift(1); }

private:
    int32_t kernel_ = -1;
};

/// Halves the rate: keeps every second sample, over the borders of blocks of odd length.
class CModDecimator : public CAudioProcessBase {
public:
    [[nodiscard]] CError* init() override;
    void registerKernels() override;
    void process() override;
    void reset() override;
    void changeRate(CAudioRate& rate) const override { rate.shift(-1); }

private:
    int32_t evenKernel_ = -1;
    int32_t oddKernel_ = -1;
    int32_t offset_ = 0;  ///< position of the first sample to keep in the next block, 0 or 1
};

/// Base of the resamplers' definitions: the shared definitions of the stages, by their paths.
class CModResamplerDef : public CAudioProcessDefBase {
public:
    virtual const char* stagePath() const = 0;
    virtual const char* filter1Path() const = 0;
    virtual const char* filter2Path() const = 0;
    /// The filter stands before the stage, and further pairs stand before the first.
    virtual bool isDown() const = 0;
};
class CModUpsamplerDef : public CModResamplerDef {
public:
    CAudioProcessBase* createProcess() const override;
    const char* stagePath() const override { return "shared::audio.modUpsamplerInterpolator"; }
    const char* filter1Path() const override { return "shared::audio.modUpsamplerFilter1"; }
    const char* filter2Path() const override { return "shared::audio.modUpsamplerFilter2"; }
    bool isDown() const override { return false; }
};
class CModDownsamplerDef : public CModResamplerDef {
public:
    CAudioProcessBase* createProcess() const override;
    const char* stagePath() const override { return "shared::audio.modDownsamplerDecimator"; }
    const char* filter1Path() const override { return "shared::audio.modDownsamplerFilter1"; }
    const char* filter2Path() const override { return "shared::audio.modDownsamplerFilter2"; }
    bool isDown() const override { return true; }
};

/// Runs a sequence of processes that it owns, each feeding the next; an empty one passes its input on. Children beside
/// the sequence wait at rest and go on taking changes.
class CModProcessSeq : public CAudioProcessBase {
public:
    [[nodiscard]] CError* init() override;
    void clearBuffers() override;
    void updateParams() override;
    void updateIdle() override;
    void process() override;
    void reset() override;
    void makeSpares() override;
    int32_t placeDelay(int32_t inputDelay) override;
    void visitChildren(void (*visit)(void* user, CAudioProcessBase& child), void* user) const override;

    /// The children that run, in order.
    int32_t childCount() const { return end_ - first_; }
    CAudioProcessBase& child(int32_t index) const { return *children_[first_ + index]; }

protected:
    /// Brings the sequence up to date before it runs.
    virtual void updateSequence() {}
    /// Creates a child behind all others, at rest. While the graph is built.
    [[nodiscard]] CError* appendChild(const CAudioProcessDefBase& childDef, const CString& childName);
    int32_t allCount() const { return children_.count(); }
    /// The children from `first` up to `end` are the sequence from now on; all start from silence.
    void setSequence(int32_t first, int32_t end);

private:
    COwnedArray<CAudioProcessBase, 6> children_;
    int32_t first_ = 0;
    int32_t end_ = 0;
};

/// Raises or lowers the rate by a power of two: pairs of a stage and a half-band filter, as many as `mode` says or, at
/// "Auto", as `host-mode` says. The pair at the lowest rate has the steep filter. All pairs are made with the
/// resampler; a change of the count starts the whole sequence from silence.
class CModResampler : public CModProcessSeq {
public:
    static constexpr int32_t kMaxStages = 3;

    [[nodiscard]] CError* init() override;
    int32_t stageCount() const { return childCount() / 2; }
    void changeRate(CAudioRate& rate) const override;

protected:
    void slotChanged(CAudioParamSlot& slot) override;
    void updateSequence() override;

private:
    const CModResamplerDef& resamplerDef() const { return static_cast<const CModResamplerDef&>(def()); }
    int32_t wantedStages() const;
    [[nodiscard]] CError* addPair(bool isLowest);

    const CAudioProcessDefBase* stageDef_ = nullptr;
    const CAudioProcessDefBase* filter1Def_ = nullptr;
    const CAudioProcessDefBase* filter2Def_ = nullptr;
    bool isCountDirty_ = true;
};

class CModUpsampler : public CModResampler {};
class CModDownsampler : public CModResampler {};

}  // namespace tarv
