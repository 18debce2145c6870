#pragma once

#include "Core/CStreams.h"

struct z_stream_s;

namespace tarv {

/// Inflates a zlib stream from a source that the caller keeps alive until close. Reads ahead and gives nothing back.
class CInputZipStream : public CInputStream {
public:
    CInputZipStream() = default;
    ~CInputZipStream() override;
    [[nodiscard]] CError* open(CInputStream& source);
    [[nodiscard]] CError* close() override;
    [[nodiscard]] CError* consume(int64_t count) override;
    [[nodiscard]] CError* read(void* buffer, int64_t count) override;
    /// All of the stream: exactly `size` bytes with their check value in order, or a failure. The buffer's room grows
    /// with what was inflated: a size that the source can't fill takes no memory.
    [[nodiscard]] CError* readToEnd(CByteBuffer& buffer, int32_t size);

private:
    [[nodiscard]] CError* fill();
    [[nodiscard]] CError* inflateSome(uint8_t* target, int64_t& count, bool& isEnded);

    CInputStream* source_ = nullptr;
    z_stream_s* zip_ = nullptr;
    CByteBuffer staging_;
};

/// Deflates into a target that the caller keeps alive until close, which finishes the stream.
class COutputZipStream : public COutputStream {
public:
    COutputZipStream() = default;
    ~COutputZipStream() override;
    [[nodiscard]] CError* open(COutputStream& target);
    [[nodiscard]] CError* close();
    [[nodiscard]] CError* write(const void* buffer, int64_t count) override;

private:
    [[nodiscard]] CError* deflateAll(int flush);
    [[nodiscard]] CError* flushStaging();

    COutputStream* target_ = nullptr;
    z_stream_s* zip_ = nullptr;
    CArray<uint8_t, 8> staging_;
};

}  // namespace tarv
