// Pictures of coded rows: one loop for each kind of layer and each path of blending.

#include <algorithm>
#include <cstring>

#include "Core/LittleEndian.h"
#include "UI/Drawing/Blend.h"
#include "UI/Drawing/CLinearBitmap.h"
#include "UI/Resources/RunCoding.h"

namespace tarv {

namespace {

// Beyond any bitmap, and far enough from the ends of the integers for sums with a picture's own measures.
constexpr int32_t kFar = 1 << 30;
constexpr int32_t kLayerKinds = 5;
constexpr uint32_t kEqualBytes = 0x01010101;

struct CBlend {
    const CPixel* ramp;
    CPixel full;
    uint32_t alpha;
};

/// Colour of the stored pixel at `bytes`.
template <int32_t kBytes>
[[gnu::always_inline]] inline CPixel sourceAt(const uint8_t* bytes, const CBlend& blend) {
    if constexpr (kBytes == 1) {
        return blend.full;
    } else if constexpr (kBytes == 2) {
        return blend.ramp[bytes[0]];
    } else {
        return static_cast<CPixel>(bytes[0]) | static_cast<CPixel>(bytes[1]) << 8 | static_cast<CPixel>(bytes[2]) << 16;
    }
}

// Runs have at least one pixel: reading refuses others. Both leave `bytes` behind what they have drawn.

template <int32_t kBytes, bool kIsOpaque>
[[gnu::always_inline]] inline void drawAlphaRun(CPixel* target, const CPixel* end, const uint8_t*& bytes,
                                                const CBlend& blend) {
    do {
        CPixel source = 0;
        uint32_t alpha = 0;
        if constexpr (kBytes == 4) {
            // A whole pixel in one word, its alpha on top.
            const auto word = fromLittleEndian<uint32_t>(bytes);
            source = word & kChannels;
            alpha = word >> 24;
        } else {
            source = sourceAt<kBytes>(bytes, blend);
            alpha = bytes[kBytes - 1];
        }
        *target = kIsOpaque ? blendOwn(*target, source, alpha) : blendBoth(*target, source, alpha, blend.alpha);
        bytes += kBytes;
    } while (++target != end);
}

template <int32_t kBytes, bool kIsOpaque>
[[gnu::always_inline]] inline void drawOpaqueRun(CPixel* target, const CPixel* end, const uint8_t*& bytes,
                                                 const CBlend& blend) {
    if constexpr (kBytes == 2 && kIsOpaque) {
        // Faces are made of these: four pixels from one word, and the next four are the same more often than not.
        __m128i pixels = _mm_set1_epi32(static_cast<int>(blend.ramp[0]));
        uint32_t known = 0;
        for (; end - target >= 4; target += 4, bytes += 4) {
            const auto steps = fromLittleEndian<uint32_t>(bytes);
            if (steps != known) {
                // A gradient from top to bottom has one step in a row.
                pixels = steps == (steps & 0xff) * kEqualBytes
                             ? _mm_set1_epi32(static_cast<int>(blend.ramp[steps & 0xff]))
                             : _mm_setr_epi32(static_cast<int>(blend.ramp[steps & 0xff]),
                                              static_cast<int>(blend.ramp[steps >> 8 & 0xff]),
                                              static_cast<int>(blend.ramp[steps >> 16 & 0xff]),
                                              static_cast<int>(blend.ramp[steps >> 24]));
                known = steps;
            }
            _mm_storeu_si128(reinterpret_cast<__m128i*>(target), pixels);
        }
    }
    for (; target != end; ++target, bytes += kBytes - 1) {
        const CPixel source = sourceAt<kBytes>(bytes, blend);
        *target = kIsOpaque ? source : blendEffective(*target, source, blend.alpha);
    }
}

/// What is drawn of a picture, and where its top-left lies.
struct CPart {
    CIntRect seen;
    int32_t left;
    int32_t top;
};

/// `count` pixels of a row, at least one, behind the first `skipped` ones. Both together are not more than it has.
template <int32_t kBytes, bool kIsOpaque>
[[gnu::always_inline]] inline void drawRow(CPixel* target, const uint8_t* bytes, uint32_t skipped, uint32_t count,
                                           const CBlend& blend) {
    CPixel* const rowEnd = target + count;
    CRun run = takeRun(bytes);
    for (; run.length <= skipped; run = takeRun(bytes)) {
        skipped -= run.length;
        bytes += run.length * runPixelBytes(run.type, kBytes);
    }
    bytes += skipped * runPixelBytes(run.type, kBytes);
    run.length -= skipped;
    for (;;) {
        CPixel* const end = std::min(target + run.length, rowEnd);
        if (run.type == kRunAlpha) {
            drawAlphaRun<kBytes, kIsOpaque>(target, end, bytes, blend);
        } else if (run.type == kRunOpaque) {
            drawOpaqueRun<kBytes, kIsOpaque>(target, end, bytes, blend);
        }
        if (end == rowEnd) {
            return;
        }
        target = end;
        run = takeRun(bytes);
    }
}

/// Whether the pixels from `skipped` on are all of one opaque run.
bool isOneOpaqueRun(const uint8_t* bytes, uint32_t skipped, uint32_t count) {
    const CRun run = takeRun(bytes);
    return run.type == kRunOpaque && run.length >= skipped + count;
}

template <int32_t kBytes, bool kIsOpaque>
void drawRows(CLinearBitmap& target, const CImageVersion& version, const CPart& part, const CBlend& given) {
    const CBlend blend = given;
    const auto skipped = static_cast<uint32_t>(part.seen.left - part.left);
    const auto count = static_cast<uint32_t>(part.seen.width());
    const uint8_t* above = nullptr;
    bool isCopied = false;
    for (int32_t y = part.seen.top; y < part.seen.bottom; ++y) {
        const uint8_t* bytes = version.row(y - part.top);
        CPixel* pixels = target.row(y) + part.seen.left;
        // Rows that are alike are stored once, and faces are made of them.
        if (kIsOpaque && bytes && bytes == above) {
            if (isCopied) {
                std::copy_n(target.row(y - 1) + part.seen.left, count, pixels);
                continue;
            }
        } else {
            above = bytes;
            isCopied = kIsOpaque && bytes && isOneOpaqueRun(bytes, skipped, count);
        }
        if (bytes) {
            drawRow<kBytes, kIsOpaque>(pixels, bytes, skipped, count, blend);
        }
    }
}

/// Whether all bytes of an opaque run are alike. Two bytes a pixel.
bool isOneStep(const uint8_t* run, uint32_t count) {
    return std::memcmp(run, run + 1, count - 1) == 0;
}

/// The same for pictures side by side without gaps: `part` is the first one, which is seen in its whole width, and the
/// last one may be cut at `right`. Opaque drawing.
template <int32_t kBytes>
void drawRepeatedRows(CLinearBitmap& target, const CImageVersion& version, const CPart& part, int32_t right,
                      const CBlend& given) {
    const CBlend blend = given;
    const auto width = static_cast<uint32_t>(part.seen.width());
    const auto whole = static_cast<uint32_t>(right - part.seen.left);
    const uint8_t* above = nullptr;
    bool isCopied = false;
    for (int32_t y = part.seen.top; y < part.seen.bottom; ++y) {
        const uint8_t* bytes = version.row(y - part.top);
        CPixel* pixels = target.row(y) + part.seen.left;
        if (bytes && bytes == above && isCopied) {
            std::copy_n(target.row(y - 1) + part.seen.left, whole, pixels);
            continue;
        }
        above = bytes;
        isCopied = bytes && isOneOpaqueRun(bytes, 0, width);
        if (isCopied) {
            const uint8_t* run = bytes;
            takeRun(run);
            if (kBytes == 2 && isOneStep(run, width)) {
                std::fill_n(pixels, whole, blend.ramp[*run]);
                continue;
            }
            drawRow<kBytes, true>(pixels, bytes, 0, width, blend);
            // Twice as many at each step.
            for (uint32_t done = width; done < whole; done *= 2) {
                std::copy_n(pixels, std::min(done, whole - done), pixels + done);
            }
        } else if (bytes) {
            for (uint32_t at = 0; at < whole; at += width) {
                drawRow<kBytes, true>(pixels + at, bytes, 0, std::min(width, whole - at), blend);
            }
        }
    }
}

using CDrawRepeatedRows = void (*)(CLinearBitmap&, const CImageVersion&, const CPart&, int32_t, const CBlend&);
constexpr CDrawRepeatedRows kDrawRepeatedRows[kLayerKinds] = {nullptr, &drawRepeatedRows<1>, &drawRepeatedRows<2>,
                                                              nullptr, &drawRepeatedRows<4>};

using CDrawRows = void (*)(CLinearBitmap&, const CImageVersion&, const CPart&, const CBlend&);

/// By the bytes per pixel of a layer; whether drawing is fully opaque.
constexpr CDrawRows kDrawRows[kLayerKinds][2] = {
    {nullptr, nullptr}, {&drawRows<1, false>, &drawRows<1, true>}, {&drawRows<2, false>, &drawRows<2, true>},
    {nullptr, nullptr}, {&drawRows<4, false>, &drawRows<4, true>},
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
    if (blend.alpha > 0) {
        kDrawRows[layer.bytesPerPixel()][blend.alpha >= kOpaqueAlpha](*this, version, {seen, left, top}, blend);
    }
    return int64_t{seen.width()} * seen.height();
}

int64_t CLinearBitmap::drawImageRow(const CImageLayer& layer, const CColor& color, int32_t x, int32_t y, int32_t step,
                                    int32_t count, double opacity, const CIntRect& clip) {
    int64_t pixels = 0;
    const auto drawEach = [&](int32_t first, int32_t last) {
        for (int32_t i = first; i < last; ++i) {
            pixels += drawImage(layer, color, x + i * step, y, opacity, clip);
        }
    };
    const CIntRect room = clip.intersection(bounds());
    const CBlend blend{color.ramp, color.full(), effectiveAlpha(color.opacity * opacity)};
    const CImageVersion* version = layer.versionCount() > 0 ? &layer.version() : nullptr;
    const bool isGapless = version && version->x() == 0 && version->storedWidth() == step;
    if (!isGapless || room.isEmpty() || blend.alpha < kOpaqueAlpha) {
        drawEach(0, count);
        return pixels;
    }
    // From the first one that is seen in its whole width; those that are cut at the left come before.
    const int32_t first = std::clamp((room.left - x + step - 1) / step, x < room.left ? 1 : 0, count);
    drawEach(0, first);
    const int32_t top = y + version->y();
    const int32_t left = x + first * step;
    const CIntRect stored{left, top, left + step, top + version->storedHeight()};
    const CIntRect seen = stored.intersection(room);
    if (first == count || seen.isEmpty()) {
        return pixels;
    }
    if (seen.right < stored.right) {
        drawEach(first, first + 1);
        return pixels;
    }
    const int32_t right = std::min(room.right, x + count * step);
    kDrawRepeatedRows[layer.bytesPerPixel()](*this, *version, {seen, left, top}, right, blend);
    return pixels + int64_t{seen.height()} * (right - left);
}

}  // namespace tarv
