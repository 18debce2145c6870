#pragma once

#include "Audio/Graph/CAudioPort.h"
#include "Core/CArray.h"

namespace tarv {

/// A crossfade from the ports of one path through a process to those of another, one ramp for each channel. Audio
/// thread. Allocates only when there are more channels than ever.
class CPortFade {
public:
    CPortFade() { ramps_.reserve(kUsualChannels); }

    /// A fade over `samples`, 1 and up; one that runs ends.
    void start(int32_t samples, CQPLEXContext& context);
    bool isRunning() const { return left_ > 0; }
    /// Samples until the end.
    int32_t left() const { return left_; }
    /// Whether both ports carry the same channels, at one rate and of one length.
    static bool isAlike(const CAudioPort& a, const CAudioPort& b);
    /// The next samples of port number `port` (0 and up, in order, each once between two calls of advance): the blocks
    /// of `target` become the mix of `from` and `to`, either of which may be `target`. The ports are alike.
    void mix(CAudioPort& target, const CAudioPort& from, const CAudioPort& to, CQPLEXContext& context);
    /// Goes on by the samples that were mixed; the last of them end the fade.
    void advance(int32_t samples, CQPLEXContext& context);
    void end(CQPLEXContext& context);

private:
    static constexpr int32_t kUsualChannels = 32;

    CArray<CBufferHandle, 8> ramps_;  // in the order in which mix meets the channels
    int32_t position_ = 0;            // of the next channel
    int32_t length_ = 0;
    int32_t left_ = 0;
};

}  // namespace tarv
