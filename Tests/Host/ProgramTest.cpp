// Programs through the library: names, selection, and the sound of each factory program.

#include "FactorySettings.h"
#include "HostTest.h"
#include "Tests/System/SoundHelp.h"

namespace tarv::host {
namespace {

using reference::CLayout;
using sound::isClose;
using sound::kTolerance64;

class ProgramTest : public OpenHostTest {
protected:
    std::string name(int32_t index) {
        char text[vst::kMaxProgramName] = {};
        return host.dispatch(vst::kEffectGetProgramNameIndexed, index, 0, text) ? text : "-";
    }
    std::string currentName() { return host.text(vst::kEffectGetProgramName); }
    void rename(const std::string& to) {
        std::string text(to);
        host.dispatch(vst::kEffectSetProgramName, 0, 0, text.data());
    }
};

TEST_F(ProgramTest, TheFactorysProgramsAreListedInOrderWithoutTheirPrefix) {
    ASSERT_EQ(host.effect()->numPrograms, kFactoryCount);
    for (int32_t i = 0; i < kFactoryCount; ++i) {
        EXPECT_EQ(name(i), kFactoryPresets[i].name);
    }
    EXPECT_EQ(name(-1), "-");
    EXPECT_EQ(name(kFactoryCount), "-");
    EXPECT_EQ(host.program(), 0);
    EXPECT_EQ(currentName(), "Default");
}

TEST_F(ProgramTest, IndexesOutOfRangeAreIgnored) {
    host.setProgram(3);
    for (int32_t index : {-1, kFactoryCount, 1 << 30}) {
        host.setProgram(index);
        EXPECT_EQ(host.program(), 3);
    }
}

TEST_F(ProgramTest, SelectingTheCurrentProgramChangesNothing) {
    host.setParameter(kEqA0, 0.25f);
    host.setProgram(0);
    EXPECT_EQ(host.parameter(kEqA0), 0.25f);
}

TEST_F(ProgramTest, ASlotKeepsTheStateThatItWasLeftWith) {
    host.setParameter(kEqA0, 0.25f);
    host.setProgram(4);
    EXPECT_NE(host.parameter(kEqA0), 0.25f);
    host.setParameter(kEqB0, 0.75f);
    host.setProgram(0);
    EXPECT_NEAR(host.parameter(kEqA0), 0.25, 1e-7);
    EXPECT_EQ(host.parameter(kEqB0), 0.5f);
    host.setProgram(4);
    EXPECT_NEAR(host.parameter(kEqB0), 0.75, 1e-7);
}

TEST_F(ProgramTest, ANewNameShowsEverywhereAndIsCutForTheHost) {
    host.setProgram(2);
    rename("Mine: with a colon");
    EXPECT_EQ(currentName(), "Mine: with a colon");
    EXPECT_EQ(name(2), "Mine: with a colon");
    rename("A name that is longer than hosts have room for");
    EXPECT_EQ(currentName(), "A name that is longer t");
    CStoredPreset preset;
    ASSERT_TRUE(readPreset(host.chunk(true), preset));
    EXPECT_EQ(preset.name, "TAEQ:A name that is longer than hosts have room for");
}

TEST_F(ProgramTest, TheHostIsNotNotifiedOfItsOwnChanges) {
    host.setProgram(5);
    rename("Other");
    EXPECT_TRUE(host.automated.empty());
    EXPECT_EQ(host.displayUpdates, 0);
}

TEST_F(ProgramTest, EachFactoryProgramSoundsLikeTheReferenceOfItsTable) {
    const auto input = sound::signalOf(sound::kSignals[0], 2, 2000, 44100.0);
    for (int32_t i = 0; i < kFactoryCount; ++i) {
        CVstHost own;
        ASSERT_TRUE(own.open(library->entry()));
        own.prepare(44100.0, 512, vst::kPrecision64);
        own.setProgram(i);
        own.resume();
        CSignal<double> in(kChannels, std::vector<double>(2000));
        std::copy(input.begin(), input.end(), in.begin());
        CLayout layout;
        layout.hostChannels = kChannels;
        EXPECT_TRUE(isClose(process(own, in), reference::render(layout, settingsOf(kFactoryPresets[i]), {}, in, 2000),
                            kTolerance64))
            << kFactoryPresets[i].name;
        own.suspend();
    }
}

TEST_F(ProgramTest, AProgramSelectedWhileAudioRunsFadesIn) {
    const CSignal<double> input = noise<double>(kChannels, 6000);
    CLayout layout;
    layout.hostChannels = kChannels;
    const auto expected = reference::render(layout, settingsOf(kFactoryPresets[0]),
                                            {{2560, settingsOf(kFactoryPresets[6])}}, input, 6000);
    host.prepare(44100.0, 512, vst::kPrecision64);
    host.resume();
    const auto slice = [&](int64_t from, int64_t to) {
        CSignal<double> rows;
        for (const auto& row : input) {
            rows.emplace_back(row.begin() + from, row.begin() + to);
        }
        return rows;
    };
    CSignal<double> output = process(host, slice(0, 2560));
    host.setProgram(6);
    const CSignal<double> rest = process(host, slice(2560, 6000));
    for (size_t c = 0; c < output.size(); ++c) {
        output[c].insert(output[c].end(), rest[c].begin(), rest[c].end());
    }
    EXPECT_TRUE(isClose(output, expected, kTolerance64));
}

}  // namespace
}  // namespace tarv::host
