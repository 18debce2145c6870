#include "Core/CStreams.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "Core/LittleEndian.h"
#include "Core/Utf8.h"

namespace tarv {

namespace {

constexpr size_t kStringStaging = 128;
// The most that viewStreamed reads at once.
constexpr int64_t kStreamedStep = 32768;
// Free bytes below which the staging of a string is flushed; no code of a unit is longer.
constexpr size_t kStagingReserve = 4;

/// Bytes that the text takes in UTF-8.
uint32_t utf8Size(const CString& text) {
    char unit[kMaxUtf8Bytes];
    uint32_t size = 0;
    for (int32_t i = 0; i < text.length(); ++i) {
        size += static_cast<uint32_t>(encodeUtf8(text.at(i), unit));
    }
    return size;
}

}  // namespace

CError* CInputStream::readValue(uint32_t& value) {
    uint8_t bytes[sizeof(value)];
    TARV_TRY(read(bytes, sizeof(bytes)));
    value = fromLittleEndian<uint32_t>(bytes);
    return nullptr;
}

CError* CInputStream::readDouble(double& value) {
    uint8_t bytes[sizeof(value)];
    TARV_TRY(read(bytes, sizeof(bytes)));
    value = std::bit_cast<double>(fromLittleEndian<uint64_t>(bytes));
    return nullptr;
}

CError* CInputStream::view(const uint8_t*& bytes, uint32_t count, CByteBuffer& room) {
    room.clear();
    TARV_TRY(readBytes(room, count));
    bytes = room.data();
    return nullptr;
}

CError* CInputStream::viewStreamed(const uint8_t*& bytes, int64_t& count, CByteBuffer& room) {
    room.resize(static_cast<int32_t>(std::min<int64_t>(count, kStreamedStep)));
    count = room.count();
    TARV_TRY(readStreamed(room.data(), count));
    bytes = room.data();
    return nullptr;
}

CError* CInputStream::checkStringCount(uint32_t& count) {
    const auto length = static_cast<int32_t>(count);
    if (length < 0) {
        count = 0;
    }
    if (count > kMaxStringBytes) {
        TARV_FAIL("@tarvstr_CInputStream_readString_TooLong String length %1 too long in readString().",
                  CString::fromInt(length));
    }
    return nullptr;
}

CError* CInputStream::viewString(const uint8_t*& bytes, uint32_t& count, CByteBuffer& room) {
    TARV_TRY(readValue(count));
    TARV_TRY(checkStringCount(count));
    TARV_TRY(view(bytes, count, room));
    return nullptr;
}

CError* CInputStream::readString(CString& text) {
    text = CString();
    CByteBuffer room;
    const uint8_t* bytes = nullptr;
    uint32_t count = 0;
    TARV_TRY(viewString(bytes, count, room));
    appendUtf8(text, reinterpret_cast<const char*>(bytes), count);
    return nullptr;
}

CError* CInputStream::readBytes(CByteBuffer& buffer, uint32_t count) {
    constexpr uint32_t kStep = 1 << 16;
    for (uint32_t done = 0; done < count;) {
        const uint32_t step = std::min(count - done, std::max(kStep, done));
        const int32_t start = buffer.count();
        if (step > static_cast<uint32_t>(INT32_MAX - start)) {
            TARV_FAIL("@tarvstr_CInputStream_readBytes_TooLong Data too long (%1 bytes).", CString::fromInt(count));
        }
        buffer.resize(start + static_cast<int32_t>(step));
        if (CError* error = read(buffer.data() + start, step)) {
            buffer.resize(start);
            TARV_TRY(error);
        }
        done += step;
    }
    return nullptr;
}

CError* COutputStream::writeValue(uint32_t value) {
    uint8_t bytes[sizeof(value)];
    toLittleEndian(value, bytes);
    TARV_TRY(write(bytes, sizeof(bytes)));
    return nullptr;
}

CError* COutputStream::writeDouble(double value) {
    uint8_t bytes[sizeof(value)];
    toLittleEndian(std::bit_cast<uint64_t>(value), bytes);
    TARV_TRY(write(bytes, sizeof(bytes)));
    return nullptr;
}

CError* COutputStream::writeString(const CString& text) {
    TARV_TRY(writeValue(utf8Size(text)));
    char staging[kStringStaging];
    size_t used = 0;
    for (int32_t i = 0; i < text.length(); ++i) {
        if (kStringStaging - used < kStagingReserve) {
            TARV_TRY(write(staging, static_cast<int64_t>(used)));
            used = 0;
        }
        used += encodeUtf8(text.at(i), staging + used);
    }
    TARV_TRY(write(staging, static_cast<int64_t>(used)));
    return nullptr;
}

}  // namespace tarv
