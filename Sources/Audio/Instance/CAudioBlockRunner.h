#pragma once

#include <cstdint>

#include "Audio/Context/CBufferHandle.h"
#include "Audio/Context/CRunEnds.h"

namespace tarv {

class CAudioInstanceGraph;

/// Hands a host's blocks to the graph: cuts them into runs, widens the inputs to 64 bits, rounds the outputs to the
/// host's format, and repeats the recorded run of the graph while nothing changes. A repeated run reads and writes the
/// host's buffers itself where it can. Audio thread.
class CAudioBlockRunner {
public:
    static constexpr int32_t kMaxHostChannels = 32;

    explicit CAudioBlockRunner(CAudioInstanceGraph& graph) : graph_(graph) {}

    /// Runs one block of any length through the started graph. Null channel pointers, or a null array, are silence on
    /// the way in and dropped on the way out. An input sample that is not finite counts as 0. From the first output
    /// sample on that the host's format cannot hold, the rest of the block is silent, up to the next multiple of
    /// kMaxRun frames, and the graph is reset. In place is allowed. `Sample` is float or double.
    template <class Sample>
    void process(const Sample* const* inputs, Sample* const* outputs, int32_t frames);

    /// Clears `count` outputs of the host; null pointers, or a null array, are left out.
    template <class Sample>
    static void silence(Sample* const* outputs, int32_t count, int32_t frames);

private:
    template <class Sample>
    class CInputs;

    template <class Sample>
    bool run(const Sample* const* inputs, Sample* const* outputs, int32_t offset, int32_t frames);
    template <class Sample>
    void takeInputs(const Sample* const* inputs, int32_t frames);
    template <class Sample>
    bool repeat(const Sample* const* inputs, Sample* const* outputs, int32_t offset, int32_t frames);
    template <class Sample>
    void link();
    template <class Sample>
    uint32_t giveDirectly(Sample* const* outputs, int32_t offset, int32_t frames) const;
    template <class Sample>
    bool giveOutputs(Sample* const* outputs, uint32_t direct, int32_t offset, int32_t frames);
    int32_t pieceLength(int32_t left) const;
    bool isSteady(const void* const* inputs, CRunEnds::CFormat format, int32_t frames) const;
    bool takeQuietChanges();
    bool isLong(int32_t frames) const;
    void noteRun(CRunEnds::CFormat format, int32_t frames, uint64_t deliveries);
    void holdInputs();
    void releaseInputs();

    CAudioInstanceGraph& graph_;
    // The last run of the graph: a run like it may repeat it.
    CRunEnds::CFormat format_ = CRunEnds::CFormat::None;  ///< of the host's samples
    int32_t frames_ = 0;
    uint64_t deliveries_ = 0;                      ///< of the collector, before that run
    double* inputs_[kMaxHostChannels] = {};        ///< signals by host channel; null: the host gave none
    CBufferHandle blocks_[kMaxHostChannels] = {};  ///< of the inputs, in the run under way
    bool isRead_[kMaxHostChannels] = {};           ///< the run reads the input
    double* outputs_[kMaxHostChannels] = {};       ///< null: silence
    CRunEnds ends_;                                ///< of the recorded run, once it is repeated
};

}  // namespace tarv
