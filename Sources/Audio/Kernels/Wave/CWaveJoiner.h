#pragma once

#include <memory>

#include "Audio/Context/CRunJoiner.h"
#include "Audio/Kernels/Wave/CInstructionSet.h"
#include "Audio/Kernels/Wave/CWavePlan.h"
#include "Audio/Kernels/Wave/WaveSets.h"

namespace tarv {

class CQPLEXContext;
class CWaveThreads;

/// Finds bands in series, with the filters before and behind them, and makes waves of them: as many channels side by
/// side as the set of instructions takes. The filter of a band may be in a fade between old and new values. A plan
/// holds the constants of state blocks: a run that writes other constants into one of them must not be repeated.
class CWaveJoiner final : public CRunJoiner {
public:
    /// The kernels of `context` that waves stand for; those must be registered.
    CWaveJoiner(const CQPLEXContext& context, CInstructionSet set);
    ~CWaveJoiner() override;
    CFound find(CRecordedCall* calls, int32_t count) override;
    bool plan(CPlanMemory& memory, CRecordedCall& call) override;

private:
    enum class CKind { Filter, Fade, HighPass, Tube, Gain, Start, Other };
    CKind kindOf(const CRecordedCall& call) const;
    int32_t takeCall(CKind kind, const CRecordedCall& call, int32_t samples);
    bool takeOperation(CKind kind, const CRecordedCall& call, int32_t i);
    bool isAhead(const CRecordedCall& call) const;
    static CFound putAhead(CRecordedCall* calls, const CKind* kinds, int32_t count);
    void group();
    bool areFree() const;

    CKernelFunction filter_;
    CKernelFunction fade_;
    CKernelFunction highPass_;
    CKernelFunction tube_;
    CKernelFunction gain_;
    /// More than what ten bands take, each with the start of a fade.
    static constexpr int32_t kMostCalls = 128;
    static constexpr int32_t kMostAhead = 64;
    /// Kernels at the start of a fade, which write the states of its modules. All their operands are whole blocks.
    static constexpr int32_t kStarts = 6;
    CKernelFunction starts_[kStarts];
    int32_t width_;
    CRunWave run_;
    std::unique_ptr<CWaveThreads> threads_;  ///< what was found last
    int32_t waveOf_[kMaxBatch] = {};         ///< number of the wave of each channel, ascending
    int32_t waveCount_ = 0;
};

}  // namespace tarv
