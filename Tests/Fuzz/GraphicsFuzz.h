#pragma once

#include <vector>

#include "Core/LittleEndian.h"
#include "Tests/Fuzz/FuzzTools.h"
#include "UI/Drawing/CLinearBitmap.h"
#include "UI/Resources/CDataSet.h"
#include "UI/Resources/CImageSet.h"

namespace tarv {

template <class T>
CByteBuffer writtenSet(const T& set) {
    CByteBuffer bytes;
    CBufferWriter writer(bytes);
    mustSucceed(set.write(writer));
    must(set.getSize() == bytes.count());
    return bytes;
}

/// A set is read whole, and writes the same bytes, or is empty.
template <class T, class F>
void readSet(const std::vector<uint8_t>& file, const F& use) {
    T set;
    CMemoryReader reader(file.data(), static_cast<uint32_t>(file.size()));
    const bool failed = isFailure(set.read(reader));
    const CByteBuffer bytes = writtenSet(set);
    if (failed) {
        must(sameBytes(bytes, writtenSet(T())));
        return;
    }
    must(static_cast<size_t>(bytes.count()) <= file.size());
    must(std::equal(bytes.begin(), bytes.end(), file.begin()));
    use(set);
}

/// As it came, and with the size field that it should have, so that changes of the length get past it.
template <class T, class F>
void readBoth(const uint8_t* data, size_t size, const F& use) {
    std::vector<uint8_t> file(data, data + size);
    readSet<T>(file, use);
    if (size >= sizeof(uint32_t)) {
        toLittleEndian(static_cast<uint32_t>(size - sizeof(uint32_t)), file.data());
        readSet<T>(file, use);
    }
}

/// Draws each version of each layer over the corners of a small bitmap, so that rows are cut at both ends.
inline void drawAll(const CImageSet& set) {
    constexpr int32_t kSize = 24;
    static CLinearBitmap bitmap;
    static const CColor color;
    if (bitmap.width() == 0) {
        mustSucceed(bitmap.resize(kSize, kSize));
    }
    for (int32_t i = 0; i < set.imageCount(); ++i) {
        const CImage& image = *set.getImage(set.imageIndex(i));
        for (int32_t k = 0; k < image.layerCount(); ++k) {
            const CImageLayer& layer = image.layer(k);
            const CImageVersion& version = layer.version();
            bitmap.drawImage(layer, color, 3 - version.x(), -1 - version.y(), 1.0, {4, 0, kSize, kSize});
            bitmap.drawImage(layer, color, kSize - version.x() - version.storedWidth(),
                             kSize - version.y() - version.storedHeight(), 0.5, {0, 0, kSize - 2, kSize});
        }
    }
}

}  // namespace tarv
