#pragma once

#include "Audio/Filters/CAudioFilterGen.h"

namespace tarv {

/// Maps the number of a filter type to a generator. Read-only once finished, then any thread may use it.
class CAudioFilterGenArray : public CObject {
public:
    [[nodiscard]] CError* finishInit() override;

    int32_t count() const { return generators_.count(); }
    /// The generator at a position; null for positions without one, which act like a bypass.
    const CAudioFilterGen* at(int32_t index) const {
        return index >= 0 && index < generators_.count() ? generators_[index] : nullptr;
    }

    /// What FIR sections of any of the generators take at most; see CAudioFilterGen::firSize.
    CFirSize firSize(double sampleRate, const CDesignRange* ranges, int32_t count) const;

private:
    CArray<const CAudioFilterGen*, 8> generators_;
};

}  // namespace tarv
