#include "Audio/Stores/CAudioBankList.h"

#include <gtest/gtest.h>

#include "Tests/Audio/Stores/StoredBytes.h"

namespace tarv {
namespace {

std::string firstLine(CError* error) {
    const std::string text = error ? error->lines()[0]->toUtf8() : std::string();
    delete error;
    return text;
}

std::string load(CAudioBankList& list, const std::string& bytes) {
    CMemoryReader reader(bytes.data(), static_cast<uint32_t>(bytes.size()));
    return firstLine(list.load(reader));
}

CStored twoBanks() {
    return CStored().words({1, 0, 2}).text("First").word(1).text("TAEQ:a").word(0).text("Second").word(0);
}

TEST(CAudioBankList, ReadsAndWritesItsStream) {
    CAudioBankList list;
    EXPECT_EQ(load(list, twoBanks().bytes()), "");
    ASSERT_EQ(list.count(), 2);
    EXPECT_EQ(list.bank(0).name(), CString("First"));
    EXPECT_EQ(list.bank(0).preset(0).displayName(), CString("a"));
    EXPECT_EQ(list.bank(1).count(), 0);
    CByteBuffer bytes;
    CBufferWriter writer(bytes);
    EXPECT_EQ(firstLine(list.save(writer)), "");
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()), twoBanks().bytes());
}

TEST(CAudioBankList, DamageLeavesItAsItWas) {
    CAudioBankList list;
    list.insert(0, CAudioPresetBank("kept"));
    EXPECT_EQ(load(list, CStored().words({2, 0, 0}).bytes()), "Unsupported bank list version 2.");
    EXPECT_EQ(load(list, CStored().words({1, 0, 65537}).bytes()), "Too many banks: 65537.");
    const std::string good = twoBanks().bytes();
    for (size_t size = 0; size < good.size(); ++size) {
        EXPECT_NE(load(list, good.substr(0, size)), "") << size;
    }
    EXPECT_NE(load(list, good + '\0'), "");
    ASSERT_EQ(list.count(), 1);
    EXPECT_EQ(list.bank(0).name(), CString("kept"));
}

TEST(CAudioBankList, BanksAreInsertedAndRemovedAtTheirPlaces) {
    CAudioBankList list;
    list.insert(0, CAudioPresetBank("b"));
    list.insert(0, CAudioPresetBank("a"));
    list.insert(2, CAudioPresetBank("c"));
    list.remove(1);
    ASSERT_EQ(list.count(), 2);
    EXPECT_EQ(list.bank(0).name(), CString("a"));
    EXPECT_EQ(list.bank(1).name(), CString("c"));
    list.clear();
    EXPECT_EQ(list.count(), 0);
}

}  // namespace
}  // namespace tarv
