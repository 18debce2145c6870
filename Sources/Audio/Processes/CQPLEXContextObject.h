#pragma once

#include "Audio/Processes/CQPLEXContext.h"
#include "Core/CObject.h"

namespace tarv {

/// Tag `audio:qplex-context`: makes the kernel context of one plug-in instance and owns it.
class CQPLEXContextObject : public CObject {
public:
    CQPLEXContextObject() = default;
    ~CQPLEXContextObject() override;

    [[nodiscard]] CError* init() override;
    /// Null before init.
    CQPLEXContext* context() const { return context_; }

private:
    CQPLEXContext* context_ = nullptr;
};

}  // namespace tarv
