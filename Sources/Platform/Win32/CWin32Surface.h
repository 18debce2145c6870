#pragma once

#include <windows.h>

#include <memory>

#include "Platform/File.h"
#include "Platform/Surface.h"

namespace tarv {

/// A section of 32 bits a pixel, rows from the top, selected into a memory device context.
class CWin32Surface final : public CSurface {
public:
    /// Sizes of at least 1. Null with the step and the system's number, and what was made before it freed.
    static std::unique_ptr<CWin32Surface> create(int32_t width, int32_t height, CSurfaceStep& step,
                                                 CPlatformError& error);
    ~CWin32Surface() override;
    CWin32Surface(const CWin32Surface&) = delete;
    CWin32Surface& operator=(const CWin32Surface&) = delete;

    uint32_t* pixels() override { return pixels_; }
    int32_t width() const override { return width_; }
    int32_t height() const override { return height_; }
    HDC context() const { return context_; }

private:
    CWin32Surface(int32_t width, int32_t height) : width_(width), height_(height) {}
    CSurfaceStep make();

    int32_t width_;
    int32_t height_;
    HDC context_ = nullptr;
    HBITMAP section_ = nullptr;
    HGDIOBJ formerBitmap_ = nullptr;
    uint32_t* pixels_ = nullptr;
};

}  // namespace tarv
