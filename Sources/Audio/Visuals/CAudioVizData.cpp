#include "Audio/Visuals/CAudioVizData.h"

#include <algorithm>

namespace tarv {

namespace {

// Room for this many items at first, then for twice what was read: an announced count alone takes no memory.
constexpr int32_t kFirstStep = 512;

struct CKindRow {
    CAudioVizKind kind;
    CAudioVizData* (*create)(int32_t capacity);
};

constexpr CKindRow kKindRows[] = {
    {CAudioVizKind::Meter, [](int32_t) -> CAudioVizData* { return new CAudioVizDataMeter; }},
    {CAudioVizKind::Info, [](int32_t capacity) -> CAudioVizData* { return new CAudioVizDataInfo(capacity); }},
    {CAudioVizKind::Spectrum, [](int32_t capacity) -> CAudioVizData* { return new CAudioVizDataSpectrum(capacity); }},
};

/// Reads `count` items; `readItems(first, end)` reads those from `first` on, for which there is room.
template <class Items, class Read>
CError* readGrowing(Items& items, int32_t count, Read readItems) {
    items.clear();
    while (items.count() < count) {
        const int32_t first = items.count();
        items.resize(std::min(count, first + std::max(first, kFirstStep)));
        TARV_TRY(readItems(first, items.count()));
    }
    return nullptr;
}

}  // namespace

CAudioVizData* CAudioVizData::create(uint32_t kind, int32_t capacity) {
    for (const CKindRow& row : kKindRows) {
        if (static_cast<uint32_t>(row.kind) == kind) {
            return row.create(capacity);
        }
    }
    return nullptr;
}

CError* CAudioVizData::readAny(CInputStream& stream, CAudioVizData*& data) {
    data = nullptr;
    uint32_t kind = 0;
    TARV_TRY(stream.readValue(kind));
    CAudioVizData* made = create(kind);
    if (!made) {
        return nullptr;
    }
    if (CError* error = made->read(stream)) {
        delete made;
        return addErrorLocation(error, __FILE__, __LINE__, CString(), CString());
    }
    data = made;
    return nullptr;
}

CError* CAudioVizData::write(COutputStream& stream) const {
    TARV_TRY(stream.writeValue(static_cast<uint32_t>(kind_)));
    TARV_TRY(stream.writeValue(source));
    TARV_TRY(stream.writeValue(channel));
    TARV_TRY(stream.writeDouble(time));
    TARV_TRY(stream.writeValue(group));
    return nullptr;
}

CError* CAudioVizData::read(CInputStream& stream) {
    TARV_TRY(stream.readValue(source));
    TARV_TRY(stream.readValue(channel));
    TARV_TRY(stream.readDouble(time));
    TARV_TRY(stream.readValue(group));
    return nullptr;
}

CError* CAudioVizDataMeter::write(COutputStream& stream) const {
    TARV_TRY(CAudioVizData::write(stream));
    TARV_TRY(stream.writeDouble(level));
    TARV_TRY(stream.writeDouble(peak));
    return nullptr;
}

CError* CAudioVizDataMeter::read(CInputStream& stream) {
    TARV_TRY(CAudioVizData::read(stream));
    TARV_TRY(stream.readDouble(level));
    TARV_TRY(stream.readDouble(peak));
    return nullptr;
}

CAudioVizDataInfo::CAudioVizDataInfo(int32_t capacity) : CAudioVizData(CAudioVizKind::Info) {
    data.reserve(capacity);
}

CError* CAudioVizDataInfo::write(COutputStream& stream) const {
    TARV_TRY(CAudioVizData::write(stream));
    TARV_TRY(stream.writeValue(static_cast<uint32_t>(data.count())));
    TARV_TRY(stream.write(data.data(), data.count()));
    TARV_TRY(stream.writeValue(code));
    return nullptr;
}

CError* CAudioVizDataInfo::read(CInputStream& stream) {
    TARV_TRY(CAudioVizData::read(stream));
    uint32_t count = 0;
    TARV_TRY(stream.readValue(count));
    if (count > kMaxBytes) {
        TARV_FAIL("@tarvstr_CAudioVizDataInfo_read_TooLong Visual data of %1 bytes is too long.",
                  CString::fromDouble(count, 0));
    }
    TARV_TRY(readGrowing(data, static_cast<int32_t>(count),
                         [&](int32_t first, int32_t end) { return stream.read(&data[first], end - first); }));
    TARV_TRY(stream.readValue(code));
    return nullptr;
}

CAudioVizDataSpectrum::CAudioVizDataSpectrum(int32_t capacity) : CAudioVizData(CAudioVizKind::Spectrum) {
    bins.reserve(capacity);
}

CError* CAudioVizDataSpectrum::write(COutputStream& stream) const {
    TARV_TRY(CAudioVizData::write(stream));
    TARV_TRY(stream.writeValue(static_cast<uint32_t>(bins.count())));
    for (double bin : bins) {
        TARV_TRY(stream.writeDouble(bin));
    }
    TARV_TRY(stream.writeDouble(sampleRate));
    TARV_TRY(stream.writeValue(size));
    TARV_TRY(stream.writeValue(type));
    return nullptr;
}

CError* CAudioVizDataSpectrum::read(CInputStream& stream) {
    TARV_TRY(CAudioVizData::read(stream));
    uint32_t count = 0;
    TARV_TRY(stream.readValue(count));
    if (count > kMaxBins) {
        TARV_FAIL("@tarvstr_CAudioVizDataSpectrum_read_TooLong Spectrum of %1 bins is too long.",
                  CString::fromDouble(count, 0));
    }
    const auto readBins = [&](int32_t first, int32_t end) -> CError* {
        for (int32_t i = first; i < end; ++i) {
            TARV_TRY(stream.readDouble(bins[i]));
        }
        return nullptr;
    };
    TARV_TRY(readGrowing(bins, static_cast<int32_t>(count), readBins));
    TARV_TRY(stream.readDouble(sampleRate));
    TARV_TRY(stream.readValue(size));
    TARV_TRY(stream.readValue(type));
    return nullptr;
}

}  // namespace tarv
