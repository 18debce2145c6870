#pragma once

#include <cstdint>
#include <utility>

#include "Audio/Graph/CAudioChannel.h"
#include "Core/CHeap.h"

namespace tarv {

/// The channels of a port. Two lists are exchanged by their pointers, so that a link costs the same for any count of
/// channels. Never gives memory back; grows only when there are more channels than ever.
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

}  // namespace tarv
