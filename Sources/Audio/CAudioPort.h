#pragma once

#include <cstdint>

#include "Audio/Processes/CQPLEXContext.h"
#include "Core/CArray.h"

namespace tarv {

/// One channel on a port: which parameters it obeys, and the block that it carries.
struct CAudioChannel {
    int32_t group = 0;
    int32_t element = 0;
    /// Tells a channel from an earlier one of the same group and element that carried another signal. A process that
    /// meets a new serial starts the channel from silence.
    uint64_t serial = 0;
    /// One reference is the port's.
    CBufferHandle handle = kNoBuffer;

    bool isSameAs(const CAudioChannel& other) const {
        return element == other.element && group == other.group && serial == other.serial;
    }
};

/// The serial of a channel whose signal depends on `serial` and on a further thing that can change.
inline uint64_t mixSerial(uint64_t serial, uint64_t further) {
    uint64_t z = serial * 0x9e3779b97f4a7c15u + further + 0x632be59bd9b4e019u;  // the finaliser of SplitMix64
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9u;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebu;
    return z ^ (z >> 31);
}

/// What lies on one input or output of a process during a step: channels with their blocks, the count of samples in
/// each, and the rate in Hz at which they run. Up to 8 channels need no memory of their own.
class CAudioPort {
public:
    /// The count of samples that a port without a link offers: it never limits a step.
    static constexpr int32_t kUnlimited = 99999999;

    CArray<CAudioChannel, 8> channels;
    int32_t samples = kUnlimited;
    double rate = 0.0;

    /// Gives the blocks back.
    void release(CQPLEXContext& context) {
        for (const CAudioChannel& channel : channels) {
            context.releaseReference(channel.handle);
        }
        channels.clear();
    }
    /// Takes the blocks of another port over; what lay here is given back.
    void takeFrom(CAudioPort& other, CQPLEXContext& context) {
        release(context);
        for (const CAudioChannel& channel : other.channels) {
            channels.append(channel);
        }
        samples = other.samples;
        rate = other.rate;
        other.channels.clear();
    }
    /// Adds a channel; the port takes one reference of the block over.
    void add(int32_t group, int32_t element, uint64_t serial, CBufferHandle handle) {
        channels.append({group, element, serial, handle});
    }
};

}  // namespace tarv
