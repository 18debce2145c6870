#include "UI/Resources/CImageVersion.h"

#include <algorithm>
#include <cstring>

#include "UI/Resources/CDataReader.h"
#include "UI/Resources/CDataSet.h"
#include "UI/Resources/RunCoding.h"

namespace tarv {

namespace {

constexpr uint32_t kRowCountBytes = 2;
constexpr uint32_t kOffsetBytes = 4;
constexpr int32_t kFullAlpha = 255;
// Bytes of two short headers.
constexpr int32_t kSavedHeaders = 2;
// What the check of the rows notes for each byte of a block.
constexpr uint8_t kRowInside = 1;
constexpr uint8_t kRowStart = 2;

uint32_t tableEnd(int32_t rows) {
    return kRowCountBytes + kOffsetBytes * static_cast<uint32_t>(rows);
}

/// Pixels without gaps, as encode takes them.
struct CSource {
    const uint8_t* pixels;
    int32_t width;
    int32_t bytesPerPixel;

    const uint8_t* at(int32_t x, int32_t y) const { return pixels + (int64_t{y} * width + x) * bytesPerPixel; }
    /// The type of run that a pixel belongs to.
    uint32_t typeAt(int32_t x, int32_t y) const {
        const uint8_t alpha = at(x, y)[bytesPerPixel - 1];
        return alpha == 0 ? kRunTransparent : alpha == kFullAlpha ? kRunOpaque : kRunAlpha;
    }
    bool isEmpty(int32_t left, int32_t right, int32_t y) const {
        while (left < right && typeAt(left, y) == kRunTransparent) {
            ++left;
        }
        return left == right;
    }
};

struct CBounds {
    int32_t left, top, right, bottom;
};

/// The least rectangle with everything that is not transparent; empty at the top-left if there is nothing.
CBounds usedBounds(const CSource& source, int32_t height) {
    CBounds used{source.width, height, 0, 0};
    for (int32_t y = 0; y < height; ++y) {
        for (int32_t x = 0; x < source.width; ++x) {
            if (source.typeAt(x, y) != kRunTransparent) {
                used.left = std::min(used.left, x);
                used.right = std::max(used.right, x + 1);
                used.top = std::min(used.top, y);
                used.bottom = y + 1;
            }
        }
    }
    return used.right == 0 ? CBounds{0, 0, 0, 0} : used;
}

void appendRun(CByteBuffer& row, const CSource& source, int32_t x, int32_t y, uint32_t type, uint32_t length) {
    uint32_t header = type | length << kRunLengthShift;
    if (length > kLongestShortRun) {
        header |= kLongRun;
        row.append(static_cast<uint8_t>(header));
        header >>= 8;
    }
    row.append(static_cast<uint8_t>(header));
    const auto stored = static_cast<int32_t>(runPixelBytes(type, static_cast<uint32_t>(source.bytesPerPixel)));
    for (uint32_t i = 0; i < length; ++i) {
        row.append(source.at(x + static_cast<int32_t>(i), y), stored);
    }
}

/// Pixels from x on that go on in one type, up to `right`.
int32_t typeLength(const CSource& source, int32_t x, int32_t right, int32_t y) {
    const uint32_t type = source.typeAt(x, y);
    int32_t end = x + 1;
    while (end < right && source.typeAt(end, y) == type) {
        ++end;
    }
    return end - x;
}

/// Pixels from x on that make one run. Between pixels with their own alpha a gap is stored with them when that takes no
/// more bytes than the two headers that it saves: text is full of such gaps, and a run costs more than a pixel.
int32_t runLength(const CSource& source, int32_t x, int32_t right, int32_t y) {
    int32_t length = typeLength(source, x, right, y);
    if (source.typeAt(x, y) != kRunAlpha) {
        return length;
    }
    while (x + length < right && source.typeAt(x + length, y) == kRunTransparent) {
        const int32_t gap = typeLength(source, x + length, right, y);
        const int32_t next = x + length + gap;
        if (gap * source.bytesPerPixel > kSavedHeaders || next == right || source.typeAt(next, y) != kRunAlpha) {
            break;
        }
        length += gap + typeLength(source, next, right, y);
    }
    return length;
}

void codeRow(CByteBuffer& row, const CSource& source, const CBounds& used, int32_t y) {
    for (int32_t x = used.left; x < used.right;) {
        const int32_t length = std::min(runLength(source, x, used.right, y), static_cast<int32_t>(kLongestRun));
        appendRun(row, source, x, y, source.typeAt(x, y), static_cast<uint32_t>(length));
        x += length;
    }
}

/// Offset of a row in `block` that has these bytes, which is put behind the rest if none has.
uint32_t placeRow(CByteBuffer& block, CArray<uint32_t, 16>& starts, const CByteBuffer& row) {
    for (int32_t i = 0; i < starts.count(); ++i) {
        const uint32_t end = i + 1 < starts.count() ? starts[i + 1] : static_cast<uint32_t>(block.count());
        if (end - starts[i] == static_cast<uint32_t>(row.count()) &&
            std::memcmp(block.data() + starts[i], row.data(), static_cast<size_t>(row.count())) == 0) {
            return starts[i];
        }
    }
    starts.append(static_cast<uint32_t>(block.count()));
    block.append(row.data(), row.count());
    return starts.last();
}

/// The rows of a block as a file brings them.
class CRowCheck {
public:
    CRowCheck(CDataReader& reader, const uint8_t* block, uint32_t size, int32_t bytesPerPixel)
        : block_(block),
          size_(size),
          start_(reader.position() - size),
          bytesPerPixel_(static_cast<uint32_t>(bytesPerPixel)),
          notes_(reader.notes()) {
        notes_.clear();
        notes_.resize(static_cast<int32_t>(size));
    }

    [[nodiscard]] CError* checkAll(int32_t width, int32_t height);

private:
    [[nodiscard]] CError* checkRow(uint32_t offset, uint32_t firstOffset, int32_t width);
    [[nodiscard]] CError* checkRun(uint32_t& offset, uint32_t& left);
    CString place(uint32_t offset) const { return CString::fromInt(int64_t{start_} + offset); }

    const uint8_t* block_;
    uint32_t size_;
    uint32_t start_;
    uint32_t bytesPerPixel_;
    CByteBuffer& notes_;
};

CError* CRowCheck::checkAll(int32_t width, int32_t height) {
    const uint32_t rowCount = fromLittleEndian<uint16_t>(block_);
    if (rowCount != static_cast<uint32_t>(height) || tableEnd(height) > size_) {
        TARV_FAIL(
            "@tarvstr_CImageVersion_read_RowCount Block at byte %1 has %2 rows and %3 bytes, which does not fit a "
            "height of %4.",
            place(0), CString::fromInt(rowCount), CString::fromInt(size_), CString::fromInt(height));
    }
    for (int32_t y = 0; y < height; ++y) {
        const uint32_t offset = fromLittleEndian<uint32_t>(block_ + tableEnd(y));
        if (offset != 0) {
            TARV_TRY(checkRow(offset, tableEnd(height), width));
        }
    }
    return nullptr;
}

CError* CRowCheck::checkRow(uint32_t offset, uint32_t firstOffset, int32_t width) {
    if (offset < firstOffset || offset >= size_) {
        TARV_FAIL("@tarvstr_CImageVersion_read_RowOffset Row offset %1 leaves the row data of the block at byte %2.",
                  CString::fromInt(offset), place(0));
    }
    if (notes_[static_cast<int32_t>(offset)] == kRowStart) {
        return nullptr;
    }
    const auto start = static_cast<int32_t>(offset);
    for (auto left = static_cast<uint32_t>(width); left > 0;) {
        TARV_TRY(checkRun(offset, left));
    }
    notes_[start] = kRowStart;
    return nullptr;
}

CError* CRowCheck::checkRun(uint32_t& offset, uint32_t& left) {
    if (offset >= size_ || ((block_[offset] & kLongRun) != 0 && size_ - offset < 2)) {
        TARV_FAIL("@tarvstr_CImageVersion_read_RowEnd Row ends with its block before byte %1; %2 pixels are missing.",
                  place(size_), CString::fromInt(left));
    }
    const uint8_t* bytes = block_ + offset;
    const CRun run = takeRun(bytes);
    if (run.type >= kRunTypeCount || run.length == 0 || run.length > left) {
        TARV_FAIL("@tarvstr_CImageVersion_read_Run Run at byte %1 has the type %2 and %3 of the %4 pixels left.",
                  place(offset), CString::fromInt(run.type), CString::fromInt(run.length), CString::fromInt(left));
    }
    const auto header = static_cast<uint32_t>(bytes - block_) - offset;
    const uint32_t end = offset + header + run.length * runPixelBytes(run.type, bytesPerPixel_);
    if (end > size_) {
        TARV_FAIL("@tarvstr_CImageVersion_read_RunEnd Run at byte %1 leaves its block by %2 bytes.", place(offset),
                  CString::fromInt(end - size_));
    }
    uint8_t* notes = notes_.data();
    uint8_t taken = 0;
    for (uint32_t i = offset; i < end; ++i) {
        taken |= notes[i];
    }
    if (taken != 0) {
        TARV_FAIL("@tarvstr_CImageVersion_read_Overlap Run at byte %1 takes bytes of another row.", place(offset));
    }
    std::memset(notes + offset, kRowInside, end - offset);
    offset = end;
    left -= run.length;
    return nullptr;
}

}  // namespace

void CImageVersion::setSize(int32_t width, int32_t height) {
    width_ = std::clamp(width, 0, kMaxImageSide);
    height_ = std::clamp(height, 0, kMaxImageSide);
}

CError* CImageVersion::encode(const uint8_t* pixels, int32_t width, int32_t height, int32_t bytesPerPixel, int32_t x,
                              int32_t y) {
    const CSource source{pixels, width, bytesPerPixel};
    const bool isSize = width >= 0 && height >= 0 && width <= kMaxImageSide && height <= kMaxImageSide;
    if (!isSize || (bytesPerPixel != 1 && bytesPerPixel != 2 && bytesPerPixel != 4) || std::abs(x) > kMaxImageSide ||
        std::abs(y) > kMaxImageSide) {
        TARV_FAIL("@tarvstr_CImageVersion_encode_Invalid Picture of %1 by %2 pixels of %3 bytes at %4, %5 not stored.",
                  CString::fromInt(width), CString::fromInt(height), CString::fromInt(bytesPerPixel),
                  CString::fromInt(x), CString::fromInt(y));
    }
    const CBounds used = usedBounds(source, height);
    x_ = x + used.left;
    y_ = y + used.top;
    storedWidth_ = used.right - used.left;
    storedHeight_ = used.bottom - used.top;
    block_.clear();
    block_.resize(static_cast<int32_t>(tableEnd(storedHeight_)));
    toLittleEndian(static_cast<uint16_t>(storedHeight_), block_.data());
    CArray<uint32_t, 16> starts;
    CByteBuffer row;
    for (int32_t i = 0; i < storedHeight_; ++i) {
        if (!source.isEmpty(used.left, used.right, used.top + i)) {
            row.clear();
            codeRow(row, source, used, used.top + i);
            const uint32_t offset = placeRow(block_, starts, row);
            toLittleEndian(offset, block_.data() + tableEnd(i));
        }
    }
    return nullptr;
}

CError* CImageVersion::read(CDataReader& reader, int32_t bytesPerPixel) {
    TARV_TRY(reader.readWhole(width_, 0, kMaxImageSide));
    TARV_TRY(reader.readWhole(height_, 0, kMaxImageSide));
    TARV_TRY(reader.readNumber(advance_, -kMaxImageSide, kMaxImageSide));
    TARV_TRY(reader.readWhole(x_, -kMaxImageSide, kMaxImageSide));
    TARV_TRY(reader.readWhole(y_, -kMaxImageSide, kMaxImageSide));
    TARV_TRY(reader.readWhole(storedWidth_, 0, kMaxImageSide));
    TARV_TRY(reader.readWhole(storedHeight_, 0, kMaxImageSide));
    int32_t size = 0;
    const uint8_t* bytes = nullptr;
    TARV_TRY(reader.readCount(size, 1));
    TARV_TRY(reader.readBytes(bytes, static_cast<uint32_t>(size)));
    if (size < static_cast<int32_t>(kRowCountBytes)) {
        TARV_FAIL("@tarvstr_CImageVersion_read_NoRows Block before byte %1 is too short for rows.", reader.place());
    }
    TARV_TRY(
        CRowCheck(reader, bytes, static_cast<uint32_t>(size), bytesPerPixel).checkAll(storedWidth_, storedHeight_));
    block_.clear();
    block_.append(bytes, size);
    return nullptr;
}

CError* CImageVersion::write(COutputStream& output) const {
    TARV_TRY(writeWhole(output, width_));
    TARV_TRY(writeWhole(output, height_));
    TARV_TRY(output.writeDouble(advance_));
    TARV_TRY(writeWhole(output, x_));
    TARV_TRY(writeWhole(output, y_));
    TARV_TRY(writeWhole(output, storedWidth_));
    TARV_TRY(writeWhole(output, storedHeight_));
    TARV_TRY(writeWhole(output, block_.count()));
    TARV_TRY(output.write(block_.data(), block_.count()));
    return nullptr;
}

int64_t CImageVersion::getSize() const {
    return int64_t{kLeastBytes} - kRowCountBytes + block_.count();
}

}  // namespace tarv
