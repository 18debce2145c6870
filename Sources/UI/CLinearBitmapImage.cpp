// Pictures of coded rows: one loop for each kind of layer and each path of blending.

#include <algorithm>

#include "UI/Blend.h"
#include "UI/CLinearBitmap.h"
#include "UI/Resources/RunCoding.h"

namespace tarv {

namespace {

// Beyond any bitmap, and far enough from the ends of the integers for sums with a picture's own measures.
constexpr int32_t kFar = 1 << 30;
constexpr int32_t kLayerKinds = 5;

struct CBlend {
    const CPixel* ramp;
    CPixel full;
    uint32_t alpha;
};

/// Colour of the stored pixel at `bytes`.
template <int32_t kBytes>
CPixel sourceAt(const uint8_t* bytes, const CBlend& blend) {
    if constexpr (kBytes == 1) {
        return blend.full;
    } else if constexpr (kBytes == 2) {
        return blend.ramp[bytes[0]];
    } else {
        return static_cast<CPixel>(bytes[0]) | static_cast<CPixel>(bytes[1]) << 8 | static_cast<CPixel>(bytes[2]) << 16;
    }
}

template <int32_t kBytes, bool kIsOpaque>
void drawAlphaRun(CPixel* target, const uint8_t* bytes, uint32_t count, const CBlend& blend) {
    for (uint32_t i = 0; i < count; ++i, bytes += kBytes) {
        const CPixel source = sourceAt<kBytes>(bytes, blend);
        const uint32_t alpha = bytes[kBytes - 1];
        target[i] = kIsOpaque ? blendOwn(target[i], source, alpha) : blendBoth(target[i], source, alpha, blend.alpha);
    }
}

template <int32_t kBytes, bool kIsOpaque>
void drawOpaqueRun(CPixel* target, const uint8_t* bytes, uint32_t count, const CBlend& blend) {
    for (uint32_t i = 0; i < count; ++i, bytes += kBytes - 1) {
        const CPixel source = sourceAt<kBytes>(bytes, blend);
        target[i] = kIsOpaque ? source : blendEffective(target[i], source, blend.alpha);
    }
}

/// `count` pixels of a row behind the first `skipped` ones. Both together are not more than the row has.
template <int32_t kBytes, bool kIsOpaque>
void drawRow(CPixel* target, const uint8_t* bytes, uint32_t skipped, uint32_t count, const CBlend& blend) {
    CRun run = takeRun(bytes);
    for (; run.length <= skipped; run = takeRun(bytes)) {
        skipped -= run.length;
        bytes += run.length * runPixelBytes(run.type, kBytes);
    }
    bytes += skipped * runPixelBytes(run.type, kBytes);
    run.length -= skipped;
    for (;;) {
        const uint32_t part = std::min(run.length, count);
        if (run.type == kRunAlpha) {
            drawAlphaRun<kBytes, kIsOpaque>(target, bytes, part, blend);
        } else if (run.type == kRunOpaque) {
            drawOpaqueRun<kBytes, kIsOpaque>(target, bytes, part, blend);
        }
        target += part;
        count -= part;
        if (count == 0) {
            return;
        }
        bytes += part * runPixelBytes(run.type, kBytes);
        run = takeRun(bytes);
    }
}

using CDrawRow = void (*)(CPixel*, const uint8_t*, uint32_t, uint32_t, const CBlend&);

/// By the bytes per pixel of a layer; whether drawing is fully opaque.
constexpr CDrawRow kDrawRow[kLayerKinds][2] = {
    {nullptr, nullptr}, {&drawRow<1, false>, &drawRow<1, true>}, {&drawRow<2, false>, &drawRow<2, true>},
    {nullptr, nullptr}, {&drawRow<4, false>, &drawRow<4, true>},
};

}  // namespace

int64_t CLinearBitmap::drawImage(const CImageLayer& layer, const CColor& color, int32_t x, int32_t y, double opacity,
                                 const CIntRect& clip) {
    if (layer.versionCount() == 0) {
        return 0;
    }
    const CImageVersion& version = layer.version();
    const int32_t left = std::clamp(x, -kFar, kFar) + version.x();
    const int32_t top = std::clamp(y, -kFar, kFar) + version.y();
    const CIntRect stored{left, top, left + version.storedWidth(), top + version.storedHeight()};
    const CIntRect seen = stored.intersection(clip).intersection(bounds());
    if (seen.isEmpty()) {
        return 0;
    }
    const CBlend blend{color.ramp, color.full(), effectiveAlpha(color.opacity * opacity)};
    const CDrawRow draw = kDrawRow[layer.bytesPerPixel()][blend.alpha >= kOpaqueAlpha];
    for (int32_t at = seen.top; at < seen.bottom && blend.alpha > 0; ++at) {
        if (const uint8_t* bytes = version.row(at - top)) {
            draw(row(at) + seen.left, bytes, static_cast<uint32_t>(seen.left - left),
                 static_cast<uint32_t>(seen.width()), blend);
        }
    }
    return int64_t{seen.width()} * seen.height();
}

}  // namespace tarv
