#pragma once

#include <memory>

#include "UI/Resources/CPalette.h"

namespace tarv {

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
    const CColor* shown() const { return isMorphing_ ? mix_.get() : target_; }
    const CColor* target() const { return target_; }
    /// Frames of the animation; 0 for a colour that stands still.
    uint32_t frameCount() const { return frameCount_; }
    void setFrame(const CPalette& palette, uint32_t frame);

    /// Keeps what is shown as the start of a morph. Call it before the target changes.
    void beginMorph();
    void endMorph() { isMorphing_ = false; }
    bool isMorphing() const { return isMorphing_; }
    /// Mixes in steps of 1/64: each channel of each entry, and the opacity, on a straight line.
    void mix(double ratio);

private:
    const CColor* target_ = nullptr;
    CString name_;
    uint32_t frameCount_ = 0;
    std::unique_ptr<CColor> from_;
    std::unique_ptr<CColor> mix_;
    bool isMorphing_ = false;
};

}  // namespace tarv
