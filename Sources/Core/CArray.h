#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

#include "Core/CHeap.h"

namespace tarv {

/// Growable array with N inline elements; capacity goes 0, 1, 3, 7, 15 ... and elements lie inline while it is at most
/// N. Never shrinks by itself. Elements may be any movable type. Not safe by itself: the owner guards it.
template <class T, int32_t N = 4>
class CArray {
    static_assert(alignof(T) <= 8, "blocks of the pool heap are 8-aligned");

public:
    CArray() = default;
    CArray(const CArray& other) { *this = other; }
    CArray(CArray&& other) noexcept { *this = std::move(other); }
    ~CArray();
    CArray& operator=(const CArray& other);
    CArray& operator=(CArray&& other) noexcept;

    int32_t count() const { return count_; }
    int32_t capacity() const { return capacity_; }
    bool isEmpty() const { return count_ == 0; }
    bool isInline() const { return data_ == inlineData(); }
    T* data() { return data_; }
    const T* data() const { return data_; }
    T& operator[](int32_t i) { return data_[i]; }
    const T& operator[](int32_t i) const { return data_[i]; }
    T& last() { return data_[count_ - 1]; }
    T* begin() { return data_; }
    T* end() { return data_ + count_; }
    const T* begin() const { return data_; }
    const T* end() const { return data_ + count_; }

    void append(T value);
    /// A run of elements that lies outside this array.
    void append(const T* items, int32_t count);
    void insert(int32_t index, T value);
    void removeAt(int32_t index);
    void removeLast() { resize(count_ - 1); }
    /// New elements are value-initialised.
    void resize(int32_t count);
    /// New elements hold anything: for those who write all of them next.
    void resizeUnset(int32_t count);
    /// Changes the capacity to exactly `capacity` (not below the count); back to inline at N or less.
    void reserve(int32_t capacity);
    void clear() { resize(0); }
    /// Position of the first equal element, or -1.
    int32_t indexOf(const T& value) const;

private:
    T* inlineData() { return reinterpret_cast<T*>(inline_); }
    const T* inlineData() const { return reinterpret_cast<const T*>(inline_); }
    void grow() {
        if (count_ == capacity_) {
            reserve(capacity_ * 2 + 1);
        }
    }

    int32_t count_ = 0;
    alignas(T) unsigned char inline_[N * sizeof(T)];
    T* data_ = inlineData();
    int32_t capacity_ = 0;
};

/// Array that owns what its pointers point to and deletes it from last to first.
template <class T, int32_t N = 4>
class COwnedArray : public CArray<T*, N> {
public:
    COwnedArray() = default;
    COwnedArray(const COwnedArray&) = delete;
    COwnedArray& operator=(const COwnedArray&) = delete;
    ~COwnedArray() { deleteAll(); }
    void deleteAll();
};

template <class T, int32_t N>
CArray<T, N>::~CArray() {
    resize(0);
    if (!isInline()) {
        CHeap::free(data_);
    }
}

template <class T, int32_t N>
CArray<T, N>& CArray<T, N>::operator=(const CArray& other) {
    if (this != &other) {
        resize(0);
        if (other.count_ > capacity_) {
            reserve(other.count_);
        }
        for (const T& item : other) {
            new (data_ + count_) T(item);
            ++count_;
        }
    }
    return *this;
}

template <class T, int32_t N>
CArray<T, N>& CArray<T, N>::operator=(CArray&& other) noexcept {
    if (this != &other) {
        resize(0);
        if (!other.isInline()) {
            if (!isInline()) {
                CHeap::free(data_);
            }
            data_ = std::exchange(other.data_, other.inlineData());
            count_ = std::exchange(other.count_, 0);
            capacity_ = std::exchange(other.capacity_, 0);
        } else {
            if (other.count_ > capacity_) {
                reserve(other.count_);
            }
            for (T& item : other) {
                new (data_ + count_) T(std::move(item));
                ++count_;
            }
            other.resize(0);
        }
    }
    return *this;
}

template <class T, int32_t N>
void CArray<T, N>::append(T value) {
    grow();
    new (data_ + count_) T(std::move(value));
    ++count_;
}

template <class T, int32_t N>
void CArray<T, N>::append(const T* items, int32_t count) {
    if (count > capacity_ - count_) {
        reserve(std::max(count_ + count, capacity_ < INT32_MAX / 2 ? capacity_ * 2 : INT32_MAX));
    }
    std::uninitialized_copy_n(items, count, data_ + count_);
    count_ += count;
}

template <class T, int32_t N>
void CArray<T, N>::insert(int32_t index, T value) {
    append(std::move(value));
    for (int32_t i = count_ - 1; i > index; --i) {
        std::swap(data_[i], data_[i - 1]);
    }
}

template <class T, int32_t N>
void CArray<T, N>::removeAt(int32_t index) {
    for (int32_t i = index; i + 1 < count_; ++i) {
        data_[i] = std::move(data_[i + 1]);
    }
    removeLast();
}

template <class T, int32_t N>
void CArray<T, N>::resize(int32_t count) {
    if constexpr (std::is_trivially_destructible_v<T>) {
        count_ = count_ > count ? count : count_;
    } else {
        while (count_ > count) {
            data_[--count_].~T();
        }
    }
    if (count > capacity_) {
        reserve(count);
    }
    if constexpr (std::is_trivially_default_constructible_v<T>) {
        // A call for a few bytes takes longer than they do.
        if (count_ + 1 == count) {
            data_[count_++] = T();
        } else if (count_ + 2 == count) {
            data_[count_++] = T();
            data_[count_++] = T();
        } else if (count_ < count) {
            std::fill_n(data_ + count_, count - count_, T());
            count_ = count;
        }
    }
    while (count_ < count) {
        new (data_ + count_) T();
        ++count_;
    }
}

template <class T, int32_t N>
void CArray<T, N>::resizeUnset(int32_t count) {
    static_assert(std::is_trivially_default_constructible_v<T> && std::is_trivially_destructible_v<T>);
    if (count > capacity_) {
        reserve(count);
    }
    count_ = count;
}

template <class T, int32_t N>
void CArray<T, N>::reserve(int32_t capacity) {
    if (capacity < count_) {
        capacity = count_;
    }
    T* target = capacity <= N ? inlineData() : static_cast<T*>(CHeap::alloc(sizeof(T) * static_cast<size_t>(capacity)));
    if (target != data_) {
        if constexpr (std::is_trivially_copyable_v<T>) {
            std::copy_n(data_, count_, target);
        } else {
            for (int32_t i = 0; i < count_; ++i) {
                new (target + i) T(std::move(data_[i]));
                data_[i].~T();
            }
        }
        if (!isInline()) {
            CHeap::free(data_);
        }
        data_ = target;
    }
    capacity_ = capacity;
}

template <class T, int32_t N>
int32_t CArray<T, N>::indexOf(const T& value) const {
    for (int32_t i = 0; i < count_; ++i) {
        if (data_[i] == value) {
            return i;
        }
    }
    return -1;
}

template <class T, int32_t N>
void COwnedArray<T, N>::deleteAll() {
    while (!this->isEmpty()) {
        T* item = this->last();
        this->removeLast();
        delete item;
    }
}

}  // namespace tarv
