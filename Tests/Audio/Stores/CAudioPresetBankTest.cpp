#include "Audio/Stores/CAudioPresetBank.h"

#include "Audio/Stores/PackedStream.h"
#include "Tests/Audio/Presets/PresetTree.h"

namespace tarv {
namespace {

template <class T>
std::string load(const std::string& bytes, T& target) {
    CMemoryReader reader(bytes.data(), static_cast<uint32_t>(bytes.size()));
    return firstLine(target.load(reader));
}

/// A bank of presets with these names.
struct CNamedBank : CAudioPresetBank {
    explicit CNamedBank(const std::vector<std::string>& names, int32_t selected = 0) : CAudioPresetBank("bank") {
        for (const std::string& name : names)
            append().setName(name.c_str());
        select(selected);
    }
};

/// Names, a star before the selected one.
std::string received(const CAudioPresetBank& bank) {
    std::string all;
    for (int32_t i = 0; i < bank.count(); ++i)
        all += (i == bank.selectedIndex() ? "*" : "") + bank.preset(i).name().toUtf8() + ' ';
    return all;
}

TEST(PresetBank, TheStreamIsNameCountAndPresets) {
    const std::string stream = CStored()
                                   .text("Session Bank")
                                   .word(2)
                                   .text("TAEQ:a")
                                   .word(1)
                                   .text("k")
                                   .text("record")
                                   .text("TAEQ:b")
                                   .word(0)
                                   .bytes();
    CAudioPresetBank bank;
    ASSERT_EQ(load(stream, bank), "");
    EXPECT_EQ(bank.name(), "Session Bank");
    EXPECT_EQ(received(bank), "*TAEQ:a TAEQ:b ");
    EXPECT_EQ(savedBytes(bank), stream);
}

TEST(PresetBank, AnEmptyBankIsANameAndTheCountZero) {
    const std::string stream = CStored().text("Empty").word(0).bytes();
    CAudioPresetBank bank;
    ASSERT_EQ(load(stream, bank), "");
    EXPECT_EQ(bank.count(), 0);
    EXPECT_EQ(bank.selectedIndex(), 0);
    EXPECT_EQ(savedBytes(bank), stream);
}

TEST(PresetBank, TheListHasAVersionAndAReservedWordInPlaceOfTheName) {
    const std::string stream = CStored().words({1, 0, 1}).text("TAIO:a").word(0).bytes();
    CAudioPresetList list;
    ASSERT_EQ(load(stream, list), "");
    EXPECT_EQ(received(list), "*TAIO:a ");
    EXPECT_EQ(savedBytes(list), stream);
    EXPECT_EQ(load(CStored().words({2, 0, 0}).bytes(), list), "Unsupported preset list version 2.");
    EXPECT_EQ(received(list), "*TAIO:a ");
}

TEST(PresetBank, EachReaderDemandsItsOwnId) {
    const CStoredFile preset(packed(storedPreset("TAEQ:x"), kPresetBlockId));
    const CStoredFile bank(packed(storedBank("b", {storedPreset("TAEQ:x")}), kBankBlockId));
    const CStoredFile list(packed(storedList({storedPreset("TAIO:x")}), kListBlockId));
    CAudioPreset aPreset;
    CAudioPresetBank aBank;
    CAudioPresetList aList;
    EXPECT_EQ(firstLine(aPreset.load(preset.path().c_str())), "");
    EXPECT_EQ(firstLine(aBank.load(bank.path().c_str())), "");
    EXPECT_EQ(firstLine(aList.load(list.path().c_str())), "");
    const char* const kInvalid = "Invalid ID encountered when reading compressed data (expected ";
    EXPECT_EQ(firstLine(aPreset.load(bank.path().c_str())), std::string(kInvalid) + "1936879713, read 1802396257).");
    EXPECT_EQ(firstLine(aBank.load(list.path().c_str())), std::string(kInvalid) + "1802396257, read 1953721441).");
    EXPECT_EQ(firstLine(aList.load(preset.path().c_str())), std::string(kInvalid) + "1953721441, read 1936879713).");
    EXPECT_EQ(received(aBank), "*TAEQ:x ");
}

TEST(PresetBank, OutOfRangeSelectsTheFirst) {
    CNamedBank bank({"a", "b"}, 1);
    EXPECT_EQ(bank.selectedIndex(), 1);
    for (const int32_t index : {2, -1}) {
        bank.select(1);
        bank.select(index);
        EXPECT_EQ(bank.selectedIndex(), 0);
    }
}

TEST(PresetBank, TheSelectedPresetStaysSelectedWhenOthersAreInsertedAndRemoved) {
    CNamedBank bank({"a", "b", "c"}, 1);
    bank.insert(0, CAudioPreset("first"));
    EXPECT_EQ(received(bank), "first a *b c ");
    bank.insert(4, CAudioPreset("last"));
    EXPECT_EQ(received(bank), "first a *b c last ");
    bank.remove(0);
    bank.remove(3);
    EXPECT_EQ(received(bank), "a *b c ");
}

TEST(PresetBank, TheNeighbourIsSelectedWhenTheSelectedPresetIsRemoved) {
    CNamedBank bank({"a", "b", "c"}, 1);
    bank.remove(1);
    EXPECT_EQ(received(bank), "a *c ");
    bank.remove(1);
    EXPECT_EQ(received(bank), "*a ");
    bank.remove(0);
    EXPECT_EQ(bank.selectedIndex(), 0);
    bank.insert(0, CAudioPreset("new"));
    EXPECT_EQ(received(bank), "*new ");
}

TEST(PresetBank, CopiesAreDeepAndTakeTheOthersCount) {
    CNamedBank source({"a", "b", "c"}, 2);
    CNamedBank bank({"x", "y"}, 1);
    bank.setName("mine");
    bank.copyPresets(source);
    source.preset(0).setName("changed");
    EXPECT_EQ(received(bank), "a *b c ");
    EXPECT_EQ(bank.name(), "mine");
    bank.copyFrom(source);
    EXPECT_EQ(received(bank), "changed b *c ");
    EXPECT_EQ(bank.name(), "bank");
    CNamedBank shorter({"one"});
    bank.copyPresets(shorter);
    EXPECT_EQ(received(bank), "*one ");
}

TEST(PresetBank, ALoadKeepsTheSelectedIndexIfItIsInRange) {
    CNamedBank bank({"a", "b", "c"}, 1);
    ASSERT_EQ(load(storedBank("n", {storedPreset("x"), storedPreset("y")}), bank), "");
    EXPECT_EQ(received(bank), "x *y ");
    ASSERT_EQ(load(storedBank("n", {storedPreset("z")}), bank), "");
    EXPECT_EQ(received(bank), "*z ");
}

TEST(PresetBank, CutAtAnyByteNothingChanges) {
    const std::string stream = storedBank("n", {storedPreset("x", {{"k", "v"}}), storedPreset("y")});
    const std::string list = storedList({storedPreset("x", {{"k", "v"}}), storedPreset("y")});
    CNamedBank bank({"a", "b"}, 1);
    CAudioPresetList presets;
    for (size_t length = 0; length < stream.size(); ++length)
        EXPECT_NE(load(stream.substr(0, length), bank), "") << length;
    for (size_t length = 0; length < list.size(); ++length)
        EXPECT_NE(load(list.substr(0, length), presets), "") << length;
    EXPECT_EQ(received(bank), "a *b ");
    EXPECT_EQ(presets.count(), 0);
}

TEST(PresetBank, ABlockCutAtAnyByteOrDamagedInItsDataChangesNothing) {
    const std::string stream =
        storedBank("n", {storedPreset("x", {{"k", realRecord({{1, 2, 3}})}}), storedPreset("y")});
    const std::string block = packed(stream, kBankBlockId);
    CNamedBank bank({"a", "b"}, 1);
    const std::string before = savedBytes<CAudioPresetBank>(bank);
    const auto loadBlock = [&bank](const std::string& bytes) {
        CMemoryReader reader(bytes.data(), static_cast<uint32_t>(bytes.size()));
        return firstLine(loadPacked<CAudioPresetBank>(reader, kBankBlockId, bank));
    };
    for (size_t length = 0; length < block.size(); ++length)
        EXPECT_NE(loadBlock(block.substr(0, length)), "") << length;
    for (size_t bit = 0; bit < 8 * block.size(); ++bit) {
        std::string damaged = block;
        damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ 1 << bit % 8);
        const std::string failure = loadBlock(damaged);
        // A few bits of the deflated form carry no data, or encode the same data differently.
        if (failure.empty())
            EXPECT_EQ(savedBytes(bank), stream) << bit;
        else
            EXPECT_EQ(received(bank), "a *b ") << bit;
        ASSERT_EQ(load(before, bank), "");
    }
}

TEST(PresetBank, ACountBeyondTheLimitIsRefused) {
    CNamedBank bank({"a"});
    CAudioPresetList list;
    EXPECT_EQ(load(CStored().text("n").word(65537).raw(std::string(8 * 65537, '\0')).bytes(), bank),
              "Invalid preset count 65537.");
    EXPECT_EQ(load(CStored().text("n").word(0xffffffff).bytes(), bank), "Invalid preset count 4294967295.");
    EXPECT_EQ(load(CStored().words({1, 0, 0x80000000}).bytes(), list), "Invalid preset count 2147483648.");
    EXPECT_EQ(received(bank), "*a ");
}

}  // namespace
}  // namespace tarv
