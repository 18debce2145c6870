#include "GfxBuilder.h"

#include <cmath>
#include <filesystem>
#include <memory>

#include "BrushBuilder.h"
#include "CSvgSource.h"
#include "FontBuilder.h"
#include "PaletteBuilder.h"
#include "SvgPainting.h"
#include "UI/Resources/CBrushSet.h"
#include "UI/Resources/CFont.h"
#include "UI/Resources/CImageSet.h"
#include "UI/Resources/CPalette.h"

namespace tarv {

namespace {

CString textOf(const std::string& text) {
    return CString::fromUtf8(text.data(), text.size());
}

/// An error of the product's classes as one of the source.
CDefinitionFailure failureOf(const std::string& path, CError* error) {
    if (!error) {
        return std::nullopt;
    }
    const std::string text = error->lines()[0]->toUtf8();
    delete error;
    return CDefinitionError{{path}, text};
}

CDefinitionFailure writeSet(const std::string& path, const CDataSet& set, std::string& bytes) {
    CMemoryWriteBuffer buffer;
    if (auto failure = failureOf(path, set.write(buffer))) {
        return failure;
    }
    CByteBuffer copy;
    buffer.copyTo(copy);
    bytes.assign(reinterpret_cast<const char*>(copy.data()), static_cast<size_t>(copy.count()));
    return std::nullopt;
}

/// A picture of one layer from what was drawn for each scale. Both are the caller's, also on failure.
CError* addRaster(CImageLayer& layer, double scale, const CRaster& raster) {
    auto version = std::make_unique<CImageVersion>();
    version->setSize(raster.width, raster.height);
    version->setAdvance(raster.advance);
    TARV_TRY(version->encode(raster.pixels.data(), raster.drawnWidth, raster.drawnHeight, raster.bytesPerPixel,
                             raster.x, raster.y));
    TARV_TRY(layer.addVersion(scale, version.release()));
    return nullptr;
}

CError* newImage(const CRaster* const (&rasters)[kGfxScaleCount], std::unique_ptr<CImage>& image) {
    auto layer = std::make_unique<CImageLayer>(rasters[0]->bytesPerPixel);
    for (int i = 0; i < kGfxScaleCount; ++i) {
        TARV_TRY(addRaster(*layer, kGfxScales[i], *rasters[i]));
    }
    image = std::make_unique<CImage>();
    image->addLayer(layer.release());
    return nullptr;
}

CDefinitionFailure buildImageSet(const std::string& path, std::string& bytes) {
    CSvgSource source;
    if (auto failure = source.load(path)) {
        return failure;
    }
    CImageSet set;
    for (const CSvgRange& range : source.ranges()) {
        if (auto failure = failureOf(path, set.addRange(textOf(range.name), range.first, range.last))) {
            return failure;
        }
    }
    for (size_t index = 0; index < source.images().size(); ++index) {
        const CSvgImage& image = source.images()[index];
        CRaster rasters[kGfxScaleCount];
        for (int i = 0; i < kGfxScaleCount; ++i) {
            if (auto failure = paintImage(source, image, kGfxScales[i], rasters[i])) {
                return failure;
            }
        }
        std::unique_ptr<CImage> made;
        if (auto failure = failureOf(path, newImage({&rasters[0], &rasters[1], &rasters[2]}, made))) {
            return failure;
        }
        set.setImage(static_cast<uint32_t>(index), made.release());
    }
    return writeSet(path, set, bytes);
}

CDefinitionFailure buildFont(const std::string& path, std::string& bytes) {
    CFontSource source;
    if (auto failure = readFontSource(path, source)) {
        return failure;
    }
    CDrawnFont drawn;
    if (auto failure = drawFont(source, drawn)) {
        return failure;
    }
    CFont font;
    font.setMetrics(drawn.height, drawn.spaceAbove, drawn.spaceBelow);
    for (const auto& [code, first] : drawn.glyphs[0]) {
        std::unique_ptr<CImage> made;
        const CRaster* const rasters[] = {&first, &drawn.glyphs[1].at(code), &drawn.glyphs[2].at(code)};
        if (auto failure = failureOf(path, newImage(rasters, made))) {
            return failure;
        }
        font.setImage(code, made.release());
    }
    return writeSet(path, font, bytes);
}

CDefinitionFailure buildBrushSet(const std::string& path, std::string& bytes) {
    std::vector<double> widths;
    if (auto failure = readBrushWidths(path, widths)) {
        return failure;
    }
    CBrushSet set;
    for (double width : widths) {
        auto brush = std::make_unique<CBrush>(width);
        for (double scale : kGfxScales) {
            const CStampTable table = stampsOf(dotWidthOf(width, scale));
            if (auto failure =
                    failureOf(path, brush->addVersion(scale, table.size, table.dotWidth, table.cover.data()))) {
                return failure;
            }
        }
        set.addBrush(brush.release());
    }
    return writeSet(path, set, bytes);
}

CDefinitionFailure buildPalette(const std::string& path, std::string& bytes) {
    CPaletteSource source;
    if (auto failure = computePalette(path, source)) {
        return failure;
    }
    CPalette palette;
    for (const auto& [name, color] : source.colors) {
        CPixel ramp[kRampLength];
        for (size_t i = 0; i < color.ramp.size(); ++i) {
            ramp[i] = static_cast<CPixel>(color.ramp[i].red << 16 | color.ramp[i].green << 8 | color.ramp[i].blue);
        }
        if (auto failure = failureOf(path, palette.addColor(textOf(name), color.opacity, ramp))) {
            return failure;
        }
    }
    for (const auto& [name, count] : source.frameCounts) {
        if (auto failure = failureOf(path, palette.setFrameCount(textOf(name), count))) {
            return failure;
        }
    }
    return writeSet(path, palette, bytes);
}

struct CKindRow {
    const char* extension;
    CDefinitionFailure (*build)(const std::string& path, std::string& bytes);
};

constexpr CKindRow kKinds[] = {
    {".svg", &buildImageSet},
    {".font", &buildFont},
    {".brush", &buildBrushSet},
    {".palette", &buildPalette},
};

}  // namespace

CDefinitionFailure buildGraphics(const std::string& path, std::string& bytes) {
    const std::string extension = std::filesystem::path(path).extension().string();
    for (const CKindRow& kind : kKinds) {
        if (extension == kind.extension) {
            return kind.build(path, bytes);
        }
    }
    return CDefinitionError{{path}, "a source ends in .svg, .font, .brush or .palette"};
}

}  // namespace tarv
