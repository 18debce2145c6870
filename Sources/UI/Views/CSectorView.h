#pragma once

#include <cstdint>

#include "Core/CError.h"
#include "UI/Drawing/CLinearBitmap.h"
#include "UI/Placement/CViewRect.h"

namespace tarv {

/// Where a view draws: a tile of its window.
struct CSectorTarget {
    CLinearBitmap* bitmap = nullptr;
    int32_t originX = 0;  ///< pixel of the window at the tile's top left corner
    int32_t originY = 0;
    CIntRect clip;  ///< in pixels of the tile
};

/// What the map of sectors asks of a view.
class CSectorView {
public:
    virtual int64_t stackingNumber() const = 0;
    /// Neither the view nor an ancestor is hidden.
    virtual bool isShown() const = 0;
    /// The hit test passes through.
    virtual bool isDecorative() const = 0;
    virtual bool isDynamic() const = 0;
    virtual const CViewRect& visibleRect() const = 0;
    virtual const CViewRect& wholeRect() const = 0;
    /// Own opacity times those of the ancestors.
    virtual double effectiveOpacity() const = 0;
    /// Draws what the clip leaves, at full strength. Allocates nothing.
    [[nodiscard]] virtual CError* drawInSector(const CSectorTarget& target) = 0;

protected:
    ~CSectorView() = default;
};

}  // namespace tarv
