#include "UI/Resources/CPalette.h"

#include <algorithm>
#include <memory>

#include "UI/Resources/CDataReader.h"

namespace tarv {

namespace {

constexpr CPixel kUsedBits = 0x00ffffff;
constexpr int32_t kChannels = 3;
// Red, green and blue stand one after the other in a file, 256 entries each.
constexpr int32_t kChannelShift[kChannels] = {16, 8, 0};
constexpr uint32_t kRampBytes = kChannels * kRampLength;
// Of a colour: the length of its name, opacity, ramp. Of a row of the frame table: the length of its name, the count.
constexpr uint32_t kColorLeast = 4 + 8 + kRampBytes;
constexpr uint32_t kFramesLeast = 4 + 4;

void rampFromBytes(CPixel* ramp, const uint8_t* bytes) {
    for (int32_t i = 0; i < kRampLength; ++i) {
        ramp[i] = static_cast<CPixel>(bytes[i]) << 16 | static_cast<CPixel>(bytes[kRampLength + i]) << 8 |
                  bytes[2 * kRampLength + i];
    }
}

void rampToBytes(const CPixel* ramp, uint8_t* bytes) {
    for (const int32_t shift : kChannelShift) {
        for (int32_t i = 0; i < kRampLength; ++i) {
            *bytes++ = static_cast<uint8_t>(ramp[i] >> shift);
        }
    }
}

}  // namespace

int32_t CPalette::colorPosition(const CString& name) const {
    CColor* const* found = std::lower_bound(colors_.begin(), colors_.end(), name,
                                            [](const CColor* color, const CString& key) { return color->name < key; });
    return static_cast<int32_t>(found - colors_.begin());
}

int32_t CPalette::framesPosition(const CString& name) const {
    const CFrames* found = std::lower_bound(frames_.begin(), frames_.end(), name,
                                            [](const CFrames& row, const CString& key) { return row.name < key; });
    return static_cast<int32_t>(found - frames_.begin());
}

CError* CPalette::addColor(const CString& name, double opacity, const CPixel* ramp) {
    if (findColor(name) || !(opacity >= 0.0 && opacity <= 1.0) || !isNarrowName(name)) {
        TARV_FAIL("@tarvstr_CPalette_addColor_Invalid Color '%1' of opacity %2 can't be added.", name,
                  CString::fromDouble(opacity, 4));
    }
    auto* color = new CColor;
    color->name = name;
    color->opacity = opacity;
    std::transform(ramp, ramp + kRampLength, color->ramp, [](CPixel pixel) { return pixel & kUsedBits; });
    colors_.insert(colorPosition(name), color);
    return nullptr;
}

CError* CPalette::setFrameCount(const CString& name, uint32_t count) {
    if (getFrameCount(name) != 0 || count == 0 || !isNarrowName(name)) {
        TARV_FAIL("@tarvstr_CPalette_setFrameCount_Invalid Frame count %1 of the color '%2' can't be set.",
                  CString::fromInt(count), name);
    }
    frames_.insert(framesPosition(name), CFrames{name, count});
    return nullptr;
}

void CPalette::clear() {
    colors_.deleteAll();
    frames_.clear();
}

const CColor* CPalette::findColor(const CString& name) const {
    const int32_t position = colorPosition(name);
    return position < colors_.count() && colors_[position]->name == name ? colors_[position] : nullptr;
}

uint32_t CPalette::getFrameCount(const CString& name) const {
    const int32_t position = framesPosition(name);
    return position < frames_.count() && frames_[position].name == name ? frames_[position].count : 0;
}

const CColor* CPalette::findColor(const CString& base, const CString& state, uint32_t frame) const {
    CString name = base;
    if (!state.isEmpty()) {
        name.appendChar('_');
        name.append(state);
    }
    if (const uint32_t count = getFrameCount(name)) {
        name.appendChar('|');
        name.append(CString::fromInt(frame % count));
    }
    const CColor* color = findColor(name);
    return color ? color : findColor(base);
}

CError* CPalette::read(CInputStream& input) {
    clear();
    CDataReader reader;
    TARV_TRY(reader.open(input));
    CError* error = readPalette(reader);
    error = error ? error : reader.finish();
    if (error) {
        clear();
        TARV_TRY(error);
    }
    return nullptr;
}

CError* CPalette::readPalette(CDataReader& reader) {
    TARV_TRY(reader.readVersion());
    TARV_TRY(readColors(reader));
    TARV_TRY(readFrames(reader));
    return nullptr;
}

CError* CPalette::readColors(CDataReader& reader) {
    int32_t count = 0;
    TARV_TRY(reader.readCount(count, kColorLeast));
    colors_.reserve(count);
    for (int32_t i = 0; i < count; ++i) {
        auto color = std::make_unique<CColor>();
        const uint8_t* bytes = nullptr;
        TARV_TRY(reader.readSortedName(color->name, i > 0 ? colors_.last()->name : CString(), i == 0));
        TARV_TRY(reader.readNumber(color->opacity, 0.0, 1.0));
        TARV_TRY(reader.readBytes(bytes, kRampBytes));
        rampFromBytes(color->ramp, bytes);
        colors_.append(color.release());
    }
    return nullptr;
}

CError* CPalette::readFrames(CDataReader& reader) {
    int32_t count = 0;
    TARV_TRY(reader.readCount(count, kFramesLeast));
    for (int32_t i = 0; i < count; ++i) {
        CFrames row{};
        TARV_TRY(reader.readSortedName(row.name, i > 0 ? frames_.last().name : CString(), i == 0));
        TARV_TRY(reader.readValue(row.count));
        if (row.count == 0) {
            TARV_FAIL("@tarvstr_CPalette_read_NoFrames Color '%1' before byte %2 has no frames.", row.name,
                      reader.place());
        }
        frames_.append(std::move(row));
    }
    return nullptr;
}

CError* CPalette::write(COutputStream& output) const {
    TARV_TRY(writeSize(output));
    TARV_TRY(output.writeValue(kDataSetVersion));
    TARV_TRY(writeWhole(output, colors_.count()));
    for (const CColor* color : colors_) {
        uint8_t bytes[kRampBytes];
        rampToBytes(color->ramp, bytes);
        TARV_TRY(writeName(output, color->name));
        TARV_TRY(output.writeDouble(color->opacity));
        TARV_TRY(output.write(bytes, sizeof(bytes)));
    }
    TARV_TRY(writeWhole(output, frames_.count()));
    for (const CFrames& row : frames_) {
        TARV_TRY(writeName(output, row.name));
        TARV_TRY(output.writeValue(row.count));
    }
    return nullptr;
}

int64_t CPalette::getSize() const {
    // Size, version, two counts.
    int64_t size = 4 * sizeof(uint32_t);
    for (const CColor* color : colors_) {
        size += nameSize(color->name) + static_cast<int64_t>(sizeof(double)) + kRampBytes;
    }
    for (const CFrames& row : frames_) {
        size += nameSize(row.name) + static_cast<int64_t>(sizeof(uint32_t));
    }
    return size;
}

}  // namespace tarv
