#pragma once

#include "Core/CResourceReader.h"

namespace tarv {

/// Fails unless the reader is at its end.
[[nodiscard]] CError* expectStreamEnd(CPosInputStream& stream);

/// Writes a stream as a compressed block of that id, or bare.
[[nodiscard]] CError* writeStored(COutputStream& stream, const CByteBuffer& bytes, uint32_t id, bool isPacked);

/// Reads a compressed block of that id and passes what was inflated to `load(CInputStream&)` of a new T, which has to
/// read all of it; `target` takes the result over by `take(T&)`. On failure `target` is as it was.
template <class T>
[[nodiscard]] CError* loadPacked(CInputStream& source, uint32_t id, T& target) {
    CByteBuffer bytes;
    TARV_TRY(source.readCompressedData(bytes, id));
    CMemoryReader reader(bytes.data(), static_cast<uint32_t>(bytes.count()));
    T loaded;
    TARV_TRY(loaded.load(reader));
    TARV_TRY(expectStreamEnd(reader));
    target.take(loaded);
    return nullptr;
}

/// As loadPacked, from an embedded range or a file.
template <class T>
[[nodiscard]] CError* loadPackedFile(const CString& path, uint32_t id, T& target) {
    CResourceReader reader;
    TARV_TRY(reader.open(path));
    TARV_TRY(loadPacked(reader, id, target));
    return nullptr;
}

}  // namespace tarv
