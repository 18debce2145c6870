#pragma once

#include "Audio/Filters/CFilterSection.h"
#include "Audio/Filters/CKeptResults.h"
#include "Core/CArray.h"

namespace tarv {

/// What a design fills and a filter runs. Reused from design to design: lists of the usual lengths stay inline, and the
/// memory of taps is kept for the next design.
struct CSectionList {
    CArray<CFilterSection, 4> sections;
    uint8_t isParallel = 0;             ///< sections side by side on one input, outputs summed
    int32_t latency = 0;                ///< samples
    CArray<CArray<double, 4>, 4> kept;  ///< storages of earlier taps
    CKeptResults results;               ///< of the designs before
    CSectionList* lender = nullptr;     ///< the list whose storages and results a part of a design takes; null: its own

    /// Empties the list.
    void restart();
    /// Returns an empty list of coefficients with the largest storage that is kept, if there is one.
    CArray<double, 4> takeKept();
    /// What earlier designs into the list have computed.
    CKeptResults& keptResults() { return lender != nullptr ? lender->keptResults() : results; }
};

}  // namespace tarv
