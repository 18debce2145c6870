#include "Audio/Kernels/CRealTransform.h"

#include <bit>
#include <cmath>
#include <cstring>
#include <numbers>
#include <utility>

namespace tarv {

namespace {

constexpr int32_t kSmallest = 4;
constexpr int32_t kLargest = 1 << 20;

}  // namespace

CRealTransform::~CRealTransform() {
    CHeap::free(cosines_);
    CHeap::free(sines_);
    CHeap::free(reversed_);
}

bool CRealTransform::setSize(int32_t size) {
    const bool isValid = size >= kSmallest && size <= kLargest && std::has_single_bit(static_cast<uint32_t>(size));
    size_ = isValid ? size : 0;
    if (!isValid) {
        return false;
    }
    const int32_t half = size / 2;
    const size_t tableBytes = static_cast<size_t>(half + 1) * sizeof(double);
    cosines_ = static_cast<double*>(CHeap::realloc(cosines_, tableBytes));
    sines_ = static_cast<double*>(CHeap::realloc(sines_, tableBytes));
    reversed_ = static_cast<int32_t*>(CHeap::realloc(reversed_, static_cast<size_t>(half) * sizeof(int32_t)));
    for (int32_t k = 0; k <= half; ++k) {
        const double angle = 2.0 * std::numbers::pi * k / size;
        cosines_[k] = std::cos(angle);
        sines_[k] = std::sin(angle);
    }
    reversed_[0] = 0;
    for (int32_t k = 1; k < half; ++k) {
        reversed_[k] = reversed_[k / 2] / 2 + (k % 2) * (half / 2);
    }
    return true;
}

void CRealTransform::permute(double* data) const {
    for (int32_t k = 0; k < size_ / 2; ++k) {
        const int32_t other = reversed_[k];
        if (other > k) {
            std::swap(data[2 * k], data[2 * other]);
            std::swap(data[2 * k + 1], data[2 * other + 1]);
        }
    }
}

void CRealTransform::transformHalf(double* data, bool isInverse) const {
    permute(data);
    const int32_t count = size_ / 2;
    for (int32_t span = 1; span < count; span *= 2) {
        const int32_t stride = count / span;  // of the table, which is made for the full size
        for (int32_t k = 0; k < span; ++k) {
            const double c = cosines_[k * stride];
            const double s = isInverse ? sines_[k * stride] : -sines_[k * stride];
            for (int32_t i = k; i < count; i += 2 * span) {
                double* const a = data + 2 * i;
                double* const b = data + 2 * (i + span);
                const double re = b[0] * c - b[1] * s;
                const double im = b[0] * s + b[1] * c;
                b[0] = a[0] - re;
                b[1] = a[1] - im;
                a[0] = a[0] + re;
                a[1] = a[1] + im;
            }
        }
    }
}

void CRealTransform::forward(double* spectrum, const double* block) const {
    if (spectrum != block) {
        std::memmove(spectrum, block, static_cast<size_t>(size_) * sizeof(double));
    }
    transformHalf(spectrum, false);
    const double first = spectrum[0];
    spectrum[0] = first + spectrum[1];
    spectrum[1] = first - spectrum[1];
    const int32_t half = size_ / 2;
    for (int32_t k = 1; k <= half / 2; ++k) {
        double* const a = spectrum + 2 * k;
        double* const b = spectrum + 2 * (half - k);
        // Even and odd samples' spectra, from a and the conjugate of b.
        const double evenRe = 0.5 * (a[0] + b[0]);
        const double evenIm = 0.5 * (a[1] - b[1]);
        const double oddRe = 0.5 * (a[1] + b[1]);
        const double oddIm = 0.5 * (b[0] - a[0]);
        const double re = oddRe * cosines_[k] + oddIm * sines_[k];
        const double im = oddIm * cosines_[k] - oddRe * sines_[k];
        a[0] = evenRe + re;
        a[1] = evenIm + im;
        b[0] = evenRe - re;
        b[1] = im - evenIm;
    }
}

void CRealTransform::inverse(double* block, const double* spectrum) const {
    if (block != spectrum) {
        std::memmove(block, spectrum, static_cast<size_t>(size_) * sizeof(double));
    }
    const double first = block[0];
    block[0] = 0.5 * (first + block[1]);
    block[1] = 0.5 * (first - block[1]);
    const int32_t half = size_ / 2;
    for (int32_t k = 1; k <= half / 2; ++k) {
        double* const a = block + 2 * k;
        double* const b = block + 2 * (half - k);
        const double evenRe = 0.5 * (a[0] + b[0]);
        const double evenIm = 0.5 * (a[1] - b[1]);
        const double re = 0.5 * (a[0] - b[0]);
        const double im = 0.5 * (a[1] + b[1]);
        const double oddRe = re * cosines_[k] - im * sines_[k];
        const double oddIm = re * sines_[k] + im * cosines_[k];
        a[0] = evenRe - oddIm;
        a[1] = evenIm + oddRe;
        b[0] = evenRe + oddIm;
        b[1] = oddRe - evenIm;
    }
    transformHalf(block, true);
    const double scale = 1.0 / half;
    for (int32_t i = 0; i < size_; ++i) {
        block[i] = block[i] * scale;
    }
}

}  // namespace tarv
