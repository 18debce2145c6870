#pragma once

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/CConvolution.h"
#include "Core/CArray.h"

namespace tarv {

/// A filter section of type 21 on one channel: convolution with its taps, without added latency. Blocks of any length:
/// each block transforms again what has arrived of a partition. So, unlike with other sections, the last bits depend on
/// where a host cuts its blocks.
/// Making one allocates; no other call does. Thread: the audio thread, but for setTaps.
class CFirSection : public CHeapObject {
public:
    static constexpr int32_t kPartition = 256;  ///< samples

    /// Room for `mostTaps` taps; silent until the first setTaps, and always if the context has no buffers left for it.
    CFirSection(CQPLEXContext& context, int32_t mostTaps);
    ~CFirSection();
    CFirSection(const CFirSection&) = delete;
    CFirSection& operator=(const CFirSection&) = delete;

    /// Taps that there is room for, at least as many as asked for.
    int32_t room() const { return convolution_.mostPartitions() * kPartition; }
    /// New taps for the blocks to come; the history stays. False, and the former taps stay, if there is no room for so
    /// many. Any thread, one at a time.
    bool setTaps(const double* taps, int32_t count) { return convolution_.setTaps(taps, count); }
    /// Issues the operations of a block of `count` samples; the output has one reference for the caller.
    CBufferHandle run(CBufferHandle in, int32_t count);
    /// Forgets the history.
    void clear();
    /// Copies the history and the position of another section, as far back as there is room here.
    void takeHistory(const CFirSection& from);

private:
    static constexpr int32_t kSize = 2 * kPartition;  // of a transform
    static constexpr int32_t kBytes = static_cast<int32_t>(sizeof(double));
    // Long filters have hundreds of spectra; the context has 4095 buffers, and a handle reaches 512 KiB far.
    static constexpr int32_t kSpectraPerBuffer = 64;

    void takeSpectra();
    CBufferHandle spectrum(int32_t age) const;
    void runPiece(CBufferHandle out, CBufferHandle in, int32_t count);
    void endPartition();

    CQPLEXContext& context_;
    CConvolution convolution_;
    int32_t forward_, inverse_, acquire_, multiply_, multiplyAdd_;
    CBufferHandle transformPlace_;
    CBufferHandle convolutionPlace_;
    CBufferHandle frame_;                // the partition before, then the current one with zeros for what is to come
    CArray<CBufferHandle, 16> spectra_;  // of the frames, kSpectraPerBuffer in each buffer, newest at `newest_`
    bool isWhole_ = true;                // all buffers were there
    int32_t newest_ = 0;
    int32_t position_ = 0;  // in the current partition
};

}  // namespace tarv
