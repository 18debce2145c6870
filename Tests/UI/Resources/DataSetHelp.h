#pragma once

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <map>
#include <string>
#include <vector>

#include "Core/CError.h"
#include "Core/CStreams.h"
#include "Tests/Core/CoreTestHelp.h"
#include "UI/Resources/CBrushSet.h"
#include "UI/Resources/CFont.h"
#include "UI/Resources/CImageSet.h"
#include "UI/Resources/CPalette.h"

namespace tarv {

using CBytes = std::vector<uint8_t>;

/// A file put together field by field, as its description has it; knows nothing of the classes under test.
class CFileBuilder {
public:
    CFileBuilder& value(uint32_t v) { return bits(v, 4); }
    CFileBuilder& number(double v) { return bits(std::bit_cast<uint64_t>(v), 8); }
    CFileBuilder& text(const std::string& t) {
        value(static_cast<uint32_t>(t.size()));
        bytes_.insert(bytes_.end(), t.begin(), t.end());
        return *this;
    }
    CFileBuilder& raw(const CBytes& b) {
        bytes_.insert(bytes_.end(), b.begin(), b.end());
        return *this;
    }
    CFileBuilder& bits(uint64_t v, int32_t count) {
        for (int32_t i = 0; i < count; ++i) {
            bytes_.push_back(static_cast<uint8_t>(v >> (8 * i)));
        }
        return *this;
    }
    /// Names the place where the next field goes.
    CFileBuilder& mark(const std::string& name) {
        marks_[name] = bytes_.size();
        return *this;
    }
    const CBytes& bytes() const { return bytes_; }
    /// Byte of the file at which a marked field stands.
    size_t offsetOf(const std::string& mark) const { return marks_.at(mark) + sizeof(uint32_t); }
    /// The file: the size, and what was put here.
    CBytes file() const {
        CFileBuilder whole;
        whole.value(static_cast<uint32_t>(bytes_.size())).raw(bytes_);
        return whole.bytes();
    }

private:
    CBytes bytes_;
    std::map<std::string, size_t> marks_;
};

template <class T>
CError* readSet(T& set, const CBytes& file) {
    CMemoryReader reader(file.data(), static_cast<uint32_t>(file.size()));
    return set.read(reader);
}

template <class T>
CBytes written(const T& set) {
    CByteBuffer buffer;
    CBufferWriter writer(buffer);
    EXPECT_GOOD(set.write(writer));
    return CBytes(buffer.begin(), buffer.end());
}

/// Pixels of one version, decoded here anew: `bytesPerPixel` bytes each, and whether the row and the run let it be
/// seen. What a transparent run or an empty row covers is 0.
inline CBytes decoded(const CImageVersion& version, int32_t bytesPerPixel) {
    CBytes pixels;
    const auto size = static_cast<size_t>(bytesPerPixel);
    for (int32_t y = 0; y < version.storedHeight(); ++y) {
        const uint8_t* p = version.row(y);
        for (int32_t x = 0; x < version.storedWidth();) {
            if (!p) {
                pixels.insert(pixels.end(), size, 0);
                ++x;
                continue;
            }
            const bool isLong = (p[0] & 4) != 0;
            const int32_t header = isLong ? p[0] | p[1] << 8 : p[0];
            p += isLong ? 2 : 1;
            for (int32_t i = 0; i < header >> 3; ++i, ++x) {
                const size_t stored = (header & 3) == 0 ? 0 : (header & 3) == 1 ? size : size - 1;
                pixels.insert(pixels.end(), p, p + stored);
                pixels.insert(pixels.end(), size - stored, (header & 3) == 0 ? 0 : 255);
                p += stored;
            }
        }
    }
    return pixels;
}

/// A picture whose alpha and index come from a small generator, with runs of all kinds.
inline CBytes randomPixels(int32_t width, int32_t height, int32_t bytesPerPixel, uint32_t seed) {
    CBytes pixels(static_cast<size_t>(width) * static_cast<size_t>(height) * static_cast<size_t>(bytesPerPixel));
    uint32_t state = seed * 2654435761u + 1;
    auto next = [&state] { return (state = state * 1664525u + 1013904223u) >> 16; };
    uint32_t left = 0;
    uint32_t kind = 0;
    for (size_t i = 0; i < pixels.size(); i += static_cast<size_t>(bytesPerPixel)) {
        if (left-- == 0) {
            left = next() % 3 ? next() % 5 : next() % 60;
            kind = next() % 3;
        }
        for (int32_t k = 0; k + 1 < bytesPerPixel; ++k) {
            pixels[i + static_cast<size_t>(k)] = static_cast<uint8_t>(kind ? next() : 0);
        }
        pixels[i + static_cast<size_t>(bytesPerPixel) - 1] = static_cast<uint8_t>(kind == 0   ? 0
                                                                                  : kind == 1 ? 1 + next() % 254
                                                                                              : 255);
    }
    return pixels;
}

/// A picture of one layer at the three scales, its sizes given by the scale.
inline CImage* makeImage(int32_t bytesPerPixel, uint32_t seed, double advance = 0.0) {
    auto* layer = new CImageLayer(bytesPerPixel);
    for (const double scale : {0.8, 1.0, 1.25}) {
        auto* version = new CImageVersion;
        const auto width = static_cast<int32_t>(20 * scale);
        const auto height = static_cast<int32_t>(8 * scale);
        version->setSize(width, height);
        version->setAdvance(advance * scale);
        const CBytes pixels = randomPixels(width + 4, height + 4, bytesPerPixel, seed);
        EXPECT_GOOD(version->encode(pixels.data(), width + 4, height + 4, bytesPerPixel, -2, -2));
        EXPECT_GOOD(layer->addVersion(scale, version));
    }
    auto* image = new CImage;
    image->addLayer(layer);
    return image;
}

/// An embedded resource of some bytes: their length, then they.
inline CBytes resourceOf(const CBytes& file) {
    CFileBuilder builder;
    return builder.value(static_cast<uint32_t>(file.size())).raw(file).bytes();
}

}  // namespace tarv
