#include "Audio/Kernels/ConvolutionKernels.h"

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/CConvolution.h"
#include "Audio/Kernels/FourierKernels.h"
#include "Audio/Kernels/KernelNames.h"

namespace tarv {

namespace {

CConvolution& convolutionOf(const COperation& operation, int32_t operand) {
    return **operation.operand<CConvolution*>(operand);
}

/// Null also where `count` is not that of the convolution's spectra.
const double* partitionOf(const COperation& operation) {
    const CConvolution& convolution = convolutionOf(operation, 1);
    const bool isSized = operation.count == convolution.transform().size();
    return isSized ? convolution.partitionSpectrum(static_cast<int32_t>(operation.immediate)) : nullptr;
}

}  // namespace

void registerConvolutionKernels(CQPLEXContext& context) {
    context.registerKernel(KernelName::kConvAcquire, kernelConvolutionAcquire, 1, 1);
    context.registerKernel(KernelName::kConvMult, kernelConvolutionMultiply, 3, 1);
    context.registerKernel(KernelName::kConvMultAdd, kernelConvolutionMultiplyAdd, 3, 1);
}

void kernelConvolutionAcquire(COperation& operation) {
    convolutionOf(operation, 0).acquire();
}

void kernelConvolutionMultiply(COperation& operation) {
    const double* const partition = partitionOf(operation);
    if (partition) {
        multiplySpectra(operation.signal(0), operation.signal(2), partition, operation.count);
        return;
    }
    for (int32_t i = 0; i < operation.count; ++i) {
        operation.signal(0)[i] = 0.0;
    }
}

void kernelConvolutionMultiplyAdd(COperation& operation) {
    if (const double* const partition = partitionOf(operation)) {
        multiplyAddSpectra(operation.signal(0), operation.signal(2), partition, operation.count);
    }
}

}  // namespace tarv
