#pragma once

#include "Platform/IntRect.h"
#include "Platform/Surface.h"
#include "Platform/X11/CX11Display.h"

namespace tarv {

/// What windows of one display need to show surfaces. One thread.
class CX11Painter {
public:
    explicit CX11Painter(const CX11Display& display);
    ~CX11Painter();
    CX11Painter(const CX11Painter&) = delete;
    CX11Painter& operator=(const CX11Painter&) = delete;

    bool hasSharedMemory() const { return hasSharedMemory_; }
    /// A picture by which the server reads a segment of this process; 0 if it can't: it runs on another machine.
    uint32_t attach(int segment) const;
    void detach(uint32_t picture) const;

    /// Shows `rect` of a window from the surface whose corner lies at x, y. A surface without `picture` is sent in
    /// pieces that fit a request.
    void put(xcb_window_t window, const CSurface& surface, uint32_t picture, int32_t x, int32_t y,
             const CIntRect& rect);
    /// Returns when the server has read what was put.
    void finish();

private:
    void putShared(xcb_window_t window, const CSurface& surface, uint32_t picture, int32_t x, int32_t y,
                   const CIntRect& part);
    void putPlain(xcb_window_t window, const CSurface& surface, int32_t x, int32_t y, const CIntRect& part);

    const CX11Display& display_;
    xcb_gcontext_t context_ = 0;
    bool hasSharedMemory_ = false;
    bool isReading_ = false;      ///< the server may not have read all of the shared pictures yet
    std::vector<uint32_t> rows_;  ///< pixels of a piece without gaps
};

/// Pixels in a segment that the server reads, or in plain memory.
class CX11Surface : public CSurface {
public:
    explicit CX11Surface(const CX11Painter& painter) : painter_(painter) {}
    ~CX11Surface() override { free(); }
    /// False if there is no memory.
    bool allocate(int32_t width, int32_t height);

    uint32_t* pixels() override { return pixels_; }
    int32_t width() const override { return width_; }
    int32_t height() const override { return height_; }
    /// 0 for plain memory.
    uint32_t picture() const { return picture_; }

protected:
    /// Gives the pixels back, while the display is there.
    void free();

private:
    bool allocateShared(size_t bytes);

    const CX11Painter& painter_;
    uint32_t* pixels_ = nullptr;
    int32_t width_ = 0;
    int32_t height_ = 0;
    uint32_t picture_ = 0;
};

}  // namespace tarv
