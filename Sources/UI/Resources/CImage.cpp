#include "UI/Resources/CImage.h"

#include <memory>

#include "UI/Resources/CDataReader.h"
#include "UI/Resources/CDataSet.h"

namespace tarv {

namespace {

// Of a layer: kind, bytes per pixel, count of scales.
constexpr int64_t kLayerHead = 12;
constexpr int32_t kPlainKind = 0;

}  // namespace

int32_t CImageLayer::nearestTo(double scale) const {
    return nearestScale(scales_, scale);
}

void CImageLayer::chooseScale(double scale) {
    wanted_ = scale;
    chosen_ = scales_.isEmpty() ? 0 : nearestTo(scale);
}

CError* CImageLayer::addVersion(double scale, CImageVersion* version) {
    std::unique_ptr<CImageVersion> owned(version);
    int32_t position = 0;
    while (position < scales_.count() && scales_[position] < scale) {
        ++position;
    }
    if (!(scale >= kLowestStoredScale && scale <= kHighestStoredScale) || scales_.indexOf(scale) >= 0) {
        TARV_FAIL("@tarvstr_CImageLayer_addVersion_Invalid Scale %1 can't be stored, or is stored already.",
                  CString::fromDouble(scale, 4));
    }
    scales_.insert(position, scale);
    versions_.insert(position, owned.release());
    chooseScale(wanted_);
    return nullptr;
}

CError* CImageLayer::read(CDataReader& reader) {
    int32_t kind = 0;
    TARV_TRY(reader.readWhole(kind, kPlainKind, kPlainKind));
    TARV_TRY(reader.readWhole(bytesPerPixel_, 1, 4));
    if (bytesPerPixel_ == 3) {
        TARV_FAIL("@tarvstr_CImageLayer_read_BytesPerPixel No layer has 3 bytes per pixel (before byte %1).",
                  reader.place());
    }
    TARV_TRY(reader.readScales(scales_, CImageVersion::kLeastBytes));
    for (int32_t i = 0; i < scales_.count(); ++i) {
        versions_.append(new CImageVersion);
        TARV_TRY(versions_.last()->read(reader, bytesPerPixel_));
    }
    return nullptr;
}

CError* CImageLayer::write(COutputStream& output) const {
    TARV_TRY(writeWhole(output, kPlainKind));
    TARV_TRY(writeWhole(output, bytesPerPixel_));
    TARV_TRY(writeWhole(output, scales_.count()));
    for (const double scale : scales_) {
        TARV_TRY(output.writeDouble(scale));
    }
    for (const CImageVersion* version : versions_) {
        TARV_TRY(version->write(output));
    }
    return nullptr;
}

int64_t CImageLayer::getSize() const {
    int64_t size = kLayerHead + static_cast<int64_t>(sizeof(double)) * scales_.count();
    for (const CImageVersion* version : versions_) {
        size += version->getSize();
    }
    return size;
}

void CImage::chooseScale(double scale) {
    for (CImageLayer* layer : layers_) {
        layer->chooseScale(scale);
    }
}

CError* CImage::read(CDataReader& reader) {
    int32_t count = 0;
    TARV_TRY(reader.readCount(count, CImageLayer::kLeastBytes));
    if (count == 0) {
        TARV_FAIL("@tarvstr_CImage_read_NoLayer Image before byte %1 has no layer.", reader.place());
    }
    for (int32_t i = 0; i < count; ++i) {
        layers_.append(new CImageLayer);
        TARV_TRY(layers_.last()->read(reader));
    }
    return nullptr;
}

CError* CImage::write(COutputStream& output) const {
    TARV_TRY(writeWhole(output, layers_.count()));
    for (const CImageLayer* layer : layers_) {
        TARV_TRY(layer->write(output));
    }
    return nullptr;
}

int64_t CImage::getSize() const {
    int64_t size = sizeof(uint32_t);
    for (const CImageLayer* layer : layers_) {
        size += layer->getSize();
    }
    return size;
}

}  // namespace tarv
