#include "Audio/Kernels/TubeKernels.h"

#include <cmath>
#include <numbers>

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/BandChain.h"
#include "Audio/Kernels/CTube.h"
#include "Audio/Kernels/KernelNames.h"

namespace tarv {

namespace {

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

double curveAt(const CTubeCurve& curve, double x) {
    return curveAt(
        CCurveLanes<double>{curve.slope, curve.kneeStart, curve.centreOffset, curve.kneeEnd, curve.radiusSquared}, x);
}

double mixed(const CTubeBlock& block, double x, double v) {
    const double a = curveAt(block.curveA, x);
    return a + (curveAt(block.curveB, x) - a) * v;
}

}  // namespace

void registerTubeKernels(CQPLEXContext& context) {
    context.registerKernel(KernelName::kMetaTube, kernelMetaTube, 4, 3, 0, &CRecursion<CTube>::runBatch);
    context.registerKernel(KernelName::kMetaTubeInit, kernelMetaTubeInit, 1, 1);
    context.registerKernel(KernelName::kMetaTubeClear, kernelMetaTubeClear, 1, 1);
    registerBandChain(context);
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
