#pragma once

#include <cmath>
#include <functional>

#include "Tests/UI/Resources/DataSetHelp.h"
#include "UI/Text/CTextMarkup.h"
#include "UI/Text/CTextWrapper.h"

namespace tarv {

/// A font for tests: each code from 32 to 126 has a different pattern between the capitals' top and the base line.
struct CTestFace {
    int32_t height = 14;
    int32_t above = 3;
    int32_t below = 3;
    int32_t widthStep = 0;  ///< added to each advance
    uint32_t seed = 1;

    /// Advance at scale 1.0: 4 to 8 pixels; a blank has 3, a hyphen 5.
    int32_t advance(uint32_t code) const {
        const auto own = static_cast<int32_t>(code == ' ' ? 3 : code == '-' ? 5 : 4 + code % 5);
        return own + widthStep;
    }
    int32_t advance(const std::string& text) const {
        int32_t sum = 0;
        for (const char c : text) {
            sum += advance(static_cast<unsigned char>(c));
        }
        return sum;
    }
    void fill(CFont& font) const {
        font.setMetrics(height, above, below);
        for (uint32_t code = 32; code < 127; ++code) {
            auto* layer = new CImageLayer(1);
            for (const double scale : {0.8, 1.0, 1.25}) {
                auto* version = new CImageVersion;
                const auto width = static_cast<int32_t>(std::lround(advance(code) * scale));
                const auto lineHeight = static_cast<int32_t>(std::lround(height * scale));
                const auto top = static_cast<int32_t>(std::lround(above * scale));
                const int32_t tall = lineHeight - top - static_cast<int32_t>(std::lround(below * scale));
                version->setSize(width, lineHeight);
                version->setAdvance(width);
                const int32_t drawn = code == ' ' ? 0 : width - 1;
                const CBytes pixels = randomPixels(drawn, tall, 1, seed * 1000 + code);
                EXPECT_GOOD(version->encode(pixels.data(), drawn, drawn > 0 ? tall : 0, 1, 0, top));
                EXPECT_GOOD(layer->addVersion(scale, version));
            }
            auto* image = new CImage;
            image->addLayer(layer);
            font.setImage(code, image);
        }
    }
};

/// Regular, bold (a pixel wider) and superscript (lower, narrower) faces, and texts laid out by them.
struct CTextTest : testing::Test {
    CTextTest() {
        face.fill(regular);
        boldFace.fill(bold);
        smallFace.fill(small);
        fonts.setFonts(&regular, &bold, &small);
    }
    static CTextSource marked(const std::string& text) {
        CTextSource source;
        CTextMarkup::append(source, text.c_str());
        return source;
    }
    static CTextSource plain(const std::string& text) {
        CTextSource source;
        source.setPlain(text.c_str());
        return source;
    }
    CTextLayout laidOut(const CTextSource& source, const CTextSettings& settings = {}) const {
        CTextLayout layout;
        CTextWrapper::layOut(source, fonts, settings, layout);
        return layout;
    }
    CTextLayout wrapped(const std::string& text, int32_t width) const {
        CTextSettings settings;
        settings.width = width;
        settings.isWrapped = true;
        return laidOut(plain(text), settings);
    }
    /// The texts of the lines, with `|` between them.
    static std::string linesOf(const CTextLayout& layout, const std::string& text) {
        std::string lines;
        for (int32_t i = 0; i < layout.lineCount(); ++i) {
            const CTextLine& line = layout.line(i);
            lines += i > 0 ? "|" : "";
            lines += text.substr(static_cast<size_t>(line.first), static_cast<size_t>(line.count));
        }
        return lines;
    }

    CTestFace face;
    CTestFace boldFace{14, 3, 3, 1, 2};
    CTestFace smallFace{9, 1, 2, -1, 3};
    CFont regular;
    CFont bold;
    CFont small;
    CTextFonts fonts;
};

}  // namespace tarv
