#pragma once

#include <cstdint>
#include <span>

#include "Audio/Context/CEndKernel.h"
#include "Audio/Context/CSignalPlaces.h"

namespace tarv {

class CRecordedRun;

/// Lets a recorded run read the samples of a host where they stand and write where the host wants them, without a copy
/// before and behind it: where one call that can do so reads an input, and one fills an output. All inputs that are
/// read in that way have been read when the first output is written, so that a host may give one buffer for both.
/// Audio thread; allocates nothing.
class CRunEnds {
public:
    /// Inputs and outputs beyond these are copied.
    static constexpr int32_t kMostChannels = 8;

    enum class CFormat { None, Floats, Doubles };

    /// Nothing is linked.
    void clear() { format_ = CFormat::None; }
    /// The format of the last link; None behind clear.
    CFormat format() const { return format_; }
    /// Links `run`, which has ended, to a host with such samples, up to the next recording. `inputs` and `outputs` are
    /// its signals by channel of the host, of `count` samples; null: there is none, or somebody else reads it.
    void link(CRecordedRun& run, std::span<const CEndKernel> kernels, CFormat format,
              std::span<const double* const> inputs, std::span<const double* const> outputs, int32_t count);

    /// Whether the run reads the input where `setInput` says, which is called before each run.
    bool takesInput(int32_t channel) const { return channel < kMostChannels && isInput_[channel]; }
    void setInput(int32_t channel, const void* samples) const { inputs_[channel].readFrom(samples); }
    /// Whether the run writes the output where `setOutput` says, which is called before each run.
    bool givesOutput(int32_t channel) const { return channel < kMostChannels && isOutput_[channel]; }
    void setOutput(int32_t channel, double* samples) const { outputs_[channel].fill(samples); }

private:
    int32_t linkInputs(CRecordedRun& run, std::span<const CEndKernel> kernels);
    void linkOutputs(int32_t lastInput);

    CFormat format_ = CFormat::None;
    bool isInput_[kMostChannels] = {};
    bool isOutput_[kMostChannels] = {};
    CSignalPlaces inputs_[kMostChannels];
    CSignalPlaces outputs_[kMostChannels];
};

}  // namespace tarv
