#pragma once

#include <cstdint>
#include <utility>

#include "Audio/Context/CQPLEXContext.h"

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

/// The channels of a port. Handing a list on is an exchange of two pointers, so that a link costs the same however
/// many channels it carries. Never gives memory back; grows only when there are more channels than ever.
class CChannelList {
public:
    explicit CChannelList(int32_t room) { grow(room); }
    ~CChannelList() { CHeap::free(channels_); }
    CChannelList(const CChannelList&) = delete;
    CChannelList& operator=(const CChannelList&) = delete;

    int32_t count() const { return count_; }
    bool isEmpty() const { return count_ == 0; }
    CAudioChannel& operator[](int32_t i) { return channels_[i]; }
    const CAudioChannel& operator[](int32_t i) const { return channels_[i]; }
    CAudioChannel* begin() { return channels_; }
    CAudioChannel* end() { return channels_ + count_; }
    const CAudioChannel* begin() const { return channels_; }
    const CAudioChannel* end() const { return channels_ + count_; }
    void append(const CAudioChannel& channel) {
        if (count_ == room_) {
            grow(2 * room_ + 1);
        }
        channels_[count_++] = channel;
    }
    void clear() { count_ = 0; }
    void swap(CChannelList& other) {
        std::swap(channels_, other.channels_);
        std::swap(count_, other.count_);
        std::swap(room_, other.room_);
    }

private:
    void grow(int32_t room) {
        channels_ =
            static_cast<CAudioChannel*>(CHeap::realloc(channels_, static_cast<size_t>(room) * sizeof(CAudioChannel)));
        room_ = room;
    }

    CAudioChannel* channels_ = nullptr;
    int32_t count_ = 0;
    int32_t room_ = 0;
};

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
