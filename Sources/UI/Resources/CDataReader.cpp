#include "UI/Resources/CDataReader.h"

#include <bit>
#include <cmath>

#include "UI/Resources/CDataSet.h"

namespace tarv {

namespace {

constexpr uint32_t kSizeField = 4;

}  // namespace

uint32_t CDataReader::position() const {
    return kSizeField + size_ - body_.restCount();
}

CError* CDataReader::open(CInputStream& input) {
    TARV_TRY(input.readValue(size_));
    const uint8_t* bytes = nullptr;
    TARV_TRY(input.view(bytes, size_, room_));
    body_.open(bytes, size_);
    return nullptr;
}

CError* CDataReader::finish() const {
    if (body_.restCount() != 0) {
        TARV_FAIL("@tarvstr_CDataReader_finish_BytesLeft Data set ends at byte %1, and %2 bytes are left.", place(),
                  CString::fromInt(body_.restCount()));
    }
    return nullptr;
}

CError* CDataReader::readVersion() {
    uint32_t version = 0;
    TARV_TRY(readValue(version));
    if (version != kDataSetVersion) {
        TARV_FAIL("@tarvstr_CDataReader_readVersion_Unsupported Unsupported data set version %1 (before byte %2).",
                  CString::fromInt(version), place());
    }
    return nullptr;
}

CError* CDataReader::readValue(uint32_t& value) {
    TARV_TRY(body_.takeValue(value));
    return nullptr;
}

CError* CDataReader::readWhole(int32_t& value, int32_t lowest, int32_t highest) {
    uint32_t bits = 0;
    TARV_TRY(readValue(bits));
    value = static_cast<int32_t>(bits);
    if (value < lowest || value > highest) {
        TARV_FAIL("@tarvstr_CDataReader_readWhole_OutOfRange Value %1 before byte %2 is not in %3 to %4.",
                  CString::fromInt(value), place(), CString::fromInt(lowest), CString::fromInt(highest));
    }
    return nullptr;
}

CError* CDataReader::readNumber(double& value, double lowest, double highest) {
    TARV_TRY(body_.readDouble(value));
    // Written so that what is not a number fails too.
    if (!(value >= lowest && value <= highest)) {
        TARV_FAIL("@tarvstr_CDataReader_readNumber_OutOfRange Number before byte %1 is not in %2 to %3.", place(),
                  CString::fromDouble(lowest, 2), CString::fromDouble(highest, 2));
    }
    return nullptr;
}

CError* CDataReader::readCount(int32_t& count, uint32_t bytesEach) {
    uint32_t value = 0;
    TARV_TRY(readValue(value));
    const uint32_t rest = body_.restCount();
    if (value > rest / bytesEach || value > INT32_MAX) {
        TARV_FAIL("@tarvstr_CDataReader_readCount_TooMany Count %1 before byte %2 can't be held by the %3 bytes left.",
                  CString::fromInt(value), place(), CString::fromInt(rest));
    }
    count = static_cast<int32_t>(value);
    return nullptr;
}

CError* CDataReader::readName(CString& name) {
    int32_t count = 0;
    const uint8_t* bytes = nullptr;
    TARV_TRY(readCount(count, 1));
    TARV_TRY(readBytes(bytes, static_cast<uint32_t>(count)));
    name = CString(reinterpret_cast<const char*>(bytes), count);
    return nullptr;
}

CError* CDataReader::readSortedName(CString& name, const CString& previous, bool isFirst) {
    TARV_TRY(readName(name));
    if (!isFirst && !(previous < name)) {
        TARV_FAIL("@tarvstr_CDataReader_readSortedName_Order Name '%1' before byte %2 does not stand behind '%3'.",
                  name, place(), previous);
    }
    return nullptr;
}

CError* CDataReader::readScales(CArray<double, 3>& scales, uint32_t bytesEach) {
    int32_t count = 0;
    TARV_TRY(readCount(count, static_cast<uint32_t>(sizeof(double)) + bytesEach));
    if (count == 0) {
        TARV_FAIL("@tarvstr_CDataReader_readScales_None No scale is stored (before byte %1).", place());
    }
    scales.clear();
    for (int32_t i = 0; i < count; ++i) {
        double scale = 0.0;
        TARV_TRY(readNumber(scale, kLowestStoredScale, kHighestStoredScale));
        if (i > 0 && scale <= scales.last()) {
            TARV_FAIL("@tarvstr_CDataReader_readScales_Order Scales before byte %1 do not ascend.", place());
        }
        scales.append(scale);
    }
    return nullptr;
}

CError* CDataReader::readBytes(const uint8_t*& bytes, uint32_t count) {
    TARV_TRY(body_.takeBytes(bytes, count));
    return nullptr;
}

int64_t nameSize(const CString& name) {
    return static_cast<int64_t>(sizeof(uint32_t)) + name.length();
}

bool isNarrowName(const CString& name) {
    for (int32_t i = 0; i < name.length(); ++i) {
        if (name.at(i) > UINT8_MAX) {
            return false;
        }
    }
    return true;
}

CError* writeName(COutputStream& output, const CString& name) {
    TARV_TRY(output.writeValue(static_cast<uint32_t>(name.length())));
    for (int32_t i = 0; i < name.length(); ++i) {
        const auto character = static_cast<uint8_t>(name.at(i));
        TARV_TRY(output.write(&character, 1));
    }
    return nullptr;
}

CError* writeWhole(COutputStream& output, int32_t value) {
    TARV_TRY(output.writeValue(static_cast<uint32_t>(value)));
    return nullptr;
}

}  // namespace tarv
