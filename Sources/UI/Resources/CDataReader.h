#pragma once

#include <cstdint>

#include "Core/CStreams.h"

namespace tarv {

/// Reads the body of one data set out of memory. Nothing is taken on trust: a count is held against the bytes that are
/// left before anybody allocates for it, and every failure names the byte of the data set at which it was found, the
/// size field being bytes 0 to 3. One thread at a time.
class CDataReader {
public:
    /// Takes the size field and as many bytes behind it; a source that holds fewer fails in its own words. The source
    /// has to live, unchanged, as long as this is read.
    [[nodiscard]] CError* open(CInputStream& input);
    /// Fails if bytes are left.
    [[nodiscard]] CError* finish() const;

    [[nodiscard]] CError* readVersion();
    [[nodiscard]] CError* readValue(uint32_t& value);
    /// A whole number in `lowest` to `highest`.
    [[nodiscard]] CError* readWhole(int32_t& value, int32_t lowest, int32_t highest);
    /// A finite number in `lowest` to `highest`.
    [[nodiscard]] CError* readNumber(double& value, double lowest, double highest);
    /// A count of entries that take at least `bytesEach` bytes; fails if so many can't follow.
    [[nodiscard]] CError* readCount(int32_t& count, uint32_t bytesEach);
    /// 8-bit characters behind their count.
    [[nodiscard]] CError* readName(CString& name);
    /// As readName; the name has to stand behind `previous` in the order of the characters, unless it is the first.
    [[nodiscard]] CError* readSortedName(CString& name, const CString& previous, bool isFirst);
    /// Stored scales, finite, above 0 and ascending; at least one. Each has `bytesEach` more bytes to follow.
    [[nodiscard]] CError* readScales(CArray<double, 3>& scales, uint32_t bytesEach);
    /// Where the next `count` bytes lie.
    [[nodiscard]] CError* readBytes(const uint8_t*& bytes, uint32_t count);

    /// Byte of the data set that is read next.
    uint32_t position() const;
    CString place() const { return CString::fromInt(position()); }
    /// Room for a check's notes, kept from one to the next.
    CByteBuffer& notes() { return notes_; }

private:
    CMemoryReader body_;
    uint32_t size_ = 0;
    CByteBuffer room_;
    CByteBuffer notes_;
};

/// Whether a file can hold the name: no character is above 255.
bool isNarrowName(const CString& name);
/// Bytes that writeName makes.
int64_t nameSize(const CString& name);
/// 8-bit characters behind their count, of a name that a file can hold.
[[nodiscard]] CError* writeName(COutputStream& output, const CString& name);
/// As two's complement.
[[nodiscard]] CError* writeWhole(COutputStream& output, int32_t value);

}  // namespace tarv
