#pragma once

#include <cstdint>

#include "UI/Resources/CImageVersion.h"

namespace tarv {

/// One layer of a picture, stored once for each of some scales.
class CImageLayer : public CHeapObject {
public:
    /// Bytes per pixel: 1 alpha alone, drawn in the brightest entry of a ramp; 2 ramp index and alpha; 4 blue, green,
    /// red and alpha, drawn without a ramp.
    explicit CImageLayer(int32_t bytesPerPixel = 2) : bytesPerPixel_(bytesPerPixel) {}

    /// Takes the version over, also when it fails: a scale that stands already, or that can't be stored.
    [[nodiscard]] CError* addVersion(double scale, CImageVersion* version);
    /// The version nearest to a scale is in effect from now on.
    void chooseScale(double scale);

    int32_t bytesPerPixel() const { return bytesPerPixel_; }
    int32_t versionCount() const { return versions_.count(); }
    const CImageVersion& versionAt(int32_t index) const { return *versions_[index]; }
    double scaleAt(int32_t index) const { return scales_[index]; }
    /// The version in effect, its scale, and the one nearest to another scale. There is at least one.
    const CImageVersion& version() const { return *versions_[chosen_]; }
    double scale() const { return scales_[chosen_]; }
    const CImageVersion& versionNear(double scale) const { return *versions_[nearestTo(scale)]; }

    /// Fewest bytes in a file.
    static constexpr uint32_t kLeastBytes = 12 + 8 + CImageVersion::kLeastBytes;
    [[nodiscard]] CError* read(CDataReader& reader);
    [[nodiscard]] CError* write(COutputStream& output) const;
    int64_t getSize() const;

private:
    int32_t nearestTo(double scale) const;

    int32_t bytesPerPixel_;
    int32_t chosen_ = 0;
    double wanted_ = 1.0;
    CArray<double, 3> scales_;
    COwnedArray<CImageVersion, 3> versions_;
};

/// One picture: layers that lie on one another, the first at the bottom. Its sizes are those of the first.
class CImage : public CHeapObject {
public:
    /// Takes the layer over.
    void addLayer(CImageLayer* layer) { layers_.append(layer); }
    void chooseScale(double scale);

    int32_t layerCount() const { return layers_.count(); }
    const CImageLayer& layer(int32_t index) const { return *layers_[index]; }
    /// Nominal size in device pixels, and the pen advance of a glyph, at the scale in effect. 0 without a layer.
    int32_t getWidth() const { return layers_.isEmpty() ? 0 : layers_[0]->version().width(); }
    int32_t getHeight() const { return layers_.isEmpty() ? 0 : layers_[0]->version().height(); }
    double getAdvance() const { return layers_.isEmpty() ? 0.0 : layers_[0]->version().advance(); }

    /// Fewest bytes in a file.
    static constexpr uint32_t kLeastBytes = 4 + CImageLayer::kLeastBytes;
    [[nodiscard]] CError* read(CDataReader& reader);
    [[nodiscard]] CError* write(COutputStream& output) const;
    int64_t getSize() const;

private:
    COwnedArray<CImageLayer, 1> layers_;
};

}  // namespace tarv
