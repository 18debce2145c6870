#include "BlockText.h"

#include <gtest/gtest.h>

#include "Audio/Stores/CAudioPresetBank.h"
#include "Core/CompressedBlock.h"

namespace tarv {
namespace {

/// A stream that is built field by field, and the block of it.
class CBlock {
public:
    CBlock& word(uint32_t value) { return noted(writer_.writeValue(value)); }
    CBlock& text(const CString& value) { return noted(writer_.writeString(value)); }
    CBlock& real(double value) { return noted(writer_.writeDouble(value)); }
    CByteBuffer packed(uint32_t id, const char* prefix = "") {
        CByteBuffer block;
        CBufferWriter writer(block);
        noted(writer.write(prefix, static_cast<int64_t>(std::string(prefix).size())));
        noted(writer.writeCompressedData(bytes_, id));
        return block;
    }

private:
    CBlock& noted(CError* error) {
        EXPECT_EQ(error, nullptr);
        delete error;
        return *this;
    }
    CByteBuffer bytes_;
    CBufferWriter writer_{bytes_};
};

std::string textOf(const CByteBuffer& bytes) {
    std::string text;
    if (CError* error = blockText(bytes, text)) {
        text = "failed: " + error->lines()[0]->toUtf8();
        delete error;
    }
    return text;
}

/// Two records: numbers in two groups, and texts.
CBlock& addPreset(CBlock& block) {
    return block.text("TAEQ:A \"b\"")
        .word(2)
        .text("gain")
        .word(4 + 1 + 4 * 4 + 4 + 16 + 4)
        .text("a")
        .word(1)
        .word(1)
        .word(0)
        .word(2)
        .word(2)
        .real(0.5)
        .real(0.1)
        .word(0)
        .text("name")
        .word(4 + 1 + 4 * 4 + 4 + 8 + 4 + 1 + 8)
        .text("n")
        .word(1)
        .word(1)
        .word(1)
        .word(1)
        .word(1)
        .word(7)
        .word(1)
        .text("\n")
        .word(1)
        .word(7);
}

constexpr const char* kPresetText =
    "preset \"TAEQ:A \\\"b\\\"\"\n"
    "  gain  a\n      0: 0.5 0.10000000000000001\n      1:\n"
    "  name  n\n      0: \"\\x0a\"\n";

TEST(BlockText, APresetIsWrittenWithAllDigitsAndEscapedTexts) {
    CBlock block;
    EXPECT_EQ(textOf(addPreset(block).packed(kPresetBlockId)), kPresetText);
}

TEST(BlockText, AHostsPrefixIsPassedOver) {
    CBlock block;
    EXPECT_EQ(textOf(addPreset(block).packed(kPresetBlockId, "sixteen bytes...")), kPresetText);
}

TEST(BlockText, BanksAndListsShowTheirPresets) {
    CBlock bank;
    EXPECT_EQ(textOf(addPreset(bank.text("Bank").word(1)).packed(kBankBlockId)),
              std::string("bank \"Bank\" of 1\n") + kPresetText);
    CBlock list;
    EXPECT_EQ(textOf(addPreset(list.word(1).word(0).word(1)).packed(kListBlockId)),
              std::string("list \"\" of 1\n") + kPresetText);
}

TEST(BlockText, ASettingIsItsText) {
    CBlock block;
    EXPECT_EQ(textOf(block.text("0.7").packed(blockId("dstr"))), "setting \"0.7\"\n");
}

TEST(BlockText, ARecordOfAnotherVersionIsNamedAndTheRestWritten) {
    CBlock block;
    block.text("TAEQ:x").word(1).text("k").word(20).text("").word(2).word(1).word(0).word(0);
    EXPECT_EQ(textOf(block.packed(kPresetBlockId)),
              "preset \"TAEQ:x\"\n  k  20 bytes: Unknown record (version 2, element size 1, data type 0).\n");
}

TEST(BlockText, WhatIsDamagedIsNotWritten) {
    CBlock cut;
    cut.text("TAEQ:x").word(3);
    EXPECT_EQ(textOf(cut.packed(kPresetBlockId)).substr(0, 8), "failed: ");
    CByteBuffer noise;
    for (int i = 0; i < 40; ++i) {
        noise.append(static_cast<uint8_t>(i * 37));
    }
    EXPECT_EQ(textOf(noise), "failed: Neither a preset, a bank, a list, a setting nor a tree.");
    EXPECT_EQ(textOf(CByteBuffer()), "failed: Neither a preset, a bank, a list, a setting nor a tree.");
}

}  // namespace
}  // namespace tarv
