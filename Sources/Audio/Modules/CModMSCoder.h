#pragma once

#include "Audio/Graph/CAudioProcessBase.h"

namespace tarv {

/// Definition of a mid/side coder (`audio:modMSCoder`).
class CModMSCoderDef : public CAudioProcessDefBase {
public:
    CAudioProcessBase* createProcess() const override;
};

/// Codes pairs of channels: the first two with the same pair number, of any groups, so that mid and side can
/// have the curves of different groups. The first becomes mid and keeps its place and group, the second side.
///
/// Every channel enters the curve at the encoder. One that appears while audio runs (another rate, source, group or
/// partner) rises there from silence in 15 ms, so that the bands above its frequency do not ring.
class CModMSCoder : public CAudioProcessBase {
public:
    static constexpr double kRiseSeconds = 0.015;

    ~CModMSCoder() override;
    [[nodiscard]] CError* init() override;
    void registerKernels() override;
    void process() override;
    void reset() override;

protected:
    void slotChanged(CAudioParamSlot& slot) override;

private:
    static constexpr int32_t kMaxElements = 32;
    void readTables();
    int32_t findPartner(const CAudioPort& in, int32_t first) const;
    void codePairs(CAudioPort& out);
    void code(CAudioChannel& first, CAudioChannel& second, int32_t samples);
    void raiseChannels(CAudioPort& out);

    /// The channel that an element carried in the last step.
    struct CArrival {
        bool isThere = false;
        CAudioChannel channel;
        CBufferHandle ramp = kNoBuffer;
        int32_t left = 0;  ///< samples of its rise
    };
    void beginRise(CArrival& arrival, double rate);
    void endRise(CArrival& arrival);
    void raise(CAudioChannel& channel, CArrival& arrival, int32_t samples);

    CArrival arrivals_[kMaxElements];
    double rate_ = 0.0;
    bool isFresh_ = true;  ///< no sample came before: the next step begins at once
    int32_t pairs_[kMaxElements] = {};
    bool isDecoder_ = false;
    bool isOff_ = false;
    bool hasPairs_ = false;
    uint64_t tableStamp_ = 0;
    int32_t encodeKernel_ = -1;
    int32_t decodeKernel_ = -1;
};

}  // namespace tarv
