#include "UI/Resources/CDataSet.h"

#include <algorithm>
#include <cmath>

#include "Core/CResourceReader.h"

namespace tarv {

namespace {

// By so much a scale has to be nearer: decimal fractions are not halved exactly.
constexpr double kNearer = 1e-9;

}  // namespace

CError* CDataSet::writeSize(COutputStream& output) const {
    const int64_t size = getSize() - static_cast<int64_t>(sizeof(uint32_t));
    if (size > UINT32_MAX) {
        TARV_FAIL("@tarvstr_CDataSet_writeSize_TooLong Data set too long (%1 bytes).", CString::fromInt(size));
    }
    TARV_TRY(output.writeValue(static_cast<uint32_t>(size)));
    return nullptr;
}

int32_t nearestScale(const CArray<double, 3>& scales, double scale) {
    const int32_t count = scales.count();
    const double wanted = std::isnan(scale) ? 1.0 : std::clamp(scale, scales[0], scales[count - 1]);
    int32_t nearest = 0;
    for (int32_t i = 1; i < count; ++i) {
        if (std::abs(scales[i] - wanted) < std::abs(scales[nearest] - wanted) - kNearer) {
            nearest = i;
        }
    }
    return nearest;
}

CError* requireDataSet(const CString& name) {
    CResourceReader reader;
    TARV_TRY(reader.open(name));
    TARV_TRY(reader.close());
    return nullptr;
}

CError* loadDataSet(CDataSet& set, const CString& name, double scale) {
    set.setScale(scale);
    CResourceReader reader;
    TARV_TRY(reader.open(name));
    TARV_TRY(set.read(reader));
    int64_t position = 0;
    int64_t size = 0;
    TARV_TRY(reader.getPosition(position));
    TARV_TRY(reader.getSize(size));
    if (position != size) {
        TARV_FAIL("@tarvstr_CDataSet_load_BytesLeft Data set of '%1' ends at byte %2 of %3.", name,
                  CString::fromInt(position), CString::fromInt(size));
    }
    TARV_TRY(reader.close());
    return nullptr;
}

}  // namespace tarv
