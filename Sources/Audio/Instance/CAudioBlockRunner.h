#pragma once

#include <cstdint>

#include "Audio/Context/CBufferHandle.h"

namespace tarv {

class CAudioInstanceGraph;

/// Hands a host's blocks to the graph: cuts them into runs, widens the inputs to 64 bits, rounds the outputs to the
/// host's format, and repeats the recorded run of the graph while nothing changes. Audio thread.
class CAudioBlockRunner {
public:
    static constexpr int32_t kMaxHostChannels = 32;

    explicit CAudioBlockRunner(CAudioInstanceGraph& graph) : graph_(graph) {}

    /// Runs one block of any length through the started graph. Null channel pointers, or a null array, are silence on
    /// the way in and dropped on the way out. An input sample that is not finite counts as 0. From the first output
    /// sample on that the host's format cannot hold, the rest of the run is silent and the graph is reset. In place is
    /// allowed. `Sample` is float or double.
    template <class Sample>
    void process(const Sample* const* inputs, Sample* const* outputs, int32_t frames);

    /// Clears `count` outputs of the host; null pointers, or a null array, are left out.
    template <class Sample>
    static void silence(Sample* const* outputs, int32_t count, int32_t frames);

private:
    template <class Sample>
    class CInputs;

    template <class Sample>
    void run(const Sample* const* inputs, Sample* const* outputs, int32_t offset, int32_t frames);
    template <class Sample>
    void takeInputs(const Sample* const* inputs, int32_t frames);
    template <class Sample>
    void repeat(const Sample* const* inputs, int32_t offset, int32_t frames);
    template <class Sample>
    void giveOutputs(Sample* const* outputs, int32_t offset, int32_t frames);
    int32_t pieceLength(int32_t left) const;
    bool isSteady(const void* const* inputs, int32_t frames) const;
    bool takeQuietChanges();
    bool isLong(int32_t frames) const;
    void noteRun(int32_t frames, uint64_t deliveries);
    void holdInputs();
    void releaseInputs();

    CAudioInstanceGraph& graph_;
    // The last run of the graph: a run like it may repeat it.
    int32_t frames_ = 0;
    uint64_t deliveries_ = 0;                       ///< of the collector, before that run
    double* inputs_[kMaxHostChannels] = {};         ///< signals by host channel; null: the host gave none
    CBufferHandle blocks_[kMaxHostChannels] = {};   ///< of the inputs, in the run under way
    bool isRead_[kMaxHostChannels] = {};            ///< the run reads the input
    const double* outputs_[kMaxHostChannels] = {};  ///< null: silence
};

}  // namespace tarv
