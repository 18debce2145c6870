#pragma once

#include <cstddef>
#include <cstdint>

namespace tarv {

/// A set of addresses in one table with open addressing: adding and removing neither allocates a node nor follows one.
/// Null is no member. No lock; the owner guards it.
class CAddressSet {
public:
    CAddressSet() = default;
    CAddressSet(const CAddressSet&) = delete;
    CAddressSet& operator=(const CAddressSet&) = delete;
    ~CAddressSet();

    /// Allocates when three quarters of the table are taken.
    void insert(const void* address);
    /// Does nothing if the address is no member. An empty set holds no memory of the heap, so that one that is never
    /// destroyed leaves nothing behind in a library that is unloaded.
    void erase(const void* address);
    bool contains(const void* address) const;
    size_t count() const { return count_; }

private:
    static constexpr size_t kFirstRoom = 64;
    // 4 KiB and more: the heap gives such blocks back to the system when the table grows out of them.
    static constexpr size_t kSecondRoom = 512;

    /// Where the search for an address begins.
    size_t homeOf(const void* address) const;
    /// The place of an address, or the empty one where its search ends.
    size_t placeOf(const void* address) const;
    size_t behind(size_t place) const { return (place + 1) & (room_ - 1); }
    void grow();
    void freeTable(const void** places);
    void forgetTable();

    const void* first_[kFirstRoom] = {};
    const void** places_ = first_;
    size_t room_ = kFirstRoom;  ///< a power of two
    size_t count_ = 0;
};

}  // namespace tarv
