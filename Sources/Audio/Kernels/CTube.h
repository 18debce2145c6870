#pragma once

#include <type_traits>

#include "Audio/Kernels/CCurveLanes.h"
#include "Audio/Kernels/CRecursion.h"
#include "Audio/Kernels/CTubeBlock.h"

namespace tarv {

inline double tubeMember(double CTubeBlock::*field, const COperation& a) {
    return a.operand<CTubeBlock>(1)->*field;
}
inline CPair tubeMember(double CTubeBlock::*field, const COperation& a, const COperation& b) {
    return CPair(tubeMember(field, a), tubeMember(field, b));
}
inline double curveMember(CTubeCurve CTubeBlock::*curve, double CTubeCurve::*field, const COperation& a) {
    return a.operand<CTubeBlock>(1)->*curve.*field;
}
inline CPair curveMember(CTubeCurve CTubeBlock::*curve, double CTubeCurve::*field, const COperation& a,
                         const COperation& b) {
    return CPair(curveMember(curve, field, a), curveMember(curve, field, b));
}

/// State of the saturation for CRecursion: one channel or two side by side; see TubeKernels.h.
template <class T>
struct CTube {
    static constexpr int32_t kInputs = 2;
    CCurveLanes<T> curveA, curveB;
    T gainI, biasI, gainV, biasV, feedCoef, restOutput, autoGain;
    T state;

    template <class... Operation>
    static void loadCurve(CCurveLanes<T>& to, CTubeCurve CTubeBlock::*curve, Operation&... from) {
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
        gainI = tubeMember(&CTubeBlock::gainI, from...);
        biasI = tubeMember(&CTubeBlock::biasI, from...);
        gainV = tubeMember(&CTubeBlock::gainV, from...);
        biasV = tubeMember(&CTubeBlock::biasV, from...);
        feedCoef = tubeMember(&CTubeBlock::feedCoef, from...);
        restOutput = tubeMember(&CTubeBlock::restOutput, from...);
        autoGain = tubeMember(&CTubeBlock::autoGain, from...);
        state = tubeMember(&CTubeBlock::feedState, from...);
    }
    void store(COperation& a) { a.operand<CTubeBlock>(1)->feedState = state; }
    void store(COperation& a, COperation& b) requires std::is_same_v<T, CPair> {
        a.operand<CTubeBlock>(1)->feedState = state.first();
        b.operand<CTubeBlock>(1)->feedState = state.second();
    }
    T step(T in, T feed) {
        const T x = in * gainI + biasI;
        const T a = curveAt(curveA, x);
        const T b = curveAt(curveB, x);
        const T v = (state + (feed - state) * feedCoef) * gainV + biasV;
        state = (a - restOutput) + (b - a) * v;
        return autoGain * state;
    }
};

}  // namespace tarv
