#include "Core/CZipStreams.h"

#include <zlib.h>

#include <algorithm>
#include <limits>

namespace tarv {

namespace {

constexpr int32_t kStagingBytes = 32768;
// The most that is taken from a source at once: all of a block in memory.
constexpr int64_t kViewBytes = INT32_MAX;
constexpr int32_t kGrowthStep = 1 << 14;
// zlib decodes in its fast loop only while a match of the longest kind, 258 bytes, would fit.
constexpr int32_t kFastRoom = 260;

CString zipMessage(const z_stream& zip) {
    return CString(zip.msg ? zip.msg : "");
}

void* allocForZip(void*, unsigned items, unsigned size) {
    return CHeap::alloc(size_t{items} * size);
}

void freeForZip(void*, void* block) {
    CHeap::free(block);
}

z_stream* newZip() {
    auto* zip = new (CHeap::alloc(sizeof(z_stream))) z_stream{};
    zip->zalloc = &allocForZip;
    zip->zfree = &freeForZip;
    return zip;
}

/// The largest run that one call of zlib takes.
uInt stepOf(int64_t count) {
    return static_cast<uInt>(std::min<int64_t>(count, std::numeric_limits<uInt>::max()));
}

}  // namespace

CInputZipStream::~CInputZipStream() {
    TARV_CONSUME(close());
}

CError* CInputZipStream::open(CInputStream& source) {
    TARV_TRY(close());
    zip_ = newZip();
    const int result = inflateInit(zip_);
    if (result != Z_OK) {
        const CString message = zipMessage(*zip_);
        CHeap::free(std::exchange(zip_, nullptr));
        TARV_FAIL("@tarvstr_CInputZipStream_open_InflateInit zlib inflateInit error %1 (%2).", CString::fromInt(result),
                  message);
    }
    source_ = &source;
    return nullptr;
}

CError* CInputZipStream::close() {
    source_ = nullptr;
    if (!zip_) {
        return nullptr;
    }
    const int result = inflateEnd(zip_);
    const CString message = zipMessage(*zip_);
    CHeap::free(std::exchange(zip_, nullptr));
    if (result != Z_OK) {
        TARV_FAIL("@tarvstr_CInputZipStream_close_InflateEnd zlib inflateEnd error %1 (%2).", CString::fromInt(result),
                  message);
    }
    return nullptr;
}

CError* CInputZipStream::consume(int64_t) {
    TARV_FAIL("@tarvstr_CInputZipStream_consume_NotSupported Consuming is not supported in zip streams.");
}

CError* CInputZipStream::fill() {
    if (zip_->avail_in == 0) {
        const uint8_t* bytes = nullptr;
        int64_t count = kViewBytes;
        TARV_TRY(source_->viewStreamed(bytes, count, staging_));
        zip_->next_in = const_cast<Bytef*>(bytes);  // NOLINT: zlib's own const is optional
        zip_->avail_in = static_cast<uInt>(count);
    }
    return nullptr;
}

/// One call of inflate for up to `count` bytes; gives the number made, 0 only with `isEnded`.
CError* CInputZipStream::inflateSome(uint8_t* target, int64_t& count, bool& isEnded) {
    const uInt step = stepOf(std::exchange(count, 0));
    isEnded = false;
    while (count == 0 && !isEnded) {
        TARV_TRY(fill());
        const bool isSourceAtEnd = zip_->avail_in == 0;
        zip_->next_out = target;
        zip_->avail_out = step;
        // "Finish" lets zlib do without a window where all of the data fits into the target.
        const int result = inflate(zip_, Z_FINISH);
        count = step - zip_->avail_out;
        isEnded = result == Z_STREAM_END;
        // No progress for want of input is no damage: it is the end of the source, and fails as such.
        if (isSourceAtEnd && count == 0 && (result == Z_OK || result == Z_BUF_ERROR)) {
            TARV_FAIL("@tarvstr_CInputZipStream_read_PrematureEnd Premature end of file.");
        }
        if (result != Z_OK && result != Z_BUF_ERROR && !isEnded) {
            TARV_FAIL("@tarvstr_CInputZipStream_read_Inflate zlib inflate error %1 (%2).", CString::fromInt(result),
                      zipMessage(*zip_));
        }
    }
    return nullptr;
}

CError* CInputZipStream::read(void* buffer, int64_t count) {
    if (!source_) {
        TARV_FAIL("@tarvstr_CInputZipStream_read_NoSource Input stream not specified.");
    }
    auto* target = static_cast<uint8_t*>(buffer);
    while (count > 0) {
        int64_t made = count;
        bool isEnded = false;
        TARV_TRY(inflateSome(target, made, isEnded));
        target += made;
        count -= made;
        if (isEnded && count > 0) {
            TARV_FAIL("@tarvstr_CInputZipStream_read_PrematureEnd Premature end of file.");
        }
    }
    return nullptr;
}

CError* CInputZipStream::readToEnd(CByteBuffer& buffer, int32_t size) {
    if (!source_) {
        TARV_FAIL("@tarvstr_CInputZipStream_read_NoSource Input stream not specified.");
    }
    int32_t done = 0;
    for (bool isEnded = false; !isEnded;) {
        buffer.resizeUnset(done + std::min(size - done, std::max(kGrowthStep, done)) + kFastRoom);
        int64_t made = buffer.count() - done;
        TARV_TRY(inflateSome(buffer.data() + done, made, isEnded));
        done += static_cast<int32_t>(made);
        if (done > size) {
            TARV_FAIL("@tarvstr_CInputZipStream_readToEnd_Surplus Compressed data longer than announced.");
        }
    }
    if (done < size) {
        TARV_FAIL("@tarvstr_CInputZipStream_read_PrematureEnd Premature end of file.");
    }
    buffer.resize(size);
    return nullptr;
}

COutputZipStream::~COutputZipStream() {
    TARV_CONSUME(close());
}

CError* COutputZipStream::open(COutputStream& target) {
    TARV_TRY(close());
    zip_ = newZip();
    const int result = deflateInit(zip_, Z_DEFAULT_COMPRESSION);
    if (result != Z_OK) {
        const CString message = zipMessage(*zip_);
        CHeap::free(std::exchange(zip_, nullptr));
        TARV_FAIL("@tarvstr_COutputZipStream_open_DeflateInit zlib deflateInit error %1 (%2).",
                  CString::fromInt(result), message);
    }
    staging_.resize(kStagingBytes);
    zip_->next_out = staging_.data();
    zip_->avail_out = kStagingBytes;
    target_ = &target;
    return nullptr;
}

CError* COutputZipStream::flushStaging() {
    const int64_t count = kStagingBytes - zip_->avail_out;
    zip_->next_out = staging_.data();
    zip_->avail_out = kStagingBytes;
    TARV_TRY(target_->write(staging_.data(), count));
    return nullptr;
}

CError* COutputZipStream::deflateAll(int flush) {
    for (;;) {
        const int result = deflate(zip_, flush);
        if (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR) {
            TARV_FAIL("@tarvstr_COutputZipStream_deflateAll_Deflate zlib deflate error %1 (%2).",
                      CString::fromInt(result), zipMessage(*zip_));
        }
        const bool isDone = flush == Z_FINISH ? result == Z_STREAM_END : zip_->avail_in == 0 && zip_->avail_out > 0;
        if (zip_->avail_out == 0 || (isDone && flush == Z_FINISH)) {
            TARV_TRY(flushStaging());
        }
        if (isDone) {
            return nullptr;
        }
    }
}

CError* COutputZipStream::write(const void* buffer, int64_t count) {
    if (!target_) {
        TARV_FAIL("@tarvstr_COutputZipStream_write_NoTarget Output stream not specified.");
    }
    auto* source = static_cast<const Bytef*>(buffer);
    while (count > 0) {
        const uInt step = stepOf(count);
        zip_->next_in = const_cast<Bytef*>(source);  // NOLINT: zlib's own const is optional
        zip_->avail_in = step;
        TARV_TRY(deflateAll(Z_NO_FLUSH));
        source += step;
        count -= step;
    }
    return nullptr;
}

CError* COutputZipStream::close() {
    if (!zip_) {
        return nullptr;
    }
    CError* finishError = deflateAll(Z_FINISH);
    target_ = nullptr;
    const int result = deflateEnd(zip_);
    const CString message = zipMessage(*zip_);
    CHeap::free(std::exchange(zip_, nullptr));
    TARV_TRY(finishError);
    if (result != Z_OK) {
        TARV_FAIL("@tarvstr_COutputZipStream_close_DeflateEnd zlib deflateEnd error %1 (%2).", CString::fromInt(result),
                  message);
    }
    return nullptr;
}

}  // namespace tarv
