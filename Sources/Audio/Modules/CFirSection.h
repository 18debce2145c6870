#pragma once

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/CConvolution.h"
#include "Core/CArray.h"

namespace tarv {

/// A filter section of type 21 on one channel: convolution with its taps, without added latency. Blocks of any length:
/// what has come in of a partition is transformed anew with each block. So, other than with all other sections, where a
/// host cuts its blocks shows in the last bits.
/// Making one allocates; all else does not. Thread: the audio thread, but for setTaps.
class CFirSection : public CHeapObject {
public:
    static constexpr int32_t kPartition = 256;  ///< samples

    /// Room for `mostTaps` taps; silent until the first setTaps.
    CFirSection(CQPLEXContext& context, int32_t mostTaps);
    ~CFirSection();
    CFirSection(const CFirSection&) = delete;
    CFirSection& operator=(const CFirSection&) = delete;

    /// Taps that there is room for, at least as many as asked for.
    int32_t room() const { return convolution_.mostPartitions() * kPartition; }
    /// New taps for the blocks to come; the history stays. Any thread, one at a time.
    void setTaps(const double* taps, int32_t count) { convolution_.setTaps(taps, count); }
    /// Issues the operations of a block of `count` samples; the output has one reference for the caller.
    CBufferHandle run(CBufferHandle in, int32_t count);
    /// Forgets the history.
    void clear();
    /// Goes on where another section stands: what that has heard, as far back as there is room here.
    void takeHistory(const CFirSection& from);

private:
    static constexpr int32_t kSize = 2 * kPartition;  // of a transform
    static constexpr int32_t kBytes = static_cast<int32_t>(sizeof(double));

    CBufferHandle spectrum(int32_t age) const;
    void runPiece(CBufferHandle out, CBufferHandle in, int32_t count);
    void endPartition();

    CQPLEXContext& context_;
    CConvolution convolution_;
    int32_t forward_, inverse_, acquire_, multiply_, multiplyAdd_;
    CBufferHandle transformPlace_;
    CBufferHandle convolutionPlace_;
    CBufferHandle frame_;                // the partition before, then the current one with zeros for what is to come
    CArray<CBufferHandle, 16> spectra_;  // of the frames, newest at `newest_`
    int32_t newest_ = 0;
    int32_t position_ = 0;  // in the current partition
};

}  // namespace tarv
