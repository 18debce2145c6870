#include "Audio/Kernels/CConvolution.h"

#include <algorithm>

namespace tarv {

CConvolution::CConvolution(int32_t mostTaps, int32_t partition)
    : partition_(partition), mostPartitions_(std::max(1, (mostTaps + partition - 1) / partition)) {
    if (!transform_.setSize(2 * partition)) {
        mostPartitions_ = 0;
    }
}

CConvolution::~CConvolution() {
    destroySet(inUse_);
    destroySet(posted_);
    destroySet(retired_);
}

CConvolution::CSet* CConvolution::makeSet(const double* taps, int32_t count) const {
    const int32_t size = 2 * partition_;
    auto* const set = static_cast<CSet*>(CHeap::alloc(sizeof(CSet)));
    set->partitions = std::min(mostPartitions_, std::max(1, (count + partition_ - 1) / partition_));
    set->spectra = static_cast<double*>(CHeap::alloc(static_cast<size_t>(set->partitions * size) * sizeof(double)));
    for (int32_t p = 0; p < set->partitions; ++p) {
        double* const spectrum = set->spectra + p * size;
        for (int32_t i = 0; i < size; ++i) {
            const int32_t tap = p * partition_ + i;
            spectrum[i] = i < partition_ && tap < count ? taps[tap] : 0.0;
        }
        transform_.forward(spectrum, spectrum);
    }
    return set;
}

void CConvolution::destroySet(CSet* set) {
    if (set) {
        CHeap::free(set->spectra);
        CHeap::free(set);
    }
}

void CConvolution::setTaps(const double* taps, int32_t count) {
    if (mostPartitions_ == 0) {
        return;
    }
    CSet* const fresh = makeSet(taps, count);
    lock_.enter();
    CSet* const skipped = posted_;
    CSet* const old = retired_;
    posted_ = fresh;
    retired_ = nullptr;
    lock_.leave();
    destroySet(skipped);
    destroySet(old);
}

void CConvolution::acquire() {
    const CLockScope scope(lock_);
    // With one set still to be deleted there is no place for another: the new one waits for the next post.
    if (posted_ && !retired_) {
        retired_ = inUse_;
        inUse_ = posted_;
        posted_ = nullptr;
    }
}

const double* CConvolution::partitionSpectrum(int32_t index) const {
    return inUse_ && index < inUse_->partitions ? inUse_->spectra + index * 2 * partition_ : nullptr;
}

}  // namespace tarv
