// The calls of real hosts, played back: what each hears is what an effect gives that had its rate, block size and state
// before it was switched on.

#include "CTracePlayer.h"
#include "HostTest.h"
#include "HostTraces.h"

namespace tarv::host {
namespace {

using HostTraceTest = HostTest;

void playAll(vst::EntryProc entry, int32_t channels) {
    for (const CHostTrace& trace : kHostTraces) {
        CTracePlayer player(entry, trace);
        EXPECT_EQ(player.play(), "") << trace.host << ' ' << trace.what;
        EXPECT_TRUE(player.isClosed()) << trace.host << ' ' << trace.what;
        if (player.blockCount() > 0) {
            EXPECT_EQ(player.channels(), channels);
            EXPECT_GT(player.level(), 0.01) << "there was sound";
        }
    }
}

TEST_F(HostTraceTest, OfTheFullFaceSoundAsIfAllHadComeBeforeTheResume) {
    playAll(library->entry(), kChannels);
}

TEST_F(HostTraceTest, OfTheStereoFaceSoundAsIfAllHadComeBeforeTheResume) {
    CPluginLibrary stereo;
    std::string error;
    ASSERT_TRUE(stereo.load(kStereoFile, error)) << error;
    playAll(stereo.entry(), 2);
}

TEST_F(HostTraceTest, HoldWhatMakesThemWorthPlaying) {
    // Counted in the recordings. A table that lost its calls would pass whatever the effect does.
    const struct {
        const char* what;
        int32_t blocks;
        size_t calls;
    } rows[] = {
        {"looks at the file with its scanner", 0, 13},
        {"loads, sets two values, plays, saves, removes", 107, 217},
        {"restores the session, plays, removes", 100, 224},
        {"looks at the file with its scanner", 0, 20},
        {"loads, runs, saves, removes", 4020, 4068},
        {"restores the project, runs, removes", 1023, 1071},
        {"applies to a track of 44.1 kHz, removes", 44, 130},
        {"applies to a track of 96 kHz, removes", 47, 133},
        {"loads in real time, moves a slider, plays, saves, removes", 400, 1104},
        {"restores the project, plays, removes", 400, 520},
    };
    ASSERT_EQ(std::size(rows), std::size(kHostTraces));
    for (size_t i = 0; i < std::size(rows); ++i) {
        EXPECT_STREQ(kHostTraces[i].what, rows[i].what);
        const std::vector<CTraceCall> calls = readTrace(kHostTraces[i].calls);
        int32_t blocks = 0;
        for (const CTraceCall& call : calls) {
            blocks += call.kind == CTraceCall::kProcess ? 1 : 0;
        }
        EXPECT_EQ(blocks, rows[i].blocks) << rows[i].what;
        EXPECT_EQ(calls.size(), rows[i].calls) << rows[i].what;
    }
}

}  // namespace
}  // namespace tarv::host
