#pragma once

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "CHostTrace.h"
#include "CVstHost.h"

namespace tarv::host {

/// One call of a trace.
struct CTraceCall {
    enum CKind : uint8_t { kDispatch, kSet, kGet, kProcess };
    int32_t thread = 0;
    CKind kind = kDispatch;
    int32_t opcode = 0;
    int32_t index = 0;
    int64_t value = 0;  ///< of a dispatch; frames of a block
    bool isInPlace = false;
    float opt = 0.0f;  ///< of a dispatch; the position that is set
    std::string text;  ///< of a question
};

/// Every call of a trace, its loops unrolled. Ends before a line that cannot be read.
std::vector<CTraceCall> readTrace(const char* lines);

/// Makes the calls of a trace to a fresh effect, each on the thread that it has in the trace, and compares every block,
/// bit for bit, with the output of a second effect, the reference. The reference is made before the first block behind
/// a resume: suspended it gets rate, block size and all changes so far, and is resumed. Later changes go to both.
/// Parameters and chunks are compared before a suspend and before the end; the effect may report no edit, since no hand
/// is at it. A trace has the sizes of chunks only: the player makes chunks with values that it chose.
class CTracePlayer {
public:
    CTracePlayer(vst::EntryProc entry, const CHostTrace& trace);
    virtual ~CTracePlayer();

    /// The first difference, or "".
    std::string play() { return play(readTrace(trace_.calls)); }
    /// The same with other calls than those of the trace.
    std::string play(const std::vector<CTraceCall>& calls);
    /// Whether the trace ended with the effect closed.
    bool isClosed() const { return subject_.effect() == nullptr; }
    int32_t blockCount() const { return blockCount_; }
    int32_t channels() const { return channels_; }
    /// The highest absolute sample of the first output.
    double level() const { return level_; }

protected:
    /// A call that belongs to the editor, on its thread. There is none here.
    virtual void callEditor(const CTraceCall&) { fail("an editor is called"); }
    /// Runs a task on a thread of the trace, while the player waits.
    void runOn(int32_t thread, const std::function<void()>& task);
    /// Keeps the first of all.
    void fail(const std::string& difference) { difference_ = difference_.empty() ? difference : difference_; }
    CVstHost& subject() { return subject_; }

private:
    class CThread;
    static constexpr size_t kThreads = 3;
    /// Of a longer run of blocks the first are played.
    static constexpr int32_t kBlocksInARow = 60;

    void make(const CTraceCall& call);
    void dispatch(const CTraceCall& call);
    /// A call that changes the state, of the subject or of the other effect.
    void change(CVstHost& host, const CTraceCall& call);
    void startReference();
    void process(const CTraceCall& call);
    void compareStates();
    void makeChunks(vst::EntryProc entry);

    vst::EntryProc entry_;
    const CHostTrace& trace_;
    CVstHost subject_;
    std::unique_ptr<CVstHost> reference_;
    std::array<std::unique_ptr<CThread>, kThreads> threads_;
    std::vector<CTraceCall> changes_;
    std::string chunks_[2];
    float rate_ = 44100.0f;
    int32_t blockSize_ = 1024;
    uint32_t seed_ = 1;
    int32_t blockCount_ = 0;
    int32_t blocksInARow_ = 0;
    int32_t channels_ = 0;
    double level_ = 0.0;
    std::string difference_;
};

}  // namespace tarv::host
