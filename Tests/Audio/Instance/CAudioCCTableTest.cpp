#include "Audio/Instance/CAudioCCTable.h"

#include "Core/CompressedBlock.h"
#include "Tests/Core/CUserFolder.h"
#include "Tests/Core/TestApplication.h"

namespace tarv {
namespace {

constexpr uint32_t kId = blockId(CAudioCCTable::kDataId);

void store(const std::vector<uint32_t>& words) {
    CMemoryWriteBuffer stream;
    for (uint32_t word : words)
        EXPECT_EQ(consumed(stream.writeValue(word)), "");
    CByteBuffer buffer;
    stream.copyTo(buffer);
    CLocalData::instance().write(CAudioCCTable::kDataName, buffer, kId);
}

/// An application that keeps the user's data in the test's folder.
class CCTable : public testing::Test {
protected:
    CCTable() : application_({{"audio:cctable", &createObject<CAudioCCTable>, nullptr}}) {
        CLocalData::instance().setFileAccess(true);
        store({});
    }

    CUserFolder folder_;
    CTestApplication application_;
};

TEST_F(CCTable, StartsClearWithoutData) {
    auto root = application_.makeRoot({{"audio:cctable", "cc"}});
    auto* table = root->findObjectOf<CAudioCCTable>("cc");
    for (int32_t i = 0; i < CAudioCCTable::kSlotCount; ++i)
        EXPECT_TRUE(table->slot(i).param == 0 && table->slot(i).mode == 0) << i;
}

TEST_F(CCTable, StartsWithTheTableOfTheStore) {
    store(std::vector<uint32_t>{5, 1, 7, 2});
    auto root = application_.makeRoot({{"audio:cctable", "cc"}});
    auto* table = root->findObjectOf<CAudioCCTable>("cc");
    EXPECT_EQ(table->slot(1).param, 7);
    EXPECT_EQ(table->slot(1).mode, 2);
    EXPECT_EQ(table->slot(2).param, 0);
}

TEST_F(CCTable, FollowsLaterWritesAndIgnoresBytesBehindItsEnd) {
    auto root = application_.makeRoot({{"audio:cctable", "cc"}});
    auto* table = root->findObjectOf<CAudioCCTable>("cc");
    store(std::vector<uint32_t>(2 * CAudioCCTable::kSlotCount + 9, 3));
    EXPECT_EQ(table->slot(0).param, 3);
    EXPECT_EQ(table->slot(CAudioCCTable::kSlotCount - 1).mode, 3);
    store({1});  // half a slot is ignored
    EXPECT_EQ(table->slot(0).param, 0);
}

}  // namespace
}  // namespace tarv
