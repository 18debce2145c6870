#include "Core/CompressedBlock.h"

#include <zlib.h>

#include "Core/CZipStreams.h"
#include "Core/LittleEndian.h"

namespace tarv {

namespace {

constexpr int64_t kMaxBlockBytes = 256 << 20;

uint32_t checkOf(const uint8_t (&sizeBytes)[4]) {
    return static_cast<uint32_t>(adler32(1, sizeBytes, sizeof(sizeBytes)));
}

CError* readInflated(CInputStream& source, CByteBuffer& buffer, uint32_t size) {
    CInputZipStream zip;
    TARV_TRY(zip.open(source));
    if (CError* error = zip.readToEnd(buffer, static_cast<int32_t>(size))) {
        buffer.clear();
        TARV_CONSUME(zip.close());
        return error;
    }
    TARV_TRY(zip.close());
    return nullptr;
}

}  // namespace

CError* CInputStream::readCompressedData(CByteBuffer& buffer, uint32_t id) {
    buffer.clear();
    uint32_t storedId = 0;
    TARV_TRY(readValue(storedId));
    if (storedId != id) {
        TARV_FAIL(
            "@tarvstr_CInputStream_readCompressedData_InvalidId Invalid ID encountered when reading compressed data "
            "(expected %1, read %2).",
            CString::fromInt(id), CString::fromInt(storedId));
    }
    uint32_t size = 0;
    uint32_t storedCheck = 0;
    uint8_t sizeBytes[sizeof(size)];
    TARV_TRY(read(sizeBytes, sizeof(sizeBytes)));
    size = fromLittleEndian<uint32_t>(sizeBytes);
    TARV_TRY(readValue(storedCheck));
    const uint32_t check = checkOf(sizeBytes);
    if (check != storedCheck) {
        TARV_FAIL(
            "@tarvstr_CInputStream_readCompressedData_InvalidCrc Invalid CRC encountered when reading compressed data "
            "(expected %1, read %2).",
            CString::fromInt(storedCheck), CString::fromInt(check));
    }
    if (size > kMaxBlockBytes) {
        TARV_FAIL("@tarvstr_CInputStream_readCompressedData_TooLong Compressed data too long (%1 bytes).",
                  CString::fromInt(size));
    }
    TARV_TRY(readInflated(*this, buffer, size));
    return nullptr;
}

CError* COutputStream::writeCompressedData(const CByteBuffer& buffer, uint32_t id) {
    uint8_t sizeBytes[4];
    TARV_TRY(writeValue(id));
    toLittleEndian(static_cast<uint32_t>(buffer.count()), sizeBytes);
    TARV_TRY(write(sizeBytes, sizeof(sizeBytes)));
    TARV_TRY(writeValue(checkOf(sizeBytes)));
    COutputZipStream zip;
    TARV_TRY(zip.open(*this));
    TARV_TRY(zip.write(buffer.data(), buffer.count()));
    TARV_TRY(zip.close());
    return nullptr;
}

}  // namespace tarv
