// Chunks of a host: their content, what they restore, and that damaged ones change nothing.

#include "FactorySettings.h"
#include "HostTest.h"
#include "Tests/System/SoundHelp.h"

namespace tarv::host {
namespace {

using reference::CLayout;
using reference::CSettings;
using sound::isClose;
using sound::kTolerance64;

class ChunkTest : public OpenHostTest {
protected:
    static std::string prefixed(const std::string& bytes) { return std::string("sixteen bytes...") + bytes; }
    /// A program whose curve differs from the others.
    static CStoredPreset program(const std::string& name) {
        CStoredPreset preset{name, {}};
        preset.params["modBrindleXEQ.xeq-gains"] = {
            "audio.modMain.modBrindleXEQ.xeq-gains", {{2.0, 0.5, 1.0, 1.0, 1.0, 1.0, 1.5}}, {}};
        preset.params["modOutGain.gain"] = {"audio.modMain.modOutGain.gain", {{0.5}}, {}};
        return preset;
    }
    static std::string anyBytes(size_t count, uint64_t seed) {
        sound::CRandom random(seed);
        std::string bytes(count, '\0');
        for (char& byte : bytes) {
            byte = static_cast<char>(random.below(256));
        }
        return bytes;
    }
};

TEST_F(ChunkTest, AProgramsChunkHoldsEveryStoredParameter) {
    CStoredPreset preset;
    ASSERT_TRUE(readPreset(host.chunk(true), preset));
    EXPECT_EQ(preset.name, "TAEQ:Default");
    std::vector<std::string> keys;
    for (const auto& [key, param] : preset.params) {
        keys.push_back(key);
    }
    const std::vector<std::string> expected = {"instance-name",
                                               "io-params.group-names",
                                               "io-params.grouping",
                                               "io-params.in-channel-names",
                                               "io-params.in-routing",
                                               "io-params.ms-pairs",
                                               "io-params.out-routing",
                                               "modBrindleXEQ.band-count",
                                               "modBrindleXEQ.xeq-freqs",
                                               "modBrindleXEQ.xeq-gains",
                                               "modOutGain.gain",
                                               "modOutGain.mute",
                                               "oversampling"};
    EXPECT_EQ(keys, expected);
    EXPECT_EQ(preset.params["oversampling"].definition, "audio.modMain.oversampling");
    EXPECT_EQ(preset.params["instance-name"].texts, std::vector<std::string>{"Unnamed instance"});
}

TEST_F(ChunkTest, ABanksChunkHoldsTheSessionBankWithTheCurrentStateInItsSlot) {
    host.setProgram(3);
    host.setParameter(kOutGainA, 1.0f);
    CStoredBank bank;
    ASSERT_TRUE(readBank(host.chunk(false), bank));
    EXPECT_EQ(bank.name, "Session Bank");
    ASSERT_EQ(bank.presets.size(), static_cast<size_t>(kFactoryCount));
    for (size_t i = 0; i < bank.presets.size(); ++i) {
        EXPECT_EQ(bank.presets[i].name, std::string("TAEQ:") + kFactoryPresets[i].name);
    }
    EXPECT_NEAR(bank.presets[3].params["modOutGain.gain"].groups[0][0], std::pow(10.0, 12.0 / 20.0), 1e-12);
}

TEST_F(ChunkTest, ValuesThatAreNotStoredAreNotRestored) {
    host.setParameter(kBypass, 1.0f);
    const std::string chunk = host.chunk(true);
    CVstHost other;
    ASSERT_TRUE(other.open(library->entry()));
    ASSERT_TRUE(other.setChunk(chunk, true));
    EXPECT_EQ(other.parameter(kBypass), 0.0f);
    // A running bypass is not touched either.
    EXPECT_TRUE(host.setChunk(chunk, true));
    EXPECT_EQ(host.parameter(kBypass), 1.0f);
}

TEST_F(ChunkTest, TheBlockBeginsAtTheFirstByteOrBehindAPrefix) {
    const std::string bytes = presetBlock(program("TAEQ:Mine"));
    for (const std::string& chunk : {bytes, prefixed(bytes)}) {
        CVstHost other;
        ASSERT_TRUE(other.open(library->entry()));
        EXPECT_TRUE(other.setChunk(chunk, true));
        EXPECT_EQ(other.text(vst::kEffectGetProgramName), "Mine");
        EXPECT_NEAR(other.parameter(kOutGainA), 0.5 - 0.5 * std::log10(2.0) * 20.0 / 12.0, 1e-6);
    }
    EXPECT_FALSE(host.setChunk("12345678" + bytes, true));
    EXPECT_EQ(host.text(vst::kEffectGetProgramName), "Default");
}

TEST_F(ChunkTest, SixteenBytesOrLessDoNothing) {
    const std::string before = host.chunk(true);
    for (size_t size : {0, 1, 12, 16}) {
        EXPECT_TRUE(host.setChunk(std::string(size, 'x'), true));
        EXPECT_TRUE(host.setChunk(before.substr(0, size), true));
    }
    EXPECT_EQ(host.dispatch(vst::kEffectSetChunk, 1, 100, nullptr), 0);
    EXPECT_EQ(host.dispatch(vst::kEffectGetChunk, 1, 0, nullptr), 0);
    EXPECT_EQ(host.chunk(true), before);
}

TEST_F(ChunkTest, ABankKeepsTheIndexAndALaterSelectionBringsItsState) {
    CStoredBank bank{"whatever", {program("TAEQ:One"), program("TAEQ:Two"), program("TAEQ:Three")}};
    bank.presets[2].params["modOutGain.gain"].groups[0][0] = 2.0;
    host.setProgram(1);
    ASSERT_TRUE(host.setChunk(bankBlock(bank), false));
    EXPECT_EQ(host.program(), 1);
    EXPECT_EQ(host.text(vst::kEffectGetProgramName), "Two");
    EXPECT_EQ(host.effect()->numPrograms, kFactoryCount);
    host.setProgram(2);
    EXPECT_NEAR(host.parameter(kOutGainA), 0.5 + 0.5 * std::log10(2.0) * 20.0 / 12.0, 1e-6);
    host.setProgram(1);
    EXPECT_NEAR(host.parameter(kOutGainA), 0.5 - 0.5 * std::log10(2.0) * 20.0 / 12.0, 1e-6);
    host.setProgram(6);
    EXPECT_EQ(host.program(), 1);
    // An index that the next bank does not have becomes 0.
    host.setProgram(2);
    bank.presets.resize(1);
    ASSERT_TRUE(host.setChunk(bankBlock(bank), false));
    EXPECT_EQ(host.program(), 0);
}

TEST_F(ChunkTest, OneRecordOfAnotherFormatIsLeftOutAndUnknownOnesStay) {
    CStoredPreset preset = program("TAEQ:Later");
    preset.params["zz-later.thing"] = {"audio.later", {{1.0, 2.0}}, {}};
    preset.params["modOutGain.gain"] = {"audio.modMain.modOutGain.gain", {}, {"a text"}};
    host.setParameter(kOutGainA, 0.9f);
    ASSERT_TRUE(host.setChunk(presetBlock(preset), true));
    EXPECT_NEAR(host.parameter(kEqA0), 0.5 + 0.5 * std::log10(2.0) * 20.0 / 12.0, 1e-6);
    EXPECT_EQ(host.parameter(kOutGainA), 0.5f);  // as if there were no record: the default
    CStoredPreset written;
    ASSERT_TRUE(readPreset(host.chunk(true), written));
    EXPECT_EQ(written.params["zz-later.thing"], preset.params["zz-later.thing"]);
    EXPECT_EQ(written.params["modOutGain.gain"].groups, (std::vector<std::vector<double>>{{1.0}}));
}

TEST_F(ChunkTest, NumbersOutOfRangeTakeTheNearestAndNoNumberTheDefault) {
    CStoredPreset preset = program("TAEQ:Wild");
    preset.params["modBrindleXEQ.xeq-gains"].groups = {{1e300, -1.0, INFINITY, -INFINITY, NAN, 1.0, 1.0}};
    preset.params["modBrindleXEQ.band-count"] = {"audio.modMain.modBrindleXEQ.band-count", {{99.0}}, {}};
    ASSERT_TRUE(host.setChunk(presetBlock(preset), true));
    const float expected[] = {1.0f, 0.0f, 1.0f, 0.0f, 0.5f, 0.5f, 0.5f};
    for (int32_t i = 0; i < 7; ++i) {
        EXPECT_EQ(host.parameter(kEqA0 + i), expected[i]) << i;
    }
    CStoredPreset written;
    ASSERT_TRUE(readPreset(host.chunk(true), written));
    EXPECT_EQ(written.params["modBrindleXEQ.band-count"].groups[0][0], 10.0);
}

TEST_F(ChunkTest, EachRoutingTableRoutesTheSignal) {
    for (int i = 0; i < kRoutingCount; ++i) {
        const CRoutingPreset& routing = kRoutingPresets[i];
        CStoredPreset preset{"TAEQ:Routed", {}};
        addRouting(routing, preset.params);
        preset.params["modBrindleXEQ.xeq-gains"] = {
            "audio.modMain.modBrindleXEQ.xeq-gains",
            {{2.0, 0.5, 1.0, 3.0, 1.0, 0.3, 1.5}, {0.5, 1.0, 2.0, 1.0, 3.0, 1.0, 0.7}, {1.1}, {0.4, 2.5}},
            {}};
        preset.params["modBrindleXEQ.xeq-freqs"] = {
            "audio.modMain.modBrindleXEQ.xeq-freqs", {{80, 150, 350, 1000, 2500, 6000, 12000, 15000}}, {}};
        preset.params["modBrindleXEQ.band-count"] = {"audio.modMain.modBrindleXEQ.band-count", {{8.0}}, {}};
        preset.params["oversampling"] = {"audio.modMain.oversampling", {{1.0 + i % 4}}, {}};
        CVstHost own;
        ASSERT_TRUE(own.open(library->entry()));
        own.prepare(48000.0, 512, vst::kPrecision64);
        ASSERT_TRUE(own.setChunk(presetBlock(preset), true));
        own.resume();
        CSettings settings;
        settings.bandCount = 8;
        settings.groups[0].gains = {2.0, 0.5, 1.0, 3.0, 1.0, 0.3, 1.5, 1, 1, 1};
        settings.groups[1].gains = {0.5, 1.0, 2.0, 1.0, 3.0, 1.0, 0.7, 1, 1, 1};
        settings.groups[2].gains[0] = 1.1;
        settings.groups[3].gains[0] = 0.4;
        settings.groups[3].gains[1] = 2.5;
        settings.groups[0].frequencies = {80, 150, 350, 1000, 2500, 6000, 12000, 15000, 64, 64};
        CLayout layout;
        layout.rate = 48000.0;
        layout.stages = i % 4;
        layout.hostChannels = kChannels;
        applyRouting(routing, layout);
        const auto input = sound::signalOf(sound::kSignals[0], kChannels, 1500, 48000.0);
        EXPECT_TRUE(isClose(process(own, input), reference::render(layout, settings, {}, input, 1500), kTolerance64))
            << routing.name;
        own.suspend();
    }
}

TEST_F(ChunkTest, ABlockCutAtAnyByteChangesNothing) {
    host.setParameter(kEqA0, 0.3f);
    const std::string before = host.chunk(true);
    const std::string bytes = presetBlock(program("TAEQ:Cut"));
    for (size_t size = 0; size < bytes.size(); ++size) {
        host.setChunk(bytes.substr(0, size), true);
        ASSERT_EQ(host.chunk(true), before) << size;
    }
    const std::string bank = bankBlock({"x", {program("TAEQ:Cut"), program("TAEQ:Cut too")}});
    for (size_t size = 17; size < bank.size(); ++size) {
        EXPECT_FALSE(host.setChunk(bank.substr(0, size), false)) << size;
        ASSERT_EQ(host.chunk(true), before) << size;
    }
}

TEST_F(ChunkTest, AStreamCutAtAnyByteChangesNothing) {
    const std::string before = host.chunk(true);
    const std::string stream = presetStream(program("TAEQ:Cut"));
    for (size_t size = 0; size < stream.size(); ++size) {
        EXPECT_FALSE(host.setChunk(block("aprs", stream.substr(0, size)), true)) << size;
        ASSERT_EQ(host.chunk(true), before) << size;
    }
    EXPECT_FALSE(host.setChunk(block("aprs", stream + "x"), true));
    EXPECT_EQ(host.chunk(true), before);
}

TEST_F(ChunkTest, EveryBitOfTheHeaderCounts) {
    const std::string before = host.chunk(true);
    const std::string bytes = presetBlock(program("TAEQ:Turned"));
    for (size_t bit = 0; bit < 12 * 8; ++bit) {
        std::string turned(bytes);
        turned[bit / 8] = static_cast<char>(turned[bit / 8] ^ 1 << bit % 8);
        EXPECT_FALSE(host.setChunk(turned, true)) << bit;
        ASSERT_EQ(host.chunk(true), before) << bit;
    }
}

TEST_F(ChunkTest, RandomDamageLeavesTheStateWhole) {
    const std::string bytes = presetBlock(program("TAEQ:Damaged"));
    ASSERT_TRUE(host.setChunk(bytes, true));
    const std::string whole = host.chunk(true);
    sound::CRandom random(3);
    for (int i = 0; i < 2000; ++i) {
        std::string damaged(bytes);
        for (int k = random.below(4); k >= 0; --k) {
            damaged[static_cast<size_t>(random.below(static_cast<int>(damaged.size())))] =
                static_cast<char>(random.below(256));
        }
        // The check value catches the damage; a change that restores the same bytes is none.
        host.setChunk(damaged, true);
        ASSERT_EQ(host.chunk(true), whole) << i;
    }
}

TEST_F(ChunkTest, WrongIdsHugeSizesAndNoiseAreRefused) {
    const std::string before = host.chunk(true);
    const std::string preset = presetBlock(program("TAEQ:Other"));
    const std::string bank = bankBlock({"x", {program("TAEQ:Other")}});
    EXPECT_FALSE(host.setChunk(preset, false));
    EXPECT_FALSE(host.setChunk(bank, true));
    EXPECT_FALSE(host.setChunk(block("alst", presetStream(program("TAEQ:Other"))), true));
    EXPECT_FALSE(host.setChunk(block("aprs", ""), true));
    EXPECT_FALSE(host.setChunk(presetBlock(program("TAIO:Other")), true));
    EXPECT_FALSE(host.setChunk(presetBlock(program("Other")), true));
    EXPECT_FALSE(host.setChunk(bankBlock({"x", {}}), false));
    EXPECT_FALSE(host.setChunk(bankBlock({"x", {program("TAEQ:Good"), program("TAIO:Other")}}), false));
    EXPECT_FALSE(host.setChunk(anyBytes(1 << 20, 5), true));
    EXPECT_FALSE(host.setChunk(anyBytes(1 << 20, 6), false));
    const std::string noise = anyBytes(1 << 20, 7);
    EXPECT_FALSE(host.setChunk(block("aprs", noise), true));
    EXPECT_FALSE(host.setChunk(block("abnk", noise), false));
    // A size that the data cannot fill, with a check value that agrees.
    for (uint32_t size : {0x7fffffffu, 0xffffffffu, 0x10000000u, 0x00100000u}) {
        std::string huge = block("aprs", presetStream(program("TAEQ:Huge")));
        const std::string header = block("aprs", "").substr(0, 4);
        std::string count(4, '\0');
        for (size_t i = 0; i < 4; ++i) {
            count[i] = static_cast<char>(size >> 8 * i);
        }
        huge = header + count + checkOf(count) + huge.substr(12);
        EXPECT_FALSE(host.setChunk(huge, true)) << size;
    }
    EXPECT_EQ(host.chunk(true), before);
}

TEST_F(ChunkTest, AnInstanceGivesBackTheChunkOfAnother) {
    for (int32_t i = 0; i < kParamCount; ++i) {
        host.setParameter(i, 0.05f * static_cast<float>(i));
    }
    const std::string program = host.chunk(true);
    const std::string bank = host.chunk(false);
    CVstHost other;
    ASSERT_TRUE(other.open(library->entry()));
    ASSERT_TRUE(other.setChunk(program, true));
    EXPECT_EQ(other.chunk(true), program);
    ASSERT_TRUE(other.setChunk(bank, false));
    EXPECT_EQ(other.chunk(false), bank);
    for (int32_t i = 1; i < kParamCount; ++i) {
        EXPECT_EQ(other.parameter(i), host.parameter(i)) << i;
    }
}

}  // namespace
}  // namespace tarv::host
