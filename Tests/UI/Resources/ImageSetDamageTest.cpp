#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "Tests/UI/Resources/DamageHelp.h"

namespace tarv {
namespace {

constexpr uint64_t kHuge = 0xffffffff;

uint64_t bitsOf(double number) {
    return std::bit_cast<uint64_t>(number);
}

void putVersion(CFileBuilder& file, const std::string& suffix, const CBytes& block) {
    auto mark = [&](const char* name) -> CFileBuilder& { return file.mark(name + suffix); };
    mark("width").value(3);
    mark("height").value(4);
    mark("advance").number(2.5);
    mark("x").value(static_cast<uint32_t>(-1));
    mark("y").value(2);
    mark("stored width").value(3);
    mark("stored height").value(4);
    mark("data size").value(static_cast<uint32_t>(block.size()));
    mark("block").raw(block);
}

/// Four rows of three pixels: opaque, as the first, empty, and one pixel of each kind. The row data begin at 18.
const CBytes kBlock = {4,          0, 18, 0,          0,          0, 18, 0,          0,  0,  0,
                       0,          0, 0,  22,         0,          0, 0,  3 << 3 | 2, 11, 12, 13,  // 18
                       1 << 3 | 1, 5, 60, 1 << 3 | 0, 1 << 3 | 2, 9};                             // 22
constexpr size_t kRowTable = 2;
constexpr size_t kFirstRun = 18;
constexpr size_t kLastRow = 22;

CFileBuilder goodImageSet() {
    CFileBuilder file;
    file.mark("version").value(1).mark("ranges").value(2);
    file.mark("name A").text("A").mark("first").value(0).value(1);
    file.mark("name B").text("B").value(7).value(9);
    file.mark("images").value(2);
    file.mark("index 0").value(1).mark("layers").value(1).mark("kind").value(0).mark("bytes per pixel").value(2);
    file.mark("scales").value(2).mark("scale 0").number(0.8).mark("scale 1").number(1.0);
    putVersion(file, "", kBlock);
    putVersion(file, " 2", kBlock);
    file.mark("index 1").value(9).value(1).value(0).value(2).value(1).number(1.0);
    putVersion(file, " 3", kBlock);
    return file;
}

TEST(DamagedImageSet, IsAnErrorWhereverItIsCut) {
    expectStrictReading<CImageSet>(goodImageSet());
}

TEST(DamagedImageSet, NamesTheFaultInItsTables) {
    const double infinity = std::numeric_limits<double>::infinity();
    const double noNumber = std::numeric_limits<double>::quiet_NaN();
    expectDamages<CImageSet>(goodImageSet(),
                             {
                                 {"version", 2, 4, "Unsupported data set version 2 (before byte 8)."},
                                 {"version", 0, 4, "Unsupported data set version 0"},
                                 {"ranges", kHuge, 4, "Count 4294967295 before byte 12 can't be held by the"},
                                 {"ranges", 0x7fffffff, 4, "can't be held"},
                                 {"name A", kHuge, 4, "can't be held"},
                                 {"name A", 'B', 1, "Name 'B' before byte 30 does not stand behind 'B'", 4},
                                 {"name A", 'C', 1, "Name 'B' before byte 30 does not stand behind 'C'", 4},
                                 {"first", 2, 4, "Range 'A' before byte 25 goes from 2 to 1."},
                                 {"images", kHuge, 4, "can't be held"},
                                 {"images", 1, 4, "bytes are left"},
                                 {"index 0", 9, 4, "Image index 9 before byte"},
                                 {"index 0", kHuge, 4, "does not ascend"},
                                 {"layers", 0, 4, "has no layer"},
                                 {"layers", kHuge, 4, "can't be held"},
                                 {"kind", 1, 4, "Value 1 before byte 54 is not in 0 to 0"},
                                 {"bytes per pixel", 0, 4, "Value 0 before byte 58 is not in 1 to 4"},
                                 {"bytes per pixel", 3, 4, "No layer has 3 bytes per pixel (before byte 58)"},
                                 {"bytes per pixel", 5, 4, "is not in 1 to 4"},
                                 {"bytes per pixel", kHuge, 4, "is not in 1 to 4"},
                                 {"scales", 0, 4, "No scale is stored (before byte 62)"},
                                 {"scales", kHuge, 4, "can't be held"},
                                 {"scale 0", bitsOf(0.0), 8, "Number before byte 70 is not in 0.01 to 100.00"},
                                 {"scale 0", bitsOf(-1.0), 8, "is not in 0.01 to 100.00"},
                                 {"scale 0", bitsOf(noNumber), 8, "is not in 0.01 to 100.00"},
                                 {"scale 0", bitsOf(infinity), 8, "is not in 0.01 to 100.00"},
                                 {"scale 0", bitsOf(1.0), 8, "Scales before byte 78 do not ascend"},
                                 {"scale 0", bitsOf(1.1), 8, "do not ascend"},
                             });
}

TEST(DamagedImageSet, NamesTheFaultInThePlaceOfAPicture) {
    const double infinity = std::numeric_limits<double>::infinity();
    expectDamages<CImageSet>(goodImageSet(),
                             {
                                 {"width", 65536, 4, "Value 65536 before byte 82 is not in 0 to 65535"},
                                 {"width", kHuge, 4, "Value -1 before byte 82 is not in 0 to 65535"},
                                 {"height", 65536, 4, "is not in 0 to 65535"},
                                 {"advance", bitsOf(infinity), 8, "is not in -65535.00 to 65535.00"},
                                 {"advance", bitsOf(std::nan("")), 8, "is not in -65535.00 to 65535.00"},
                                 {"x", 0x80000000, 4, "is not in -65535 to 65535"},
                                 {"y", 65536, 4, "is not in -65535 to 65535"},
                                 {"stored width", 65536, 4, "is not in 0 to 65535"},
                                 {"stored width", 2, 4, "has the type 2 and 3 of the 2 pixels left"},
                                 {"stored width", 4, 4, "takes bytes of another row"},
                                 {"stored height", 5, 4, "has 4 rows and 28 bytes, which does not fit a height of 5"},
                                 {"stored height", 3, 4, "does not fit a height of 3"},
                                 {"stored height", kHuge, 4, "is not in 0 to 65535"},
                                 {"data size", 0, 4, "is too short for rows"},
                                 {"data size", 1, 4, "is too short for rows"},
                                 {"data size", 2, 4, "has 4 rows and 2 bytes"},
                                 {"data size", 17, 4, "has 4 rows and 17 bytes"},
                                 {"data size", kHuge, 4, "can't be held"},
                                 {"data size", 0x7fffffff, 4, "can't be held"},
                             });
}

TEST(DamagedImageSet, NamesTheFaultInARow) {
    const CFileBuilder good = goodImageSet();
    const std::string block = std::to_string(good.offsetOf("block"));
    const std::string firstRun = std::to_string(good.offsetOf("block") + kFirstRun);
    auto leaves = [&](const char* offset) {
        return std::string("Row offset ") + offset + " leaves the row data of the block at byte " + block + ".";
    };
    const std::string texts[] = {leaves("1"),
                                 leaves("17"),
                                 leaves("28"),
                                 leaves("4294967295"),
                                 "Run at byte " + firstRun + " has the type 3",
                                 "Run at byte " + firstRun + " has the type 2 and 0 of the 3 pixels left.",
                                 "Run at byte " + firstRun + " has the type 2 and 4 of the 3 pixels left."};
    expectDamages<CImageSet>(
        good, {
                  {"block", 3, 2, "has 3 rows and 28 bytes"},
                  {"block", 0xffff, 2, "has 65535 rows"},
                  {"block", 1, 4, texts[0].c_str(), kRowTable},
                  {"block", 17, 4, texts[1].c_str(), kRowTable},
                  {"block", 28, 4, texts[2].c_str(), kRowTable},
                  {"block", kHuge, 4, texts[3].c_str(), kRowTable},
                  {"block", 3 << 3 | 3, 1, texts[4].c_str(), kFirstRun},
                  {"block", 2, 1, texts[5].c_str(), kFirstRun},
                  {"block", 4 << 3 | 2, 1, texts[6].c_str(), kFirstRun},
                  // Long: the next byte, 11, is its high one.
                  {"block", 3 << 3 | 6, 1, "has the type 2 and 355 of the 3 pixels left", kFirstRun},
                  // The last row begins at the last byte, 9: one pixel with its alpha.
                  {"block", 27, 4, "leaves its block by 2 bytes", kRowTable + 12},
                  {"block", kLastRow + 1, 4, "has the type 1 and 1920 of the 3 pixels left", kRowTable + 12},
              });
}

TEST(DamagedImageSet, NamesRunsThatEndBehindTheirBlock) {
    struct CCase {
        CBytes rows;
        uint32_t width;
        const char* words;
    };
    const CCase cases[] = {
        {{1 << 3 | 2}, 1, "leaves its block by 1 bytes"},    {{1 << 3 | 1, 5}, 1, "leaves its block by 1 bytes"},
        {{5 << 3 | 1, 5}, 5, "leaves its block by 9 bytes"}, {{0xfe, 0xff}, 8191, "leaves its block by 8191 bytes"},
        {{1 << 3 | 0}, 3, "; 2 pixels are missing"},         {{1 << 3 | 0, 1 << 3 | 4}, 3, "; 2 pixels are missing"},
        {{1 << 3 | 4}, 1, "; 1 pixels are missing"},
    };
    for (const CCase& c : cases) {
        CBytes block = {1, 0, 6, 0, 0, 0};
        block.insert(block.end(), c.rows.begin(), c.rows.end());
        CFileBuilder file;
        file.value(1).value(0).value(1).value(0).value(1).value(0).value(2).value(1).number(1.0);
        file.value(c.width).value(1).number(0.0).value(0).value(0).value(c.width).value(1);
        file.value(static_cast<uint32_t>(block.size())).raw(block);
        EXPECT_NE(readDamaged<CImageSet>(file.file(), goodImageSet().file()).find(c.words), std::string::npos)
            << c.words << ": " << readDamaged<CImageSet>(file.file(), goodImageSet().file());
    }
}

// However many rows there are, each byte of a block is looked at a fixed number of times.
TEST(DamagedImageSet, CanNotMakeItsRowsBeReadOverAndOver) {
    constexpr uint32_t kRows = 65535;
    constexpr uint32_t kData = 65536;
    CFileBuilder block;
    block.bits(kRows, 2);
    for (uint32_t i = 0; i < kRows; ++i) {
        block.value(2 + 4 * kRows + i / 2);
    }
    block.raw(CBytes(kData, 1 << 3 | 0));
    CFileBuilder file;
    file.value(1).value(0).value(1).value(0).value(1).value(0).value(1).value(1).number(1.0);
    file.value(1).value(1).number(0.0).value(0).value(0).value(30000).value(kRows);
    file.value(static_cast<uint32_t>(block.bytes().size())).raw(block.bytes());
    EXPECT_NE(readDamaged<CImageSet>(file.file(), goodImageSet().file()).find("takes bytes of another row"),
              std::string::npos);
}

TEST(DamagedImageSet, NamesThePlaceInTheStreamAndInTheReader) {
    CBytes cut = goodImageSet().file();
    cut.resize(60);
    const std::string error = wholeError<CImageSet>(cut);
    EXPECT_NE(error.find("Premature end of memory resource while reading"), std::string::npos) << error;
    EXPECT_NE(error.find("UI/Resources/CDataReader"), std::string::npos) << error;
    EXPECT_NE(error.find("UI/Resources/CImageSet"), std::string::npos) << error;
}

}  // namespace
}  // namespace tarv
