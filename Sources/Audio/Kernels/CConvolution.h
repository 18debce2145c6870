#pragma once

#include <cstdint>

#include "Audio/Kernels/CRealTransform.h"
#include "Core/CHeap.h"
#include "Platform/Lock.h"

namespace tarv {

/// The taps of a FIR filter as spectra of equal partitions, for convolution by overlap-save (Stockham 1966; partitioned
/// as Kulp 1988). The set in use can be replaced while audio runs: the new one is posted under a lock of this object
/// and used from the next acquire on. Three sets are made in advance: one is in use, one may be posted, and the third
/// is free for the next taps.
class CConvolution : public CHeapObject {
public:
    /// Room for `mostTaps` taps. `partition`: samples of a partition, a power of two from 2.
    CConvolution(int32_t mostTaps, int32_t partition);
    ~CConvolution();
    CConvolution(const CConvolution&) = delete;
    CConvolution& operator=(const CConvolution&) = delete;

    int32_t partition() const { return partition_; }
    /// Partitions of the longest filter; also how many past input spectra a runner must keep.
    int32_t mostPartitions() const { return mostPartitions_; }
    const CRealTransform& transform() const { return transform_; }

    /// Posts new taps. False if there is no room for so many: then the former ones stay. Does not allocate. Any thread,
    /// one at a time.
    bool setTaps(const double* taps, int32_t count);
    /// Uses from now on what was posted last. Audio thread, while no product with the former set is queued.
    void acquire();
    /// Packed spectrum of a partition of the set in use (2 x partition() numbers), or null beyond its end.
    const double* partitionSpectrum(int32_t index) const;

private:
    struct CSet {
        int32_t partitions = 0;
        double* spectra = nullptr;
    };
    void fill(CSet& set, const double* taps, int32_t count) const;
    CSet* freeSet();

    CLock lock_;
    CRealTransform transform_;
    int32_t partition_;
    int32_t mostPartitions_;
    CSet sets_[3];
    CSet* inUse_ = nullptr;
    CSet* posted_ = nullptr;
};

}  // namespace tarv
