#pragma once

#include "UI/Drawing/CLinearBitmap.h"

namespace tarv {

/// A bitmap over rows of another one, which it does not own.
class CTileBitmap : public CLinearBitmap {
public:
    /// `count` whole rows of a bitmap from row `first` on. The bitmap keeps its size while this one is in use.
    void layOver(CLinearBitmap& bitmap, int32_t first, int32_t count) {
        setPixels(bitmap.row(first), bitmap.width(), count);
    }
};

}  // namespace tarv
