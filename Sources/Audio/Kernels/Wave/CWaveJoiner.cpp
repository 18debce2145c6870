#include "Audio/Kernels/Wave/CWaveJoiner.h"

#include <algorithm>

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/BandChain.h"
#include "Audio/Kernels/KernelNames.h"
#include "Audio/Kernels/Wave/WaveSets.h"

namespace tarv {

namespace {

/// Waves that run one after the other.
struct CWaves {
    void (*run)(const CWavePlan& plan);
    int32_t count;
    CWavePlan plans[kMaxBatch];
};

void runWaves(const void* plan) {
    const auto& waves = *static_cast<const CWaves*>(plan);
    for (int32_t i = 0; i < waves.count; ++i) {
        waves.run(waves.plans[i]);
    }
}

CKernelFunction functionOf(const CQPLEXContext& context, const char* name) {
    const int32_t number = context.findKernel(name);
    return number == -1 ? nullptr : context.kernel(number).function;
}

bool haveOneShape(const CWaveChannel& a, const CWaveChannel& b) {
    return !a.before == !b.before && a.bandCount == b.bandCount && !a.filterBehind == !b.filterBehind;
}

/// A wave that writes `out` may run before, or with, one that reads `in`: they do not touch, or each place is read
/// before it is written.
bool isFree(const double* out, const double* in, int32_t count, bool isOneWave) {
    return (isOneWave && out == in) || out + count <= in || in + count <= out;
}

}  // namespace

CWaveJoiner::CWaveJoiner(const CQPLEXContext& context, CInstructionSet set)
    : filter_(functionOf(context, KernelName::kBiquadCommonGain)),
      highPass_(functionOf(context, KernelName::kHighPass1Gain)),
      gain_(functionOf(context, KernelName::kMulc)),
      width_(2 << static_cast<int32_t>(set)),
      run_(set == CInstructionSet::Sse2   ? runWaveSse2
           : set == CInstructionSet::Avx2 ? runWaveAvx2
                                          : runWaveAvx512) {}

CWaveJoiner::CKind CWaveJoiner::kindOf(const CRecordedCall& call) const {
    if (call.chain != nullptr) {
        return call.chain == runBandChain ? CKind::Band : CKind::Other;
    }
    return call.function == nullptr       ? CKind::Other
           : call.function == filter_     ? CKind::Filter
           : call.function == highPass_   ? CKind::HighPass
           : call.function == gain_       ? CKind::Gain
                                          : CKind::Other;
}

CWaveJoiner::CThread* CWaveJoiner::CThreads::writing(const double* signal) {
    CThread* const found = std::find_if(of, of + count, [=](const CThread& t) { return t.output == signal; });
    return found != of + count ? found : nullptr;
}

bool CWaveJoiner::CThreads::areWhole() const {
    return count > 0 && std::all_of(of, of + count, [](const CThread& t) {
               return t.phase == CPhase::Bands || t.phase == CPhase::Behind || t.phase == CPhase::End;
           });
}

bool CWaveJoiner::takeOperation(CKind kind, const CRecordedCall& call, int32_t i, CThreads& threads) const {
    const COperation& o = call.operations[i];
    const COperation* const tube = kind == CKind::Band ? &call.operations[2 * call.count + i] : nullptr;
    const int32_t link = kind == CKind::Gain ? 1 : kLinkOperand;
    const double* const source = o.signal(link);
    const double* const out = tube ? tube->signal(0) : o.signal(0);
    if (tube && (o.pointers[0] != nullptr || tube->signal(3) != source)) {
        return false;
    }
    CThread* thread = threads.writing(source);
    if (thread == nullptr) {
        if (threads.count == kMostChannels || (kind != CKind::Filter && kind != CKind::Band)) {
            return false;
        }
        thread = &threads.of[threads.count++];
        thread->channel = {};
        thread->phase = CPhase::Before;
    } else if (!(call.lastReads[i] >> link & 1)) {
        return false;
    }
    CWaveChannel& channel = thread->channel;
    const CPhase phase = thread->phase;
    switch (kind) {
        case CKind::Filter:
            if (phase == CPhase::Before && channel.before == nullptr) {
                channel.before = &o;
            } else if (phase == CPhase::Bands) {
                channel.filterBehind = &o;
                thread->phase = CPhase::FilterBehind;
            } else {
                return false;
            }
            break;
        case CKind::Band:
            if ((phase != CPhase::Before && phase != CPhase::Bands) || channel.bandCount == kMostWaveBands) {
                return false;
            }
            channel.bands[channel.bandCount++] = {&o, &call.operations[call.count + i], tube};
            thread->phase = CPhase::Bands;
            break;
        case CKind::HighPass:
            if (phase != CPhase::FilterBehind) {
                return false;
            }
            channel.highPassBehind = &o;
            thread->phase = CPhase::Behind;
            break;
        case CKind::Gain:
            if (phase != CPhase::Behind) {
                return false;
            }
            channel.gainBehind = &o;
            thread->phase = CPhase::End;
            break;
        case CKind::Other:
            return false;
    }
    thread->output = out;
    return true;
}

bool CWaveJoiner::takeCall(const CRecordedCall& call, int32_t samples, CThreads& threads) const {
    const CKind kind = kindOf(call);
    if (kind == CKind::Other) {
        return false;
    }
    for (int32_t i = 0; i < call.count; ++i) {
        if (call.operations[i].count != samples || !takeOperation(kind, call, i, threads)) {
            return false;
        }
    }
    return true;
}

/// Takes calls from the first one on, as far as waves can stand for all of them. Returns how many.
int32_t CWaveJoiner::takeCalls(const CRecordedCall* calls, int32_t count, CThreads& threads) const {
    const int32_t samples = calls[0].operations[0].count;
    int32_t whole = 0;
    for (int32_t i = 0; i < count && takeCall(calls[i], samples, threads); ++i) {
        if (threads.areWhole()) {
            whole = i + 1;
        }
    }
    // Again without what came behind.
    threads.count = 0;
    for (int32_t i = 0; i < whole; ++i) {
        takeCall(calls[i], samples, threads);
    }
    return whole;
}

bool CWaveJoiner::plan(const CThreads& threads, CPlanMemory& memory, CRecordedCall& call) const {
    auto* const waves = memory.take<CWaves>(1);
    if (waves == nullptr) {
        return false;
    }
    waves->run = run_;
    waves->count = 0;
    CWaveChannel channels[kMostChannels];
    int32_t waveOf[kMostChannels];
    for (int32_t first = 0; first < threads.count;) {
        int32_t alike = 1;
        while (first + alike < threads.count &&
               haveOneShape(threads.of[first].channel, threads.of[first + alike].channel)) {
            ++alike;
        }
        int32_t together = width_;
        while (together > alike) {
            together /= 2;
        }
        for (int32_t c = 0; c < together; ++c) {
            channels[first + c] = threads.of[first + c].channel;
            waveOf[first + c] = waves->count;
        }
        if (!planWave(channels + first, together, width_, memory, waves->plans[waves->count++])) {
            return false;
        }
        first += together;
    }
    for (int32_t a = 0; a < threads.count; ++a) {
        for (int32_t b = 0; b < threads.count; ++b) {
            const COperation& last = channels[a].last();
            if (waveOf[a] <= waveOf[b] && !isFree(last.signal(0), channels[b].first().signal(kLinkOperand), last.count,
                                                 waveOf[a] == waveOf[b])) {
                return false;
            }
        }
    }
    call = {.joined = runWaves, .plan = waves};
    return true;
}

int32_t CWaveJoiner::join(const CRecordedCall* calls, int32_t count, CPlanMemory& memory, CRecordedCall& call) {
    const CKind kind = kindOf(calls[0]);
    if (kind != CKind::Filter && kind != CKind::Band) {
        return 0;
    }
    CThreads threads;
    const int32_t taken = takeCalls(calls, count, threads);
    return taken > 0 && plan(threads, memory, call) ? taken : 0;
}

}  // namespace tarv
