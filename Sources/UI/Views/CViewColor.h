#pragma once

#include <memory>

#include "UI/Resources/CPalette.h"

namespace tarv {

class CColorMixes;

/// One colour of a view as it is shown: a colour of the palette, or the mix of two while one morphs into the other. The
/// palette outlives it.
class CViewColor {
public:
    /// Looks a name up: `base`, then `_` and the states. A name that the palette lacks loses its last state until one
    /// is found; false if the base is missing, too.
    bool find(const CPalette& palette, const CString& base, const CString* states, int32_t stateCount, uint32_t frame);
    /// Without a palette there is no colour.
    void clear();
    /// Shows that colour of the parent of the view instead, if it is at least 0; kept by the view.
    int32_t parentIndex = -1;
    bool isOfParent() const { return parentIndex >= 0; }

    /// Null if there is none.
    const CColor* shown() const { return isMorphing_ ? mixed_ : target_; }
    const CColor* target() const { return target_; }
    /// Frames of the animation; 0 for a colour that stands still.
    uint32_t frameCount() const { return frameCount_; }
    void setFrame(const CPalette& palette, uint32_t frame);

    /// Keeps what is shown as the start of a morph. Call it before the target changes.
    void beginMorph();
    void endMorph() { isMorphing_ = false; }
    bool isMorphing() const { return isMorphing_; }
    /// Mixes in steps of 1/64: each channel of each entry, and the opacity, on a straight line. Mixes of two colours of
    /// palettes come from `mixes`; without it, and where a mix is the start of another, this object makes its own.
    void mix(double ratio, CColorMixes* mixes);

private:
    const CColor* target_ = nullptr;
    CString name_;
    uint32_t frameCount_ = 0;
    // Where the morph began, and what of it is shown: colours of a palette, of the mixes, or the own ones.
    const CColor* start_ = nullptr;
    const CColor* mixed_ = nullptr;
    std::unique_ptr<CColor> ownStart_;
    std::unique_ptr<CColor> ownMix_;
    bool isMorphing_ = false;
};

}  // namespace tarv
