#include "UI/Drawing/CLinearBitmap.h"

#include <algorithm>
#include <cstring>

#include "UI/Drawing/Blend.h"

namespace tarv {

void CLinearBitmap::setPixels(CPixel* pixels, int32_t width, int32_t height) {
    pixels_ = pixels;
    width_ = pixels ? width : 0;
    height_ = pixels ? height : 0;
}

CError* CLinearBitmap::resize(int32_t width, int32_t height) {
    setPixels(nullptr, 0, 0);
    memory_.clear();
    if (width < 0 || height < 0 || int64_t{width} * height > kMaxPixels) {
        memory_.reserve(0);
        TARV_FAIL("@tarvstr_CLinearBitmap_resize_Size Bitmap of %1 by %2 pixels can't be made.",
                  CString::fromInt(width), CString::fromInt(height));
    }
    memory_.resize(width * height);
    setPixels(memory_.data(), width, height);
    return nullptr;
}

void CLinearBitmap::clearRect(const CIntRect& rect) {
    const CIntRect seen = rect.intersection(bounds());
    for (int32_t y = seen.top; y < seen.bottom && !seen.isEmpty(); ++y) {
        std::fill(row(y) + seen.left, row(y) + seen.right, 0);
    }
}

void CLinearBitmap::copyRectFrom(const CLinearBitmap& other, const CIntRect& rect) {
    const CIntRect seen = rect.intersection(bounds()).intersection(other.bounds());
    for (int32_t y = seen.top; y < seen.bottom && !seen.isEmpty(); ++y) {
        std::memmove(row(y) + seen.left, other.row(y) + seen.left, sizeof(CPixel) * static_cast<size_t>(seen.width()));
    }
}

void CLinearBitmap::blendFrom(const CLinearBitmap& other, double opacity, const CIntRect& rect) {
    const uint32_t alpha = effectiveAlpha(opacity);
    if (alpha >= kOpaqueAlpha) {
        copyRectFrom(other, rect);
        return;
    }
    const CIntRect seen = rect.intersection(bounds()).intersection(other.bounds());
    for (int32_t y = seen.top; y < seen.bottom && alpha > 0; ++y) {
        CPixel* target = row(y);
        const CPixel* source = other.row(y);
        const CPixel* first = source + seen.left;
        const int32_t done = blendFours(
            target + seen.left, seen.width(),
            [&](int32_t at) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(first + at)); }, alpha);
        for (int32_t x = seen.left + done; x < seen.right; ++x) {
            target[x] = blendEffective(target[x], source[x], alpha);
        }
    }
}

void CLinearBitmap::fillRect(const CIntRect& rect, const CColor& color, double opacity) {
    const uint32_t alpha = effectiveAlpha(color.opacity * opacity);
    const CPixel source = color.full();
    const __m128i same = _mm_set1_epi32(static_cast<int>(source));
    const CIntRect seen = rect.intersection(bounds());
    for (int32_t y = seen.top; y < seen.bottom && alpha > 0 && !seen.isEmpty(); ++y) {
        CPixel* target = row(y);
        if (alpha >= kOpaqueAlpha) {
            std::fill(target + seen.left, target + seen.right, source);
            continue;
        }
        const int32_t done = blendFours(
            target + seen.left, seen.width(), [&](int32_t) { return same; }, alpha);
        for (int32_t x = seen.left + done; x < seen.right; ++x) {
            target[x] = blendEffective(target[x], source, alpha);
        }
    }
}

void CLinearBitmap::invertRect(const CIntRect& rect) {
    const CIntRect seen = rect.intersection(bounds());
    for (int32_t y = seen.top; y < seen.bottom; ++y) {
        CPixel* target = row(y);
        for (int32_t x = seen.left; x < seen.right; ++x) {
            target[x] = ~target[x] & kChannels;
        }
    }
}

}  // namespace tarv
