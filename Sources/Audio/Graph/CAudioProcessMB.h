#pragma once

#include "Audio/Graph/CAudioProcess.h"

namespace tarv {

/// Composite of a multiband definition. Checks what its definition must name; it does not split bands, so the children
/// run once, over the whole band. No definition of the product is multiband.
class CAudioProcessMB : public CAudioProcess {
public:
    [[nodiscard]] CError* init() override;

    /// Name of the child definition, marked `is-prototype`, that splits the bands.
    static constexpr const char* kLowPassName = "modLP";
};

}  // namespace tarv
