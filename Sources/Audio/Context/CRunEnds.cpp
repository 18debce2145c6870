#include "Audio/Context/CRunEnds.h"

#include <algorithm>

#include "Audio/Context/CRecordedRun.h"

namespace tarv {

namespace {

/// Finds the places of the first signals; a signal that is null or stands there twice has none.
template <size_t N>
void findPlaces(CRecordedRun& run, std::span<const CEndKernel> kernels, std::span<const double* const> signals,
                int32_t count, CSignalPlaces (&places)[N]) {
    for (size_t i = 0; i < N; ++i) {
        places[i] = {};
        const double* const signal = i < signals.size() ? signals[i] : nullptr;
        if (signal != nullptr && std::count(signals.begin(), signals.end(), signal) == 1) {
            places[i] = {signal, count};
            run.findPlaces(places[i], kernels);
        }
    }
}

}  // namespace

void CRunEnds::link(CRecordedRun& run, std::span<const CEndKernel> kernels, CFormat format,
                    std::span<const double* const> inputs, std::span<const double* const> outputs, int32_t count) {
    format_ = format;
    findPlaces(run, kernels, inputs, count, inputs_);
    findPlaces(run, kernels, outputs, count, outputs_);
    linkOutputs(linkInputs(run, kernels));
}

/// A call takes all of its inputs from the host or none. Returns the last call that does so, or -1.
int32_t CRunEnds::linkInputs(CRecordedRun& run, std::span<const CEndKernel> kernels) {
    int32_t last = -1;
    std::fill(std::begin(isInput_), std::end(isInput_), false);
    for (int32_t first = 0; first < kMostChannels; ++first) {
        if (isInput_[first] || !inputs_[first].isReadAlone()) {
            continue;
        }
        const int32_t call = inputs_[first].call();
        const auto isOfCall = [&](const CSignalPlaces& input) { return input.isReadAlone() && input.call() == call; };
        const auto alike = std::count_if(std::begin(inputs_), std::end(inputs_), isOfCall);
        if (!run.replaceKernel(call, kernels, static_cast<int32_t>(alike), format_ == CFormat::Floats)) {
            continue;
        }
        for (int32_t i = first; i < kMostChannels; ++i) {
            isInput_[i] = isInput_[i] || isOfCall(inputs_[i]);
        }
        last = std::max(last, call);
    }
    return last;
}

void CRunEnds::linkOutputs(int32_t lastInput) {
    for (int32_t i = 0; i < kMostChannels; ++i) {
        isOutput_[i] = format_ == CFormat::Doubles && outputs_[i].isFilledAlone() && outputs_[i].call() > lastInput;
    }
}

}  // namespace tarv
