#pragma once

#include "Audio/Parameters/CAudioParamData.h"
#include "Core/CError.h"

namespace tarv {

class CAudioParamConverter;
class CObject;

/// One default row: the numbers of all its elements in one run.
using CAudioParamRow = CArray<double, 16>;

/// The description of a parameter without its value: shape, flags, units, range, defaults. A definition builds it and
/// the run-time parameter copies it; read-only afterwards (any thread). Converters belong to the shared tree.
class CAudioParamInfo {
public:
    /// Bits of the storage flags.
    enum Flag : int32_t { Persistent = 1, Storable = 2, Global = 4, Discrete = 8, SingleGroup = 16 };

    /// Texts of a definition from which the lists below are made.
    struct CTexts {
        CString converters;
        CString minValues;
        CString maxValues;
        CString defValues;
    };

    void setShape(int32_t elementSize, bool isString, int32_t flags);
    void setNames(const CString& visualName, const CString& displayPath, const CString& definitionPath);
    /// Finds the converters below `sharedRoot` and reads range and defaults with them. Call setShape before.
    [[nodiscard]] CError* parse(const CObject& sharedRoot, const CTexts& texts);

    int32_t elementSize() const { return elementSize_; }
    bool isString() const { return isString_ != 0; }
    int32_t flags() const { return flags_; }
    bool isPersistent() const { return (flags_ & Persistent) != 0; }
    bool isStorable() const { return (flags_ & Storable) != 0; }
    bool isGlobal() const { return (flags_ & Global) != 0; }
    bool isDiscrete() const { return (flags_ & Discrete) != 0; }
    bool isSingleGroup() const { return (flags_ & SingleGroup) != 0; }
    const CString& visualName() const { return visualName_; }
    /// A copy of the local name.
    const CString& displayPath() const { return displayPath_; }
    /// Full name of the definition in the shared tree.
    const CString& definitionPath() const { return definitionPath_; }
    /// The `id` of the registry that the parameter is assigned to explicitly, empty for none.
    const CString& registry() const { return registry_; }
    void setRegistry(const CString& id) { registry_ = id; }

    const CArray<CString, 4>& converterNames() const { return converterNames_; }
    /// Converter of a position in the element; `position` in 0..elementSize-1.
    const CAudioParamConverter* converter(int32_t position) const { return converters_[position]; }
    /// Limits of a position, real units. The minimum need not be the smaller number.
    double minimum(int32_t position) const { return minimums_[position]; }
    double maximum(int32_t position) const { return maximums_[position]; }
    /// Natural logarithms of the minimum of position 0, and of how often it goes into the maximum: a host changes that
    /// position in every block, and the C library of Windows takes its time. Not a number, or infinite, where the
    /// limits have none.
    double logMinimum() const { return logMinimum_; }
    double logRatio() const { return logRatio_; }
    void setRange(int32_t position, double minimum, double maximum);
    /// `value` clamped to the limits, of which either may be the smaller.
    double clamp(int32_t position, double value) const;

    int32_t defaultRowCount() const { return rows_.count(); }
    const CAudioParamRow& defaultRow(int32_t row) const { return rows_[row]; }
    /// The texts whose ids the default rows of a string parameter hold.
    const CAudioParamData& stringPool() const { return stringPool_; }

private:
    [[nodiscard]] CError* parseConverterNames(const CObject& sharedRoot, const CString& text);
    [[nodiscard]] CError* convertMinMaxValues(const CString& minValues, const CString& maxValues);
    [[nodiscard]] CError* parseDefValues(const CString& text);
    [[nodiscard]] CError* storeDefault(const CString& token, int32_t position, CAudioParamRow& row);
    const CString& errorContextName() const { return definitionPath_; }

    int32_t elementSize_ = 1;
    int32_t isString_ = 0;
    int32_t flags_ = 0;
    CString visualName_;
    CString displayPath_;
    CString definitionPath_;
    CString registry_;
    CArray<CString, 4> converterNames_;
    CArray<const CAudioParamConverter*, 4> converters_;
    CArray<double, 4> maximums_;
    CArray<double, 4> minimums_;
    double logMinimum_ = 0.0;
    double logRatio_ = 0.0;
    CArray<CAudioParamRow, 1> rows_;
    CAudioParamData stringPool_;
};

}  // namespace tarv
