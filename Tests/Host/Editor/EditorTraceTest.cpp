// What recorded hosts do with the editor, played back in windows of the system: the sound, the parameters and the chunk
// are those of an effect without an editor.

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "CPluginLibrary.h"
#include "Tests/Host/Editor/CEditorTracePlayer.h"
#include "Tests/TestPaths.h"

namespace tarv::host {
namespace {

class EditorTraceTest : public ::testing::Test {
protected:
    void SetUp() override {
        // The server of the tests ends with the thread that starts it.
        const CHostDesk first;
        std::string error;
        ASSERT_TRUE(library.load(kPluginFile, error)) << error;
    }
    CPluginLibrary library;
};

using CCalls = std::vector<CTraceCall>;

CTraceCall editorCall(const CTraceCall& like, int32_t opcode) {
    CTraceCall call;
    call.thread = like.thread;
    call.opcode = opcode;
    return call;
}

/// More calls around each opening and close.
struct COrder {
    const char* what;
    std::vector<int32_t> before;
    std::vector<int32_t> behind;
    std::vector<int32_t> afterClose;
    bool isParentDestroyedFirst = false;
};

CCalls reordered(const CCalls& calls, const COrder& order) {
    CCalls all;
    const auto add = [&](const CTraceCall& like, const std::vector<int32_t>& opcodes) {
        for (const int32_t opcode : opcodes) {
            all.push_back(editorCall(like, opcode));
        }
    };
    for (const CTraceCall& call : calls) {
        const bool isDispatch = call.kind == CTraceCall::kDispatch;
        const bool isOpen = isDispatch && call.opcode == vst::kEffectEditOpen;
        const bool isClose = isDispatch && call.opcode == vst::kEffectEditClose;
        add(call, isOpen ? order.before : std::vector<int32_t>());
        all.push_back(call);
        add(call, isOpen ? order.behind : isClose ? order.afterClose : std::vector<int32_t>());
    }
    return all;
}

TEST_F(EditorTraceTest, TheRecordedCallsShowTheEditorAndChangeNothing) {
    const struct {
        const char* what;
        int32_t blocks;
        int32_t openings;
        int32_t idles;
        bool isClosed;
    } rows[] = {
        // counted in the recordings
        {"restores the session with its lane, opens the editor, plays, saves, quits", 20, 1, 6, true},
        {"loads, opens the editor twice, quits with it open", 42, 2, 9, true},
        {"opens the editor twice, records a drag as a lane, plays it, saves", 39, 2, 18, false},
        {"restores the session, opens the editor twice, quits", 0, 2, 24, true},
    };
    const std::vector<CHostTrace> traces = editorTraces();
    ASSERT_EQ(std::size(rows), traces.size());
    for (size_t i = 0; i < std::size(rows); ++i) {
        EXPECT_STREQ(traces[i].what, rows[i].what);
        CEditorTracePlayer player(library.entry(), traces[i]);
        EXPECT_EQ(player.play(), "") << rows[i].what;
        EXPECT_EQ(player.blockCount(), rows[i].blocks) << rows[i].what;
        EXPECT_EQ(player.openings(), rows[i].openings) << rows[i].what;
        EXPECT_EQ(player.idles(), rows[i].idles) << rows[i].what;
        EXPECT_EQ(player.isClosed(), rows[i].isClosed) << rows[i].what;
    }
}

TEST_F(EditorTraceTest, TheSameCallsInOtherOrdersAreHarmless) {
    constexpr int32_t kRect = vst::kEffectEditGetRect, kOpen = vst::kEffectEditOpen, kClose = vst::kEffectEditClose,
                      kIdle = vst::kEffectEditIdle, kSave = vst::kEffectGetChunk, kLoad = vst::kEffectSetChunk;
    const COrder orders[] = {
        {"opened twice, all calls before and behind", {kRect, kIdle, kClose}, {kOpen, kIdle}, {kRect, kIdle, kClose}},
        {"the host's window goes first, twice", {}, {kClose, kOpen}, {kIdle}, true},
        {"chunks are read and set while it is open", {}, {kSave, kIdle, kLoad, kIdle, kSave}, {}},
    };
    std::vector<CHostTrace> traces = editorTraces();
    if (!std::getenv("TARV_LONG")) {
        traces.resize(2);  // one of each host
    }
    for (const CHostTrace& trace : traces) {
        for (const COrder& order : orders) {
            CEditorTracePlayer player(library.entry(), trace, order.isParentDestroyedFirst);
            EXPECT_EQ(player.play(reordered(readTrace(trace.calls), order)), "") << trace.what << ": " << order.what;
        }
    }
}

}  // namespace
}  // namespace tarv::host
