#include "Core/CAddressSet.h"

#include <algorithm>
#include <utility>

#include "Core/CHeap.h"

namespace tarv {

CAddressSet::~CAddressSet() {
    freeTable(places_);
}

void CAddressSet::freeTable(const void** places) {
    if (places != first_) {
        CHeap::free(places);
    }
}

// Fibonacci hashing: the upper bits of a product depend on all bits of the address, whose lowest are always the same.
size_t CAddressSet::homeOf(const void* address) const {
    const uint64_t product = reinterpret_cast<uintptr_t>(address) * uint64_t{0x9e3779b97f4a7c15};
    return static_cast<size_t>(product >> 32) & (room_ - 1);
}

size_t CAddressSet::placeOf(const void* address) const {
    size_t place = homeOf(address);
    while (places_[place] && places_[place] != address) {
        place = behind(place);
    }
    return place;
}

void CAddressSet::grow() {
    const void** const former = places_;
    const size_t formerRoom = std::exchange(room_, std::max(room_ * 2, kSecondRoom));
    places_ = static_cast<const void**>(CHeap::alloc(room_ * sizeof(void*)));
    std::fill_n(places_, room_, nullptr);
    for (size_t i = 0; i < formerRoom; ++i) {
        if (former[i]) {
            places_[placeOf(former[i])] = former[i];
        }
    }
    freeTable(former);
}

void CAddressSet::insert(const void* address) {
    if (4 * (count_ + 1) > 3 * room_) {
        grow();
    }
    const size_t place = placeOf(address);
    count_ += places_[place] ? 0 : 1;
    places_[place] = address;
}

bool CAddressSet::contains(const void* address) const {
    return address && places_[placeOf(address)] == address;
}

// Members behind the gap move up into it unless that would put them before their home.
void CAddressSet::erase(const void* address) {
    if (!contains(address)) {
        return;
    }
    size_t gap = placeOf(address);
    for (size_t place = behind(gap); places_[place]; place = behind(place)) {
        const size_t home = homeOf(places_[place]);
        const bool isPastGap = ((place - home) & (room_ - 1)) < ((place - gap) & (room_ - 1));
        if (!isPastGap) {
            places_[gap] = places_[place];
            gap = place;
        }
    }
    places_[gap] = nullptr;
    if (--count_ == 0) {
        forgetTable();
    }
}

void CAddressSet::forgetTable() {
    if (places_ != first_) {
        freeTable(places_);
        std::fill_n(first_, kFirstRoom, nullptr);
        places_ = first_;
        room_ = kFirstRoom;
    }
}

}  // namespace tarv
