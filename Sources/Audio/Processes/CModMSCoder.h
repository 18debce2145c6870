#pragma once

#include "Audio/CAudioProcessBase.h"

namespace tarv {

/// Definition of a mid/side coder (`audio:modMSCoder`).
class CModMSCoderDef : public CAudioProcessDefBase {
public:
    CAudioProcessBase* createProcess() const override;
};

/// Codes pairs of channels: the first two with the same pair number, whatever their groups, so that mid and side can
/// obey the curves of different groups. The first becomes mid and keeps its place and group, the second side.
class CModMSCoder : public CAudioProcessBase {
public:
    [[nodiscard]] CError* init() override;
    void registerKernels() override;
    void process() override;

protected:
    void slotChanged(CAudioParamSlot& slot) override;

private:
    static constexpr int32_t kMaxElements = 32;
    void readTables();
    int32_t findPartner(const CAudioPort& in, int32_t first) const;
    void code(CAudioChannel& first, CAudioChannel& second, int32_t samples);

    int32_t pairs_[kMaxElements] = {};
    bool isDecoder_ = false;
    bool isOff_ = false;
    bool hasPairs_ = false;
    uint64_t tableStamp_ = 0;
    int32_t encodeKernel_ = -1;
    int32_t decodeKernel_ = -1;
};

}  // namespace tarv
