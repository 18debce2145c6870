#pragma once

#include <cstddef>
#include <vector>

#include "Platform/Surface.h"

namespace tarv {

class CDesktopByHand;

/// Pixels in memory, counted by the desktop.
class CSurfaceByHand : public CSurface {
public:
    CSurfaceByHand(CDesktopByHand& desktop, int32_t width, int32_t height);
    /// What windows have not read yet is read now.
    ~CSurfaceByHand() override;
    CSurfaceByHand(const CSurfaceByHand&) = delete;
    CSurfaceByHand& operator=(const CSurfaceByHand&) = delete;

    uint32_t* pixels() override { return pixels_.data(); }
    int32_t width() const override { return width_; }
    int32_t height() const override { return height_; }
    const uint32_t* row(int32_t y) const { return &pixels_[static_cast<size_t>(y) * static_cast<size_t>(width_)]; }

private:
    CDesktopByHand& desktop_;
    int32_t width_;
    int32_t height_;
    std::vector<uint32_t> pixels_;
};

}  // namespace tarv
