#include "Audio/Kernels/FourierKernels.h"

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/CRealTransform.h"
#include "Audio/Kernels/KernelNames.h"

namespace tarv {

namespace {

const CRealTransform* transformOf(const COperation& operation) {
    const CRealTransform* const transform = *operation.operand<const CRealTransform*>(1);
    return operation.count > 0 && transform->size() == operation.count ? transform : nullptr;
}

/// store(destination, value) for each number of the product.
template <class F>
void multiply(double* out, const double* a, const double* b, int32_t count, F store) {
    if (count < 2) {
        return;
    }
    store(out[0], a[0] * b[0]);
    store(out[1], a[1] * b[1]);
    for (int32_t i = 2; i + 1 < count; i += 2) {
        const double re = a[i] * b[i] - a[i + 1] * b[i + 1];
        const double im = a[i] * b[i + 1] + a[i + 1] * b[i];
        store(out[i], re);
        store(out[i + 1], im);
    }
}

}  // namespace

void registerFourierKernels(CQPLEXContext& context) {
    context.registerKernel(KernelName::kRdftF, kernelForwardTransform, 3, 1);
    context.registerKernel(KernelName::kRdftI, kernelInverseTransform, 3, 1);
    context.registerKernel(KernelName::kRdftM, kernelSpectrumProduct, 3, 1);
    context.registerKernel(KernelName::kRdftMa, kernelSpectrumProductAdd, 3, 1);
    context.registerKernel(KernelName::kRdftSqr, kernelSpectrumSquare, 2, 1);
}

void kernelForwardTransform(COperation& operation) {
    if (const CRealTransform* transform = transformOf(operation)) {
        transform->forward(operation.signal(0), operation.signal(2));
    }
}

void kernelInverseTransform(COperation& operation) {
    if (const CRealTransform* transform = transformOf(operation)) {
        transform->inverse(operation.signal(0), operation.signal(2));
    }
}

void multiplySpectra(double* out, const double* a, const double* b, int32_t count) {
    multiply(out, a, b, count, [](double& to, double value) { to = value; });
}

void multiplyAddSpectra(double* out, const double* a, const double* b, int32_t count) {
    multiply(out, a, b, count, [](double& to, double value) { to = to + value; });
}

void kernelSpectrumProduct(COperation& operation) {
    multiplySpectra(operation.signal(0), operation.signal(1), operation.signal(2), operation.count);
}

void kernelSpectrumProductAdd(COperation& operation) {
    multiplyAddSpectra(operation.signal(0), operation.signal(1), operation.signal(2), operation.count);
}

void kernelSpectrumSquare(COperation& operation) {
    double* const out = operation.signal(0);
    const double* const spectrum = operation.signal(1);
    const int32_t count = operation.count;
    if (count < 2) {
        return;
    }
    const double last = spectrum[1] * spectrum[1];
    out[0] = spectrum[0] * spectrum[0];
    for (int32_t k = 1; 2 * k + 1 < count; ++k) {
        out[k] = spectrum[2 * k] * spectrum[2 * k] + spectrum[2 * k + 1] * spectrum[2 * k + 1];
    }
    out[count / 2] = last;
}

}  // namespace tarv
