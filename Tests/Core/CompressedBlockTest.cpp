#include "Core/CompressedBlock.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>

#include "Core/CZipStreams.h"
#include "Tests/Core/CoreTestHelp.h"

namespace tarv {
namespace {

/// Noise that zlib cannot shrink much, so that the staging buffers turn over.
CByteBuffer noise(int32_t count) {
    CByteBuffer bytes;
    bytes.resize(count);
    uint32_t state = 1;
    for (uint8_t& byte : bytes) {
        state = state * 1664525u + 1013904223u;
        byte = static_cast<uint8_t>(state >> 24);
    }
    return bytes;
}

CByteBuffer blockOf(const CByteBuffer& data, uint32_t id = kTreeBlockId) {
    CMemoryWriteBuffer target;
    EXPECT_GOOD(target.writeCompressedData(data, id));
    CByteBuffer block;
    target.copyTo(block);
    return block;
}

CError* readBlock(const CByteBuffer& block, CByteBuffer& data) {
    CMemoryReader source(block.data(), static_cast<uint32_t>(block.count()));
    return source.readCompressedData(data, kTreeBlockId);
}

CByteBuffer damagedAt(int32_t index) {
    CByteBuffer block = blockOf(noise(100));
    block[index < 0 ? block.count() + index : index] ^= 0x40;
    return block;
}

CByteBuffer cutTo(int32_t count) {
    CByteBuffer block = blockOf(noise(100));
    block.resize(count < 0 ? block.count() + count : count);
    return block;
}

/// A block whose count, with its check value, is other than its data's.
CByteBuffer announcing(uint32_t count) {
    CByteBuffer block = blockOf(noise(100));
    uint32_t low = 1;
    uint32_t high = 0;
    for (int32_t i = 0; i < 4; ++i) {
        block[4 + i] = static_cast<uint8_t>(count >> (8 * i));
        low += block[4 + i];
        high += low;
    }
    const uint32_t check = high << 16 | low;
    for (int32_t i = 0; i < 4; ++i) {
        block[8 + i] = static_cast<uint8_t>(check >> (8 * i));
    }
    return block;
}

TEST(CompressedBlock, IdsAreTheirFourLettersInOrder) {
    EXPECT_EQ(kTreeBlockId, 0x6c6d7863u);
    EXPECT_EQ(blockId("aprs"), 1936879713u);
}

TEST(CompressedBlock, TheHeaderHoldsIdCountAndTheCheckOfTheCount) {
    const CByteBuffer block = blockOf(noise(258));
    // Adler-32 of 02 01 00 00: a = 4, b = 3 + 4 + 4 + 4.
    const uint8_t kHeader[] = {'c', 'x', 'm', 'l', 2, 1, 0, 0, 4, 0, 15, 0, 0x78};
    ASSERT_GT(block.count(), 12);
    EXPECT_EQ(std::memcmp(block.data(), kHeader, sizeof(kHeader)), 0);
}

TEST(CompressedBlock, DataOfEverySizeComesBack) {
    for (int32_t size : {0, 1, 259, 260, 261, 16383, 16384, 16385, 32767, 32768, 32769, 100000, 3000000}) {
        const CByteBuffer data = noise(size);
        CByteBuffer back;
        EXPECT_GOOD(readBlock(blockOf(data), back));
        ASSERT_EQ(back.count(), size);
        EXPECT_EQ(std::memcmp(back.data(), data.data(), static_cast<size_t>(size)), 0);
    }
}

TEST(CompressedBlock, DamageFailsAndLeavesNothing) {
    struct CBadBlock {
        const char* name;
        CByteBuffer block;
        const char* message;
    };
    const CBadBlock kBad[] = {
        {"wrong id", damagedAt(0), "Invalid ID encountered when reading compressed data (expected 1819113571, read"},
        {"damaged size", damagedAt(5),
         "Invalid CRC encountered when reading compressed data (expected 26476645, read 39059621)"},
        {"damaged check", damagedAt(9),
         "Invalid CRC encountered when reading compressed data (expected 26493029, read 26476645)"},
        {"damaged data", damagedAt(20), "zlib inflate error -3 ("},
        {"damaged check of the data", damagedAt(-1), "zlib inflate error -3 (incorrect data check)."},
        {"cut in the header", cutTo(10), "Premature end of memory resource while reading"},
        {"cut in the data", cutTo(60), "Premature end of file."},
        {"cut in the end", cutTo(-1), "Premature end of file."},
        {"announces more", announcing(101), "Premature end of file."},
        {"announces far more", announcing(200 << 20), "Premature end of file."},
        {"announces more than any block holds", announcing(0xffffffff), "Compressed data too long (4294967295 bytes)."},
        {"announces less", announcing(99), "Compressed data longer than announced."},
        {"empty", CByteBuffer(), "Premature end of memory resource while reading (pos 0, count 4, size 0)."},
    };
    for (const CBadBlock& bad : kBad) {
        CByteBuffer data;
        data.resize(7);
        const std::string message = messageOf(readBlock(bad.block, data));
        EXPECT_TRUE(message.starts_with(bad.message)) << bad.name << ": " << message;
        EXPECT_EQ(data.count(), 0) << bad.name;
    }
}

TEST(CompressedBlock, AFalseCountTakesNoMoreMemoryThanItsDataFills) {
    const CByteBuffer block = announcing(200 << 20);
    const uint64_t before = CHeap::counters().platformBytes;
    CByteBuffer data;
    EXPECT_NE(messageOf(readBlock(block, data)), "");
    EXPECT_LT(CHeap::counters().platformBytes, before + (2 << 20));
}

TEST(ZipStreams, ClosedStreamsRefuse) {
    uint8_t byte = 0;
    CInputZipStream input;
    COutputZipStream output;
    EXPECT_EQ(messageOf(input.read(&byte, 1)), "Input stream not specified.");
    CByteBuffer buffer;
    EXPECT_EQ(messageOf(input.readToEnd(buffer, 1)), "Input stream not specified.");
    EXPECT_EQ(messageOf(output.write(&byte, 1)), "Output stream not specified.");
    EXPECT_EQ(messageOf(input.consume(1)), "Consuming is not supported in zip streams.");
    CMemoryReader source(&byte, 1);
    EXPECT_GOOD(input.open(source));
    EXPECT_GOOD(input.close());
    EXPECT_EQ(messageOf(input.read(&byte, 1)), "Input stream not specified.");
    EXPECT_GOOD(input.close());
    EXPECT_GOOD(output.close());
}

TEST(ZipStreams, ReadInPiecesWhatWasWrittenInPieces) {
    const CByteBuffer data = noise(200000);
    CMemoryWriteBuffer target;
    COutputZipStream output;
    EXPECT_GOOD(output.open(target));
    for (int32_t at = 0, step = 1; at < data.count(); at += step, step = std::min(step * 2, data.count() - at)) {
        EXPECT_GOOD(output.write(data.data() + at, std::min(step, data.count() - at)));
    }
    EXPECT_GOOD(output.close());
    CByteBuffer zipped;
    target.copyTo(zipped);
    CMemoryReader source(zipped.data(), static_cast<uint32_t>(zipped.count()));
    CInputZipStream input;
    EXPECT_GOOD(input.open(source));
    CByteBuffer back;
    back.resize(data.count());
    for (int32_t at = 0; at < data.count(); at += 777) {
        EXPECT_GOOD(input.read(back.data() + at, std::min(777, data.count() - at)));
    }
    EXPECT_EQ(std::memcmp(back.data(), data.data(), static_cast<size_t>(data.count())), 0);
    uint8_t byte = 0;
    EXPECT_EQ(messageOf(input.read(&byte, 1)), "Premature end of file.");
}

/// Takes a number of bytes and fails from there.
class CFullTarget : public COutputStream {
public:
    explicit CFullTarget(int64_t room) : room_(room) {}
    CError* write(const void*, int64_t count) override {
        room_ -= count;
        if (room_ < 0) {
            TARV_FAIL("Full.");
        }
        return nullptr;
    }

private:
    int64_t room_;
};

TEST(ZipStreams, AFullTargetFails) {
    for (int64_t room : {0, 3, 4, 8, 12, 40000, 70000}) {
        CFullTarget target(room);
        EXPECT_EQ(messageOf(target.writeCompressedData(noise(100000), kTreeBlockId)), "Full.") << room;
    }
}

}  // namespace
}  // namespace tarv
