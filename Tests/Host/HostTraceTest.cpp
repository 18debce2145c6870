// The calls of real hosts, played back: the output is that of an effect which got rate, block size and state before
// `mains on`.

#include "CTracePlayer.h"
#include "HostTest.h"

namespace tarv::host {
namespace {

using HostTraceTest = HostTest;

/// `channels`: of the face. Hosts of the older interface get two of any face.
void playAll(vst::EntryProc entry, int32_t channels) {
    for (const CHostTrace& trace : hostTraces()) {
        CTracePlayer player(entry, trace);
        EXPECT_EQ(player.play(), "") << trace.host << ' ' << trace.what;
        EXPECT_TRUE(player.isClosed()) << trace.host << ' ' << trace.what;
        if (player.blockCount() > 0) {
            EXPECT_EQ(player.channels(), trace.masterVersion >= 2300 ? channels : 2) << trace.host;
            EXPECT_GT(player.level(), 0.01) << "the output is silent";
        }
    }
}

TEST_F(HostTraceTest, OnTheFullFaceSoundAsIfAllWereSetBeforeTheResume) {
    playAll(library->entry(), kChannels);
}

TEST_F(HostTraceTest, OnTheStereoFaceSoundAsIfAllWereSetBeforeTheResume) {
    CPluginLibrary stereo;
    std::string error;
    ASSERT_TRUE(stereo.load(kStereoFile, error)) << error;
    playAll(stereo.entry(), 2);
}

TEST_F(HostTraceTest, HoldAsManyCallsAsTheRecordings) {
    // Counted in the recordings. A table without its calls would pass with any effect.
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
        {"looks at the file with its scanner", 0, 15},
        {"loads, moves two sliders, plays, saves, quits", 3181, 3346},
        {"restores the session, plays, removes", 146, 229},
    };
    const std::vector<CHostTrace> traces = hostTraces();
    ASSERT_EQ(std::size(rows), traces.size());
    for (size_t i = 0; i < std::size(rows); ++i) {
        EXPECT_STREQ(traces[i].what, rows[i].what);
        const std::vector<CTraceCall> calls = readTrace(traces[i].calls);
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
