#include "Audio/Kernels/CommonKernels.h"

#include <iterator>

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/CrossfadeKernels.h"
#include "Audio/Kernels/KernelLanes.h"

namespace tarv {

namespace {

/// The operands that an expression reads, in its order.
template <int32_t... J>
using From = std::integer_sequence<int32_t, J...>;

constexpr auto kAdd2 = [](auto a, auto b) { return a + b; };
constexpr auto kMultiply2 = [](auto a, auto b) { return a * b; };
constexpr auto kMax2 = [](auto a, auto b) { return maxOf(a, b); };

struct CCommonRow {
    const char* name;
    CKernelFunction function;
    int32_t operandCount;
    uint32_t writeMask;
    CKernelBatchFunction batch;
};

constexpr CCommonRow kCommonRows[] = {
    {"com.tarvelo.qplex.copy", kernelCopy, 2, 1, nullptr},
    {"com.tarvelo.qplex.addc", kernelAddc, 2, 1, nullptr},
    {"com.tarvelo.qplex.addcid", kernelAddcid, 2, 1, nullptr},
    {"com.tarvelo.qplex.add2", kernelAdd2, 3, 1, nullptr},
    {"com.tarvelo.qplex.add2i", kernelAdd2i, 2, 1, nullptr},
    {"com.tarvelo.qplex.add3", kernelAdd3, 4, 1, nullptr},
    {"com.tarvelo.qplex.add4", kernelAdd4, 5, 1, nullptr},
    {"com.tarvelo.qplex.sub2", kernelSub2, 3, 1, nullptr},
    {"com.tarvelo.qplex.max2", kernelMax2, 3, 1, nullptr},
    {"com.tarvelo.qplex.max2i", kernelMax2i, 2, 1, nullptr},
    {"com.tarvelo.qplex.max3", kernelMax3, 4, 1, nullptr},
    {"com.tarvelo.qplex.max4", kernelMax4, 5, 1, nullptr},
    {"com.tarvelo.qplex.min2", kernelMin2, 3, 1, nullptr},
    {"com.tarvelo.qplex.min3", kernelMin3, 4, 1, nullptr},
    {"com.tarvelo.qplex.min4", kernelMin4, 5, 1, nullptr},
    {"com.tarvelo.qplex.mix", kernelMix, 3, 1, nullptr},
    {"com.tarvelo.qplex.mix2", kernelMix2, 4, 1, nullptr},
    {"com.tarvelo.qplex.mixb", kernelMixb, 4, 1, nullptr},
    {"com.tarvelo.qplex.add2mul", kernelAdd2mul, 3, 1, nullptr},
    {"com.tarvelo.qplex.add3mul", kernelAdd3mul, 4, 1, nullptr},
    {"com.tarvelo.qplex.mulc", kernelMulc, 2, 1, nullptr},
    {"com.tarvelo.qplex.mulci", kernelMulci, 1, 1, nullptr},
    {"com.tarvelo.qplex.mul2", kernelMul2, 3, 1, nullptr},
    {"com.tarvelo.qplex.mul2i", kernelMul2i, 2, 1, nullptr},
    {"com.tarvelo.qplex.mul2addi", kernelMul2addi, 3, 1, nullptr},
    {"com.tarvelo.qplex.abs", kernelAbs, 2, 1, nullptr},
    {"com.tarvelo.qplex.sqrt", kernelSqrt, 2, 1, nullptr},
    {"com.tarvelo.qplex.fill0", kernelFill0, 1, 1, nullptr},
    {"com.tarvelo.qplex.fillc", kernelFillc, 1, 1, nullptr},
    {"com.tarvelo.qplex.filld", kernelFilld, 2, 1, nullptr},
    {"com.tarvelo.qplex.xfadei", kernelXfadeInit, 1, 1, nullptr},
    {"com.tarvelo.qplex.xfade", kernelXfade, 4, 3, kernelXfadeBatch},
};
static_assert(std::size(kCommonRows) == static_cast<size_t>(CCommonKernel::Count));

void fill(COperation& operation, double value) {
    double* const out = operation.signal(0);
    for (int32_t i = 0; i < operation.count; ++i) {
        out[i] = value;
    }
}

}  // namespace

void registerCommonKernels(CQPLEXContext& context) {
    int32_t kernel = 0;
    for (const CCommonRow& row : kCommonRows) {
        const int32_t number =
            context.registerKernel(row.name, row.function, row.operandCount, row.writeMask, 0, row.batch);
        context.setCommonKernel(static_cast<CCommonKernel>(kernel++), number);
    }
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
