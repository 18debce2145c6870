#include "UI/Controls/Buttons/CWheelSteps.h"

#include <cmath>

#include "Audio/Converters/CAudioParamConverterEnum.h"
#include "Audio/Converters/CAudioParamConverterFreq.h"
#include "Core/CGlobalSettings.h"
#include "UI/Binding/CParamBridge.h"
#include "UI/Binding/CUIParam.h"

namespace tarv {

namespace {

constexpr double kSemitonesAnOctave = 12.0;

}  // namespace

double CWheelSteps::wholeNotches(const CUIParam& param, int32_t element, double notches) {
    const bool goesOn = param_ == &param && element_ == element && rest_ * notches > 0.0;
    param_ = &param;
    element_ = element;
    rest_ = goesOn ? rest_ + notches : notches;
    const double whole = std::trunc(rest_);
    rest_ -= whole;
    return whole;
}

double CWheelSteps::turned(const CUIParam& param, int32_t element, double value, double notches, double precision,
                           double step) {
    if (step > 0.0) {
        return value + wholeNotches(param, element, notches) * step;
    }
    const CAudioParamConverter* const converter = param.bridge() ? param.bridge()->converter() : nullptr;
    if (dynamic_cast<const CAudioParamConverterEnum*>(converter)) {
        return std::round(value) + wholeNotches(param, element, notches);
    }
    const double way = notches * globalSettings().mouseWheelPrecision * precision;
    return dynamic_cast<const CAudioParamConverterFreq*>(converter) ? value * std::exp2(way / kSemitonesAnOctave)
                                                                    : value + way;
}

}  // namespace tarv
