#include "Audio/Stores/CAudioPreset.h"

#include <algorithm>
#include <chrono>
#include <random>

#include "Audio/Stores/PackedStream.h"
#include "Tests/Audio/Presets/PresetTree.h"

namespace tarv {
namespace {

std::string load(const std::string& bytes, CAudioPreset& preset) {
    CMemoryReader reader(bytes.data(), static_cast<uint32_t>(bytes.size()));
    return firstLine(preset.load(reader));
}

std::string loadPackedBytes(const std::string& block, CAudioPreset& preset) {
    CMemoryReader reader(block.data(), static_cast<uint32_t>(block.size()));
    return firstLine(loadPacked(reader, kPresetBlockId, preset));
}

CByteBuffer bytesOf(const std::string& text) {
    CByteBuffer bytes;
    CBufferWriter writer(bytes);
    EXPECT_EQ(firstLine(writer.write(text.data(), static_cast<int64_t>(text.size()))), "");
    return bytes;
}

std::string recordOf(const CAudioPreset& preset, const char* key) {
    const int32_t index = preset.find(key);
    if (index < 0)
        return "none";
    const CAudioPreset::CBytes record = preset.record(index);
    return {reinterpret_cast<const char*>(record.data), static_cast<size_t>(record.count)};
}

TEST(Preset, TheStreamIsNameCountAndRecordsByAscendingKey) {
    const std::string stream =
        CStored().text("TAEQ:Boom Box").word(2).text("a.gain").text("\x01\x02").text("b").text("").bytes();
    CAudioPreset preset;
    ASSERT_EQ(load(stream, preset), "");
    EXPECT_EQ(preset.name(), "TAEQ:Boom Box");
    EXPECT_EQ(preset.recordCount(), 2);
    EXPECT_EQ(preset.keyText(1), "b");
    EXPECT_EQ(recordOf(preset, "a.gain"), "\x01\x02");
    EXPECT_EQ(savedBytes(preset), stream);
}

TEST(Preset, AnUnknownKeyKeepsItsBytesAndIsWrittenBack) {
    const std::string noise("\x00\xff not a record at all \x00", 25);
    const std::string stream = storedPreset("TAEQ:x", {{"a key of tomorrow", noise}});
    CAudioPreset preset;
    ASSERT_EQ(load(stream, preset), "");
    EXPECT_EQ(recordOf(preset, "a key of tomorrow"), noise);
    EXPECT_EQ(savedBytes(preset), stream);
}

TEST(Preset, KeysAreSortedByTheirBytesWhateverTheOrderOfTheStream) {
    CAudioPreset preset;
    ASSERT_EQ(load(storedPreset("p", {{"b", "2"}, {"a.b", "1"}, {"\xc3\xa4", "4"}, {"a", "0"}, {"z", "3"}}), preset),
              "");
    EXPECT_EQ(savedBytes(preset),
              storedPreset("p", {{"a", "0"}, {"a.b", "1"}, {"b", "2"}, {"z", "3"}, {"\xc3\xa4", "4"}}));
    preset.setRecord("aa", bytesOf("5"));
    EXPECT_EQ(preset.keyText(2), "aa");
}

TEST(Preset, ACountOfZeroOrBelowIsAPresetWithoutRecords) {
    for (const uint32_t count : {0u, 0x80000000u, 0xffffffffu}) {
        CAudioPreset preset;
        ASSERT_EQ(load(CStored().text("TAEQ:Empty").word(count).bytes(), preset), "") << count;
        EXPECT_EQ(preset.name(), "TAEQ:Empty");
        EXPECT_EQ(preset.recordCount(), 0);
        EXPECT_EQ(savedBytes(preset), storedPreset("TAEQ:Empty"));
    }
}

TEST(Preset, TheFirstColonEndsThePrefix) {
    const struct {
        const char* name;
        const char* prefix;
        const char* shown;
    } kNames[] = {{"TAEQ:Boom Box", "TAEQ", "Boom Box"},
                  {"TAIO:5:1 : Surround", "TAIO", "5:1 : Surround"},
                  {"TAEQ:", "TAEQ", ""},
                  {":x", "", "x"},
                  {"no colon", "", "no colon"},
                  {"", "", ""}};
    for (const auto& row : kNames) {
        const CAudioPreset preset(row.name);
        EXPECT_TRUE(preset.hasPrefix(row.prefix)) << row.name;
        EXPECT_FALSE(preset.hasPrefix(CString(row.prefix) + "X")) << row.name;
        EXPECT_FALSE(preset.hasPrefix(CString(row.prefix) + ":")) << row.name;
        EXPECT_EQ(preset.hasPrefix(""), *row.prefix == 0) << row.name;
        EXPECT_FALSE(preset.hasPrefix("TAE")) << row.name;
        EXPECT_EQ(preset.displayName(), row.shown) << row.name;
    }
    CAudioPreset preset("TAEQ:a:b");
    preset.setDisplayName("c:d");
    EXPECT_EQ(preset.name(), "TAEQ:c:d");
}

TEST(Preset, OfTwoRecordsWithOneKeyTheLaterCounts) {
    CAudioPreset preset;
    ASSERT_EQ(load(storedPreset("p", {{"k", "first"}, {"a", "x"}, {"k", "second"}}), preset), "");
    EXPECT_EQ(savedBytes(preset), storedPreset("p", {{"a", "x"}, {"k", "second"}}));
}

TEST(Preset, RecordsAreReplacedRemovedAndClearedByKey) {
    CAudioPreset preset("p");
    for (int round = 0; round < 100; ++round) {
        preset.setRecord("k", bytesOf("record " + std::to_string(round)));
        preset.setRecord("other", bytesOf("same"));
    }
    EXPECT_EQ(savedBytes(preset), storedPreset("p", {{"k", "record 99"}, {"other", "same"}}));
    preset.removeRecord("k");
    preset.removeRecord("not there");
    EXPECT_EQ(savedBytes(preset), storedPreset("p", {{"other", "same"}}));
    CAudioPreset copy;
    copy.copyFrom(preset);
    preset.clear();
    EXPECT_EQ(savedBytes(preset), storedPreset("p"));
    EXPECT_EQ(savedBytes(copy), storedPreset("p", {{"other", "same"}}));
    preset.take(copy);
    EXPECT_EQ(recordOf(preset, "other"), "same");
}

TEST(Preset, ABlockOfAnotherKindIsRefusedByItsId) {
    const std::string preset = storedPreset("TAEQ:x");
    CAudioPreset target("before");
    EXPECT_EQ(loadPackedBytes(packed(preset, kBankBlockId), target),
              "Invalid ID encountered when reading compressed data (expected 1936879713, read 1802396257).");
    EXPECT_EQ(target.name(), "before");
    EXPECT_EQ(loadPackedBytes(packed(preset, kPresetBlockId), target), "");
    EXPECT_EQ(target.name(), "TAEQ:x");
}

TEST(Preset, AFileOfThePackedFormIsRead) {
    const std::string stream = storedPreset("TAEQ:x", {{"k", "v"}});
    const CStoredFile file(packed(stream, kPresetBlockId));
    const CStoredFile bank(packed(stream, kBankBlockId));
    CAudioPreset preset;
    EXPECT_EQ(firstLine(preset.load(file.path().c_str())), "");
    EXPECT_EQ(savedBytes(preset), stream);
    EXPECT_NE(firstLine(preset.load(bank.path().c_str())), "");
    EXPECT_NE(firstLine(preset.load("/no such folder/file")), "");
    EXPECT_EQ(savedBytes(preset), stream);
}

TEST(Preset, DataBehindTheEndOfAPackedPresetAreRefused) {
    CAudioPreset preset("before");
    EXPECT_EQ(loadPackedBytes(packed(storedPreset("TAEQ:x") + "?", kPresetBlockId), preset),
              "Data go on behind their end (pos 14, size 15).");
    EXPECT_EQ(preset.name(), "before");
}

TEST(Preset, CutAtAnyByteNothingChangesAndTheFailureSaysWhere) {
    const std::string stream = storedPreset("TAEQ:x", {{"a", realRecord({{1, 2}})}, {"b", "y"}});
    CAudioPreset preset;
    ASSERT_EQ(load(storedPreset("before", {{"k", "v"}}), preset), "");
    for (size_t length = 0; length < stream.size(); ++length) {
        CMemoryReader reader(stream.data(), static_cast<uint32_t>(length));
        const std::string failure = consumed(preset.load(reader));
        EXPECT_EQ(failure.find("Premature end of memory resource while reading"), 0u) << length;
        EXPECT_NE(failure.find("CAudioPreset( "), std::string::npos) << length;
    }
    EXPECT_EQ(savedBytes(preset), storedPreset("before", {{"k", "v"}}));
}

TEST(Preset, CountsAndLengthsThatTheBytesCannotFillTakeNoMemory) {
    for (const uint32_t claim : {0x7fffffffu, 0xffffffffu, 0x10000000u, 61441u, 61440u}) {
        const std::string streams[] = {
            CStored().word(claim).raw("short").bytes(),
            CStored().text("p").word(claim).text("key").bytes(),
            CStored().text("p").word(1).word(claim).raw("key").bytes(),
            CStored().text("p").word(1).text("key").word(claim).raw("record").bytes(),
            CStored().text("p").word(1).text("key").word(claim).raw(std::string(60000, 'x')).bytes(),
        };
        for (const std::string& stream : streams) {
            CAudioPreset preset("before");
            CMemoryReader reader(stream.data(), static_cast<uint32_t>(stream.size()));
            CHeap::resetPeak();
            const uint64_t before = CHeap::counters().platformBytes;
            const std::string failure = firstLine(preset.load(reader));
            // A negative length of a string is an empty one, and a negative count no record at all.
            if (failure.empty())
                EXPECT_GE(claim, 0x80000000u);
            else
                EXPECT_EQ(preset.name(), "before");
            EXPECT_LE(CHeap::counters().peakPlatformBytes - before, 4 * stream.size() + (64 << 10))
                << claim << ' ' << stream.size();
        }
    }
}

TEST(Preset, AHundredThousandRecordsInDescendingOrderAreReadAtOnce) {
    constexpr int32_t kCount = 100000;
    CStoredRecords records;
    for (int32_t i = kCount; i-- > 0;) {
        const std::string digits = std::to_string(1000000 + i);
        records.emplace_back(digits, digits.substr(5));
    }
    CAudioPreset preset;
    const std::string stream = storedPreset("p", records);
    const auto start = std::chrono::steady_clock::now();
    ASSERT_EQ(load(stream, preset), "");
    // Far above what a sort needs, a third of what moving each record to its place took.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(4));
    EXPECT_EQ(preset.recordCount(), kCount);
    EXPECT_EQ(preset.keyText(0), "1000000");
    EXPECT_EQ(recordOf(preset, "1054321"), "21");
    std::reverse(records.begin(), records.end());
    EXPECT_EQ(savedBytes(preset), storedPreset("p", records));
}

TEST(Preset, RandomBytesAreRefusedOrReadAsAWholePreset) {
    std::mt19937 random(7);
    const std::string good = storedPreset("TAEQ:x", {{"a", realRecord({{1, 2}})}, {"b", textRecord({"y", "z"})}});
    for (int round = 0; round < 2000; ++round) {
        std::string bytes = good;
        for (int i = 0; i < 1 + round % 8; ++i)
            bytes[random() % bytes.size()] = static_cast<char>(random());
        CAudioPreset preset("before");
        CMemoryReader reader(bytes.data(), static_cast<uint32_t>(bytes.size()));
        if (firstLine(preset.load(reader)).empty()) {
            // A preset that was read as a whole is the same after a save and a load.
            CAudioPreset again;
            ASSERT_EQ(load(savedBytes(preset), again), "");
            EXPECT_EQ(savedBytes(again), savedBytes(preset));
        } else {
            EXPECT_EQ(savedBytes(preset), storedPreset("before"));
        }
    }
}

}  // namespace
}  // namespace tarv
