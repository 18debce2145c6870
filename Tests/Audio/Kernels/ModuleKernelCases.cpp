#include <cmath>
#include <cstring>
#include <numbers>

#include "Audio/Kernels/CTubeBlock.h"
#include "Tests/Audio/Kernels/KernelCases.h"

namespace tarv {

namespace {

const COperandRole kSignal = {COperandKind::Signal};

// Saturation: the block is read as the array that its layout promises

double curveAt(const double* curve, double x) {
    if (!(x > curve[2])) {
        return x;
    }
    if (x >= curve[4]) {
        return curve[1] * x;
    }
    const double d = x - curve[2];
    return std::sqrt(curve[5] - d * d) + x + curve[3];
}

void referenceMetaTube(COperation& o) {
    double* const p = o.signal(1);
    for (int32_t i = 0; i < o.count; ++i) {
        const double x = o.signal(2)[i] * p[6] + p[4];
        const double a = curveAt(p + 13, x);
        const double b = curveAt(p + 19, x);
        const double v = (p[11] + (o.signal(3)[i] - p[11]) * p[9]) * p[7] + p[5];
        const double y = (a - p[10]) + (b - a) * v;
        o.signal(0)[i] = p[12] * y;
        p[11] = y;
    }
}

void designReferenceCurve(double* curve, double ratio, double knee) {
    curve[0] = ratio > 0.9999 ? 0.9999 - 1.0 : ratio > 0.002 ? 0.0 - (1.0 - ratio) : -1.0;
    curve[1] = curve[0] + 1.0;
    curve[2] = knee * -0.5;
    const double u = (std::numbers::pi - std::atan(-curve[0])) * 0.5;
    curve[3] = std::tan(u) * curve[2];
    curve[4] = curve[2] + std::sin(2.0 * u) * (-curve[3]);
    curve[5] = curve[3] * curve[3];
}

void referenceMetaTubeInit(COperation& o) {
    double* const p = o.signal(0);
    designReferenceCurve(p + 13, p[0], p[2]);
    designReferenceCurve(p + 19, p[1], p[3]);
    const auto output = [p](double x, double v) {
        const double a = curveAt(p + 13, x);
        return a + (curveAt(p + 19, x) - a) * v;
    };
    p[10] = output(p[4], p[5]);
    p[12] = 1.0 / (output(p[6] * p[8] + p[4], p[8] * p[7] + p[5]) - p[10]);
    const double w = 2.0 * std::numbers::pi * p[26] / o.immediate;
    const double a = 2.0 - std::cos(w);
    const double c = 1.0 + std::sqrt(a * a - 1.0) - a;
    uint8_t isInverted;
    std::memcpy(&isInverted, p + 25, 1);
    p[9] = isInverted ? 0.0 - c : c;
    p[11] = 0.0;
}

/// Blocks whose knees lie well inside the signal, so that every branch is taken.
void fillTube(double* p) {
    std::memset(p, 0, 27 * sizeof(double));
    for (int32_t i = 0; i < 9; ++i) {
        p[i] = 0.55 + 0.4 * nextNoise();
    }
    p[4] = 0.4 * nextNoise();
    p[26] = 1000.0;
    const uint8_t isInverted = nextNoise() > 0.5;
    std::memcpy(p + 25, &isInverted, 1);
    COperation o;
    o.pointers[0] = p;
    o.immediate = 44100.0;
    referenceMetaTubeInit(o);
    p[11] = nextNoise();
}

// Noise: the seed is the first 32-bit word of its block

uint32_t stepSeed(COperation& o) {
    uint32_t& seed = *o.operand<uint32_t>(1);
    const uint32_t bit = (seed >> 23) & 1u;
    seed = seed * 30013u + 30011u;
    return bit;
}

void referenceDenorm(COperation& o) {
    for (int32_t i = 0; i < o.count; ++i) {
        o.signal(0)[i] = o.signal(2)[i] - 1e-11 + stepSeed(o) * 2e-11;
    }
}

void referenceDenormN(COperation& o) {
    for (int32_t i = 0; i < o.count; ++i) {
        o.signal(0)[i] = stepSeed(o) * 2e-11 - 1e-11;
    }
}

// Rates and mid/side

void referenceInterp2(COperation& o) {
    for (int32_t i = o.count - 1; i >= 0; --i) {  // from the end: the source may be the destination
        const double x = o.signal(1)[i];
        o.signal(0)[2 * i] = 2.0 * x;
        o.signal(0)[2 * i + 1] = 0.0;
    }
}

void referenceDecim2(COperation& o) {
    for (int32_t i = 0; i < o.count; ++i) {
        o.signal(0)[i] = o.signal(1)[2 * i];
    }
}

void referenceDecim2s(COperation& o) {
    for (int32_t i = 0; i < o.count; ++i) {
        o.signal(0)[i] = o.signal(1)[2 * i + 1];
    }
}

void referenceMsEnc(COperation& o) {
    for (int32_t i = 0; i < o.count; ++i) {
        const double a = o.signal(2)[i];
        const double b = o.signal(3)[i];
        const double d = (b - a) * -0.5;
        o.signal(0)[i] = b + d;
        o.signal(1)[i] = d;
    }
}

void referenceMsDec(COperation& o) {
    for (int32_t i = 0; i < o.count; ++i) {
        const double a = o.signal(2)[i];
        const double b = o.signal(3)[i];
        o.signal(0)[i] = a + b;
        o.signal(1)[i] = a - b;
    }
}

}  // namespace

std::vector<CKernelCase> moduleKernelCases() {
    const COperandRole tube = {COperandKind::Block, 27, fillTube};
    const COperandRole seed = {COperandKind::Block, 1};
    const COperandRole doubled = {COperandKind::DoubledSignal};
    return {
        {"metatube", {kSignal, tube, kSignal, kSignal}, referenceMetaTube},
        {"metatubei", {tube}, referenceMetaTubeInit, 0},
        {"metatubec", {tube}, [](COperation& o) { o.signal(0)[11] = 0.0; }, 0},
        {"denorm", {kSignal, seed, kSignal}, referenceDenorm},
        {"denormn", {kSignal, seed}, referenceDenormN},
        {"interp2", {doubled, kSignal}, referenceInterp2, 1, false},
        {"decim2", {kSignal, doubled}, referenceDecim2},
        {"decim2s", {kSignal, doubled}, referenceDecim2s},
        {"msenc", {kSignal, kSignal, kSignal, kSignal}, referenceMsEnc, 2},
        {"msdec", {kSignal, kSignal, kSignal, kSignal}, referenceMsDec, 2},
    };
}

}  // namespace tarv
