#include "Core/CResourceReader.h"

#include "Tests/Core/TestApplication.h"

namespace tarv {
namespace {

const unsigned char kAbc[] = {3, 0, 0, 0, 'a', 'b', 'c'};
const unsigned char kEmpty[] = {0, 0, 0, 0};
const CResourceRow kRows[] = {{kAbc, "../../../Gfx/Fonts/base.fnt"}, {kEmpty, "empty"}, {nullptr, nullptr}};

struct CResourceReaderTest : testing::Test {
    CResourceReaderTest() { CResourceMap::addRows(kRows); }
    ~CResourceReaderTest() override { CResourceMap::clear(); }
    CResourceReader reader;
};

TEST_F(CResourceReaderTest, ReadsAnEmbeddedRangeByItsNameAsItStands) {
    char text[4] = {};
    int64_t size = 0;
    int64_t position = 0;
    ASSERT_EQ(consumed(reader.open("../../../Gfx/Fonts/base.fnt")), "");
    EXPECT_EQ(consumed(reader.getSize(size)), "");
    EXPECT_EQ(size, 3);
    EXPECT_EQ(consumed(reader.consume(1)), "");
    EXPECT_EQ(consumed(reader.getPosition(position)), "");
    EXPECT_EQ(position, 1);
    EXPECT_EQ(consumed(reader.read(text, 2)), "");
    EXPECT_STREQ(text, "bc");
    int64_t count = 4;
    EXPECT_EQ(consumed(reader.readStreamed(text, count)), "");
    EXPECT_EQ(count, 0);
    EXPECT_EQ(consumed(reader.setPosition(0)), "");
    EXPECT_EQ(consumed(reader.read(text, 4)).find("Premature end of memory resource while reading"), 0u);
}

TEST_F(CResourceReaderTest, AnEmptyRangeIsThere) {
    int64_t size = 9;
    ASSERT_EQ(consumed(reader.open("empty")), "");
    EXPECT_EQ(consumed(reader.getSize(size)), "");
    EXPECT_EQ(size, 0);
}

TEST_F(CResourceReaderTest, AnUnknownNameFailsInTheFileReadersWords) {
    EXPECT_EQ(
        consumed(reader.open("no-such-thing")).find("Unable to open file 'no-such-thing' for reading (error 2, flags"),
        0u);
}

TEST_F(CResourceReaderTest, UseBeforeOpenAndAfterCloseFails) {
    char text[4] = {};
    EXPECT_EQ(consumed(reader.read(text, 1)).find("Resource reader is not open."), 0u);
    ASSERT_EQ(consumed(reader.open("empty")), "");
    EXPECT_EQ(consumed(reader.close()), "");
    EXPECT_EQ(consumed(reader.close()), "");
    EXPECT_EQ(consumed(reader.consume(0)).find("Resource reader is not open."), 0u);
}

TEST_F(CResourceReaderTest, OfTwoRowsWithOneNameTheLaterCounts) {
    const CResourceRow again[] = {{kAbc, "empty"}, {nullptr, nullptr}};
    CResourceMap::addRows(again);
    CResourceMap::CRange range;
    ASSERT_TRUE(CResourceMap::find("empty", range));
    EXPECT_EQ(range.size, 3u);
}

}  // namespace
}  // namespace tarv
