#include "Audio/Kernels/Wave/CHalfBandJoiner.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/KernelNames.h"
#include "Audio/Kernels/ResampleKernels.h"
#include "Audio/Kernels/Wave/WaveSets.h"

namespace tarv {

namespace {

void runEach(const CRecordedCall& call) {
    for (int32_t i = 0; i < call.count; ++i) {
        call.function(call.operations[i]);
    }
}

bool isZero(double value) {
    return std::bit_cast<uint64_t>(value) == 0;
}

/// Whether a filter has seen nothing but zeros at odd samples: then they leave no trace.
bool isOddSilent(const double* block, int32_t order) {
    const auto index = static_cast<int32_t>(block[indexOfHalfBand(order)]);
    bool isSilent = isZero(block[heldOfHalfBand(order)]);
    for (const int32_t branch : {0, 1}) {
        const double* const lines = block + linesOfHalfBand(order, branch) + ((index + 1) & 3);
        for (int32_t k = 0; k <= order; ++k) {
            isSilent &= isZero(lines[k * kHalfBandLine]);
        }
    }
    return isSilent;
}

/// No channel writes what another one reads or writes.
bool areApart(const CHalfBandPlan& plan) {
    const int32_t read = plan.isUp ? plan.count : 2 * plan.count;
    const int32_t written = plan.isUp ? 2 * plan.count : plan.count;
    for (int32_t a = 0; a < plan.channels; ++a) {
        for (int32_t b = 0; b < plan.channels; ++b) {
            const double* const out = plan.out[a];
            const bool isClear = out + written <= plan.in[b] || plan.in[b] + read <= out;
            if (!isClear || (a != b && (out == plan.out[b] || plan.block[a] == plan.block[b]))) {
                return false;
            }
        }
    }
    return true;
}

}  // namespace

/// A change of rate, and the calls that it stands for.
struct CHalfBandJoiner::CJoined {
    CRunHalfBands run = nullptr;
    CHalfBandPlan plan = {};
    /// Copied at the lower rate, before it when going up and behind it when going down; null: nothing.
    const double* copyFrom[kMaxBatch] = {};
    double* copyTo[kMaxBatch] = {};
    CRecordedCall first;
    CRecordedCall second;

    void copy() const {
        for (int32_t c = 0; c < plan.channels && copyFrom[c] != nullptr; ++c) {
            std::copy_n(copyFrom[c], plan.count, copyTo[c]);
        }
    }
};

void CHalfBandJoiner::runJoined(const void* plan) {
    const auto& joined = *static_cast<const CJoined*>(plan);
    const CHalfBandPlan& p = joined.plan;
    const auto isReady = [&](const double* block) { return !p.isUp || isOddSilent(block, p.order); };
    if (std::all_of(p.block, p.block + p.channels, isReady)) {
        if (p.isUp) {
            joined.copy();
        }
        joined.run(p);
        if (!p.isUp) {
            joined.copy();
        }
    } else {
        runEach(joined.first);
        runEach(joined.second);
    }
}

/// What stands behind a filter that goes down can be elsewhere, also for the two kernels.
void CHalfBandJoiner::findPlacesOfJoined(void* plan, CSignalPlaces& places) {
    CJoined& joined = *static_cast<CJoined*>(plan);
    CHalfBandPlan& p = joined.plan;
    for (int32_t c = 0; c < p.channels; ++c) {
        COperation& last = joined.second.operations[c];
        for (void* const operand : joined.first.operations[c].pointers) {
            places.noteFixed(operand);
        }
        for (int32_t j = p.isUp ? 0 : 1; j < kMaxOperands; ++j) {
            places.noteFixed(last.pointers[j]);
        }
        places.noteFixed(p.in[c]);
        if (p.isUp) {
            places.noteFixed(p.out[c]);
        } else {
            places.noteFill(last.pointers[0], p.count);
            places.noteFill(joined.copyFrom[c] != nullptr ? joined.copyTo[c] : p.out[c], p.count);
        }
    }
}

/// Channels often stand where another one stood before. What was to hold the samples in between has room for copies.
bool CHalfBandJoiner::makeApart(CJoined& joined) {
    CHalfBandPlan& plan = joined.plan;
    if (areApart(plan)) {
        return true;
    }
    for (int32_t c = 0; c < plan.channels; ++c) {
        double* const between = joined.first.operations[c].signal(0);
        if (plan.isUp) {
            joined.copyFrom[c] = std::exchange(plan.in[c], between);
            joined.copyTo[c] = between;
        } else {
            joined.copyTo[c] = std::exchange(plan.out[c], between);
            joined.copyFrom[c] = between;
        }
    }
    return areApart(plan);
}

CHalfBandJoiner::CHalfBandJoiner(const CQPLEXContext& context, CInstructionSet set)
    : found_(std::make_unique<CJoined>()),
      interpolate_(context.kernelFunction(KernelName::kInterp2)),
      decimate_(context.kernelFunction(KernelName::kDecim2)),
      run_(set == CInstructionSet::Sse2   ? runHalfBandsSse2
           : set == CInstructionSet::Avx2 ? runHalfBandsAvx2
                                          : runHalfBandsAvx512),
      // Wider vectors would work for lanes that nobody uses.
      runPair_(set == CInstructionSet::Avx512 ? runHalfBandsAvx2 : run_) {
    constexpr const char* kNames[kMostHalfBand][2] = {
        {KernelName::kHalfBand2, KernelName::kHalfBand2Gain},   {KernelName::kHalfBand4, KernelName::kHalfBand4Gain},
        {KernelName::kHalfBand6, KernelName::kHalfBand6Gain},   {KernelName::kHalfBand8, KernelName::kHalfBand8Gain},
        {KernelName::kHalfBand10, KernelName::kHalfBand10Gain}, {KernelName::kHalfBand12, KernelName::kHalfBand12Gain},
        {KernelName::kHalfBand14, KernelName::kHalfBand14Gain}, {KernelName::kHalfBand16, KernelName::kHalfBand16Gain}};
    for (int32_t i = 0; i < kMostHalfBand; ++i) {
        filters_[i] = {context.kernelFunction(kNames[i][0]), context.kernelFunction(kNames[i][1])};
    }
}

CHalfBandJoiner::~CHalfBandJoiner() = default;

bool CHalfBandJoiner::findFilter(CKernelFunction function, CHalfBandPlan& plan, bool& hasGain) const {
    for (int32_t i = 0; i < kMostHalfBand && function != nullptr; ++i) {
        if (function == filters_[i].plain || function == filters_[i].withGain) {
            plan.order = i + 1;
            hasGain = function == filters_[i].withGain;
            return true;
        }
    }
    return false;
}

bool CHalfBandJoiner::takePair(const CRecordedCall& first, const CRecordedCall& second, CHalfBandPlan& plan) const {
    const auto isPlain = [](const CRecordedCall& c) { return c.function && !c.batch && !c.joined; };
    if (!isPlain(first) || !isPlain(second) || first.count != second.count) {
        return false;
    }
    plan.isUp = first.function == interpolate_;
    if (!plan.isUp && second.function != decimate_) {
        return false;
    }
    bool hasGain = false;
    const CRecordedCall& filters = plan.isUp ? second : first;
    const CRecordedCall& steps = plan.isUp ? first : second;
    if (!findFilter(filters.function, plan, hasGain)) {
        return false;
    }
    plan.channels = first.count;
    plan.count = steps.operations[0].count;
    const int32_t link = plan.isUp ? 2 : 1;
    for (int32_t c = 0; c < plan.channels; ++c) {
        const COperation& filter = filters.operations[c];
        const COperation& step = steps.operations[c];
        const bool isLinked = second.operations[c].signal(link) == first.operations[c].signal(0);
        if (!plan.isUp && step.immediate != kAlwaysEven) {
            return false;
        }
        if (!isLinked || !(second.lastReads[c] >> link & 1) || step.count != plan.count ||
            filter.count != 2 * plan.count) {
            return false;
        }
        plan.in[c] = first.operations[c].signal(plan.isUp ? 1 : 2);
        plan.out[c] = second.operations[c].signal(0);
        plan.block[c] = filter.signal(1);
        plan.gain[c] = hasGain ? filter.immediate : 1.0;
    }
    return true;
}

CRunJoiner::CFound CHalfBandJoiner::find(CRecordedCall* calls, int32_t count) {
    CHalfBandPlan plan;
    if (count < 2 || !takePair(calls[0], calls[1], plan)) {
        return {};
    }
    *found_ = {.run = plan.channels <= 2 ? runPair_ : run_, .plan = plan, .first = calls[0], .second = calls[1]};
    return makeApart(*found_) ? CFound{.ahead = 0, .count = 2} : CFound();
}

bool CHalfBandJoiner::plan(CPlanMemory& memory, CRecordedCall& call) {
    auto* const kept = memory.take<CJoined>(1);
    if (kept != nullptr) {
        *kept = *found_;
        call = {.joined = runJoined, .findPlaces = findPlacesOfJoined, .plan = kept};
    }
    return kept != nullptr;
}

}  // namespace tarv
