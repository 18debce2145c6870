#pragma once

#include <cstdint>

#include "Core/CArray.h"
#include "Core/CCheckedObject.h"
#include "Core/CError.h"
#include "Core/LittleEndian.h"

namespace tarv {

/// Bytes owned by a caller; up to 32 lie inline.
using CByteBuffer = CArray<uint8_t, 32>;

/// Blocking, unbuffered source of bytes. All integers are little-endian. One thread at a time.
class CInputStream : public CCheckedObject {
public:
    [[nodiscard]] virtual CError* close() { return nullptr; }
    [[nodiscard]] virtual CError* consume(int64_t count) = 0;
    /// Exactly `count` bytes or a failure.
    [[nodiscard]] virtual CError* read(void* buffer, int64_t count) = 0;
    /// Up to `count` bytes; gives the number read, 0 at the end.
    [[nodiscard]] virtual CError* readStreamed(void* buffer, int64_t& count) { return read(buffer, count); }

    /// The next `count` bytes: where they lie, if the source is memory, otherwise read into `room` as readBytes does.
    /// Valid as long as both.
    [[nodiscard]] virtual CError* view(const uint8_t*& bytes, uint32_t count, CByteBuffer& room);
    /// The same as readStreamed does it: up to `count` bytes, 0 at the end.
    [[nodiscard]] virtual CError* viewStreamed(const uint8_t*& bytes, int64_t& count, CByteBuffer& room);

    [[nodiscard]] CError* readValue(uint32_t& value);
    [[nodiscard]] CError* readDouble(double& value);
    static constexpr uint32_t kMaxStringBytes = 61440;
    /// Byte count and UTF-8 (see Utf8.h) of at most kMaxStringBytes. A negative count gives an empty text.
    [[nodiscard]] CError* readString(CString& text);
    /// The bytes of a string as they stand in the stream, not decoded, as view gives them.
    [[nodiscard]] CError* viewString(const uint8_t*& bytes, uint32_t& count, CByteBuffer& room);
    /// Exactly `count` bytes behind what the buffer holds. Its room grows with what was really read: a count that the
    /// source can't fill takes no memory.
    [[nodiscard]] CError* readBytes(CByteBuffer& buffer, uint32_t count);
    /// One compressed block of the id given; see CompressedBlock.h for the layout.
    [[nodiscard]] CError* readCompressedData(CByteBuffer& buffer, uint32_t id);

protected:
    /// The count of a string as it was read; a negative one becomes 0.
    [[nodiscard]] static CError* checkStringCount(uint32_t& count);
};

class CPosInputStream : public CInputStream {
public:
    [[nodiscard]] virtual CError* getPosition(int64_t& position) = 0;
    [[nodiscard]] virtual CError* setPosition(int64_t position) = 0;
    [[nodiscard]] virtual CError* getSize(int64_t& size) = 0;
};

/// Blocking, unbuffered target of bytes. One thread at a time.
class COutputStream : public CCheckedObject {
public:
    [[nodiscard]] virtual CError* write(const void* buffer, int64_t count) = 0;

    [[nodiscard]] CError* writeValue(uint32_t value);
    [[nodiscard]] CError* writeDouble(double value);
    /// UTF-8 behind its byte count; surrogates have no code and are dropped.
    [[nodiscard]] CError* writeString(const CString& text);
    [[nodiscard]] CError* writeCompressedData(const CByteBuffer& buffer, uint32_t id);
};

class CPosOutputStream : public COutputStream {
public:
    [[nodiscard]] virtual CError* getPosition(int64_t& position) = 0;
    [[nodiscard]] virtual CError* setPosition(int64_t position) = 0;
    [[nodiscard]] virtual CError* getSize(int64_t& size) = 0;
};

/// Reads a range of memory that the caller keeps alive.
class CMemoryReader final : public CPosInputStream {
public:
    CMemoryReader() = default;
    CMemoryReader(const void* data, uint32_t size);
    /// Reads another range, from its start.
    void open(const void* data, uint32_t size);
    [[nodiscard]] CError* consume(int64_t count) override;
    [[nodiscard]] CError* read(void* buffer, int64_t count) override;
    [[nodiscard]] CError* readStreamed(void* buffer, int64_t& count) override;
    [[nodiscard]] CError* view(const uint8_t*& bytes, uint32_t count, CByteBuffer& room) override;
    [[nodiscard]] CError* viewStreamed(const uint8_t*& bytes, int64_t& count, CByteBuffer& room) override;
    [[nodiscard]] CError* getPosition(int64_t& position) override;
    [[nodiscard]] CError* setPosition(int64_t position) override;
    [[nodiscard]] CError* getSize(int64_t& size) override;

    /// What was not read yet.
    const uint8_t* rest() const { return data_ + position_; }
    uint32_t restCount() const { return size_ - position_; }

    /// readValue, view and viewString for those who read many small things out of memory.
    [[nodiscard]] CError* takeValue(uint32_t& value) {
        if (restCount() < sizeof(value)) {
            return readValue(value);  // fails in its own words
        }
        value = fromLittleEndian<uint32_t>(rest());
        position_ += sizeof(value);
        return nullptr;
    }
    [[nodiscard]] CError* takeBytes(const uint8_t*& bytes, uint32_t count) {
        if (count > restCount()) {
            return read(nullptr, count);  // fails in its own words
        }
        bytes = rest();
        position_ += count;
        return nullptr;
    }
    [[nodiscard, gnu::always_inline]] CError* takeString(const uint8_t*& bytes, uint32_t& count) {
        TARV_TRY(takeValue(count));
        if (count > kMaxStringBytes) {
            TARV_TRY(checkStringCount(count));
        }
        TARV_TRY(takeBytes(bytes, count));
        return nullptr;
    }

private:
    const uint8_t* data_ = nullptr;
    uint32_t size_ = 0;
    uint32_t position_ = 0;
};

/// Appends to a buffer that the caller keeps alive.
class CBufferWriter : public COutputStream {
public:
    explicit CBufferWriter(CByteBuffer& buffer) : buffer_(buffer) {}
    [[nodiscard]] CError* write(const void* buffer, int64_t count) override;

private:
    CByteBuffer& buffer_;
};

/// Grows in a chain of blocks of at least 128 bytes.
class CMemoryWriteBuffer : public CPosOutputStream {
public:
    CMemoryWriteBuffer() = default;
    ~CMemoryWriteBuffer() override;
    [[nodiscard]] CError* write(const void* buffer, int64_t count) override;
    [[nodiscard]] CError* getPosition(int64_t& position) override;
    [[nodiscard]] CError* setPosition(int64_t position) override;
    [[nodiscard]] CError* getSize(int64_t& size) override;
    /// All bytes in one run.
    void copyTo(CByteBuffer& buffer) const;

private:
    struct CBlock;
    CBlock* blockAt(int64_t position);
    void extend(int64_t wanted);
    CBlock* head_ = nullptr;
    CBlock* tail_ = nullptr;
    CBlock* current_ = nullptr;
    int64_t position_ = 0;
    int64_t size_ = 0;
};

}  // namespace tarv
