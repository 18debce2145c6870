#pragma once

#include <cstdint>

#include "Core/CString.h"

namespace tarv {

class CAudioParamInfo;

/// Largest count of decimals that an attribute may ask for.
inline constexpr int32_t kMaxDecimals = 10;

/// 20 / ln 10: a linear factor's natural logarithm times this is its level in dB.
inline constexpr double kDecibelsPerNeper = 8.685889638065037;

/// The logarithmic map between the limits of a position, both above 0: equal steps of `norm` are equal ratios.
double logNormToValue(const CAudioParamInfo& info, int32_t index, double norm);
double logValueToNorm(const CAudioParamInfo& info, int32_t index, double value);

/// The square map: finer steps at the minimum.
double squareNormToValue(const CAudioParamInfo& info, int32_t index, double norm);
double squareValueToNorm(const CAudioParamInfo& info, int32_t index, double value);

/// A decimal number of a typed text (CString::toDouble), or `failed`. `ok` may be null.
double parseDecimal(const CString& text, double failed, bool* ok);

}  // namespace tarv
