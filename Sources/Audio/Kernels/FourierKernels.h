#pragma once

#include "Audio/Context/COperation.h"

namespace tarv {

class CQPLEXContext;

/// Registers `rdftf`, `rdfti`, `rdftm`, `rdftma` and `rdftsqr`. CRealTransform documents how spectra are packed.
void registerFourierKernels(CQPLEXContext& context);

/// Spectrum of a block. Operands: 0 destination, 1 a buffer that holds a CRealTransform*, 2 source. `count` is the
/// transform's size; any other does nothing. The transform must outlive the operation.
void kernelForwardTransform(COperation& operation);
/// Block of a spectrum. Operands and count are those of kernelForwardTransform.
void kernelInverseTransform(COperation& operation);
/// out = a x b bin by bin. Operands: 0 destination, 1 a, 2 b. `count`: numbers of a spectrum, even.
void kernelSpectrumProduct(COperation& operation);
/// out = out + a x b bin by bin. Operands are those of kernelSpectrumProduct.
void kernelSpectrumProductAdd(COperation& operation);
/// Squared magnitudes of the bins 0 to n/2, which is n/2 + 1 numbers. Operands: 0 destination, 1 spectrum. `count`: n,
/// even. Destination and spectrum may be the same.
void kernelSpectrumSquare(COperation& operation);

/// out = a x b, and out = out + a x b: what both kernels compute, for callers that have addresses.
void multiplySpectra(double* out, const double* a, const double* b, int32_t count);
void multiplyAddSpectra(double* out, const double* a, const double* b, int32_t count);

}  // namespace tarv
