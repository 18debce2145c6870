#include "UI/Resources/CBrushSet.h"

#include "UI/Resources/CDataReader.h"

namespace tarv {

namespace {

constexpr double kMaxWidth = CBrush::kMaxStampSide;
// Of a brush: width, subpixel bits, count of scales.
constexpr int64_t kBrushHead = 16;

int32_t tableSize(int32_t side) {
    return side * side * CBrush::kStamps;
}

bool isStorable(double value, double lowest, double highest) {
    return value >= lowest && value <= highest;
}

}  // namespace

CError* CBrush::addVersion(double scale, int32_t stampSide, double dotWidth, const uint8_t* table) {
    if (!isStorable(scale, kLowestStoredScale, kHighestStoredScale) || scales_.indexOf(scale) >= 0 || stampSide < 1 ||
        stampSide > kMaxStampSide || !isStorable(dotWidth, 0.0, kMaxWidth) || !isStorable(width_, 0.0, kMaxWidth)) {
        TARV_FAIL("@tarvstr_CBrush_addVersion_Invalid Stamps of side %1 can't be added for the scale %2.",
                  CString::fromInt(stampSide), CString::fromDouble(scale, 4));
    }
    int32_t position = 0;
    while (position < scales_.count() && scales_[position] < scale) {
        ++position;
    }
    CVersion version{stampSide, dotWidth, {}};
    version.table.append(table, tableSize(stampSide));
    scales_.insert(position, scale);
    versions_.insert(position, std::move(version));
    chooseScale(wanted_);
    return nullptr;
}

void CBrush::chooseScale(double scale) {
    wanted_ = scale;
    chosen_ = scales_.isEmpty() ? 0 : nearestScale(scales_, scale);
}

const uint8_t* CBrush::stamp(int32_t subX, int32_t subY) const {
    const CVersion& version = versions_[chosen_];
    return version.table.data() + (subY * kSubpixels + subX) * version.side * version.side;
}

CError* CBrush::read(CDataReader& reader) {
    int32_t bits = 0;
    TARV_TRY(reader.readNumber(width_, 0.0, kMaxWidth));
    TARV_TRY(reader.readWhole(bits, kSubpixelBits, kSubpixelBits));
    TARV_TRY(reader.readScales(scales_, kLeastVersionBytes));
    for (int32_t i = 0; i < scales_.count(); ++i) {
        versions_.append(CVersion{});
        TARV_TRY(readVersion(reader, versions_.last()));
    }
    return nullptr;
}

CError* CBrush::readVersion(CDataReader& reader, CVersion& version) {
    int32_t size = 0;
    const uint8_t* bytes = nullptr;
    TARV_TRY(reader.readWhole(version.side, 1, kMaxStampSide));
    TARV_TRY(reader.readNumber(version.dotWidth, 0.0, kMaxWidth));
    TARV_TRY(reader.readCount(size, 1));
    if (size != tableSize(version.side)) {
        TARV_FAIL("@tarvstr_CBrush_read_TableSize Table of %1 bytes before byte %2 is not that of stamps of side %3.",
                  CString::fromInt(size), reader.place(), CString::fromInt(version.side));
    }
    TARV_TRY(reader.readBytes(bytes, static_cast<uint32_t>(size)));
    version.table.append(bytes, size);
    return nullptr;
}

CError* CBrush::write(COutputStream& output) const {
    TARV_TRY(output.writeDouble(width_));
    TARV_TRY(writeWhole(output, kSubpixelBits));
    TARV_TRY(writeWhole(output, scales_.count()));
    for (const double scale : scales_) {
        TARV_TRY(output.writeDouble(scale));
    }
    for (const CVersion& version : versions_) {
        TARV_TRY(writeWhole(output, version.side));
        TARV_TRY(output.writeDouble(version.dotWidth));
        TARV_TRY(writeWhole(output, version.table.count()));
        TARV_TRY(output.write(version.table.data(), version.table.count()));
    }
    return nullptr;
}

int64_t CBrush::getSize() const {
    int64_t size = kBrushHead;
    for (const CVersion& version : versions_) {
        size += static_cast<int64_t>(sizeof(double)) + kLeastVersionBytes + version.table.count();
    }
    return size;
}

void CBrushSet::addBrush(CBrush* brush) {
    brush->chooseScale(scale());
    brushes_.append(brush);
}

const CBrush* CBrushSet::getBrush(int32_t index) const {
    return index >= 0 && index < brushes_.count() ? brushes_[index] : nullptr;
}

CError* CBrushSet::read(CInputStream& input) {
    brushes_.deleteAll();
    CDataReader reader;
    TARV_TRY(reader.open(input));
    CError* error = readBrushes(reader);
    error = error ? error : reader.finish();
    if (error) {
        brushes_.deleteAll();
        TARV_TRY(error);
    }
    return nullptr;
}

CError* CBrushSet::readBrushes(CDataReader& reader) {
    int32_t count = 0;
    TARV_TRY(reader.readVersion());
    TARV_TRY(reader.readCount(count, CBrush::kLeastBytes));
    for (int32_t i = 0; i < count; ++i) {
        brushes_.append(new CBrush);
        TARV_TRY(brushes_.last()->read(reader));
        brushes_.last()->chooseScale(scale());
    }
    return nullptr;
}

CError* CBrushSet::write(COutputStream& output) const {
    TARV_TRY(writeSize(output));
    TARV_TRY(output.writeValue(kDataSetVersion));
    TARV_TRY(writeWhole(output, brushes_.count()));
    for (const CBrush* brush : brushes_) {
        TARV_TRY(brush->write(output));
    }
    return nullptr;
}

int64_t CBrushSet::getSize() const {
    // Size, version, count.
    int64_t size = 3 * sizeof(uint32_t);
    for (const CBrush* brush : brushes_) {
        size += brush->getSize();
    }
    return size;
}

}  // namespace tarv
