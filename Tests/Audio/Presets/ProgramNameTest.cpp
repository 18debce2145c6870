// Names of programs: their encoding in stored bytes, and how long they may be.

#include "Tests/Audio/Presets/PresetTree.h"

namespace tarv {
namespace {

constexpr size_t kMostBytes = 61440;  ///< of a text in a message

class ProgramName : public testing::Test {
protected:
    CAudioParamRegistry& master() { return tree_.master(); }
    std::string name(int32_t index = 0) { return master().programName(index).toUtf8(); }
    /// Programs by these names, as a file or a chunk holds them.
    std::string load(const std::vector<std::string>& names, const CPresetRequest& request = {}) {
        std::vector<std::string> presets;
        for (const std::string& each : names)
            presets.push_back(storedPreset("TAEQ:" + each));
        return tree_.activateBank(storedBank("b", presets), request);
    }

    CPresetTree tree_;
};

TEST_F(ProgramName, BytesThatAreNotUtf8AreReadInTheSystemsCodePageAndWrittenAsUtf8) {
    ASSERT_EQ(load({"Gr\xfc\xdf"
                    "e \x80",
                    "Gr\u00fc\u00df"
                    "e \u20ac",
                    "\x93x\x94"}),
              "");
    EXPECT_EQ(name(0),
              "Gr\u00fc\u00df"
              "e \u20ac");
    EXPECT_EQ(name(1), name(0));
    EXPECT_EQ(name(2), "\u201cx\u201d");
    EXPECT_EQ(tree_.text("preset-name"), name(0));
    EXPECT_NE(tree_.acquireBank().find(CStored().text("TAEQ:\u201cx\u201d").bytes()), std::string::npos);
    ASSERT_EQ(tree_.activate(master(), storedPreset("TAEQ:H\xf6he")), "");
    EXPECT_EQ(name(0), "H\u00f6he");
}

TEST_F(ProgramName, TheLongestNameThatAMessageHoldsIsWrittenAndReadBack) {
    std::string wide;
    while (wide.size() < kMostBytes)
        wide += "\u20ac";
    for (const std::string& longest : {std::string(kMostBytes, 'x'), wide}) {
        ASSERT_EQ(longest.size(), kMostBytes);
        master().renameProgram(0, CString::fromUtf8(longest.data(), longest.size()));
        ASSERT_EQ(name(), longest);
        const std::string bank = tree_.acquireBank();
        const std::string preset = tree_.acquire(master());
        master().renameProgram(0, "short");
        ASSERT_EQ(tree_.activateBank(bank, {-1, true, false}), "");
        EXPECT_EQ(name(), longest);
        EXPECT_EQ(tree_.text("preset-name"), longest);
        master().renameProgram(0, "short");
        ASSERT_EQ(tree_.activate(master(), preset), "");
        EXPECT_EQ(name(), longest);
    }
}

TEST_F(ProgramName, ALongerNameIsCutAndItsStepCanBeUndone) {
    master().renameProgram(0, CString::fromUtf8(std::string(kMostBytes + 9, 'x').c_str(), kMostBytes + 9));
    EXPECT_EQ(name(), std::string(kMostBytes, 'x'));
    tree_.history().undo(1);
    EXPECT_EQ(name(), "Default");
    master().addProgram(1, CString::fromUtf8(std::string(kMostBytes + 9, 'y').c_str(), kMostBytes + 9));
    EXPECT_EQ(name(1), std::string(kMostBytes, 'y'));
    ASSERT_EQ(load({std::string(40000, '\xfc')}), "");
    EXPECT_EQ(name().size(), kMostBytes) << "in UTF-8 each letter takes two bytes";
    EXPECT_NE(load({std::string(kMostBytes + 1000, 'z')}), "");
}

}  // namespace
}  // namespace tarv
