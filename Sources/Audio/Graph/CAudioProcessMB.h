#pragma once

#include "Audio/Graph/CAudioProcess.h"

namespace tarv {

/// Composite of a multiband definition. There: what its definition must name. Not there: band splitting; the children
/// run once, over the whole band. No definition of the product is multiband.
class CAudioProcessMB : public CAudioProcess {
public:
    [[nodiscard]] CError* init() override;

    /// Name of the child definition, marked `is-prototype`, that splits the bands.
    static constexpr const char* kLowPassName = "modLP";
};

}  // namespace tarv
