#pragma once

#include <memory>

#include "Audio/Context/CQPLEXContext.h"
#include "Core/CObject.h"

namespace tarv {

/// Tag `audio:qplex-context`: makes the kernel context of one plug-in instance and owns it.
class CQPLEXContextObject : public CObject {
public:
    [[nodiscard]] CError* init() override;
    /// Null before init.
    CQPLEXContext* context() const { return context_.get(); }

private:
    std::unique_ptr<CQPLEXContext> context_;
};

}  // namespace tarv
