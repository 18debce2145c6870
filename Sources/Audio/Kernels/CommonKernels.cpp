#include "Audio/Kernels/CommonKernels.h"

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/CrossfadeKernels.h"
#include "Audio/Kernels/KernelLanes.h"
#include "Audio/Kernels/KernelNames.h"

namespace tarv {

namespace {

/// The operands that an expression reads, in its order.
template <int32_t... J>
using From = std::integer_sequence<int32_t, J...>;

constexpr auto kAdd2 = [](auto a, auto b) { return a + b; };
constexpr auto kMultiply2 = [](auto a, auto b) { return a * b; };
constexpr auto kMax2 = [](auto a, auto b) { return maxOf(a, b); };

struct CCommonRow {
    CCommonKernel kernel;
    const char* name;
    CKernelFunction function;
    int32_t operandCount;
    uint32_t writeMask;
    CKernelBatchFunction batch = nullptr;
};

constexpr CCommonRow kCommonRows[] = {
    {CCommonKernel::Copy, KernelName::kCopy, kernelCopy, 2, 1},
    {CCommonKernel::Addc, KernelName::kAddc, kernelAddc, 2, 1},
    {CCommonKernel::Addcid, KernelName::kAddcid, kernelAddcid, 2, 1},
    {CCommonKernel::Add2, KernelName::kAdd2, kernelAdd2, 3, 1},
    {CCommonKernel::Add2i, KernelName::kAdd2i, kernelAdd2i, 2, 1},
    {CCommonKernel::Add3, KernelName::kAdd3, kernelAdd3, 4, 1},
    {CCommonKernel::Add4, KernelName::kAdd4, kernelAdd4, 5, 1},
    {CCommonKernel::Sub2, KernelName::kSub2, kernelSub2, 3, 1},
    {CCommonKernel::Max2, KernelName::kMax2, kernelMax2, 3, 1},
    {CCommonKernel::Max2i, KernelName::kMax2i, kernelMax2i, 2, 1},
    {CCommonKernel::Max3, KernelName::kMax3, kernelMax3, 4, 1},
    {CCommonKernel::Max4, KernelName::kMax4, kernelMax4, 5, 1},
    {CCommonKernel::Min2, KernelName::kMin2, kernelMin2, 3, 1},
    {CCommonKernel::Min3, KernelName::kMin3, kernelMin3, 4, 1},
    {CCommonKernel::Min4, KernelName::kMin4, kernelMin4, 5, 1},
    {CCommonKernel::Mix, KernelName::kMix, kernelMix, 3, 1},
    {CCommonKernel::Mix2, KernelName::kMix2, kernelMix2, 4, 1},
    {CCommonKernel::Mixb, KernelName::kMixb, kernelMixb, 4, 1},
    {CCommonKernel::Add2mul, KernelName::kAdd2mul, kernelAdd2mul, 3, 1},
    {CCommonKernel::Add3mul, KernelName::kAdd3mul, kernelAdd3mul, 4, 1},
    {CCommonKernel::Mulc, KernelName::kMulc, kernelMulc, 2, 1},
    {CCommonKernel::Mulci, KernelName::kMulci, kernelMulci, 1, 1},
    {CCommonKernel::Mul2, KernelName::kMul2, kernelMul2, 3, 1},
    {CCommonKernel::Mul2i, KernelName::kMul2i, kernelMul2i, 2, 1},
    {CCommonKernel::Mul2addi, KernelName::kMul2addi, kernelMul2addi, 3, 1},
    {CCommonKernel::Abs, KernelName::kAbs, kernelAbs, 2, 1},
    {CCommonKernel::Sqrt, KernelName::kSqrt, kernelSqrt, 2, 1},
    {CCommonKernel::Fill0, KernelName::kFill0, kernelFill0, 1, 1},
    {CCommonKernel::Fillc, KernelName::kFillc, kernelFillc, 1, 1},
    {CCommonKernel::Filld, KernelName::kFilld, kernelFilld, 2, 1},
    {CCommonKernel::Xfadei, KernelName::kXfadei, kernelXfadeInit, 1, 1},
    {CCommonKernel::Xfade, KernelName::kXfade, kernelXfade, 4, 3, kernelXfadeBatch},
};

/// Numbers follow the order of CCommonKernel.
constexpr bool isInOrder() {
    int32_t kernel = 0;
    for (const CCommonRow& row : kCommonRows) {
        if (row.kernel != static_cast<CCommonKernel>(kernel++)) {
            return false;
        }
    }
    return static_cast<CCommonKernel>(kernel) == CCommonKernel::Count;
}
static_assert(isInOrder());

void fill(COperation& operation, double value) {
    double* const out = operation.signal(0);
    for (int32_t i = 0; i < operation.count; ++i) {
        out[i] = value;
    }
}

}  // namespace

void registerCommonKernels(CQPLEXContext& context) {
    for (const CCommonRow& row : kCommonRows) {
        const int32_t number =
            context.registerKernel(row.name, row.function, row.operandCount, row.writeMask, 0, row.batch);
        context.setCommonKernel(row.kernel, number);
    }
    context.addEndKernel(context.commonKernel(CCommonKernel::Mulc), {.writes = 1});
}

void kernelCopy(COperation& operation) {
    mapOperands(operation, From<1>(), [](auto a) { return a; });
}

void kernelAddc(COperation& operation) {
    mapOperands(operation, From<1>(), [c = operation.immediate](auto a) { return a + c; });
}

void kernelAddcid(COperation& operation) {
    if (operation.count > 0) {
        mapOperands(operation, From<0>(), [c = *operation.signal(1)](auto a) { return a + c; });
    }
}

void kernelAdd2(COperation& operation) {
    mapOperands(operation, From<1, 2>(), kAdd2);
}

void kernelAdd2i(COperation& operation) {
    mapOperands(operation, From<0, 1>(), kAdd2);
}

void kernelAdd3(COperation& operation) {
    mapOperands(operation, From<1, 2, 3>(), [](auto a, auto b, auto c) { return a + b + c; });
}

void kernelAdd4(COperation& operation) {
    mapOperands(operation, From<1, 2, 3, 4>(), [](auto a, auto b, auto c, auto d) { return a + b + c + d; });
}

void kernelSub2(COperation& operation) {
    mapOperands(operation, From<1, 2>(), [](auto a, auto b) { return a - b; });
}

void kernelMax2(COperation& operation) {
    mapOperands(operation, From<1, 2>(), kMax2);
}

void kernelMax2i(COperation& operation) {
    mapOperands(operation, From<0, 1>(), kMax2);
}

void kernelMax3(COperation& operation) {
    mapOperands(operation, From<1, 2, 3>(), [](auto a, auto b, auto c) { return maxOf(maxOf(a, b), c); });
}

void kernelMax4(COperation& operation) {
    mapOperands(operation, From<1, 2, 3, 4>(),
                [](auto a, auto b, auto c, auto d) { return maxOf(maxOf(maxOf(a, b), c), d); });
}

void kernelMin2(COperation& operation) {
    mapOperands(operation, From<1, 2>(), [](auto a, auto b) { return minOf(a, b); });
}

void kernelMin3(COperation& operation) {
    mapOperands(operation, From<1, 2, 3>(), [](auto a, auto b, auto c) { return minOf(minOf(a, b), c); });
}

void kernelMin4(COperation& operation) {
    mapOperands(operation, From<1, 2, 3, 4>(),
                [](auto a, auto b, auto c, auto d) { return minOf(minOf(minOf(a, b), c), d); });
}

void kernelMix(COperation& operation) {
    mapOperands(operation, From<1, 2>(), [c = operation.immediate](auto a, auto b) { return (a - b) * c + b; });
}

void kernelMix2(COperation& operation) {
    if (operation.count > 0) {
        const double* const k = operation.signal(3);
        mapOperands(operation, From<1, 2>(), [k1 = k[0], k2 = k[1]](auto a, auto b) { return a * k1 + b * k2; });
    }
}

void kernelMixb(COperation& operation) {
    mapOperands(operation, From<1, 2, 3>(), [](auto a, auto b, auto c) { return (a - b) * c + b; });
}

void kernelAdd2mul(COperation& operation) {
    mapOperands(operation, From<1, 2>(), [c = operation.immediate](auto a, auto b) { return (a + b) * c; });
}

void kernelAdd3mul(COperation& operation) {
    mapOperands(operation, From<1, 2, 3>(),
                [c = operation.immediate](auto a1, auto a2, auto a3) { return (a1 + a2 + a3) * c; });
}

void kernelMulc(COperation& operation) {
    mapOperands(operation, From<1>(), [c = operation.immediate](auto a) { return a * c; });
}

void kernelMulci(COperation& operation) {
    mapOperands(operation, From<0>(), [c = operation.immediate](auto a) { return a * c; });
}

void kernelMul2(COperation& operation) {
    mapOperands(operation, From<1, 2>(), kMultiply2);
}

void kernelMul2i(COperation& operation) {
    mapOperands(operation, From<0, 1>(), kMultiply2);
}

void kernelMul2addi(COperation& operation) {
    mapOperands(operation, From<1, 2, 0>(), [](auto a, auto b, auto c) { return a * b + c; });
}

void kernelAbs(COperation& operation) {
    mapOperands(operation, From<1>(), [](auto a) { return absOf(a); });
}

void kernelSqrt(COperation& operation) {
    mapOperands(operation, From<1>(), [](auto a) { return sqrtOf(a); });
}

void kernelFill0(COperation& operation) {
    fill(operation, 0.0);
}

void kernelFillc(COperation& operation) {
    fill(operation, operation.immediate);
}

void kernelFilld(COperation& operation) {
    if (operation.count > 0) {
        fill(operation, *operation.signal(1));
    }
}

}  // namespace tarv
