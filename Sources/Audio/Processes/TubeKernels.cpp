#include "Audio/Processes/TubeKernels.h"

#include <cmath>
#include <numbers>

#include "Audio/Processes/CQPLEXContext.h"
#include "Audio/Processes/CTubeBlock.h"
#include "Audio/Processes/KernelNames.h"
#include "Audio/Processes/KernelRecursion.h"

namespace tarv {

namespace {

template <class T>
struct CCurve {
    T slope, kneeStart, centreOffset, kneeEnd, radiusSquared;
};

double evaluate(const CCurve<double>& curve, double x) {
    if (!(x > curve.kneeStart)) {
        return x;
    }
    if (x >= curve.kneeEnd) {
        return curve.slope * x;
    }
    const double d = x - curve.kneeStart;
    return std::sqrt(curve.radiusSquared - d * d) + x + curve.centreOffset;
}

/// All three pieces, of which each lane takes its own; a root that is not wanted may be not a number.
CPair evaluate(const CCurve<CPair>& curve, CPair x) {
    const CPair d = x - curve.kneeStart;
    const CPair arc = sqrtOf(curve.radiusSquared - d * d) + x + curve.centreOffset;
    const CPair line = curve.slope * x;
    const __m128d above = _mm_cmpgt_pd(x.v, curve.kneeStart.v);
    const __m128d beyond = _mm_cmpge_pd(x.v, curve.kneeEnd.v);
    const __m128d bent = _mm_or_pd(_mm_and_pd(beyond, line.v), _mm_andnot_pd(beyond, arc.v));
    return _mm_or_pd(_mm_and_pd(above, bent), _mm_andnot_pd(above, x.v));
}

double member(double CTubeBlock::*field, const COperation& a) {
    return a.operand<CTubeBlock>(1)->*field;
}
CPair member(double CTubeBlock::*field, const COperation& a, const COperation& b) {
    return CPair(member(field, a), member(field, b));
}
double curveMember(CTubeCurve CTubeBlock::*curve, double CTubeCurve::*field, const COperation& a) {
    return a.operand<CTubeBlock>(1)->*curve.*field;
}
CPair curveMember(CTubeCurve CTubeBlock::*curve, double CTubeCurve::*field, const COperation& a, const COperation& b) {
    return CPair(curveMember(curve, field, a), curveMember(curve, field, b));
}

template <class T>
struct CTube {
    static constexpr int32_t kInputs = 2;
    CCurve<T> curveA, curveB;
    T gainI, biasI, gainV, biasV, feedCoef, restOutput, autoGain;
    T state;

    template <class... Operation>
    static void loadCurve(CCurve<T>& to, CTubeCurve CTubeBlock::*curve, Operation&... from) {
        to.slope = curveMember(curve, &CTubeCurve::slope, from...);
        to.kneeStart = curveMember(curve, &CTubeCurve::kneeStart, from...);
        to.centreOffset = curveMember(curve, &CTubeCurve::centreOffset, from...);
        to.kneeEnd = curveMember(curve, &CTubeCurve::kneeEnd, from...);
        to.radiusSquared = curveMember(curve, &CTubeCurve::radiusSquared, from...);
    }
    template <class... Operation>
    void load(Operation&... from) {
        loadCurve(curveA, &CTubeBlock::curveA, from...);
        loadCurve(curveB, &CTubeBlock::curveB, from...);
        gainI = member(&CTubeBlock::gainI, from...);
        biasI = member(&CTubeBlock::biasI, from...);
        gainV = member(&CTubeBlock::gainV, from...);
        biasV = member(&CTubeBlock::biasV, from...);
        feedCoef = member(&CTubeBlock::feedCoef, from...);
        restOutput = member(&CTubeBlock::restOutput, from...);
        autoGain = member(&CTubeBlock::autoGain, from...);
        state = member(&CTubeBlock::feedState, from...);
    }
    void store(COperation& a) { a.operand<CTubeBlock>(1)->feedState = state; }
    void store(COperation& a, COperation& b) requires std::is_same_v<T, CPair> {
        a.operand<CTubeBlock>(1)->feedState = state.first();
        b.operand<CTubeBlock>(1)->feedState = state.second();
    }
    T step(T in, T feed) {
        const T x = in * gainI + biasI;
        const T a = evaluate(curveA, x);
        const T b = evaluate(curveB, x);
        const T v = (state + (feed - state) * feedCoef) * gainV + biasV;
        state = (a - restOutput) + (b - a) * v;
        return autoGain * state;
    }
};

CTubeCurve designCurve(double ratio, double knee) {
    CTubeCurve curve;
    curve.bend = ratio > 0.9999 ? 0.9999 - 1.0 : ratio > 0.002 ? 0.0 - (1.0 - ratio) : -1.0;
    curve.slope = curve.bend + 1.0;
    curve.kneeStart = knee * -0.5;
    const double u = (std::numbers::pi - std::atan(-curve.bend)) * 0.5;
    curve.centreOffset = std::tan(u) * curve.kneeStart;
    curve.kneeEnd = curve.kneeStart + std::sin(2.0 * u) * (-curve.centreOffset);
    curve.radiusSquared = curve.centreOffset * curve.centreOffset;
    return curve;
}

double evaluate(const CTubeCurve& curve, double x) {
    return evaluate(
        CCurve<double>{curve.slope, curve.kneeStart, curve.centreOffset, curve.kneeEnd, curve.radiusSquared}, x);
}

double mixed(const CTubeBlock& block, double x, double v) {
    const double a = evaluate(block.curveA, x);
    return a + (evaluate(block.curveB, x) - a) * v;
}

}  // namespace

void registerTubeKernels(CQPLEXContext& context) {
    context.registerKernel(KernelName::kMetaTube, kernelMetaTube, 4, 3, 0, &CRecursion<CTube>::runBatch);
    context.registerKernel(KernelName::kMetaTubeInit, kernelMetaTubeInit, 1, 1);
    context.registerKernel(KernelName::kMetaTubeClear, kernelMetaTubeClear, 1, 1);
}

void kernelMetaTube(COperation& operation) {
    CRecursion<CTube>::run(operation);
}

void kernelMetaTubeInit(COperation& operation) {
    CTubeBlock& block = *operation.operand<CTubeBlock>(0);
    block.curveA = designCurve(block.ratioA, block.kneeA);
    block.curveB = designCurve(block.ratioB, block.kneeB);
    block.restOutput = mixed(block, block.biasI, block.biasV);
    const double p = block.autoGainPoint;
    block.autoGain =
        1.0 / (mixed(block, block.gainI * p + block.biasI, p * block.gainV + block.biasV) - block.restOutput);
    const double w = 2.0 * std::numbers::pi * block.feedFrequency / operation.immediate;
    const double a = 2.0 - std::cos(w);
    const double c = 1.0 + std::sqrt(a * a - 1.0) - a;
    block.feedCoef = block.feedInverted ? 0.0 - c : c;
    block.feedState = 0.0;
}

void kernelMetaTubeClear(COperation& operation) {
    operation.operand<CTubeBlock>(0)->feedState = 0.0;
}

}  // namespace tarv
