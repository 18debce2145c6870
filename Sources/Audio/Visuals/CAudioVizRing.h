#pragma once

#include <atomic>

#include "Core/CArray.h"

namespace tarv {

/// Pointers from one thread to another in their order, without a lock: one thread puts, one takes. Room is made while
/// neither does.
template <class T>
class CAudioVizRing {
public:
    /// Room for `capacity` pointers; those in it stay.
    void makeRoom(int32_t capacity) {
        CArray<T*, 1> kept;
        while (T* item = take()) {
            kept.append(item);
        }
        slots_.resize(capacity + 1);
        put_ = take_ = 0;
        for (T* item : kept) {
            put(item);
        }
    }
    /// False, with nothing put, when full.
    bool put(T* item) {
        const int32_t at = put_.load(std::memory_order_relaxed);
        const int32_t next = following(at);
        if (next == take_.load(std::memory_order_acquire)) {
            return false;
        }
        slots_[at] = item;
        put_.store(next, std::memory_order_release);
        return true;
    }
    /// Null when empty.
    T* take() {
        const int32_t at = take_.load(std::memory_order_relaxed);
        if (at == put_.load(std::memory_order_acquire)) {
            return nullptr;
        }
        T* item = slots_[at];
        take_.store(following(at), std::memory_order_release);
        return item;
    }
    /// Pointers in it, as the taking thread sees it.
    int32_t count() const {
        const int32_t ahead = put_.load(std::memory_order_acquire) - take_.load(std::memory_order_relaxed);
        return ahead < 0 ? ahead + slots_.count() : ahead;
    }

private:
    int32_t following(int32_t at) const { return at + 1 < slots_.count() ? at + 1 : 0; }

    CArray<T*, 1> slots_;
    std::atomic<int32_t> put_{0};
    std::atomic<int32_t> take_{0};
};

}  // namespace tarv
