#include "Audio/Visuals/CAudioVizData.h"

#include <bit>
#include <cmath>
#include <limits>
#include <memory>

#include "Tests/Audio/Parameters/ParamTree.h"

namespace tarv {
namespace {

/// Bytes as a record's definition lays them out.
class CBytes {
public:
    CBytes& word(uint32_t value) {
        for (int shift = 0; shift < 32; shift += 8)
            bytes.push_back(static_cast<uint8_t>(value >> shift));
        return *this;
    }
    CBytes& real(double value) {
        const auto bits = std::bit_cast<uint64_t>(value);
        return word(static_cast<uint32_t>(bits)).word(static_cast<uint32_t>(bits >> 32));
    }
    CBytes& head(uint32_t kind) { return word(kind).word(11).word(12).real(13.5).word(14); }
    std::vector<uint8_t> bytes;
};

std::vector<uint8_t> written(const CAudioVizData& data) {
    CMemoryWriteBuffer stream;
    CByteBuffer bytes;
    EXPECT_EQ(consumed(data.write(stream)), "");
    stream.copyTo(bytes);
    return std::vector<uint8_t>(bytes.begin(), bytes.end());
}

void fillHead(CAudioVizData& data) {
    data.source = 11;
    data.channel = 12;
    data.time = 13.5;
    data.group = 14;
}

/// First line of the failure; the record and the bytes that are left of a success.
struct CRead {
    std::string failure;
    std::unique_ptr<CAudioVizData> data;
    int64_t left = 0;
};

CRead readAll(const std::vector<uint8_t>& bytes) {
    CMemoryReader stream(bytes.data(), static_cast<uint32_t>(bytes.size()));
    CAudioVizData* data = nullptr;
    const std::string failure = consumed(CAudioVizData::readAny(stream, data));
    int64_t position = 0;
    EXPECT_EQ(consumed(stream.getPosition(position)), "");
    return {failure.substr(0, failure.find('\r')), std::unique_ptr<CAudioVizData>(data),
            static_cast<int64_t>(bytes.size()) - position};
}

/// A record of each kind with the bytes that its definition gives.
struct CExample {
    std::unique_ptr<CAudioVizData> data;
    std::vector<uint8_t> bytes;
};

std::vector<CExample> examples() {
    auto meter = std::make_unique<CAudioVizDataMeter>();
    meter->level = 0.25;
    meter->peak = std::numeric_limits<double>::quiet_NaN();
    auto info = std::make_unique<CAudioVizDataInfo>();
    info->data.resize(3);
    std::copy_n("abc", 3, info->data.data());
    info->code = 77;
    auto spectrum = std::make_unique<CAudioVizDataSpectrum>();
    for (double bin : {1.0, -0.0, 3e300})
        spectrum->bins.append(bin);
    spectrum->sampleRate = 48000.0;
    spectrum->size = 4;
    spectrum->type = 2;
    std::vector<CExample> all(3);
    all[0] = {std::move(meter), CBytes().head(0).real(0.25).real(std::numeric_limits<double>::quiet_NaN()).bytes};
    CBytes infoBytes = CBytes().head(1).word(3);
    infoBytes.bytes.insert(infoBytes.bytes.end(), {'a', 'b', 'c'});
    all[1] = {std::move(info), infoBytes.word(77).bytes};
    all[2] = {std::move(spectrum),
              CBytes().head(3).word(3).real(1.0).real(-0.0).real(3e300).real(48000.0).word(4).word(2).bytes};
    for (CExample& example : all)
        fillHead(*example.data);
    return all;
}

TEST(VizData, EachKindIsWrittenFieldByField) {
    for (const CExample& example : examples())
        EXPECT_EQ(written(*example.data), example.bytes) << static_cast<uint32_t>(example.data->kind());
}

TEST(VizData, WhatWasWrittenIsReadAsTheSameClassWithTheSameFields) {
    for (const CExample& example : examples()) {
        const CRead read = readAll(example.bytes);
        ASSERT_TRUE(read.data) << read.failure;
        EXPECT_EQ(typeid(*read.data), typeid(*example.data));
        EXPECT_EQ(read.data->kind(), example.data->kind());
        EXPECT_EQ(read.left, 0);
        EXPECT_EQ(written(*read.data), example.bytes);
    }
}

TEST(VizData, RecordsFollowEachOtherInOneStream) {
    CMemoryWriteBuffer stream;
    const std::vector<CExample> all = examples();
    for (const CExample& example : all)
        EXPECT_EQ(consumed(example.data->write(stream)), "");
    CByteBuffer bytes;
    stream.copyTo(bytes);
    CMemoryReader reader(bytes.data(), static_cast<uint32_t>(bytes.count()));
    for (const CExample& example : all) {
        CAudioVizData* data = nullptr;
        ASSERT_EQ(consumed(CAudioVizData::readAny(reader, data)), "");
        ASSERT_TRUE(data);
        EXPECT_EQ(written(*data), example.bytes);
        delete data;
    }
}

TEST(VizData, AnUnknownKindGivesNoObjectAndNoFailure) {
    for (uint32_t kind : {2u, 4u, 0x80000000u, 0xffffffffu}) {
        const CRead read = readAll(CBytes().head(kind).real(1.0).bytes);
        EXPECT_EQ(read.failure, "") << kind;
        EXPECT_FALSE(read.data) << kind;
        EXPECT_EQ(read.left, 28) << "only the kind itself has been read";
    }
}

TEST(VizData, ARecordCutAnywhereFailsAndGivesNoObject) {
    for (const CExample& example : examples())
        for (size_t size = 0; size < example.bytes.size(); ++size) {
            const CRead read = readAll({example.bytes.begin(), example.bytes.begin() + static_cast<long>(size)});
            EXPECT_NE(read.failure, "") << size;
            EXPECT_FALSE(read.data) << size;
        }
}

TEST(VizData, AFailedWriteIsPassedOn) {
    struct CFullStream : COutputStream {
        CError* write(const void*, int64_t count) override {
            if ((room -= count) < 0)
                TARV_FAIL("@tarvstr_CFullStream_write_Full Full.");
            return nullptr;
        }
        int64_t room = 0;
    };
    for (const CExample& example : examples())
        for (size_t room = 0; room < example.bytes.size(); ++room) {
            CFullStream stream;
            stream.room = static_cast<int64_t>(room);
            const std::string failure = consumed(example.data->write(stream));
            EXPECT_EQ(failure.find("Full.\r\n"), 0u) << room;
            EXPECT_NE(failure.find("Sources/Audio/Visuals/CAudioVizData( "), std::string::npos) << failure;
        }
}

TEST(VizData, ASpectrumWithoutBinsStillHasTheFieldsBehindThem) {
    const CRead read = readAll(CBytes().head(3).word(0).real(96000.0).word(9).word(1).bytes);
    const auto* spectrum = dynamic_cast<const CAudioVizDataSpectrum*>(read.data.get());
    ASSERT_TRUE(spectrum) << read.failure;
    EXPECT_EQ(spectrum->bins.count(), 0);
    EXPECT_EQ(spectrum->sampleRate, 96000.0);
    EXPECT_EQ(spectrum->size, 9u);
    EXPECT_EQ(spectrum->type, 1u);
}

TEST(VizData, LongRecordsComeBackWhole) {
    CAudioVizDataSpectrum spectrum;
    CAudioVizDataInfo info;
    for (uint32_t i = 0; i < CAudioVizDataSpectrum::kMaxBins; ++i)
        spectrum.bins.append(std::sqrt(i));
    for (uint32_t i = 0; i < CAudioVizDataInfo::kMaxBytes; ++i)
        info.data.append(static_cast<uint8_t>(i * 7));
    const CAudioVizData* const kLong[] = {&spectrum, &info};
    for (const CAudioVizData* data : kLong) {
        const std::vector<uint8_t> bytes = written(*data);
        const CRead read = readAll(bytes);
        ASSERT_TRUE(read.data) << read.failure;
        EXPECT_EQ(written(*read.data), bytes);
    }
}

TEST(VizData, CountsBeyondAnyRecordAreRefused) {
    const struct {
        uint32_t kind;
        uint32_t count;
        const char* failure;
    } kFalse[] = {
        {3, CAudioVizDataSpectrum::kMaxBins + 1, "Spectrum of 65537 bins is too long."},
        {3, 0xffffffffu, "Spectrum of 4294967295 bins is too long."},
        {1, CAudioVizDataInfo::kMaxBytes + 1, "Visual data of 65537 bytes is too long."},
        {1, 0x80000000u, "Visual data of 2147483648 bytes is too long."},
    };
    for (const auto& row : kFalse) {
        const CRead read = readAll(CBytes().head(row.kind).word(row.count).real(0.0).real(0.0).word(0).word(0).bytes);
        EXPECT_FALSE(read.data);
        EXPECT_EQ(read.failure, row.failure);
    }
}

TEST(VizData, ACountTakesNoMemoryThatTheBytesDoNotFill) {
    for (const int32_t present : {0, 1, 511, 512, 5000}) {
        // What stands behind `kind`, with the largest count there is and some of its bins.
        CBytes bytes;
        bytes.word(1).word(2).real(3.0).word(4).word(CAudioVizDataSpectrum::kMaxBins);
        for (int32_t i = 0; i < present; ++i)
            bytes.real(i);
        CAudioVizDataSpectrum spectrum;
        CMemoryReader reader(bytes.bytes.data(), static_cast<uint32_t>(bytes.bytes.size()));
        EXPECT_NE(consumed(spectrum.read(reader)), "");
        EXPECT_LE(spectrum.bins.capacity(), std::max(512, 2 * present)) << present;
        CAudioVizDataInfo info;
        CMemoryReader again(bytes.bytes.data(), static_cast<uint32_t>(bytes.bytes.size()));
        EXPECT_NE(consumed(info.read(again)), "");
        EXPECT_LE(info.data.capacity(), std::max(512, 2 * 8 * present)) << present;
    }
}

TEST(VizData, NoiseIsARecordOrAFailureOrOfNoKind) {
    uint32_t seed = 12345;
    const auto next = [&seed] { return (seed = seed * 1664525u + 1013904223u) >> 8; };
    int records = 0;
    for (int i = 0; i < 5000; ++i) {
        CBytes noise;
        noise.word(next() % 5);
        const uint32_t length = next() % 300;
        // Small numbers too, so that some of the counts can be filled.
        for (uint32_t k = 0; k < length; ++k)
            noise.bytes.push_back(static_cast<uint8_t>(next() % 3 ? 0 : next()));
        const CRead read = readAll(noise.bytes);
        EXPECT_FALSE(read.data && !read.failure.empty());
        if (read.data) {
            ++records;
            const std::vector<uint8_t> again = written(*read.data);
            EXPECT_TRUE(std::equal(again.begin(), again.end(), noise.bytes.begin()));
        }
    }
    EXPECT_GT(records, 250);
}

}  // namespace
}  // namespace tarv
