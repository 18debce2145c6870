#include "Audio/Kernels/CConvolution.h"

#include <algorithm>

namespace tarv {

CConvolution::CConvolution(int32_t mostTaps, int32_t partition)
    : partition_(partition), mostPartitions_(std::max(1, (mostTaps + partition - 1) / partition)) {
    if (!transform_.setSize(2 * partition)) {
        mostPartitions_ = 0;
        return;
    }
    for (CSet& set : sets_) {
        set.spectra = static_cast<double*>(
            CHeap::alloc(static_cast<size_t>(mostPartitions_) * 2 * static_cast<size_t>(partition) * sizeof(double)));
    }
}

CConvolution::~CConvolution() {
    for (const CSet& set : sets_) {
        CHeap::free(set.spectra);
    }
}

void CConvolution::fill(CSet& set, const double* taps, int32_t count) const {
    const int32_t size = 2 * partition_;
    set.partitions = std::max(1, (count + partition_ - 1) / partition_);
    for (int32_t p = 0; p < set.partitions; ++p) {
        double* const spectrum = set.spectra + p * size;
        for (int32_t i = 0; i < size; ++i) {
            const int32_t tap = p * partition_ + i;
            spectrum[i] = i < partition_ && tap < count ? taps[tap] : 0.0;
        }
        transform_.forward(spectrum, spectrum);
    }
}

/// The set that is neither in use nor posted. It stays free until the next post.
CConvolution::CSet* CConvolution::freeSet() {
    const CLockScope scope(lock_);
    CSet* free = sets_;
    while (free == inUse_ || free == posted_) {
        ++free;
    }
    return free;
}

bool CConvolution::setTaps(const double* taps, int32_t count) {
    if (mostPartitions_ == 0 || count > mostPartitions_ * partition_) {
        return false;
    }
    CSet* const fresh = freeSet();
    fill(*fresh, taps, count);
    const CLockScope scope(lock_);
    posted_ = fresh;
    return true;
}

void CConvolution::acquire() {
    const CLockScope scope(lock_);
    if (posted_ != nullptr) {
        inUse_ = posted_;
        posted_ = nullptr;
    }
}

const double* CConvolution::partitionSpectrum(int32_t index) const {
    return inUse_ && index < inUse_->partitions ? inUse_->spectra + index * 2 * partition_ : nullptr;
}

}  // namespace tarv
