#pragma once

#include <cstdint>

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Graph/CChannelList.h"

namespace tarv {

/// What lies on one input or output of a process during a step: channels with their blocks, the count of samples in
/// each, and the rate in Hz at which they run.
class CAudioPort : public CHeapObject {
public:
    /// The count of samples that a port without a link offers: it never limits a step.
    static constexpr int32_t kUnlimited = 99999999;

    /// `room`: channels that lie on the port without a further allocation.
    explicit CAudioPort(int32_t room) : channels(room) {}

    CChannelList channels;
    /// Equal layouts stand for equal lists (groups, elements and serials), so that a process need not compare them.
    uint64_t layout = 0;
    double rate = 0.0;
    int32_t samples = kUnlimited;

    /// Gives the blocks back.
    void release(CQPLEXContext& context) {
        for (const CAudioChannel& channel : channels) {
            context.releaseReference(channel.handle);
        }
        channels.clear();
    }
    /// Takes the blocks of another port over and leaves it empty; what lay here is given back.
    void takeFrom(CAudioPort& other, CQPLEXContext& context) {
        release(context);
        channels.swap(other.channels);
        layout = other.layout;
        rate = other.rate;
        samples = other.samples;
        other.samples = kUnlimited;
    }
    /// Adds a channel; the port takes one reference of the block over.
    void add(int32_t group, int32_t element, uint64_t serial, CBufferHandle handle) {
        channels.append({group, element, serial, handle});
    }
};

}  // namespace tarv
