#pragma once

#include <cstdint>

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Graph/CChannelList.h"

namespace tarv {

/// One input or output of a process during a step: channels with their blocks, the count of samples in each, and the
/// rate in Hz at which they run. Audio thread. Allocates only when there are more channels than ever.
class CAudioPort : public CHeapObject {
public:
    /// The count of samples that a port without a link offers: it never limits a step.
    static constexpr int32_t kUnlimited = 99999999;

    /// `room`: channels that the port takes without a further allocation.
    explicit CAudioPort(int32_t room) : channels(room) {}

    CChannelList channels;
    /// Equal for equal lists of groups, elements and serials, so that a process need not compare them.
    uint64_t layout = 0;
    double rate = 0.0;
    int32_t samples = kUnlimited;

    /// Releases the blocks.
    void release(CQPLEXContext& context) {
        for (const CAudioChannel& channel : channels) {
            context.releaseReference(channel.handle);
        }
        channels.clear();
    }
    /// Releases the blocks and takes those of another port, which is empty then.
    void takeFrom(CAudioPort& other, CQPLEXContext& context) {
        release(context);
        channels.swap(other.channels);
        layout = other.layout;
        rate = other.rate;
        samples = other.samples;
        other.samples = kUnlimited;
    }
    /// Adds a channel. The port owns the reference of the block that the caller had.
    void add(int32_t group, int32_t element, uint64_t serial, CBufferHandle handle) {
        channels.append({group, element, serial, handle});
    }
};

}  // namespace tarv
