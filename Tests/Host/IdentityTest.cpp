// Names, counts, flags, parameters and texts of the effect.
#include <cstring>

#include "HostTest.h"

namespace tarv::host {
namespace {

using IdentityTest = OpenHostTest;

TEST_F(IdentityTest, BothExportsAreOneEntry) {
    ASSERT_NE(library->symbol("VSTPluginMain"), nullptr);
    EXPECT_EQ(library->symbol("VSTPluginMain"), library->symbol("main"));
}

TEST_F(IdentityTest, TheEffectHasTheIdAndCountsOfItsProject) {
    const vst::AEffect& e = *host.effect();
    EXPECT_EQ(e.magic, vst::kEffectMagic);
    EXPECT_EQ(e.uniqueId, vst::fourCc('T', 'A', 'E', 'Q'));
    EXPECT_EQ(e.numParams, kParamCount);
    EXPECT_EQ(e.numPrograms, 7);
    EXPECT_EQ(e.numInputs, kChannels);
    EXPECT_EQ(e.numOutputs, kChannels);
    EXPECT_EQ(e.initialDelay, 0);
    EXPECT_EQ(e.flags,
              vst::kFlagHasEditor | vst::kFlagCanReplacing | vst::kFlagCanDoubleReplacing | vst::kFlagProgramChunks);
    EXPECT_TRUE(e.process && e.processReplacing && e.processDoubleReplacing);
}

TEST_F(IdentityTest, NamesAndVersion) {
    EXPECT_EQ(host.text(vst::kEffectGetEffectName), "Brindle XEQ");
    EXPECT_EQ(host.text(vst::kEffectGetVendorString), "Tarvelo");
    EXPECT_EQ(host.text(vst::kEffectGetProductString), "Tarvelo Brindle XEQ");
    EXPECT_EQ(host.dispatch(vst::kEffectGetVendorVersion), 1 << 16 | 8 << 8 | 0);
    EXPECT_EQ(host.dispatch(vst::kEffectGetPlugCategory), vst::kCategoryEffect);
    EXPECT_EQ(host.dispatch(vst::kEffectGetVstVersion), 2400);
    EXPECT_EQ(host.dispatch(vst::kEffectIdentify), vst::kIdentity);
}

TEST_F(IdentityTest, EighteenParametersWithNamesUnitsAndTexts) {
    const struct {
        int32_t first, count;
        const char* name;
        const char* label;
        const char* display;
        float value;
    } rows[] = {
        {kBypass, 1, "Bypass", "", "Off", 0.0f},     {kEqA0, 7, "EQA", "dB", "0.0", 0.5f},
        {kOutGainA, 1, "OGainA", "dB", "0.0", 0.5f}, {kEqB0, 7, "EQB", "dB", "0.0", 0.5f},
        {kOutGainB, 1, "OGainB", "dB", "0.0", 0.5f}, {kOversampling, 1, "Oversmp", "", "1x", 0.25f},
    };
    for (const auto& row : rows) {
        for (int32_t i = 0; i < row.count; ++i) {
            const int32_t index = row.first + i;
            const std::string name = row.name + (row.count > 1 ? std::to_string(i) : std::string());
            EXPECT_EQ(host.text(vst::kEffectGetParamName, index), name);
            EXPECT_EQ(host.text(vst::kEffectGetParamLabel, index), row.label) << name;
            EXPECT_EQ(host.text(vst::kEffectGetParamDisplay, index), row.display) << name;
            // 0 dB is the middle of -12 to 12 dB, within the rounding of logarithms.
            EXPECT_NEAR(host.parameter(index), row.value, 1e-7) << name;
            EXPECT_EQ(host.dispatch(vst::kEffectCanBeAutomated, index), 1);
        }
    }
}

TEST_F(IdentityTest, TheDisplayFollowsTheValue) {
    const struct {
        int32_t index;
        float value;
        const char* display;
    } rows[] = {
        {kEqA0, 0.0f, "-12.0"},        {kEqA0 + 6, 1.0f, "12.0"},   {kEqB0 + 3, 0.75f, "6.0"},
        {kOutGainB, 0.25f, "-6.0"},    {kBypass, 1.0f, "On"},       {kBypass, 0.0f, "Off"},
        {kOversampling, 0.0f, "Auto"}, {kOversampling, 0.5f, "2x"}, {kOversampling, 0.75f, "4x"},
        {kOversampling, 1.0f, "8x"},
    };
    for (const auto& row : rows) {
        host.setParameter(row.index, row.value);
        EXPECT_EQ(host.text(vst::kEffectGetParamDisplay, row.index), row.display);
        EXPECT_NEAR(host.parameter(row.index), row.value, 1e-7);
    }
}

TEST_F(IdentityTest, ADisplayTextForAnyPositionIsGivenWithItsUnit) {
    const struct {
        int32_t index;
        float value;
        const char* text;
    } rows[] = {{kEqA0, 0.625f, "3.0dB"}, {kEqA0, 0.0f, "-12.0dB"}, {kOversampling, 1.0f, "8x"}, {kBypass, 1.0f, "On"}};
    for (const auto& row : rows) {
        char text[8] = {};
        EXPECT_EQ(host.dispatch(vst::kEffectVendorSpecific, 7, row.index, text, row.value), 0xbeef);
        EXPECT_STREQ(text, row.text);
    }
    EXPECT_EQ(host.text(vst::kEffectGetParamDisplay, kEqA0), "0.0");
    for (intptr_t index : {intptr_t{-1}, intptr_t{kParamCount}, intptr_t{1} << 32}) {
        char text[8] = "as it";
        EXPECT_EQ(host.dispatch(vst::kEffectVendorSpecific, 7, index, text, 0.5f), 0xbeef);
        EXPECT_STREQ(text, "as it");
    }
    EXPECT_EQ(host.dispatch(vst::kEffectVendorSpecific, 7, 0, nullptr, 0.5f), 0);
    EXPECT_EQ(host.dispatch(vst::kEffectVendorSpecific, 8, 0, nullptr, 0.5f), 0);
    EXPECT_EQ(host.dispatch(vst::kEffectVendorSpecific, vst::kVendorMagic, vst::kVendorMouseWheel, nullptr, 1.0f), 0);
}

TEST_F(IdentityTest, QuestionsAreComparedExactly) {
    const struct {
        const char* question;
        intptr_t answer;
    } rows[] = {
        {"hasCockosExtensions", 0xbeef0000},
        {"receiveVstMidiEvent", 1},
        {"receiveVstTimeInfo", 1},
        {"receiveVstEvents", 0},
        {"ReceiveVstMidiEvent", 0},
        {"receiveVstMidiEvent ", 0},
        {"bypass", 0},
        {"", 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(host.dispatch(vst::kEffectCanDo, 0, 0, const_cast<char*>(row.question)), row.answer) << row.question;
    }
}

TEST_F(IdentityTest, NoTextPassesItsBuffersEnd) {
    const struct {
        int32_t opcode;
        int32_t size;
    } rows[] = {
        {vst::kEffectGetProgramName, vst::kMaxProgramName},        {vst::kEffectGetParamLabel, vst::kMaxParamText},
        {vst::kEffectGetParamDisplay, vst::kMaxParamText},         {vst::kEffectGetParamName, vst::kMaxParamText},
        {vst::kEffectGetProgramNameIndexed, vst::kMaxProgramName}, {vst::kEffectGetEffectName, vst::kMaxEffectName},
        {vst::kEffectGetVendorString, vst::kMaxVendorText},        {vst::kEffectGetProductString, vst::kMaxProductText},
    };
    for (const auto& row : rows) {
        for (int32_t index = -1; index <= kParamCount; ++index) {
            char buffer[256];
            std::memset(buffer, 0x55, sizeof buffer);
            host.dispatch(row.opcode, index, 0, buffer);
            for (size_t i = row.size; i < sizeof buffer; ++i) {
                ASSERT_EQ(buffer[i], 0x55) << row.opcode << " wrote at " << i;
            }
        }
    }
}

}  // namespace
}  // namespace tarv::host
