#include <cmath>
#include <numbers>
#include <random>

#include "Tests/Audio/Kernels/KernelCases.h"

namespace tarv {

namespace {

const COperandRole kSignal = {COperandKind::Signal};

COperandRole numbers(int32_t count) {
    return {COperandKind::Block, count};
}

/// Loops `f(out, a, b, c, d, immediate)` of one sample over the operands; absent ones read as 0.
using CFormula = double (*)(double out, double a, double b, double c, double d, double k);

std::function<void(COperation&)> loopOf(CFormula f, int32_t operandCount) {
    return [f, operandCount](COperation& o) {
        for (int32_t i = 0; i < o.count; ++i) {
            const auto at = [&](int32_t j) { return j < operandCount ? o.signal(j)[i] : 0.0; };
            o.signal(0)[i] = f(at(0), at(1), at(2), at(3), at(4), o.immediate);
        }
    };
}

CKernelCase mapped(const char* name, int32_t operandCount, CFormula f) {
    return {name, std::vector<COperandRole>(static_cast<size_t>(operandCount), kSignal), loopOf(f, operandCount)};
}

double greater(double a, double b) {
    return a > b ? a : b;
}

double lesser(double a, double b) {
    return a < b ? a : b;
}

void referenceAddcid(COperation& o) {
    const double c = o.signal(1)[0];
    for (int32_t i = 0; i < o.count; ++i) {
        o.signal(0)[i] = o.signal(0)[i] + c;
    }
}

void referenceFilld(COperation& o) {
    const double c = o.signal(1)[0];
    for (int32_t i = 0; i < o.count; ++i) {
        o.signal(0)[i] = c;
    }
}

void referenceMix2(COperation& o) {
    const double k1 = o.signal(3)[0];
    const double k2 = o.signal(3)[1];
    for (int32_t i = 0; i < o.count; ++i) {
        o.signal(0)[i] = o.signal(1)[i] * k1 + o.signal(2)[i] * k2;
    }
}

void referenceXfadei(COperation& o) {
    const double d = std::numbers::pi / (o.count > 0 ? o.count : 1);
    const double p = (2.0 * o.immediate + 0.5) * std::numbers::pi;
    o.signal(0)[0] = std::sin(p) * 0.5;
    o.signal(0)[1] = std::sin(p - d) * 0.5;
    o.signal(0)[2] = 2.0 * std::cos(d);
}

void referenceXfade(COperation& o) {
    double* const r = o.signal(1);
    for (int32_t i = 0; i < o.count; ++i) {
        o.signal(0)[i] = (0.5 - r[0]) * o.signal(2)[i] + (0.5 + r[0]) * o.signal(3)[i];
        const double next = r[0] * r[2] - r[1];
        r[1] = r[0];
        r[0] = next;
    }
}

}  // namespace

double nextNoise() {
    static std::mt19937 random(20240607);
    static double last = 0.25;
    switch (random() % 16) {
        case 0:
            return 0.0;
        case 1:
            return -0.0;
        case 2:
            return last;
        default:
            last = static_cast<double>(random()) / 2147483648.0 - 1.0;
            return last;
    }
}

std::vector<CKernelCase> commonKernelCases() {
    return {
        mapped("copy", 2, [](double, double a, double, double, double, double) { return a; }),
        mapped("addc", 2, [](double, double a, double, double, double, double k) { return a + k; }),
        {"addcid", {kSignal, numbers(1)}, referenceAddcid},
        mapped("add2", 3, [](double, double a, double b, double, double, double) { return a + b; }),
        mapped("add2i", 2, [](double o, double a, double, double, double, double) { return o + a; }),
        mapped("add3", 4, [](double, double a, double b, double c, double, double) { return a + b + c; }),
        mapped("add4", 5, [](double, double a, double b, double c, double d, double) { return a + b + c + d; }),
        mapped("sub2", 3, [](double, double a, double b, double, double, double) { return a - b; }),
        mapped("max2", 3, [](double, double a, double b, double, double, double) { return greater(a, b); }),
        mapped("max2i", 2, [](double o, double a, double, double, double, double) { return greater(o, a); }),
        mapped("max3", 4,
               [](double, double a, double b, double c, double, double) { return greater(greater(a, b), c); }),
        mapped("max4", 5,
               [](double, double a, double b, double c, double d, double) {
                   return greater(greater(greater(a, b), c), d);
               }),
        mapped("min2", 3, [](double, double a, double b, double, double, double) { return lesser(a, b); }),
        mapped("min3", 4, [](double, double a, double b, double c, double, double) { return lesser(lesser(a, b), c); }),
        mapped(
            "min4", 5,
            [](double, double a, double b, double c, double d, double) { return lesser(lesser(lesser(a, b), c), d); }),
        mapped("mix", 3, [](double, double a, double b, double, double, double k) { return (a - b) * k + b; }),
        {"mix2", {kSignal, kSignal, kSignal, numbers(2)}, referenceMix2},
        mapped("mixb", 4, [](double, double a, double b, double c, double, double) { return (a - b) * c + b; }),
        mapped("add2mul", 3, [](double, double a, double b, double, double, double k) { return (a + b) * k; }),
        mapped("add3mul", 4, [](double, double a, double b, double c, double, double k) { return (a + b + c) * k; }),
        mapped("mulc", 2, [](double, double a, double, double, double, double k) { return a * k; }),
        mapped("mulci", 1, [](double o, double, double, double, double, double k) { return o * k; }),
        mapped("mul2", 3, [](double, double a, double b, double, double, double) { return a * b; }),
        mapped("mul2i", 2, [](double o, double a, double, double, double, double) { return o * a; }),
        mapped("mul2addi", 3, [](double o, double a, double b, double, double, double) { return a * b + o; }),
        mapped("abs", 2, [](double, double a, double, double, double, double) { return std::fabs(a); }),
        mapped("sqrt", 2, [](double, double a, double, double, double, double) { return std::sqrt(a); }),
        mapped("fill0", 1, [](double, double, double, double, double, double) { return 0.0; }),
        mapped("fillc", 1, [](double, double, double, double, double, double k) { return k; }),
        {"filld", {kSignal, numbers(1)}, referenceFilld},
        {"xfadei", {numbers(3)}, referenceXfadei, 0},
        {"xfade", {kSignal, numbers(3), kSignal, kSignal}, referenceXfade},
    };
}

std::vector<CKernelCase> allKernelCases() {
    std::vector<CKernelCase> cases = commonKernelCases();
    for (const auto& more : {filterKernelCases(), moduleKernelCases()}) {
        cases.insert(cases.end(), more.begin(), more.end());
    }
    return cases;
}

}  // namespace tarv
