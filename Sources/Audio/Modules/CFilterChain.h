#pragma once

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Filters/CAudioFilterGen.h"
#include "Audio/Modules/CFirSection.h"

namespace tarv {

/// One filter of a module: its generator, the values of its last design, its sections and their states. Audio thread.
class CFilterChain : public CHeapObject {
public:
    const CAudioFilterGen* generator() const { return generator_; }
    const CSectionList& list() const { return list_; }
    CBufferHandle state(int32_t section) const { return states_[section].block; }
    /// The convolution of a section of type kSectionTypeFir, null for any other.
    CFirSection* fir(int32_t section) const { return states_[section].fir; }
    bool isDesigned() const { return isDesigned_; }
    bool isDesignedWith(const CAudioFilterGen* generator, const double* values, int32_t count) const;
    /// The values of the last design.
    const CArray<double, 9>& values() const { return values_; }
    /// FIR sections up to this size are designed without an allocation; see makeReady.
    const CFirSize& room() const { return room_; }
    /// Designs for a rate in Hz. A section takes its history from the section of `from` at the same position if the
    /// types match (`from` may be the chain itself or null). Allocates what FIR sections lack if they exceed the room.
    void design(CQPLEXContext& context, const CAudioFilterGen* generator, const double* values, int32_t count,
                double rate, CFilterChain* from);
    void release(CQPLEXContext& context);
    /// Makes room for FIR sections of this size. Allocates, unless the room is there already. The chain has no design,
    /// or has the room.
    void makeReady(CQPLEXContext& context, const CFirSize& room);

private:
    struct CState {
        int32_t type = -1;
        CBufferHandle block = kNoBuffer;
        CFirSection* fir = nullptr;  // owned
    };
    CFirSection* takeFir(CQPLEXContext& context, int32_t taps);
    CFirSection* designFir(CQPLEXContext& context, const CFilterSection& section, CState* before, bool isInPlace);
    void parkMisplaced();
    void releaseStates(CQPLEXContext& context);
    static CBufferHandle makeState(CQPLEXContext& context, const CFilterSection& section, const CState* before);

    const CAudioFilterGen* generator_ = nullptr;
    bool isDesigned_ = false;
    CArray<double, 9> values_;
    CFirSize room_;
    CSectionList list_;
    CArray<CState, 4> states_;
    COwnedArray<CFirSection, 4> parked_;  ///< not in use, for later designs
};

}  // namespace tarv
