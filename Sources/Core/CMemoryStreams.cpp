// Streams over memory: a reader of bytes that lie elsewhere, and a buffer that grows with what is written.

#include <algorithm>
#include <cstring>

#include "Core/CStreams.h"

namespace tarv {

CMemoryReader::CMemoryReader(const void* data, uint32_t size) : data_(static_cast<const uint8_t*>(data)), size_(size) {}

void CMemoryReader::open(const void* data, uint32_t size) {
    data_ = static_cast<const uint8_t*>(data);
    size_ = size;
    position_ = 0;
}

CError* CMemoryReader::consume(int64_t count) {
    if (count < 0 || count > size_ - position_) {
        TARV_FAIL(
            "@tarvstr_CMemoryReader_consume_PrematureEnd Premature end of memory resource while consuming (pos %1, "
            "count "
            "%2, size %3).",
            CString::fromInt(position_), CString::fromInt(count), CString::fromInt(size_));
    }
    position_ += static_cast<uint32_t>(count);
    return nullptr;
}

CError* CMemoryReader::read(void* buffer, int64_t count) {
    if (count < 0 || count > size_ - position_) {
        TARV_FAIL(
            "@tarvstr_CMemoryReader_read_PrematureEnd Premature end of memory resource while reading (pos %1, count "
            "%2, size %3).",
            CString::fromInt(position_), CString::fromInt(count), CString::fromInt(size_));
    }
    std::copy_n(data_ + position_, count, static_cast<uint8_t*>(buffer));
    position_ += static_cast<uint32_t>(count);
    return nullptr;
}

CError* CMemoryReader::readStreamed(void* buffer, int64_t& count) {
    count = std::clamp<int64_t>(count, 0, size_ - position_);
    return read(buffer, count);
}

CError* CMemoryReader::view(const uint8_t*& bytes, uint32_t count, CByteBuffer&) {
    TARV_TRY(takeBytes(bytes, count));
    return nullptr;
}

CError* CMemoryReader::viewStreamed(const uint8_t*& bytes, int64_t& count, CByteBuffer& room) {
    count = std::clamp<int64_t>(count, 0, restCount());
    TARV_TRY(view(bytes, static_cast<uint32_t>(count), room));
    return nullptr;
}

CError* CMemoryReader::getPosition(int64_t& position) {
    position = position_;
    return nullptr;
}

CError* CMemoryReader::setPosition(int64_t position) {
    if (position < 0 || position > size_) {
        TARV_FAIL(
            "@tarvstr_CMemoryReader_setPosition_Invalid Unable to set memory resource's reading position (pos %1, size "
            "%2).",
            CString::fromInt(position), CString::fromInt(size_));
    }
    position_ = static_cast<uint32_t>(position);
    return nullptr;
}

CError* CMemoryReader::getSize(int64_t& size) {
    size = size_;
    return nullptr;
}

CError* CBufferWriter::write(const void* buffer, int64_t count) {
    const int32_t start = buffer_.count();
    if (count < 0 || count > INT32_MAX - start) {
        TARV_FAIL("@tarvstr_CBufferWriter_write_TooLong Unable to write %1 bytes behind %2.", CString::fromInt(count),
                  CString::fromInt(start));
    }
    buffer_.append(static_cast<const uint8_t*>(buffer), static_cast<int32_t>(count));
    return nullptr;
}

namespace {

constexpr int64_t kMinBlock = 128;

}  // namespace

struct CMemoryWriteBuffer::CBlock {
    CBlock* next;
    int64_t start;
    int64_t capacity;

    int64_t end() const { return start + capacity; }
    uint8_t* bytes() { return reinterpret_cast<uint8_t*>(this + 1); }
};

CMemoryWriteBuffer::~CMemoryWriteBuffer() {
    while (head_) {
        CBlock* next = head_->next;
        CHeap::free(head_);
        head_ = next;
    }
}

CMemoryWriteBuffer::CBlock* CMemoryWriteBuffer::blockAt(int64_t position) {
    CBlock* block = current_ && current_->start <= position ? current_ : head_;
    while (block && block->end() <= position) {
        block = block->next;
    }
    return block;
}

void CMemoryWriteBuffer::extend(int64_t wanted) {
    const int64_t capacity = std::max(wanted, kMinBlock);
    void* memory = CHeap::alloc(sizeof(CBlock) + static_cast<size_t>(capacity));
    CBlock* block = new (memory) CBlock{nullptr, tail_ ? tail_->end() : 0, capacity};
    (tail_ ? tail_->next : head_) = block;
    tail_ = block;
}

CError* CMemoryWriteBuffer::write(const void* buffer, int64_t count) {
    auto* source = static_cast<const uint8_t*>(buffer);
    while (count > 0) {
        CBlock* block = blockAt(position_);
        if (!block) {
            extend(count);
            block = tail_;
        }
        current_ = block;
        const int64_t part = std::min(count, block->end() - position_);
        std::memcpy(block->bytes() + (position_ - block->start), source, static_cast<size_t>(part));
        source += part;
        count -= part;
        position_ += part;
        size_ = std::max(size_, position_);
    }
    return nullptr;
}

CError* CMemoryWriteBuffer::getPosition(int64_t& position) {
    position = position_;
    return nullptr;
}

CError* CMemoryWriteBuffer::setPosition(int64_t position) {
    if (position < 0 || position > size_) {
        TARV_FAIL(
            "@tarvstr_CMemoryWriteBuffer_setPosition_Invalid Unable to set memory buffer's writing position (pos %1, "
            "size %2).",
            CString::fromInt(position), CString::fromInt(size_));
    }
    position_ = position;
    return nullptr;
}

CError* CMemoryWriteBuffer::getSize(int64_t& size) {
    size = size_;
    return nullptr;
}

void CMemoryWriteBuffer::copyTo(CByteBuffer& buffer) const {
    buffer.resize(static_cast<int32_t>(size_));
    for (CBlock* block = head_; block && block->start < size_; block = block->next) {
        std::memcpy(buffer.data() + block->start, block->bytes(),
                    static_cast<size_t>(std::min(block->capacity, size_ - block->start)));
    }
}

}  // namespace tarv
