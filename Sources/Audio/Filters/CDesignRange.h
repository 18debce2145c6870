#pragma once

namespace tarv {

/// Limits of a design value, both included.
struct CDesignRange {
    double low;
    double high;

    /// Holds one value, which may be not a number.
    bool isPoint() const { return !(low < high); }
};

}  // namespace tarv
