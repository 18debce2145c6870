#include "Audio/Kernels/Wave/CWaveJoiner.h"

#include <algorithm>
#include <span>

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/KernelNames.h"
#include "Audio/Kernels/Wave/CWaveThreads.h"
#include "Audio/Kernels/Wave/WaveSets.h"

namespace tarv {

namespace {

/// Waves that run one after the other.
struct CWaves {
    CRunWave run;
    int32_t count;
    CWavePlan* plans;
};

void runWaves(const void* plan) {
    const auto& waves = *static_cast<const CWaves*>(plan);
    for (int32_t i = 0; i < waves.count; ++i) {
        waves.run(waves.plans[i]);
    }
}

void findPlacesOfWaves(void* plan, CSignalPlaces& places) {
    const auto& waves = *static_cast<const CWaves*>(plan);
    for (CWavePlan& wave : std::span(waves.plans, static_cast<size_t>(waves.count))) {
        for (int32_t c = 0; c < wave.channels; ++c) {
            places.noteFixed(wave.in[c]);
            places.noteFill(wave.out[c], wave.count);
        }
    }
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
    : filter_(context.kernelFunction(KernelName::kBiquadCommonGain)),
      fade_(context.kernelFunction(KernelName::kXfade)),
      highPass_(context.kernelFunction(KernelName::kHighPass1Gain)),
      tube_(context.kernelFunction(KernelName::kMetaTube)),
      gain_(context.kernelFunction(KernelName::kMulc)),
      starts_{context.kernelFunction(KernelName::kXfadei),        context.kernelFunction(KernelName::kBiquadInit),
              context.kernelFunction(KernelName::kBiquadUpdate),  context.kernelFunction(KernelName::kOnePoleInit),
              context.kernelFunction(KernelName::kOnePoleUpdate), context.kernelFunction(KernelName::kMetaTubeInit)},
      width_(2 << static_cast<int32_t>(set)),
      run_(set == CInstructionSet::Sse2   ? runWaveSse2
           : set == CInstructionSet::Avx2 ? runWaveAvx2
                                          : runWaveAvx512),
      threads_(std::make_unique<CWaveThreads>()) {}

CWaveJoiner::~CWaveJoiner() = default;

CWaveJoiner::CKind CWaveJoiner::kindOf(const CRecordedCall& call) const {
    const CKernelFunction function = call.function;
    return function == nullptr                                                    ? CKind::Other
           : function == filter_                                                  ? CKind::Filter
           : function == highPass_                                                ? CKind::HighPass
           : function == tube_                                                    ? CKind::Tube
           : function == fade_                                                    ? CKind::Fade
           : function == gain_                                                    ? CKind::Gain
           : std::find(starts_, starts_ + kStarts, function) != starts_ + kStarts ? CKind::Start
                                                                                  : CKind::Other;
}

bool CWaveJoiner::takeOperation(CKind kind, const CRecordedCall& call, int32_t i) {
    switch (kind) {
        case CKind::Filter:
            return threads_->takeFilter(call, i);
        case CKind::Fade:
            return threads_->takeFade(call, i);
        case CKind::HighPass:
            return threads_->takeHighPass(call, i);
        case CKind::Tube:
            return threads_->takeTube(call, i);
        case CKind::Gain:
            return threads_->takeGain(call, i);
        case CKind::Start:
        case CKind::Other:
            return false;
    }
    return false;
}

/// Returns how many operations of the call were taken, from the first one on.
int32_t CWaveJoiner::takeCall(CKind kind, const CRecordedCall& call, int32_t samples) {
    int32_t taken = 0;
    while (taken < call.count && call.operations[taken].count == samples && takeOperation(kind, call, taken)) {
        ++taken;
    }
    return taken;
}

/// A call that writes states for later ones, and none that what was taken uses, may run before all that was taken.
bool CWaveJoiner::isAhead(const CRecordedCall& call) const {
    return std::none_of(call.operations, call.operations + call.count, [this](const COperation& o) {
        return std::any_of(o.pointers, o.pointers + kMaxOperands,
                           [this](const void* block) { return block != nullptr && threads_->uses(block); });
    });
}

CRunJoiner::CFound CWaveJoiner::find(CRecordedCall* calls, int32_t count) {
    if (kindOf(calls[0]) != CKind::Filter) {
        return {};
    }
    const int32_t samples = calls[0].operations[0].count;
    CKind kinds[kMostCalls];
    threads_->clear();
    int32_t whole = 0;
    int32_t starts = 0;
    bool isExact = true;  // what was taken are the calls up to `whole`
    for (int32_t i = 0; i < std::min(count, kMostCalls); ++i) {
        kinds[i] = kindOf(calls[i]);
        if (kinds[i] == CKind::Start && starts < kMostAhead && isAhead(calls[i])) {
            ++starts;
            continue;
        }
        const int32_t taken = takeCall(kinds[i], calls[i], samples);
        isExact = isExact && taken == 0;
        if (taken < calls[i].count || taken == 0) {
            break;
        }
        isExact = threads_->areWhole();
        whole = isExact ? i + 1 : whole;
    }
    if (whole == 0) {
        return {};
    }
    const CFound found = putAhead(calls, kinds, whole);
    if (!isExact) {
        threads_->clear();
        for (int32_t i = 0; i < found.count; ++i) {
            const CRecordedCall& call = calls[found.ahead + i];
            takeCall(kindOf(call), call, samples);
        }
    }
    threads_->finish();
    group();
    return areFree() ? found : CFound();
}

/// Moves the calls that start fades in front of the others, each in order.
CRunJoiner::CFound CWaveJoiner::putAhead(CRecordedCall* calls, const CKind* kinds, int32_t count) {
    CRecordedCall ahead[kMostAhead];
    CFound found;
    int32_t place = count;
    for (int32_t i = count; i-- > 0;) {
        if (kinds[i] == CKind::Start) {
            ahead[found.ahead++] = calls[i];
        } else {
            calls[--place] = calls[i];
        }
    }
    std::reverse_copy(ahead, ahead + found.ahead, calls);
    found.count = count - found.ahead;
    return found;
}

/// Puts channels of one shape into waves, as many into each as a vector takes.
void CWaveJoiner::group() {
    const CWaveThreads& found = *threads_;
    waveCount_ = 0;
    for (int32_t first = 0; first < found.count();) {
        int32_t alike = 1;
        while (first + alike < found.count() && haveOneShape(found.channel(first), found.channel(first + alike))) {
            ++alike;
        }
        int32_t together = width_;
        while (together > alike) {
            together /= 2;
        }
        std::fill_n(waveOf_ + first, together, waveCount_++);
        first += together;
    }
}

/// No channel writes what another one reads later.
bool CWaveJoiner::areFree() const {
    const CWaveThreads& found = *threads_;
    for (int32_t a = 0; a < found.count(); ++a) {
        for (int32_t b = 0; b < found.count(); ++b) {
            const COperation& last = found.channel(a).last();
            const double* const in = found.channel(b).first().signal(kLinkOperand);
            if (waveOf_[a] <= waveOf_[b] && !isFree(last.signal(0), in, last.count, waveOf_[a] == waveOf_[b])) {
                return false;
            }
        }
    }
    return true;
}

bool CWaveJoiner::plan(CPlanMemory& memory, CRecordedCall& call) {
    const CWaveThreads& found = *threads_;
    auto* const waves = memory.take<CWaves>(1);
    auto* const plans = memory.take<CWavePlan>(waveCount_);
    if (waves == nullptr || plans == nullptr) {
        return false;
    }
    waves->run = run_;
    waves->plans = plans;
    waves->count = 0;
    CWaveChannel channels[kMostWaveChannels];
    for (int32_t first = 0; first < found.count();) {
        int32_t together = 0;
        while (first + together < found.count() && waveOf_[first + together] == waves->count) {
            channels[together] = found.channel(first + together);
            ++together;
        }
        if (!planWave(channels, together, width_, memory, waves->plans[waves->count++])) {
            return false;
        }
        first += together;
    }
    call = {.joined = runWaves, .findPlaces = findPlacesOfWaves, .plan = waves};
    return true;
}

}  // namespace tarv
