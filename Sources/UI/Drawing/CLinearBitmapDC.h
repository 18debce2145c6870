#pragma once

#include <memory>

#include "Platform/WindowSystem.h"
#include "UI/Drawing/CLinearBitmap.h"

namespace tarv {

/// A bitmap that windows can show: its pixels lie in a surface of the system.
class CLinearBitmapDC : public CLinearBitmap {
public:
    /// Frees the former surface first. Fails with the step that the system refused, and without a window system; the
    /// bitmap is empty then. A size of 0 takes no surface.
    [[nodiscard]] CError* resize(int32_t width, int32_t height) override;

    /// Null while empty.
    const CSurface* surface() const { return surface_.get(); }

private:
    [[nodiscard]] CError* initBitmapDC(CSurfaceStep step, CPlatformError error, int32_t width, int32_t height);

    std::unique_ptr<CSurface> surface_;
};

}  // namespace tarv
