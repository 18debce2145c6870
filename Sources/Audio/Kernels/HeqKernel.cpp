#include "Audio/Kernels/HeqKernel.h"

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/KernelLanes.h"
#include "Audio/Kernels/KernelNames.h"

namespace tarv {

namespace {

/// One side of the signal: its level bends a two-pole follower.
struct CFollower {
    double slow;  // g
    double fast;  // g'
};

struct CHeqBlock {
    double c0, c1, c2, c3, s1, s2;
    double p, q, r, t, k1, k2;
    CFollower positive, negative;
    double spareFloor[2];
    double spareOne[2];
};
static_assert(sizeof(CHeqBlock) == 20 * sizeof(double));

constexpr double kSmallest = 1e-10;

void follow(CFollower& follower, double level, double scale, double k) {
    const double a = maxOf(level, kSmallest) * scale;
    const double b = 2.0 * a;
    const double h = (1.0 - 24.0 / (b * (((3.0 + b) * b + 6.0) * b + 12.0) + 24.0)) / a;
    follower.fast = follower.fast + (h - follower.fast) * k;
    follower.slow = follower.slow + (follower.fast - follower.slow) * k;
}

void runHeq(COperation& operation) {
    double* const out = operation.signal(0);
    const double* const in = operation.signal(2);
    const double gain = operation.immediate;
    CHeqBlock f = *operation.operand<CHeqBlock>(1);
    for (int32_t i = 0; i < operation.count; ++i) {
        const double m = f.positive.slow * f.negative.slow * 0.25;
        const double u = f.s2;
        f.s2 = f.s1;
        f.s1 = f.s1 * f.c2 + f.c3 * u + in[i] * gain / m;
        const double y = (f.c0 * f.s2 + f.s1 + f.c1 * u) * m;
        out[i] = y;
        const double e = y * m;
        follow(f.positive, f.p + e, f.r, f.k1);
        follow(f.negative, f.q - e, f.t, f.k2);
    }
    *operation.operand<CHeqBlock>(1) = f;
}

void setCoefficients(CHeqBlock& f, const double* coefficients) {
    f.c0 = coefficients[0];
    f.c1 = coefficients[1];
    f.p = coefficients[2];
    f.q = coefficients[3];
    f.r = coefficients[4];
    f.t = coefficients[5];
    f.k1 = coefficients[6];
    f.k2 = coefficients[7];
    f.c2 = coefficients[8];
    f.c3 = coefficients[9];
}

void initHeq(COperation& operation) {
    CHeqBlock f = {};
    setCoefficients(f, operation.signal(1));
    f.positive = {1.0, 1.0};
    f.negative = {1.0, 1.0};
    f.spareFloor[0] = f.spareFloor[1] = 1e-20;
    f.spareOne[0] = f.spareOne[1] = 1.0;
    *operation.operand<CHeqBlock>(0) = f;
}

void updateHeq(COperation& operation) {
    CHeqBlock f = *operation.operand<CHeqBlock>(2);
    setCoefficients(f, operation.signal(1));
    *operation.operand<CHeqBlock>(0) = f;
}

}  // namespace

CSectionKernels* registerHeqKernel(CQPLEXContext& context, CSectionKernels* rows) {
    const int32_t run = context.registerKernel(KernelName::kHeq, runHeq, 3, 3);
    *rows = {context.registerKernel(KernelName::kHeqInit, initHeq, 2, 1),
             context.registerKernel(KernelName::kHeqUpdate, updateHeq, 3, 1),
             run,
             run,
             20,
             10};
    return rows + 1;
}

}  // namespace tarv
