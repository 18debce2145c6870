#pragma once

#include <bitset>
#include <cstdint>

#include "Audio/Context/CRunJoiner.h"
#include "Audio/Kernels/Wave/WavePlan.h"

namespace tarv {

/// The channels of a wave that is being found: takes the operations of recorded calls in order, as long as a wave can
/// stand for all of them. Nobody but the wave may read what it does not write. Audio thread; allocates nothing.
class CWaveThreads {
public:
    static constexpr int32_t kMostChannels = kMaxBatch;

    void clear();
    int32_t count() const { return count_; }
    /// The operations of a channel, behind `finish`.
    const CWaveChannel& channel(int32_t number) const { return threads_[number].channel; }

    // Each takes operation `i` of a call. False if no wave can stand for it behind what was taken: lanes hold a copy of
    // each state block, so no two of them may have the same.
    bool takeFilter(const CRecordedCall& call, int32_t i);
    bool takeFade(const CRecordedCall& call, int32_t i);
    bool takeHighPass(const CRecordedCall& call, int32_t i);
    bool takeTube(const CRecordedCall& call, int32_t i);
    bool takeGain(const CRecordedCall& call, int32_t i);

    /// All channels end where a wave may end, with one band at least.
    bool areWhole() const;
    /// The filters that were taken last stand behind the bands. All channels are whole.
    void finish();
    /// Whether something that was taken has `state` as its state block.
    bool uses(const void* state) const;

private:
    /// What was taken behind the last band: a filter in front of the bands or behind them, or the beginning of a band.
    struct CRest {
        const COperation* filter = nullptr;
        const COperation* oldFilter = nullptr;
        const COperation* fade = nullptr;
        const COperation* highPass = nullptr;
        bool isSourceOwn = false;  ///< nobody but the filter reads its source

        bool isEmpty() const { return filter == nullptr; }
        /// One filter and nothing behind it.
        bool isFilter() const { return filter && !oldFilter && !fade && !highPass; }
        /// A filter and a high-pass, which may stand behind the bands.
        bool isBehind() const { return filter && highPass && !fade; }
        /// What the band, so far, gives to its high-pass; null if it is not there yet.
        const double* filtered() const;
    };
    struct CThread {
        CWaveChannel channel;
        CRest rest;
        const double* output;  ///< what the last band gave, or the filter in front of them, or the input
        bool isInput;          ///< it is the input: others may read it
        bool isEnded;          ///< there is a filter behind the bands

        bool isWhole() const;
        void endBands();
        void takeBefore();
    };

    CThread* reading(const double* signal);
    CThread* filtering(const double* signal);
    CThread* passing(const double* signal);
    CThread* begin(const double* signal);
    bool writes(const double* signal) const;
    template <class Is>
    bool isAny(Is&& is) const;
    void noteState(const COperation& operation) { states_.set(hashOf(operation.pointers[1])); }
    static size_t hashOf(const void* state) { return reinterpret_cast<uintptr_t>(state) / 16 % kHashes; }

    CThread threads_[kMostChannels];
    int32_t count_ = 0;
    static constexpr size_t kHashes = 1024;
    std::bitset<kHashes> states_;  ///< of the state blocks of what was taken
};

}  // namespace tarv
