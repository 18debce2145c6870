#include "Audio/Modules/CFirSection.h"

#include <algorithm>

#include "Audio/Kernels/KernelNames.h"

namespace tarv {

CFirSection::CFirSection(CQPLEXContext& context, int32_t mostTaps)
    : context_(context),
      convolution_(mostTaps, kPartition),
      forward_(context.findKernel(KernelName::kRdftF)),
      inverse_(context.findKernel(KernelName::kRdftI)),
      acquire_(context.findKernel(KernelName::kConvAcquire)),
      multiply_(context.findKernel(KernelName::kConvMult)),
      multiplyAdd_(context.findKernel(KernelName::kConvMultAdd)),
      transformPlace_(context.takeBuffer(sizeof(void*))),
      convolutionPlace_(context.takeBuffer(sizeof(void*))),
      frame_(context.takeBuffer(kSize * kBytes)) {
    takeSpectra();
    isWhole_ = isWhole_ && transformPlace_ != kNoBuffer && convolutionPlace_ != kNoBuffer && frame_ != kNoBuffer;
    if (isWhole_) {
        *static_cast<const CRealTransform**>(context.data(transformPlace_)) = &convolution_.transform();
        *static_cast<CConvolution**>(context.data(convolutionPlace_)) = &convolution_;
    }
    clear();
}

void CFirSection::takeSpectra() {
    for (int32_t left = convolution_.mostPartitions(); left > 0; left -= kSpectraPerBuffer) {
        spectra_.append(context_.takeBuffer(std::min(left, kSpectraPerBuffer) * kSize * kBytes));
        isWhole_ = isWhole_ && spectra_.last() != kNoBuffer;
    }
}

CFirSection::~CFirSection() {
    // Queued operations read what this object owns.
    context_.flush();
    context_.releaseReference(transformPlace_);
    context_.releaseReference(convolutionPlace_);
    context_.releaseReference(frame_);
    for (const CBufferHandle handle : spectra_) {
        context_.releaseReference(handle);
    }
}

void CFirSection::clear() {
    const int32_t zero = context_.commonKernel(CCommonKernel::Fill0);
    context_.issue(zero, kSize, 0.0, {frame_});
    for (int32_t age = 0; age < convolution_.mostPartitions(); ++age) {
        context_.issue(zero, kSize, 0.0, {spectrum(age)});
    }
    position_ = 0;
}

void CFirSection::takeHistory(const CFirSection& from) {
    const int32_t copy = context_.commonKernel(CCommonKernel::Copy);
    context_.issue(copy, kSize, 0.0, {frame_, from.frame_});
    for (int32_t age = 0; age < convolution_.mostPartitions(); ++age) {
        if (age < from.convolution_.mostPartitions()) {
            context_.issue(copy, kSize, 0.0, {spectrum(age), from.spectrum(age)});
        } else {
            context_.issue(context_.commonKernel(CCommonKernel::Fill0), kSize, 0.0, {spectrum(age)});
        }
    }
    position_ = from.position_;
}

CBufferHandle CFirSection::spectrum(int32_t age) const {
    const int32_t place = (newest_ + age) % convolution_.mostPartitions();
    return CQPLEXContext::offsetBy(spectra_[place / kSpectraPerBuffer], place % kSpectraPerBuffer * kSize * kBytes);
}

CBufferHandle CFirSection::run(CBufferHandle in, int32_t count) {
    const CBufferHandle out = context_.takeSignal(count);
    if (!isWhole_) {
        context_.issue(context_.commonKernel(CCommonKernel::Fill0), count, 0.0, {out});
        return out;
    }
    context_.issue(acquire_, 0, 0.0, {convolutionPlace_});
    for (int32_t done = 0; done < count;) {
        const int32_t piece = std::min(count - done, kPartition - position_);
        runPiece(CQPLEXContext::offsetBy(out, done * kBytes), CQPLEXContext::offsetBy(in, done * kBytes), piece);
        done += piece;
    }
    return out;
}

void CFirSection::runPiece(CBufferHandle out, CBufferHandle in, int32_t count) {
    const int32_t copy = context_.commonKernel(CCommonKernel::Copy);
    const int32_t place = (kPartition + position_) * kBytes;
    context_.issue(copy, count, 0.0, {CQPLEXContext::offsetBy(frame_, place), in});
    context_.issue(forward_, kSize, 0.0, {spectrum(0), transformPlace_, frame_});
    const CBufferHandle sum = context_.takeSignal(kSize);
    context_.issue(multiply_, kSize, 0.0, {sum, convolutionPlace_, spectrum(0)});
    for (int32_t age = 1; age < convolution_.mostPartitions(); ++age) {
        context_.issue(multiplyAdd_, kSize, age, {sum, convolutionPlace_, spectrum(age)});
    }
    context_.issue(inverse_, kSize, 0.0, {sum, transformPlace_, sum});
    context_.issue(copy, count, 0.0, {out, CQPLEXContext::offsetBy(sum, place)});
    context_.releaseReference(sum);
    position_ += count;
    if (position_ == kPartition) {
        endPartition();
    }
}

void CFirSection::endPartition() {
    const CBufferHandle current = CQPLEXContext::offsetBy(frame_, kPartition * kBytes);
    context_.issue(context_.commonKernel(CCommonKernel::Copy), kPartition, 0.0, {frame_, current});
    context_.issue(context_.commonKernel(CCommonKernel::Fill0), kPartition, 0.0, {current});
    // The oldest spectrum's place takes the next frame's.
    newest_ = (newest_ + convolution_.mostPartitions() - 1) % convolution_.mostPartitions();
    position_ = 0;
}

}  // namespace tarv
