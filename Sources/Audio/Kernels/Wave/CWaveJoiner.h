#pragma once

#include "Audio/Context/CRunJoiner.h"
#include "Audio/Kernels/Wave/CInstructionSet.h"
#include "Audio/Kernels/Wave/WavePlan.h"

namespace tarv {

class CQPLEXContext;

/// Finds bands in series, with the filters before and behind them, and makes waves of them: as many channels side by
/// side as the set of instructions takes.
class CWaveJoiner final : public CRunJoiner {
public:
    /// The kernels of `context` that waves stand for; those must be registered.
    CWaveJoiner(const CQPLEXContext& context, CInstructionSet set);
    int32_t join(const CRecordedCall* calls, int32_t count, CPlanMemory& memory, CRecordedCall& call) override;

private:
    static constexpr int32_t kMostChannels = kMaxBatch;

    enum class CKind { Filter, HighPass, Gain, Band, Other };
    enum class CPhase { Before, Bands, FilterBehind, Behind, End };

    /// The operations of one channel so far.
    struct CThread {
        CWaveChannel channel;
        CPhase phase;
        const double* output;
    };
    /// The channels of the calls that were taken.
    struct CThreads {
        CThread of[kMostChannels];
        int32_t count = 0;

        /// All end where a wave may end, with one band at least.
        bool areWhole() const;
        CThread* writing(const double* signal);
    };

    CKind kindOf(const CRecordedCall& call) const;
    bool takeCall(const CRecordedCall& call, int32_t samples, CThreads& threads) const;
    bool takeOperation(CKind kind, const CRecordedCall& call, int32_t i, CThreads& threads) const;
    int32_t takeCalls(const CRecordedCall* calls, int32_t count, CThreads& threads) const;
    bool plan(const CThreads& threads, CPlanMemory& memory, CRecordedCall& call) const;

    CKernelFunction filter_;
    CKernelFunction highPass_;
    CKernelFunction gain_;
    int32_t width_;
    void (*run_)(const CWavePlan& plan);
};

}  // namespace tarv
