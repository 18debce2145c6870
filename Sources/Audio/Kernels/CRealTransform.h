#pragma once

#include <cstdint>

#include "Core/CHeap.h"

namespace tarv {

/// Fourier transform of a block of real numbers, with its tables.
///
/// Packed spectrum of a block of n: n numbers, in order the real parts of the bins 0 and n/2, then real and imaginary
/// part of the bins 1 to n/2 - 1. Radix 2, a complex transform of half the size (Press et al., Numerical
/// Recipes, 12.3). Made and resized outside the audio thread; forward and inverse: any thread, no allocation.
class CRealTransform : public CHeapObject {
public:
    CRealTransform() = default;
    ~CRealTransform();
    CRealTransform(const CRealTransform&) = delete;
    CRealTransform& operator=(const CRealTransform&) = delete;

    /// Makes the tables for blocks of `size`, a power of two from 4 to 2^20; another size gives false and no tables.
    [[nodiscard]] bool setSize(int32_t size);
    /// 0 without tables.
    int32_t size() const { return size_; }

    /// Both take `size()` numbers; destination and source may be the same. The inverse of the forward transform is the
    /// block itself: all scaling is in the inverse.
    void forward(double* spectrum, const double* block) const;
    void inverse(double* block, const double* spectrum) const;

private:
    void transformHalf(double* data, bool isInverse) const;
    void permute(double* data) const;

    int32_t size_ = 0;
    double* cosines_ = nullptr;  // of 2 pi k / size, k from 0 to size / 2
    double* sines_ = nullptr;
    int32_t* reversed_ = nullptr;  // bit-reversed places of the half-size transform
};

}  // namespace tarv
