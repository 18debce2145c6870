#include "CFontFace.h"

#include <fontconfig/fontconfig.h>
#include <hb.h>

#include <memory>
#include <sstream>

#include FT_OUTLINE_H

namespace tarv {

namespace {

struct CPatternDeleter {
    void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
using CPattern = std::unique_ptr<FcPattern, CPatternDeleter>;

const FcChar8* patternText(const std::string& text) {
    return reinterpret_cast<const FcChar8*>(text.c_str());
}

std::string textIn(const CPattern& pattern, const char* key) {
    FcChar8* value = nullptr;
    return pattern && FcPatternGetString(pattern.get(), key, 0, &value) == FcResultMatch
               ? reinterpret_cast<const char*>(value)
               : "";
}

}  // namespace

CFontFace::~CFontFace() {
    hb_font_destroy(shaper_);
    FT_Done_Face(face_);
    FT_Done_FreeType(library_);
}

CDefinitionFailure CFontFace::open(const std::string& path, const std::string& family, const std::string& style) {
    CPattern wanted(FcPatternCreate());
    FcPatternAddString(wanted.get(), FC_FAMILY, patternText(family));
    FcPatternAddString(wanted.get(), FC_STYLE, patternText(style));
    FcConfigSubstitute(nullptr, wanted.get(), FcMatchPattern);
    FcDefaultSubstitute(wanted.get());
    FcResult result = FcResultNoMatch;
    const CPattern found(FcFontMatch(nullptr, wanted.get(), &result));
    // The library always finds some face; only the one that was asked for will do.
    if (textIn(found, FC_FAMILY) != family || textIn(found, FC_STYLE) != style) {
        return CDefinitionError{{path}, "the face '" + family + "' '" + style + "' isn't installed"};
    }
    int index = 0;
    FcPatternGetInteger(found.get(), FC_INDEX, 0, &index);
    return openFile(path, textIn(found, FC_FILE), index);
}

CDefinitionFailure CFontFace::openFile(const std::string& path, const std::string& file, int index) {
    if (FT_Init_FreeType(&library_) || FT_New_Face(library_, file.c_str(), index, &face_)) {
        return CDefinitionError{{path}, "the face in '" + file + "' can't be read"};
    }
    hb_blob_t* blob = hb_blob_create_from_file(file.c_str());
    hb_face_t* face = hb_face_create(blob, static_cast<unsigned>(index));
    shaper_ = hb_font_create(face);
    hb_face_destroy(face);
    hb_blob_destroy(blob);
    return std::nullopt;
}

void CFontFace::setSize(double pixels) {
    size_ = pixels;
    FT_Set_Char_Size(face_, 0, std::lround(pixels * 64), 72, 72);
}

uint32_t CFontFace::glyphOf(uint32_t character, const std::string& features) const {
    std::vector<hb_feature_t> wanted;
    std::istringstream words(features);
    for (std::string word; words >> word;) {
        hb_feature_t feature;
        if (hb_feature_from_string(word.c_str(), -1, &feature)) {
            wanted.push_back(feature);
        }
    }
    hb_buffer_t* buffer = hb_buffer_create();
    hb_buffer_add_utf32(buffer, &character, 1, 0, 1);
    hb_buffer_guess_segment_properties(buffer);
    hb_shape(shaper_, buffer, wanted.data(), static_cast<unsigned>(wanted.size()));
    unsigned count = 0;
    const hb_glyph_info_t* info = hb_buffer_get_glyph_infos(buffer, &count);
    const uint32_t glyph = count == 1 ? info[0].codepoint : 0;
    hb_buffer_destroy(buffer);
    return glyph;
}

double CFontFace::advanceOf(uint32_t glyph) const {
    if (FT_Load_Glyph(face_, glyph, FT_LOAD_NO_SCALE)) {
        return 0;
    }
    return static_cast<double>(face_->glyph->metrics.horiAdvance) * size_ / face_->units_per_EM;
}

double CFontFace::capitalHeight() const {
    if (FT_Load_Glyph(face_, glyphOf('H', ""), FT_LOAD_NO_SCALE)) {
        return 0;
    }
    return static_cast<double>(face_->glyph->metrics.height) * size_ / face_->units_per_EM;
}

CRaster CFontFace::draw(uint32_t glyph, double shift) const {
    CRaster raster;
    raster.bytesPerPixel = 1;
    // Light hinting moves edges up and down only, so that the shift to the right keeps what it did.
    if (FT_Load_Glyph(face_, glyph, FT_LOAD_TARGET_LIGHT)) {
        return raster;
    }
    FT_Outline_Translate(&face_->glyph->outline, std::lround(shift * 64), 0);
    if (FT_Render_Glyph(face_->glyph, FT_RENDER_MODE_NORMAL)) {
        return raster;
    }
    const FT_Bitmap& bitmap = face_->glyph->bitmap;
    raster.x = face_->glyph->bitmap_left;
    raster.y = -face_->glyph->bitmap_top;
    raster.drawnWidth = static_cast<int>(bitmap.width);
    raster.drawnHeight = static_cast<int>(bitmap.rows);
    for (unsigned row = 0; row < bitmap.rows; ++row) {
        const uint8_t* bytes = bitmap.buffer + static_cast<ptrdiff_t>(row) * bitmap.pitch;
        raster.pixels.insert(raster.pixels.end(), bytes, bytes + bitmap.width);
    }
    return raster;
}

}  // namespace tarv
