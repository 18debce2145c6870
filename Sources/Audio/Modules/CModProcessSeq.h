#pragma once

#include "Audio/Graph/CAudioProcessBase.h"

namespace tarv {

/// Runs a sequence of processes that it owns, each feeding the next; an empty one passes its input on. Children outside
/// the sequence do not run, but go on taking changes.
class CModProcessSeq : public CAudioProcessBase {
public:
    [[nodiscard]] CError* init() override;
    void clearBuffers() override;
    void updateParams() override;
    bool takeQuietChanges() override;
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
    /// Updates the sequence before it runs.
    virtual void updateSequence() {}
    /// Creates a child behind all others, outside the sequence. While the graph is built.
    [[nodiscard]] CError* appendChild(const CAudioProcessDefBase& childDef, const CString& childName);
    int32_t allCount() const { return children_.count(); }
    /// From now on the sequence is the children from `first` up to, not including, `end`; all start from silence.
    void setSequence(int32_t first, int32_t end);

private:
    COwnedArray<CAudioProcessBase, 6> children_;
    int32_t first_ = 0;
    int32_t end_ = 0;
};

}  // namespace tarv
