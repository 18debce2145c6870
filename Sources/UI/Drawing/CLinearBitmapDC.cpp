#include "UI/Drawing/CLinearBitmapDC.h"

namespace tarv {

CError* CLinearBitmapDC::resize(int32_t width, int32_t height) {
    setPixels(nullptr, 0, 0);
    surface_.reset();
    TARV_TRY(CLinearBitmap::resize(0, 0));
    if (width < 0 || height < 0 || int64_t{width} * height > kMaxPixels) {
        TARV_TRY(CLinearBitmap::resize(width, height));
    }
    if (width == 0 || height == 0) {
        return nullptr;
    }
    CWindowSystem* system = windowSystem();
    if (!system) {
        TARV_FAIL("@tarvstr_CLinearBitmapDC_resize_NoWindowSystem No window system to show a bitmap on.");
    }
    CSurfaceStep step = CSurfaceStep::None;
    CPlatformError error = 0;
    surface_ = system->createSurface(width, height, step, error);
    if (!surface_) {
        TARV_TRY(initBitmapDC(step, error, width, height));
    }
    setPixels(surface_->pixels(), width, height);
    return nullptr;
}

/// The failure of a step.
CError* CLinearBitmapDC::initBitmapDC(CSurfaceStep step, CPlatformError error, int32_t width, int32_t height) {
    const CString number = CString::fromInt(error);
    switch (step) {
        case CSurfaceStep::Section:
            TARV_FAIL(
                "@tarvstr_CLinearBitmapDC_resize_CreateDIBSection CreateDIBSection() error %1 (width=%2, height=%3).",
                number, CString::fromInt(width), CString::fromInt(height));
        case CSurfaceStep::Selection:
            TARV_FAIL("@tarvstr_CLinearBitmapDC_initBitmapDC_SelectObject SelectObject() error %1.", number);
        default:
            TARV_FAIL("@tarvstr_CLinearBitmapDC_resize_CreateCompatibleDC CreateCompatibleDC() execution error %1.",
                      number);
    }
}

}  // namespace tarv
