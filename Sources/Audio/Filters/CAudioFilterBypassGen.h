#pragma once

#include "Audio/Filters/CAudioFilterGen.h"

namespace tarv {

/// Delivers no section: the filter's output is its input.
class CAudioFilterBypassGen : public CAudioFilterGen {
public:
    void design(CSectionList& list, double sampleRate, const double* values, int32_t count) const override;
};

}  // namespace tarv
