#pragma once

#include <cstdint>

#include "Audio/Kernels/CTubeCurve.h"

namespace tarv {

/// Parameter block of the saturation kernels, a buffer of 27 64-bit floats. The module writes the fields of the first
/// group and the two last; `metatubei` designs the others from them.
struct CTubeBlock {
    double ratioA;  ///< slope of curve A above its knee, the reciprocal of the shown ratio
    double ratioB;
    double kneeA;  ///< width of the knee
    double kneeB;
    double biasI;          ///< working point on the curves
    double biasV;          ///< resting value of the mix between the curves
    double gainI;          ///< scale of the signal before the curves
    double gainV;          ///< how strongly the smoothed feed moves the mix
    double autoGainPoint;  ///< input level that comes out at 1.0

    double feedCoef;    ///< one-pole coefficient of the feed smoother
    double restOutput;  ///< output of the curves for silence
    double feedState;   ///< the previous sample's output before the auto-gain
    double autoGain;
    CTubeCurve curveA;
    CTubeCurve curveB;

    uint8_t feedInverted;
    uint8_t unused[7];
    double feedFrequency;  ///< Hz
};
static_assert(sizeof(CTubeBlock) == 27 * sizeof(double));

}  // namespace tarv
