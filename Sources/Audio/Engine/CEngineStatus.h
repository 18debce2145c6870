#pragma once

#include <atomic>

#include "Audio/Messages/CAudioInterfaceMessage.h"

namespace tarv {

class CAudioEnv;

/// What the engine is at the moment, as answers and notifications carry it. Any thread; calls
/// nothing under its lock.
class CEngineStatus {
public:
    explicit CEngineStatus(const CAudioEnv& env) : env_(env) {}

    double sampleRate() const;  ///< Hz
    int32_t blockSize() const;  ///< frames
    int32_t latency() const;    ///< frames of the host
    double vizFps() const;      ///< frames of visual data a second
    bool isRunning() const { return isRunning_; }
    void setRunning(bool isRunning) { isRunning_ = isRunning; }

    CInterfaceCounts counts() const;
    /// Hands the counts to `edit(CInterfaceCounts&)`; returns whether they differ afterwards.
    template <class Edit>
    bool editCounts(Edit&& edit) {
        CLockScope scope(lock_);
        const CInterfaceCounts before = counts_;
        edit(counts_);
        return counts_ != before;
    }
    /// Marks the engine's `clear` for the next tick of a client. Also the audio thread; takes no lock.
    void markClear() { isClearDue_.store(true, std::memory_order_relaxed); }
    /// Ends the mark; returns whether there was one.
    bool takeClear() { return isClearDue_.exchange(false, std::memory_order_relaxed); }
    /// What the host calls its input channels; empty for one without a name.
    CTextList channelLabels() const;
    /// Returns whether they differ from the former ones.
    bool setChannelLabels(const CTextList& labels) { return replace(channelLabels_, labels); }
    /// The same of its output channels.
    CTextList outputLabels() const;
    bool setOutputLabels(const CTextList& labels) { return replace(outputLabels_, labels); }

private:
    bool replace(CTextList& kept, const CTextList& labels);

    const CAudioEnv& env_;
    std::atomic<bool> isRunning_{false};
    std::atomic<bool> isClearDue_{false};
    mutable CLock lock_;
    CInterfaceCounts counts_;
    CTextList channelLabels_;
    CTextList outputLabels_;
};

}  // namespace tarv
