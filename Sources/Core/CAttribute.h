#pragma once

#include <cstdint>
#include <map>

#include "Core/CString.h"

namespace tarv {

/// The type an attribute was given as; the others are made from it on demand.
enum class CAttributeType : uint32_t { Boolean = 0, Real = 1, Integer = 2, String = 3, Pointer = 4 };

/// One attribute's value with its lazily converted representations. Not safe by itself.
class CAttributeValue {
public:
    CAttributeValue() = default;  ///< an empty string
    static CAttributeValue fromBool(bool value);
    static CAttributeValue fromReal(double value);
    static CAttributeValue fromInt(int32_t value);
    static CAttributeValue fromString(const CString& value);
    /// Text in which braces are characters like any other: no object that takes it looks for expressions.
    static CAttributeValue fromPlainString(const CString& value);
    static CAttributeValue fromPointer(void* value);
    /// As assigning fromString(value), in the memory that a former text has had.
    void setString(const CString& value);

    CAttributeType type() const { return type_; }
    bool isPlain() const { return isPlain_; }
    /// Whether both were given as the same type with the same content. Reals are compared by their bits.
    bool isSame(const CAttributeValue& other) const;
    uint32_t validMask() const { return mask_; }
    /// Conversions that do not exist or fail give false, 0.0, 0, the empty string or null.
    bool asBool() const;
    double asReal() const;
    int32_t asInt() const;
    const CString& asString() const;
    void* asPointer() const;
    /// Makes every representation that exists, so that later reads store nothing and any thread may read.
    void convertAll() const;

private:
    mutable uint32_t mask_ = 8;
    CAttributeType type_ = CAttributeType::String;
    bool isPlain_ = false;
    mutable bool bool_ = false;
    mutable double real_ = 0.0;
    mutable int32_t int_ = 0;
    mutable CString string_;
    void* pointer_ = nullptr;
};

/// Attributes by name, in ascending order of the names.
using CAttributeMap =
    std::map<CString, CAttributeValue, std::less<CString>, CHeapAllocator<std::pair<const CString, CAttributeValue>>>;

}  // namespace tarv
