#pragma once

#include "UI/Resources/CPalette.h"

namespace tarv {

/// Colours between two others, kept by pair and ratio in 64 steps: each channel of each entry, and the opacity, is
/// their linear mean. The colours are known by their addresses: clear before a palette goes or is loaded anew. At most
/// kMaxMixes are kept; the one that was made first makes room. Only a mix that is not kept yet takes memory. Thread:
/// that of the editor.
class CColorMixes : public CHeapObject {
public:
    static constexpr int32_t kSteps = 64;
    static constexpr int32_t kMaxMixes = 512;

    /// 0 gives `from`, 1 gives `to`; the ratio is rounded to a step, and held in 0 to 1. Valid until kMaxMixes others
    /// have been made.
    const CColor& mix(const CColor& from, const CColor& to, double ratio);
    /// The same mix for a caller that keeps it: `step` of kSteps.
    static void mixInto(const CColor& from, const CColor& to, int32_t step, CColor& mixed);
    /// Step of a ratio.
    static int32_t stepOf(double ratio);
    void clear();
    int32_t count() const { return mixes_.count(); }

private:
    struct CMix {
        const CColor* from;
        const CColor* to;
        int32_t step;
        uint64_t serial;
        CColor* color;
    };
    static bool isBelow(const CMix& a, const CMix& b);
    CColor* takeOldest();

    // In ascending order of both addresses and the step.
    CArray<CMix, 1> mixes_;
    COwnedArray<CColor, 1> colors_;
    uint64_t lastSerial_ = 0;
};

}  // namespace tarv
