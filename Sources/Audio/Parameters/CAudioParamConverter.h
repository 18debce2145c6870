#pragma once

#include "Core/CObject.h"

namespace tarv {

class CAudioParamData;
class CAudioParamInfo;

/// How long a text may be.
enum class CAudioTextMode : int32_t { Full = 0, Short = 1, ShortNames = 2 };

/// A value to be shown: a number in real units, and for a text parameter the store in which the number is an id.
struct CAudioParamShown {
    CAudioParamShown(double shownNumber) : number(shownNumber) {}  // NOLINT: a plain number is the common argument
    CAudioParamShown(double shownNumber, const CAudioParamData& shownData) : number(shownNumber), data(&shownData) {}
    double number;
    const CAudioParamData* data = nullptr;
};

/// Converts one unit between real value (as the engine uses it), normalised value (0..1) and text. Parameters share it;
/// the range is that of `info`, at position `index` of the element. Any thread, read-only after the tree is built.
class CAudioParamConverter : public CObject {
public:
    [[nodiscard]] CError* init() override;

    /// Real value of a typed text, clamped; the minimum and false if it does not parse. `ok` may be null.
    virtual double textToValue(const CAudioParamInfo& info, int32_t index, const CString& text, bool* ok) const;
    /// As textToValue, but not clamped: it reads the limits themselves. On failure each class has its default result.
    virtual double textToLimit(const CAudioParamInfo& info, int32_t index, const CString& text, bool* ok) const = 0;
    /// Real value of what a person or a host types, clamped: a name of a state, whatever its case, or what textToValue
    /// reads of `typedNumber`. False, and `value` stays, for what does not parse and for nothing.
    bool typedToValue(const CAudioParamInfo& info, int32_t index, const CString& text, double& value) const;
    /// A typed number as textToValue reads it: without blanks around it, a leading "+" and the unit, whatever its case.
    static CString typedNumber(const CString& text, const CString& unit);
    /// Text of a real value, without the unit.
    virtual void valueToText(CString& result, const CAudioParamInfo& info, int32_t index, const CAudioParamShown& value,
                             CAudioTextMode mode) const = 0;
    /// Linear unless a subclass says otherwise; `norm` in 0..1.
    virtual double normToValue(const CAudioParamInfo& info, int32_t index, double norm) const;
    virtual double valueToNorm(const CAudioParamInfo& info, int32_t index, double value) const;
    /// A real value in the unit that a person reads (dB, %), not rounded, and back. The same number unless a subclass
    /// says otherwise; neither is clamped.
    virtual double valueToShown(double value) const { return value; }
    virtual double shownToValue(double shown) const { return shown; }

    /// The unit shown beside a value, may be empty.
    const CString& label() const { return label_; }

protected:
    /// The result of textToValue for a text that does not parse.
    virtual double failedValue(const CAudioParamInfo& info, int32_t index) const;
    /// Real value of a named state; false if there is none of that name.
    virtual bool findState(const CAudioParamInfo& info, int32_t index, const CString& name, double& value) const;
    /// Whether two texts are the same but for the case of their ASCII letters.
    static bool isSameName(const CString& one, const CString& other);

private:
    CString label_;
};

}  // namespace tarv
