#pragma once

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Filters/CAudioFilterGen.h"
#include "Audio/Modules/CFirSection.h"

namespace tarv {

/// One filter of a module: the generator in use, what it was designed with, its sections and their states.
class CFilterChain : public CHeapObject {
public:
    const CAudioFilterGen* generator() const { return generator_; }
    const CSectionList& list() const { return list_; }
    CBufferHandle state(int32_t section) const { return states_[section].block; }
    /// The convolution of a section of type kSectionTypeFir, null for any other.
    CFirSection* fir(int32_t section) const { return states_[section].fir; }
    bool isDesignedWith(const CAudioFilterGen* generator, const double* values, int32_t count) const;
    /// Designs for a rate in Hz. A section takes its history from the section of `from` at the same position if the
    /// types match (`from` may be the chain itself or null).
    void design(CQPLEXContext& context, const CAudioFilterGen* generator, const double* values, int32_t count,
                double rate, CFilterChain* from);
    void release(CQPLEXContext& context);
    /// Makes what a design for as many taps as `like` has will need, so that it allocates nothing.
    void makeReady(CQPLEXContext& context, const CFilterChain& like);

private:
    struct CState {
        int32_t type = -1;
        CBufferHandle block = kNoBuffer;
        CFirSection* fir = nullptr;  // owned
    };
    CFirSection* takeFir(CQPLEXContext& context, int32_t taps);
    CFirSection* designFir(CQPLEXContext& context, const CFilterSection& section, CState* before, bool isInPlace);
    void releaseStates(CQPLEXContext& context);
    static CBufferHandle makeState(CQPLEXContext& context, const CFilterSection& section, const CState* before);

    const CAudioFilterGen* generator_ = nullptr;
    bool isDesigned_ = false;
    CArray<double, 9> values_;
    CSectionList list_;
    CArray<CState, 4> states_;
    COwnedArray<CFirSection, 4> parked_;  ///< not in use, for later designs
};

}  // namespace tarv
