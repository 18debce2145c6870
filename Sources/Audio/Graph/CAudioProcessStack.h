#pragma once

#include "Audio/Graph/CAudioProcessBase.h"
#include "Audio/Graph/CPortFade.h"

namespace tarv {

/// Instances of one definition in series, as many as a parameter says. Instance i reads element i + `stack-index-shift`
/// of the parameters. An instance beyond the count is kept: it goes on taking changes, so that its values
/// are current, and starts from silence when the count includes it again.
///
/// The stack has all ports of its instances. Output p of an instance leads to input p of the next; where an instance
/// has no output p, each instance gets the channels of the stack's input p, and so does the stack's output p.
///
/// While audio runs, another count is faded in over 15 ms: the instances of both counts run, and the output passes from
/// the end of the former to that of the new. A change that comes meanwhile starts at the sample where the fade ends.
class CAudioProcessStack : public CAudioProcessBase {
public:
    ~CAudioProcessStack() override;
    [[nodiscard]] CError* init() override;
    void clearBuffers() override;
    void updateParams() override;
    bool takeQuietChanges() override;
    void updateIdle() override;
    void process() override;
    void reset() override;
    void makeSpares() override;
    int32_t placeDelay(int32_t inputDelay) override;
    void changeRate(CAudioRate& rate) const override;
    void visitChildren(void (*visit)(void* user, CAudioProcessBase& child), void* user) const override;
    void needInput(int32_t port) override;
    void needOutput(int32_t port) override;

    /// Instances that the output passes through, or will when the fade has ended.
    int32_t count() const { return count_; }
    bool isFading() const { return fade_.isRunning(); }
    /// The most instances of a stack; a range beyond it counts as it.
    static constexpr int32_t kMaxCount = 64;
    static constexpr double kFadeSeconds = 0.015;

protected:
    void slotChanged(CAudioParamSlot& slot) override;

private:
    void startSize();
    void sizeStack();
    int32_t wantedCount() const;
    int32_t mostCount() const;
    [[nodiscard]] CError* addInstance();
    void resetInstances(int32_t first, int32_t end);

    /// Instances that run: the greater of the former and the new count during a fade.
    int32_t runningCount() const { return isFading() && formerCount_ > count_ ? formerCount_ : count_; }
    void runInstances(int32_t first, int32_t end);
    void feed(int32_t index);
    /// The port p behind the first `count` instances.
    CAudioPort& portBehind(int32_t count, int32_t port);
    void giveOutputs();
    void runFading(int32_t samples);
    void mixOutputs(int32_t samples);
    void endFade();
    void runCut(int32_t samples);
    void appendPiece(int32_t position, int32_t samples, int32_t total);
    static void copyChannels(CAudioPort& target, const CAudioPort& source, int32_t byteOffset, CQPLEXContext& context);

    CAudioParamSlot countSlot_;
    COwnedArray<CAudioProcessBase, 16> instances_;
    int32_t count_ = 0;
    bool isSizeDirty_ = true;
    bool isFresh_ = true;  ///< no sample came since the last reset: another count begins at once

    CPortFade fade_;
    int32_t formerCount_ = 0;
    uint64_t fadeLayout_ = 0;
    double fadeRate_ = 0.0;
    COwnedArray<CAudioPort, 4> nearer_;  ///< outputs of the smaller of both counts
    COwnedArray<CAudioPort, 4> whole_;   ///< inputs of a block that is cut where a fade ends
    COwnedArray<CAudioPort, 4> pieces_;  ///< and its outputs
};

}  // namespace tarv
