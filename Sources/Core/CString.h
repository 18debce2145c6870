#pragma once

#include <compare>
#include <cstdint>
#include <string>

#include "Core/CArray.h"
#include "Core/CHeap.h"

namespace tarv {

/// Text with value semantics, of 8-bit or 16-bit code units, with a 48-byte inline buffer. Mixed widths are accepted
/// everywhere and compared by value of the code unit. A copy of a longer text takes no memory: both hold one block
/// until one of them changes. Not safe by itself: the owner guards it, but copies may belong to different threads.
class CString : public CHeapObject {
public:
    CString();
    CString(const char* text);      // NOLINT: literals are the common argument
    CString(const char16_t* text);  // NOLINT
    CString(const char* text, int32_t length);
    CString(const CString& other);
    CString(CString&& other) noexcept;
    ~CString();
    CString& operator=(const CString& other);
    CString& operator=(CString&& other) noexcept;

    int32_t length() const { return length_; }
    bool isEmpty() const { return length_ == 0; }
    bool isWide() const { return wide_ != 0; }
    /// Code unit at a position in 0..length-1.
    uint16_t at(int32_t index) const;
    /// Capacity of the heap block in bytes, 0 while the text is inline.
    int32_t heapCapacity() const;
    /// The units of a narrow (wide) string with their terminator; the caller tests isWide() first.
    const char* narrowData() const { return static_cast<const char*>(data_); }
    const char16_t* wideData() const { return static_cast<const char16_t*>(data_); }

    void clear();
    /// Makes room for `length` units and writes the terminator; the old units survive a move only if `preserve`.
    /// Bytes of the room grow by the need and 8 (wide: 16), and shrink to the need when twice as many were held.
    void setLength(int32_t length, bool preserve);
    void widen();
    /// Drops the high byte of each unit.
    void narrow();
    /// A wide text with units above 255 widens a narrow one.
    void append(const CString& other);
    void appendChar(uint16_t unit);
    CString& operator+=(const CString& other) {
        append(other);
        return *this;
    }
    friend CString operator+(const CString& a, const CString& b) {
        CString sum(a);
        sum.append(b);
        return sum;
    }

    void set(int32_t index, uint16_t unit);

    /// Ranges that reach outside the text give an empty string; count -1 runs to the end.
    CString substring(int32_t start, int32_t count = -1) const;
    /// Position of the first (last) unit equal to `unit`, or -1.
    int32_t indexOf(uint16_t unit, int32_t from = 0) const;
    int32_t lastIndexOf(uint16_t unit) const;
    bool startsWith(const CString& prefix) const;
    bool endsWith(const CString& suffix) const;
    /// Pieces between separators. Empty pieces are dropped unless `keepEmpty`.
    CArray<CString, 4> split(uint16_t separator, bool keepEmpty = false) const;

    friend bool operator==(const CString& a, const CString& b);
    friend std::strong_ordering operator<=>(const CString& a, const CString& b);

    /// In the width that this text has. Appends the template with %1 to %9 replaced by arguments and %% by %; anything
    /// else after % is dropped.
    void format(const CString& textTemplate, const CString* arguments, int32_t argumentCount);

    /// Padded with zeros on the left to `width` digits; radix 2 to 16, digits above 9 in capitals.
    static CString fromInt(int64_t value, int32_t width = 0, int32_t radix = 10);
    /// Fixed notation with 0 to 15 decimals, halves away from zero in the last one; no sign on a zero.
    static CString fromDouble(double value, int32_t decimals);
    /// Optional "-"; then "0x", "0X", "#" or "$" before hexadecimal digits, "0" before octal ones, else decimal ones.
    /// Values wrap to 32 bits. Failure, also of a text without digits, gives 0.
    static int32_t toInt(const CString& text, bool* ok = nullptr);
    /// Optional "-", digits, optionally "," or "." and digits; any of the runs may be empty, so that "" and "-" are 0.
    /// No exponent. Runs are gathered in 64 bits: an integer part beyond them stays at their limit, fraction digits
    /// behind the 18th do not count. Failure gives 0.
    static double toDouble(const CString& text, bool* ok = nullptr);
    /// "0", "false", "1", "true"; anything else is false and a failure.
    static bool toBool(const CString& text, bool* ok = nullptr);

    /// UTF-8, decoded by the rules of the streams (no surrogates; code points above 0xffff keep their low 16 bits).
    static CString fromUtf8(const char* bytes, size_t count);
    std::string toUtf8() const;

private:
    static constexpr int32_t kInlineBytes = 48;
    bool isInline() const { return data_ == inline_; }
    bool hasAt(int32_t start, const CString& part) const;
    int64_t bytesFor(int32_t length) const { return wide_ ? int64_t{length} * 2 + 2 : int64_t{length} + 1; }
    void fit(int64_t need, size_t preservedBytes);
    void terminate();
    void put(int32_t index, uint16_t unit);
    bool isShared() const;
    void share(const CString& other);
    void releaseBlock();
    void ownBlock();
    void assignUnits(const CString& other, int32_t start, int32_t count);

    char inline_[kInlineBytes];
    void* data_;
    int32_t capacity_;
    int32_t length_;
    uint8_t wide_;
};

}  // namespace tarv
