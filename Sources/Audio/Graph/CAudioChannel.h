#pragma once

#include <cstdint>

#include "Audio/Context/CBufferHandle.h"

namespace tarv {

/// One channel on a port: the group and element whose parameters apply to it, and its block of samples.
struct CAudioChannel {
    int32_t group = 0;
    int32_t element = 0;
    /// Differs from that of an earlier channel of the same group and element that carried another signal. A process
    /// that meets a new serial starts the channel from silence.
    uint64_t serial = 0;
    /// The port owns one reference.
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

}  // namespace tarv
