#pragma once

#include <memory>

#include "Audio/Graph/CAudioGraph.h"
#include "Core/CError.h"

namespace tarv {

struct CAudioInstanceObjects;
class CAudioPort;
class CAudioProcessBase;
class CModOutput;

/// The process graph of one instance: the main process, the output process behind it, and what they share. Starts
/// it for a rate and a block size, runs it, and keeps its buffers and delays up to date. In brackets: the thread and
/// the state in which a function may be called; "stopped" is before the first start and behind a stop.
class CAudioInstanceGraph {
public:
    /// Frames of the longest run; a longer host block is cut.
    static constexpr int32_t kMaxRun = 512;

    CAudioInstanceGraph();
    ~CAudioInstanceGraph();
    CAudioInstanceGraph(const CAudioInstanceGraph&) = delete;
    CAudioInstanceGraph& operator=(const CAudioInstanceGraph&) = delete;

    /// Builds both processes from their definitions. The objects outlive the processes. [main thread, new]
    [[nodiscard]] CError* init(const CAudioInstanceObjects& objects, int32_t channelCount, int32_t groupCount);
    /// Destroys both processes. [main thread, stopped]
    void destroyProcesses();

    /// Channels that the host hands over and expects, from the next start on. [main thread, stopped]
    void setHostChannels(int32_t inputs, int32_t outputs);
    /// Makes the graph ready for a rate in Hz and the host's block size in frames: from silence, and with all pending
    /// changes taken in place, without a fade. May be called again without a stop.
    /// [main thread, stopped; audio thread, running]
    void start(double rate, int32_t blockSize);
    /// Back to silence. [main thread, running]
    void stop();
    /// Whether the last start was for this rate and block size. [any thread that may start]
    bool isStartedFor(double rate, int32_t blockSize) const;

    /// Forgets all history of the signal; the values stay. [audio thread, running; main thread, stopped]
    void reset();
    /// Runs both processes over the frames, at most kMaxRun, that lie on the input port. [audio thread, running]
    void run(int32_t frames);
    /// Takes the changes that are due while the last run is repeated; false if it can't be repeated with them.
    /// [audio thread, running]
    bool takeQuietChanges();
    /// Reserves the memory that fades will need, if the last run met a new layout. [audio thread, running]
    void makeRoomIfNeeded();
    /// Sums the delays again, if one of them changed. [audio thread, running]
    void placeDelaysIfNeeded();

    /// What the processes share.
    CAudioGraph& shared() { return graph_; }
    const CAudioGraph& shared() const { return graph_; }
    /// Null before init.
    CAudioProcessBase* main() const { return main_.get(); }
    /// The port on which the host's channels lie. Behind init.
    CAudioPort& input() const;
    CModOutput& output() const { return *output_; }

private:
    void prepare();
    void makeRoom();
    void placeDelays();

    CAudioGraph graph_;
    std::unique_ptr<CAudioProcessBase> main_;
    std::unique_ptr<CModOutput> output_;
    /// The block size of the last start; the graph holds its rate.
    int32_t blockSize_ = 0;
};

}  // namespace tarv
