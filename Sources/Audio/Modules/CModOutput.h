#pragma once

#include "Audio/Graph/CAudioProcessBase.h"

namespace tarv {

/// Definition of the end point of a chain (`audio:modOutput`).
class CModOutputDef : public CAudioProcessDefBase {
public:
    CAudioProcessBase* createProcess() const override;
};

/// Keeps the final signals for the host boundary and writes the latency of its place into the environment.
class CModOutput : public CAudioProcessBase {
public:
    [[nodiscard]] CError* init() override;
    void updateParams() override;
    void process() override;
    /// The block of a host channel, kNoBuffer if nothing reaches it.
    CBufferHandle block(int32_t hostChannel) const;
};

}  // namespace tarv
