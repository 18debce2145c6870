// Surfaces of Windows: device independent sections in memory contexts.

#include "Platform/Win32/CWin32Surface.h"

namespace tarv {

namespace {

constexpr WORD kBitsPerPixel = 32;

}  // namespace

std::unique_ptr<CWin32Surface> CWin32Surface::create(int32_t width, int32_t height, CSurfaceStep& step,
                                                     CPlatformError& error) {
    error = 0;
    // A negative height would make a section of rows from the bottom.
    if (width <= 0 || height <= 0) {
        step = CSurfaceStep::Section;
        error = ERROR_INVALID_PARAMETER;
        return nullptr;
    }
    std::unique_ptr<CWin32Surface> surface(new CWin32Surface(width, height));
    SetLastError(0);
    step = surface->make();
    if (step != CSurfaceStep::None) {
        // Before the destructor's own calls.
        error = GetLastError();
        surface.reset();
    }
    return surface;
}

CWin32Surface::~CWin32Surface() {
    if (formerBitmap_) {
        SelectObject(context_, formerBitmap_);
    }
    if (context_) {
        DeleteDC(context_);
    }
    if (section_) {
        DeleteObject(section_);
    }
}

CSurfaceStep CWin32Surface::make() {
    context_ = CreateCompatibleDC(nullptr);
    if (!context_) {
        return CSurfaceStep::Context;
    }
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = width_;
    info.bmiHeader.biHeight = -height_;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = kBitsPerPixel;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    section_ = CreateDIBSection(context_, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    if (!section_) {
        return CSurfaceStep::Section;
    }
    pixels_ = static_cast<uint32_t*>(bits);
    formerBitmap_ = SelectObject(context_, section_);
    if (formerBitmap_ == HGDI_ERROR) {
        formerBitmap_ = nullptr;
    }
    return formerBitmap_ ? CSurfaceStep::None : CSurfaceStep::Selection;
}

}  // namespace tarv
