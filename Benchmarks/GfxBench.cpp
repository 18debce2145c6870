// What drawing costs, against plain loops over the same pixels before they were coded, in turn in the same run. Once
// with the formulas channel by channel, as they are stated; once with the product's own way to sum two channels at
// once, which leaves the coding of the rows and the calls as the only difference.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <random>
#include <vector>

#include "Benchmarks/Times.h"
#include "UI/Drawing/Blend.h"
#include "UI/Drawing/CLinearBitmap.h"

namespace tarv {
namespace {

constexpr int32_t kRounds = 300;
constexpr int32_t kSide = 128;
constexpr CIntRect kAll{0, 0, kSide, kSide};

/// A picture as it was before it was coded, and where it is drawn.
struct CPicture {
    int32_t width;
    int32_t height;
    int32_t bytes;
    int32_t left;
    int32_t top;
    std::vector<uint8_t> pixels = {};
    CImageLayer layer{bytes};

    void code() {
        auto* version = new CImageVersion;
        mustSucceed(version->encode(pixels.data(), width, height, bytes, 0, 0));
        mustSucceed(layer.addVersion(1.0, version));
    }
};

/// Alpha of a pixel of each kind of picture; `number` counts the pictures of a page.
using CAlphaAt = int32_t (*)(int32_t x, int32_t y, int32_t number, int32_t noise);

struct CPictureKind {
    const char* name;
    int32_t width, height;
    int32_t columns, rows;
    CAlphaAt alphaAt;
};

/// Two stems and a bar, at other places in each glyph. Runs are as long as in text of 12 pixels: two to three pixels,
/// seven a row, one in fifteen opaque.
int32_t glyphAlpha(int32_t x, int32_t y, int32_t number, int32_t noise) {
    const int32_t first = number % 2;
    const int32_t second = 4 + number / 2 % 2;
    const bool isStem = (x >= first && x < first + 2 + number / 4 % 2) || (x >= second && x < second + 2);
    const bool isBar = y == number % 10;
    return isStem || isBar ? (noise % 15 == 0 ? 255 : 1 + noise % 254) : 0;
}

constexpr CPictureKind kKinds[] = {
    // A panel with soft corners: nearly all opaque.
    {"panel", 120, 110, 1, 1, [](int32_t x, int32_t y, int32_t, int32_t) { return x + y < 4 ? 60 * (x + y) : 255; }},
    // A glow: each pixel with its alpha.
    {"glow", 120, 110, 1, 1, [](int32_t x, int32_t y, int32_t, int32_t) { return 1 + (x * 2 + y) % 254; }},
    // A page of text.
    {"glyphs", 7, 10, 17, 12, &glyphAlpha},
};

using CPage = std::vector<std::unique_ptr<CPicture>>;

CPage makePage(const CPictureKind& kind, int32_t bytes) {
    CPage page;
    std::mt19937 random(3);
    for (int32_t number = 0; number < kind.columns * kind.rows; ++number) {
        page.emplace_back(new CPicture{kind.width, kind.height, bytes, 2 + number % kind.columns * kind.width,
                                       2 + number / kind.columns * kind.height});
        CPicture& picture = *page.back();
        for (int32_t y = 0; y < kind.height; ++y) {
            for (int32_t x = 0; x < kind.width; ++x) {
                for (int32_t i = 0; i + 1 < bytes; ++i) {
                    picture.pixels.push_back(static_cast<uint8_t>(random()));
                }
                const auto noise = static_cast<int32_t>(random() % 1024);
                picture.pixels.push_back(static_cast<uint8_t>(kind.alphaAt(x, y, number, noise)));
            }
        }
        picture.code();
    }
    return page;
}

/// The formulas channel by channel.
struct CStated {
    template <class F>
    static CPixel each(CPixel d, CPixel s, const F& channel) {
        return static_cast<CPixel>(
            channel(static_cast<int32_t>(d & 255), static_cast<int32_t>(s & 255)) |
            channel(static_cast<int32_t>(d >> 8 & 255), static_cast<int32_t>(s >> 8 & 255)) << 8 |
            channel(static_cast<int32_t>(d >> 16 & 255), static_cast<int32_t>(s >> 16 & 255)) << 16);
    }
    static CPixel own(CPixel d, CPixel s, int32_t a) {
        return each(d, s, [a](int32_t x, int32_t y) { return (x * 256 + (y - x) * a) >> 8; });
    }
    static CPixel both(CPixel d, CPixel s, int32_t a, int32_t effective) {
        return each(d, s, [a, effective](int32_t x, int32_t y) { return ((x << 23) + (y - x) * a * effective) >> 23; });
    }
    static CPixel effective(CPixel d, CPixel s, int32_t alpha) {
        return each(d, s, [alpha](int32_t x, int32_t y) { return ((x << 15) + (y - x) * alpha) >> 15; });
    }
};

/// Two channels at once.
struct CPacked {
    static CPixel own(CPixel d, CPixel s, int32_t a) { return blendOwn(d, s, static_cast<uint32_t>(a)); }
    static CPixel both(CPixel d, CPixel s, int32_t a, int32_t alpha) {
        return blendBoth(d, s, static_cast<uint32_t>(a), static_cast<uint32_t>(alpha));
    }
    static CPixel effective(CPixel d, CPixel s, int32_t alpha) {
        return blendEffective(d, s, static_cast<uint32_t>(alpha));
    }
};

template <int32_t kBytes>
CPixel colorOf(const uint8_t* pixel, const CColor& color) {
    if constexpr (kBytes == 1) {
        return color.ramp[255];
    } else if constexpr (kBytes == 2) {
        return color.ramp[pixel[0]];
    } else {
        return static_cast<CPixel>(pixel[0] | pixel[1] << 8 | pixel[2] << 16);
    }
}

template <class T, int32_t kBytes, bool kIsOpaque>
void plainImage(CLinearBitmap& target, const CPicture& picture, const CColor& color, int32_t alpha) {
    const uint8_t* pixel = picture.pixels.data();
    for (int32_t y = 0; y < picture.height; ++y) {
        CPixel* d = target.row(picture.top + y) + picture.left;
        for (int32_t x = 0; x < picture.width; ++x, pixel += kBytes) {
            const int32_t a = pixel[kBytes - 1];
            if (a != 0) {
                const CPixel s = colorOf<kBytes>(pixel, color);
                d[x] = kIsOpaque ? (a == 255 ? s : T::own(d[x], s, a))
                                 : (a == 255 ? T::effective(d[x], s, alpha) : T::both(d[x], s, a, alpha));
            }
        }
    }
}

using CPlainImage = void (*)(CLinearBitmap&, const CPicture&, const CColor&, int32_t);
/// By bytes per pixel as a power of two, whether fully opaque.
template <class T>
constexpr CPlainImage kPlainImage[3][2] = {{&plainImage<T, 1, false>, &plainImage<T, 1, true>},
                                           {&plainImage<T, 2, false>, &plainImage<T, 2, true>},
                                           {&plainImage<T, 4, false>, &plainImage<T, 4, true>}};

template <class T>
void plainFill(CLinearBitmap& target, const CIntRect& rect, CPixel source, int32_t alpha) {
    for (int32_t y = rect.top; y < rect.bottom; ++y) {
        CPixel* d = target.row(y);
        for (int32_t x = rect.left; x < rect.right; ++x) {
            d[x] = alpha >= static_cast<int32_t>(kOpaqueAlpha) ? source : T::effective(d[x], source, alpha);
        }
    }
}

CColor makeColor() {
    CColor color;
    std::mt19937 random(5);
    for (CPixel& entry : color.ramp) {
        entry = random() & kChannels;
    }
    return color;
}

/// Times the three in turn on targets that hold the same, new in each round, and checks that they end alike.
void compare(benchmark::State& state, const std::function<void(CLinearBitmap&)>& product,
             const std::function<void(CLinearBitmap&)>& stated, const std::function<void(CLinearBitmap&)>& packed,
             int64_t pixels) {
    CLinearBitmap targets[3];
    for (CLinearBitmap& target : targets) {
        mustSucceed(target.resize(kSide, kSide));
    }
    std::mt19937 random(7);
    const std::function<void(CLinearBitmap&)> works[3] = {product, stated, packed};
    for (auto _ : state) {
        std::vector<double> times[3];
        for (int32_t round = 0; round < kRounds; ++round) {
            for (CPixel* p = targets[0].row(0); p < targets[0].row(kSide); ++p) {
                *p = random() & kChannels;
            }
            targets[1].copyFrom(targets[0]);
            targets[2].copyFrom(targets[0]);
            for (int32_t i = 0; i < 3; ++i) {
                times[i].push_back(secondsOf([&] { works[i](targets[i]); }));
            }
            for (int32_t i = 1; i < 3; ++i) {
                if (!std::equal(targets[0].row(0), targets[0].row(kSide), targets[i].row(0))) {
                    state.SkipWithError("the plain loop draws something else");
                    return;
                }
            }
        }
        state.counters["of_stated"] = medianOf(times[0]) / medianOf(times[1]);
        state.counters["of_packed"] = medianOf(times[0]) / medianOf(times[2]);
        state.counters["ns_per_pixel"] = 1e9 * medianOf(times[0]) / static_cast<double>(pixels);
    }
}

/// Arguments: kind of picture, bytes per pixel as a power of two, opacity in percent.
void drawImage(benchmark::State& state) {
    const CPictureKind& kind = kKinds[state.range(0)];
    const CPage page = makePage(kind, 1 << state.range(1));
    const double opacity = static_cast<double>(state.range(2)) / 100.0;
    const auto alpha = static_cast<int32_t>(effectiveAlpha(opacity));
    const bool isOpaque = alpha >= static_cast<int32_t>(kOpaqueAlpha);
    const CColor color = makeColor();
    state.SetLabel(kind.name);
    const CPlainImage stated = kPlainImage<CStated>[state.range(1)][isOpaque];
    const CPlainImage packed = kPlainImage<CPacked>[state.range(1)][isOpaque];
    auto plain = [&](CPlainImage draw) {
        return [&, draw](CLinearBitmap& target) {
            for (const auto& picture : page) {
                draw(target, *picture, color, alpha);
            }
        };
    };
    compare(
        state,
        [&](CLinearBitmap& target) {
            for (const auto& picture : page) {
                target.drawImage(picture->layer, color, picture->left, picture->top, opacity, kAll);
            }
        },
        plain(stated), plain(packed), int64_t{kind.width} * kind.height * static_cast<int64_t>(page.size()));
}
BENCHMARK(drawImage)
    ->ArgNames({"kind", "log2bytes", "opacity"})
    ->ArgsProduct({{0, 1, 2}, {0, 1, 2}, {100, 60}})
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

/// Argument: opacity in percent.
void fillRect(benchmark::State& state) {
    const double opacity = static_cast<double>(state.range(0)) / 100.0;
    const auto alpha = static_cast<int32_t>(effectiveAlpha(opacity));
    const CColor color = makeColor();
    constexpr CIntRect kRect{3, 2, 125, 126};
    compare(
        state, [&](CLinearBitmap& target) { target.fillRect(kRect, color, opacity); },
        [&](CLinearBitmap& target) { plainFill<CStated>(target, kRect, color.full(), alpha); },
        [&](CLinearBitmap& target) { plainFill<CPacked>(target, kRect, color.full(), alpha); },
        int64_t{kRect.width()} * kRect.height());
}
BENCHMARK(fillRect)->ArgName("opacity")->Arg(100)->Arg(60)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tarv

BENCHMARK_MAIN();
