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

}  // namespace tarv
