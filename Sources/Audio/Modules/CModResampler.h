#pragma once

#include "Audio/Modules/CModProcessSeq.h"

namespace tarv {

/// Base of the resamplers' definitions: the shared definitions of the stages, by their paths.
class CModResamplerDef : public CAudioProcessDefBase {
public:
    virtual const char* stagePath() const = 0;
    virtual const char* filter1Path() const = 0;
    virtual const char* filter2Path() const = 0;
    /// The filter stands before the stage, and further pairs stand before the first.
    virtual bool isDown() const = 0;
};

/// Raises or lowers the rate by a power of two: pairs of a stage and a half-band filter, as many as `mode` or, at
/// "Auto", `host-mode` selects. The pair at the lowest rate has the steep filter. All pairs are made with the
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

}  // namespace tarv
