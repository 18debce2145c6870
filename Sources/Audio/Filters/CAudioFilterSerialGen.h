#pragma once

#include "Audio/Filters/CAudioFilterGen.h"

namespace tarv {

class CAudioFilterSerialGenItem;

/// Appends the designs of its items to one list, each called with the design values times the item's factors.
/// With `is-parallel` they run side by side and the list's latency stays 0.
class CAudioFilterSerialGen : public CAudioFilterGen {
public:
    [[nodiscard]] CError* init() override;
    [[nodiscard]] CError* childAdded(CObject* child) override;
    void removeChild(CObject* child) override;
    void design(CSectionList& list, double sampleRate, const double* values, int32_t count) const override;
    CFirSize firSize(double sampleRate, const CDesignRange* ranges, int32_t count) const override;
    bool uses(const CAudioFilterGen& other) const override;

private:
    CArray<const CAudioFilterSerialGenItem*, 4> items_;
    bool isParallel_ = false;
};

}  // namespace tarv
