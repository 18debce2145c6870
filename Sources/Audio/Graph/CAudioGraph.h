#pragma once

#include <cstdint>
#include <limits>

namespace tarv {

class CAudioEnv;
class CAudioGraphObserver;
class CAudioParamCollector;
class CQPLEXContext;

/// What all processes of one instance's graph share. The core fills the fields before it places a process. Every call
/// belongs to the audio thread, or to the thread that resumes or suspends while no audio runs.
class CAudioGraph {
public:
    /// What a preparation of the processes found: how much room later changes need.
    struct CUse {
        double widestRate = 0.0;  ///< the highest rate in Hz
        int32_t voices = 0;       ///< modules in use
        int32_t channels = 0;     ///< the most channels that one process has

        bool operator==(const CUse& other) const = default;
    };

    CQPLEXContext* context = nullptr;
    CAudioParamCollector* collector = nullptr;
    CAudioEnv* env = nullptr;
    /// Null in a host.
    CAudioGraphObserver* observer = nullptr;
    /// Channels inside the graph and groups that they can belong to.
    int32_t channelCount = 8;
    int32_t groupCount = 8;
    /// Channels on the host's side.
    int32_t hostInputs = 0;
    int32_t hostOutputs = 0;
    /// The host's rate in Hz.
    double hostRate = 44100.0;
    /// Time of the first sample of the current block, in host samples since the instance was made. A block is run in
    /// pieces where fades end: changes act in the first one.
    double now = 0.0;

    /// Audio is running: changes are faded. While false (preparation) they are taken in place.
    bool isRunning() const { return isRunning_; }
    /// [resume and suspend; the audio thread where a block starts the graph anew] Called by the core.
    void setRunning(bool isRunning) { isRunning_ = isRunning; }

    /// The next run of as many samples would issue the same operations as the last one.
    bool isSteady() const { return isSteady_; }
    /// [audio thread, before a run] Called by the core: the run counts as steady until invalidateRun, and no fade is
    /// noted.
    void beginRun() {
        isSteady_ = true;
        areChangesWaiting_ = false;
        fadeLeft_ = kNoFade;
        ++runNumber_;
        repeatedFrames_ = repeatedSinceRun_;
        repeatedSinceRun_ = 0;
    }
    /// [audio thread, in a run or between two] Called by a process that does something which its next run would not do
    /// again, keeps a position in the signal outside its kernels, or meets another layout or value.
    void invalidateRun() { isSteady_ = false; }

    static constexpr double kNoFade = std::numeric_limits<double>::infinity();
    /// Host samples between the end of the last run or repetition and the first end of a fade; kNoFade: none ends. Runs
    /// repeat each other up to there. No whole number where a fade at a raised rate ends between two samples.
    double fadeLeft() const { return fadeLeft_; }
    /// [audio thread, in a run] Called by a process for a fade that goes on for `left` host samples behind the run.
    void noteFade(double left) { fadeLeft_ = left < fadeLeft_ ? left : fadeLeft_; }
    /// Number of the run that is under way or was the last one.
    int64_t runNumber() const { return runNumber_; }
    /// Host samples for which the run before this one was repeated.
    int64_t repeatedFrames() const { return repeatedFrames_; }
    /// [audio thread] Called by the core when it has repeated a run of so many host samples.
    void noteRepetition(int32_t frames) {
        repeatedSinceRun_ += frames;
        fadeLeft_ -= frames;
    }
    /// Changes wait in a process for their time.
    bool areChangesWaiting() const { return areChangesWaiting_; }
    /// [audio thread] Called by a process when it has taken the due changes and others are left.
    void noteWaitingChanges() { areChangesWaiting_ = true; }
    /// [audio thread, before CAudioProcessBase::takeQuietChanges] Called by the core.
    void beginQuietChanges() { areChangesWaiting_ = false; }

    /// A process asked for room since the last beginUse.
    bool isRoomWanted() const { return isRoomWanted_; }
    /// [audio thread, in a run] Called by a process that meets other channels or another rate than before: the core
    /// makes room behind the run, so that the changes that follow allocate nothing.
    void requestRoom() { isRoomWanted_ = true; }

    /// No process changed its delay since the last confirmDelays.
    bool areDelaysValid() const { return areDelaysValid_; }
    /// [audio thread, in a run] Called by a process whose delay changed: the core sums the delays behind the host's
    /// block.
    void invalidateDelays() { areDelaysValid_ = false; }
    /// [audio thread behind a block; resume] Called by the core when it has summed the delays.
    void confirmDelays() { areDelaysValid_ = true; }

    /// What was noted since the last beginUse.
    const CUse& use() const { return use_; }
    /// [audio thread behind a run; resume] Called by the core before it calls makeSpares: nothing is noted, no room is
    /// wanted.
    void beginUse() {
        isRoomWanted_ = false;
        use_ = {hostRate, 0, 0};
    }
    /// [in makeSpares] Called by a process that has `voices` modules, one for each channel, at `rate` in Hz.
    void noteUse(int32_t voices, double rate) {
        use_.voices += voices;
        use_.channels = voices > use_.channels ? voices : use_.channels;
        use_.widestRate = rate > use_.widestRate ? rate : use_.widestRate;
    }

private:
    bool isRunning_ = false;
    bool isSteady_ = false;
    bool areChangesWaiting_ = false;
    double fadeLeft_ = kNoFade;
    int64_t runNumber_ = 0;
    int64_t repeatedFrames_ = 0;
    int64_t repeatedSinceRun_ = 0;
    bool isRoomWanted_ = false;
    bool areDelaysValid_ = true;
    CUse use_;
};

}  // namespace tarv
