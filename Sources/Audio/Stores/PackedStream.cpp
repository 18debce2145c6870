#include "Audio/Stores/PackedStream.h"

namespace tarv {

CError* expectStreamEnd(CPosInputStream& stream) {
    int64_t position = 0;
    int64_t size = 0;
    TARV_TRY(stream.getPosition(position));
    TARV_TRY(stream.getSize(size));
    if (position != size) {
        TARV_FAIL("@tarvstr_PackedStream_expectStreamEnd_MoreData Data go on behind their end (pos %1, size %2).",
                  CString::fromInt(position), CString::fromInt(size));
    }
    return nullptr;
}

CError* writeStored(COutputStream& stream, const CByteBuffer& bytes, uint32_t id, bool isPacked) {
    if (isPacked) {
        TARV_TRY(stream.writeCompressedData(bytes, id));
    } else {
        TARV_TRY(stream.write(bytes.data(), bytes.count()));
    }
    return nullptr;
}

}  // namespace tarv
