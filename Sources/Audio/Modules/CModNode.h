#pragma once

#include "Audio/Graph/CAudioProcessBase.h"

namespace tarv {

/// Definition of a point in the graph that links can name (`audio:modNode`).
class CModNodeDef : public CAudioProcessDefBase {
public:
    CAudioProcessBase* createProcess() const override;
};

/// Forwards each input by reference.
class CModNode : public CAudioProcessBase {
public:
    [[nodiscard]] CError* init() override;
    void process() override;
    void needInput(int32_t port) override;
};

}  // namespace tarv
