#include "UI/Resources/CFont.h"

#include <algorithm>
#include <cmath>

#include "UI/Resources/CDataReader.h"

namespace tarv {

namespace {

// In front, size and version; behind the image set three measures.
constexpr int64_t kFontFields = 5 * sizeof(uint32_t);
constexpr int32_t kMaxMetric = 65535;

}  // namespace

void CFont::setMetrics(int32_t height, int32_t metric2, int32_t metric3) {
    height_ = std::clamp(height, 0, kMaxMetric);
    metric2_ = std::clamp(metric2, 0, kMaxMetric);
    metric3_ = std::clamp(metric3, 0, kMaxMetric);
}

int32_t CFont::getHeight() const {
    return atStoredScale(height_);
}

int32_t CFont::atStoredScale(int32_t length) const {
    const CImage* glyph = imageCount() > 0 ? getImage(imageIndex(0)) : nullptr;
    const double stored = glyph && glyph->layerCount() > 0 ? glyph->layer(0).scale() : 1.0;
    return static_cast<int32_t>(std::lround(length * stored));
}

CError* CFont::read(CInputStream& input) {
    clear();
    setMetrics(0, 0, 0);
    CDataReader reader;
    TARV_TRY(reader.open(input));
    CError* error = readFont(reader);
    error = error ? error : reader.finish();
    if (error) {
        clear();
        setMetrics(0, 0, 0);
        TARV_TRY(error);
    }
    return nullptr;
}

CError* CFont::readFont(CDataReader& reader) {
    TARV_TRY(reader.readVersion());
    TARV_TRY(readBody(reader));
    TARV_TRY(reader.readWhole(height_, 0, kMaxMetric));
    TARV_TRY(reader.readWhole(metric2_, 0, kMaxMetric));
    TARV_TRY(reader.readWhole(metric3_, 0, kMaxMetric));
    return nullptr;
}

CError* CFont::write(COutputStream& output) const {
    TARV_TRY(writeSize(output));
    TARV_TRY(output.writeValue(kDataSetVersion));
    TARV_TRY(writeBody(output));
    TARV_TRY(writeWhole(output, height_));
    TARV_TRY(writeWhole(output, metric2_));
    TARV_TRY(writeWhole(output, metric3_));
    return nullptr;
}

int64_t CFont::getSize() const {
    return kFontFields + bodySize();
}

}  // namespace tarv
