#pragma once

#include "Audio/Graph/CAudioProcessBase.h"

namespace tarv {

/// Instances of one definition in series, as many as a parameter says. Instance i reads element i + `stack-index-shift`
/// of the parameters. An instance that is no longer wanted is kept for the next time (it goes on taking changes, so
/// that its values are current) and starts from silence when it is wanted again.
class CAudioProcessStack : public CAudioProcessBase {
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

    /// Instances that run.
    int32_t count() const { return count_; }
    /// The most instances that a parameter without a range can ask for.
    static constexpr int32_t kMaxCount = 64;

protected:
    void slotChanged(CAudioParamSlot& slot) override;

private:
    void sizeStack();
    int32_t wantedCount() const;
    [[nodiscard]] CError* addInstance();

    CAudioParamSlot countSlot_;
    COwnedArray<CAudioProcessBase, 16> instances_;
    int32_t count_ = 0;
    bool isSizeDirty_ = true;
};

}  // namespace tarv
