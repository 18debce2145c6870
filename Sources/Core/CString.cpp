#include "Core/CString.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <utility>

#include "Core/Utf8.h"

namespace tarv {

namespace {

/// How many texts hold a block: a counter before its units.
using CHolders = std::atomic<int64_t>;
static_assert(sizeof(CHolders) == 8, "units are 8-aligned");

CHolders& holders(void* units) {
    return static_cast<CHolders*>(units)[-1];
}

void* newBlock(int64_t bytes) {
    auto* counter = new (CHeap::alloc(sizeof(CHolders) + static_cast<size_t>(bytes))) CHolders(1);
    return counter + 1;
}

}  // namespace

CString::CString() : data_(inline_), capacity_(0), length_(0), wide_(0) {
    terminate();
}

CString::CString(const char* text) : CString(text, text ? static_cast<int32_t>(std::strlen(text)) : 0) {}

CString::CString(const char16_t* text) : CString() {
    wide_ = 1;
    const int32_t length = text ? static_cast<int32_t>(std::char_traits<char16_t>::length(text)) : 0;
    setLength(length, false);
    std::copy_n(text, length, static_cast<char16_t*>(data_));
}

CString::CString(const char* text, int32_t length) : CString() {
    setLength(length, false);
    std::copy_n(text, length_, static_cast<char*>(data_));
}

CString::CString(const CString& other) : CHeapObject(), data_(inline_), capacity_(0), length_(0), wide_(other.wide_) {
    if (other.isInline() || bytesFor(other.length_) <= kInlineBytes) {
        assignUnits(other, 0, other.length_);
    } else {
        share(other);
    }
}

CString::CString(CString&& other) noexcept : CString() {
    *this = std::move(other);
}

CString::~CString() {
    releaseBlock();
}

CString& CString::operator=(const CString& other) {
    if (this == &other) {
        return *this;
    }
    wide_ = other.wide_;
    if (!other.isInline() && bytesFor(other.length_) > kInlineBytes) {
        if (data_ != other.data_) {
            releaseBlock();
            share(other);
        }
        length_ = other.length_;
        return *this;
    }
    if (isShared()) {
        // The block stays with the others.
        releaseBlock();
    }
    assignUnits(other, 0, other.length_);
    return *this;
}

bool CString::isShared() const {
    return !isInline() && holders(data_).load(std::memory_order_acquire) > 1;
}

/// The block of a text that has one.
void CString::share(const CString& other) {
    holders(other.data_).fetch_add(1, std::memory_order_relaxed);
    data_ = other.data_;
    capacity_ = other.capacity_;
    length_ = other.length_;
}

/// The inline buffer is what is left, with any length.
void CString::releaseBlock() {
    if (!isInline() && holders(data_).fetch_sub(1, std::memory_order_acq_rel) == 1) {
        CHeap::free(&holders(data_));
    }
    data_ = inline_;
    capacity_ = 0;
}

/// Before units change in place.
void CString::ownBlock() {
    if (isShared()) {
        setLength(length_, true);
    }
}

CString& CString::operator=(CString&& other) noexcept {
    if (this == &other) {
        return *this;
    }
    if (other.isInline()) {
        *this = static_cast<const CString&>(other);
        return *this;
    }
    releaseBlock();
    data_ = std::exchange(other.data_, other.inline_);
    capacity_ = std::exchange(other.capacity_, 0);
    length_ = std::exchange(other.length_, 0);
    wide_ = std::exchange(other.wide_, uint8_t{0});
    other.terminate();
    return *this;
}

uint16_t CString::at(int32_t index) const {
    return wide_ ? static_cast<const char16_t*>(data_)[index] : static_cast<const uint8_t*>(data_)[index];
}

void CString::set(int32_t index, uint16_t unit) {
    ownBlock();
    put(index, unit);
}

void CString::put(int32_t index, uint16_t unit) {
    if (wide_) {
        static_cast<char16_t*>(data_)[index] = unit;
    } else {
        static_cast<uint8_t*>(data_)[index] = static_cast<uint8_t>(unit);
    }
}

int32_t CString::heapCapacity() const {
    return isInline() ? 0 : capacity_;
}

void CString::clear() {
    setLength(0, false);
}

void CString::fit(int64_t need, size_t preservedBytes) {
    const int64_t roomy = need + (wide_ ? 16 : 8);
    if (isInline() && need <= kInlineBytes) {
        return;
    }
    const bool isShort = isInline() || need > capacity_;
    const bool isLong = !isShort && capacity_ >= need * 2;
    if (!isShort && !isLong && !isShared()) {
        return;
    }
    const int64_t capacity = isShort ? roomy : isLong ? need : capacity_;
    void* const block = newBlock(capacity);
    std::memcpy(block, data_, std::min(preservedBytes, static_cast<size_t>(capacity)));
    releaseBlock();
    data_ = block;
    capacity_ = static_cast<int32_t>(capacity);
}

void CString::terminate() {
    put(length_, 0);
}

void CString::setLength(int32_t length, bool preserve) {
    length = std::max(length, 0);
    fit(bytesFor(length), preserve ? static_cast<size_t>(bytesFor(length_)) : 0);
    length_ = length;
    terminate();
}

void CString::assignUnits(const CString& other, int32_t start, int32_t count) {
    setLength(count, false);
    const size_t width = wide_ ? 2 : 1;
    std::memcpy(data_, static_cast<const char*>(other.data_) + static_cast<size_t>(start) * width,
                static_cast<size_t>(count) * width);
}

void CString::widen() {
    if (wide_) {
        return;
    }
    const auto narrowBytes = static_cast<size_t>(bytesFor(length_));
    wide_ = 1;
    fit(bytesFor(length_), narrowBytes);
    // From the end, since each wide unit lies over narrow ones that are read before.
    for (int32_t i = length_; i >= 0; --i) {
        static_cast<char16_t*>(data_)[i] = static_cast<const uint8_t*>(data_)[i];
    }
}

void CString::narrow() {
    if (!wide_) {
        return;
    }
    ownBlock();
    for (int32_t i = 0; i <= length_; ++i) {
        static_cast<uint8_t*>(data_)[i] = static_cast<uint8_t>(static_cast<const char16_t*>(data_)[i]);
    }
    wide_ = 0;
}

void CString::append(const CString& other) {
    const int32_t added = other.length_;
    for (int32_t i = 0; !wide_ && other.wide_ && i < added; ++i) {
        if (other.at(i) > 0xff) {
            widen();
        }
    }
    const int32_t before = length_;
    setLength(before + added, true);
    if (wide_ == other.wide_) {
        const size_t width = wide_ ? 2 : 1;
        std::memcpy(static_cast<char*>(data_) + static_cast<size_t>(before) * width, other.data_,
                    static_cast<size_t>(added) * width);
        return;
    }
    for (int32_t i = 0; i < added; ++i) {
        put(before + i, other.at(i));
    }
}

void CString::appendChar(uint16_t unit) {
    if (unit > 0xff) {
        widen();
    }
    setLength(length_ + 1, true);
    put(length_ - 1, unit);
}

CString CString::substring(int32_t start, int32_t count) const {
    CString piece;
    piece.wide_ = wide_;
    const bool isInside = start >= 0 && start <= length_ && count >= -1 && count <= length_ - start;
    piece.assignUnits(*this, isInside ? start : 0, !isInside ? 0 : count < 0 ? length_ - start : count);
    return piece;
}

int32_t CString::indexOf(uint16_t unit, int32_t from) const {
    for (int32_t i = std::max(from, 0); i < length_; ++i) {
        if (at(i) == unit) {
            return i;
        }
    }
    return -1;
}

int32_t CString::lastIndexOf(uint16_t unit) const {
    int32_t i = length_ - 1;
    while (i >= 0 && at(i) != unit) {
        --i;
    }
    return i;
}

bool CString::startsWith(const CString& prefix) const {
    return hasAt(0, prefix);
}

bool CString::endsWith(const CString& suffix) const {
    return hasAt(length_ - suffix.length_, suffix);
}

bool CString::hasAt(int32_t start, const CString& part) const {
    if (start < 0 || part.length_ > length_ - start) {
        return false;
    }
    if (!wide_ && !part.wide_) {
        return part.length_ == 0 ||
               std::memcmp(narrowData() + start, part.data_, static_cast<size_t>(part.length_)) == 0;
    }
    for (int32_t i = 0; i < part.length_; ++i) {
        if (at(start + i) != part.at(i)) {
            return false;
        }
    }
    return true;
}

CArray<CString, 4> CString::split(uint16_t separator, bool keepEmpty) const {
    CArray<CString, 4> pieces;
    for (int32_t start = 0; start <= length_;) {
        const int32_t found = indexOf(separator, start);
        const int32_t end = found < 0 ? length_ : found;
        if (keepEmpty || end > start) {
            pieces.append(substring(start, end - start));
        }
        start = end + 1;
    }
    return pieces;
}

bool operator==(const CString& a, const CString& b) {
    // Names of one family differ at their ends.
    return a.length_ == b.length_ && (a.length_ == 0 || a.at(a.length_ - 1) == b.at(b.length_ - 1)) && a.startsWith(b);
}

std::strong_ordering operator<=>(const CString& a, const CString& b) {
    const int32_t shared = std::min(a.length_, b.length_);
    if (!a.wide_ && !b.wide_) {
        const int order = std::memcmp(a.data_, b.data_, static_cast<size_t>(shared));
        return order != 0 ? order <=> 0 : a.length_ <=> b.length_;
    }
    for (int32_t i = 0; i < shared; ++i) {
        if (a.at(i) != b.at(i)) {
            return a.at(i) <=> b.at(i);
        }
    }
    return a.length_ <=> b.length_;
}

void CString::format(const CString& textTemplate, const CString* arguments, int32_t argumentCount) {
    CString result;
    result.wide_ = wide_;
    const auto emit = [&](const CString& text, int32_t from, int32_t to) {
        const int32_t before = result.length_;
        result.setLength(before + to - from, true);
        for (int32_t i = from; i < to; ++i) {
            result.put(before + i - from, text.at(i));
        }
    };
    for (int32_t i = 0; i < textTemplate.length_; ++i) {
        if (textTemplate.at(i) != '%') {
            emit(textTemplate, i, i + 1);
            continue;
        }
        if (++i == textTemplate.length_) {
            break;
        }
        const int32_t argument = textTemplate.at(i) - '1';
        if (textTemplate.at(i) == '%') {
            emit(textTemplate, i, i + 1);
        } else if (argument >= 0 && argument < std::min(argumentCount, 9)) {
            emit(arguments[argument], 0, arguments[argument].length_);
        }
    }
    append(result);
}

CString CString::fromUtf8(const char* bytes, size_t count) {
    CString text;
    appendUtf8(text, bytes, count);
    return text;
}

std::string CString::toUtf8() const {
    std::string bytes;
    char encoded[kMaxUtf8Bytes];
    for (int32_t i = 0; i < length_; ++i) {
        bytes.append(encoded, encodeUtf8(at(i), encoded));
    }
    return bytes;
}

}  // namespace tarv
