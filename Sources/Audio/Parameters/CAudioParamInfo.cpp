#include "Audio/Parameters/CAudioParamInfo.h"

#include <algorithm>
#include <cmath>

#include "Audio/Parameters/CAudioParamConverter.h"
#include "Core/CObject.h"

namespace tarv {

namespace {

/// Limits of the ids of a string parameter.
constexpr double kStringMinimum = 0.0;
constexpr double kStringMaximum = 8388608.0;

}  // namespace

void CAudioParamInfo::setShape(int32_t elementSize, bool isString, int32_t flags) {
    elementSize_ = elementSize;
    isString_ = isString ? 1 : 0;
    flags_ = flags;
    minimums_.resize(elementSize);
    maximums_.resize(elementSize);
}

void CAudioParamInfo::setNames(const CString& visualName, const CString& displayPath, const CString& definitionPath) {
    visualName_ = visualName;
    displayPath_ = displayPath;
    definitionPath_ = definitionPath;
}

void CAudioParamInfo::setRange(int32_t position, double minimum, double maximum) {
    minimums_[position] = minimum;
    maximums_[position] = maximum;
    if (position == 0) {
        logMinimum_ = std::log(minimum);
        logRatio_ = std::log(maximum / minimum);
    }
}

double CAudioParamInfo::clamp(int32_t position, double value) const {
    const double low = std::min(minimums_[position], maximums_[position]);
    const double high = std::max(minimums_[position], maximums_[position]);
    return std::clamp(value, low, high);
}

CError* CAudioParamInfo::parse(const CObject& sharedRoot, const CTexts& texts) {
    TARV_TRY(parseConverterNames(sharedRoot, texts.converters));
    if (isString()) {
        for (int32_t i = 0; i < elementSize_; ++i) {
            setRange(i, kStringMinimum, kStringMaximum);
        }
    } else {
        TARV_TRY(convertMinMaxValues(texts.minValues, texts.maxValues));
    }
    TARV_TRY(parseDefValues(texts.defValues));
    return nullptr;
}

CError* CAudioParamInfo::parseConverterNames(const CObject& sharedRoot, const CString& text) {
    converterNames_ = text.split(' ');
    converters_.clear();
    for (const CString& name : converterNames_) {
        const auto* converter = sharedRoot.findObjectOf<CAudioParamConverter>("audio.paramcvt." + name);
        if (!converter) {
            TARV_FAIL(
                "@tarvstr_CAudioParamInfo_parseConverterNames_ConverterNotFound Audio parameter converter '%1' not "
                "found.",
                name);
        }
        converters_.append(converter);
    }
    if (converters_.count() < elementSize_) {
        TARV_FAIL(
            "@tarvstr_CAudioParamInfo_parseConverterNames_NotEnoughConverters Not enough converters defined %1 (should "
            "be %2).",
            CString::fromInt(converters_.count()), CString::fromInt(elementSize_));
    }
    return nullptr;
}

CError* CAudioParamInfo::convertMinMaxValues(const CString& minValues, const CString& maxValues) {
    const CArray<CString, 4> minTexts = minValues.split(' ');
    const CArray<CString, 4> maxTexts = maxValues.split(' ');
    for (int32_t i = 0; i < elementSize_; ++i) {
        if (i >= minTexts.count()) {
            TARV_FAIL(
                "@tarvstr_CAudioParamInfo_convertMinMaxValues_NotEnoughMin Not enough minimum values defined %1 "
                "(should be %2).",
                CString::fromInt(minTexts.count()), CString::fromInt(elementSize_));
        }
        if (i >= maxTexts.count()) {
            TARV_FAIL(
                "@tarvstr_CAudioParamInfo_convertMinMaxValues_NotEnoughMax Not enough maximum values defined %1 "
                "(should be %2).",
                CString::fromInt(maxTexts.count()), CString::fromInt(elementSize_));
        }
        setRange(i, converters_[i]->textToLimit(*this, i, minTexts[i], nullptr),
                 converters_[i]->textToLimit(*this, i, maxTexts[i], nullptr));
        if (maximums_[i] == minimums_[i]) {
            TARV_FAIL(
                "@tarvstr_CAudioParamInfo_convertMinMaxValues_Zero Zero default min-max values difference detected in "
                "element %1.",
                CString::fromInt(i));
        }
    }
    return nullptr;
}

CError* CAudioParamInfo::storeDefault(const CString& token, int32_t position, CAudioParamRow& row) {
    if (position >= elementSize_) {
        return nullptr;
    }
    if (isString()) {
        row.append(stringPool_.addString(token));
        return nullptr;
    }
    bool isOk = false;
    const double value = converters_[position]->textToValue(*this, position, token, &isOk);
    if (!isOk) {
        TARV_FAIL("@tarvstr_CAudioParamInfo_parseDefValues_Error Default values parsing error.");
    }
    row.append(value);
    return nullptr;
}

CError* CAudioParamInfo::parseDefValues(const CString& text) {
    rows_.clear();
    CAudioParamRow row;
    int32_t start = 0;
    int32_t position = 0;
    for (int32_t i = 0; i <= text.length() && !text.isEmpty(); ++i) {
        const uint16_t unit = i < text.length() ? text.at(i) : static_cast<uint16_t>(';');
        if (unit != '*' && unit != ',' && unit != ';') {
            continue;
        }
        TARV_TRY(storeDefault(text.substring(start, i - start), position, row));
        start = i + 1;
        ++position;
        if (unit == '*') {
            continue;
        }
        if (position < elementSize_) {
            TARV_FAIL("@tarvstr_CAudioParamInfo_parseDefValues_NoElements Not enough default elements at pos %1.",
                      CString::fromInt(i));
        }
        position = 0;
        if (unit == ';') {
            rows_.append(row);
            row.clear();
        }
    }
    return nullptr;
}

}  // namespace tarv
