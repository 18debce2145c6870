#include "Core/CAttribute.h"

#include <cmath>
#include <cstring>

namespace tarv {

namespace {

constexpr uint32_t kBool = 1;
constexpr uint32_t kReal = 2;
constexpr uint32_t kInt = 4;
constexpr uint32_t kString = 8;
constexpr uint32_t kPointer = 16;

bool roundToInt(double value, int32_t& result) {
    double rounded = std::round(value);
    bool fits = rounded >= INT32_MIN && rounded <= INT32_MAX;
    result = fits ? static_cast<int32_t>(rounded) : 0;
    return fits;
}

}  // namespace

CAttributeValue CAttributeValue::fromBool(bool value) {
    CAttributeValue result;
    result.type_ = CAttributeType::Boolean;
    result.mask_ = kBool;
    result.bool_ = value;
    return result;
}

CAttributeValue CAttributeValue::fromReal(double value) {
    CAttributeValue result;
    result.type_ = CAttributeType::Real;
    result.mask_ = kReal;
    result.real_ = value;
    return result;
}

CAttributeValue CAttributeValue::fromInt(int32_t value) {
    CAttributeValue result;
    result.type_ = CAttributeType::Integer;
    result.mask_ = kInt;
    result.int_ = value;
    return result;
}

CAttributeValue CAttributeValue::fromString(const CString& value) {
    CAttributeValue result;
    result.string_ = value;
    return result;
}

void CAttributeValue::setString(const CString& value) {
    string_ = value;
    CString text = std::move(string_);
    *this = CAttributeValue();
    string_ = std::move(text);
}

CAttributeValue CAttributeValue::fromPlainString(const CString& value) {
    CAttributeValue result = fromString(value);
    result.isPlain_ = true;
    return result;
}

CAttributeValue CAttributeValue::fromPointer(void* value) {
    CAttributeValue result;
    result.type_ = CAttributeType::Pointer;
    result.mask_ = kPointer;
    result.pointer_ = value;
    return result;
}

bool CAttributeValue::isSame(const CAttributeValue& other) const {
    if (type_ != other.type_) {
        return false;
    }
    switch (type_) {
        case CAttributeType::Boolean:
            return bool_ == other.bool_;
        case CAttributeType::Real:
            return std::memcmp(&real_, &other.real_, sizeof(real_)) == 0;
        case CAttributeType::Integer:
            return int_ == other.int_;
        case CAttributeType::String:
            return isPlain_ == other.isPlain_ && string_ == other.string_;
        case CAttributeType::Pointer:
            return pointer_ == other.pointer_;
    }
    return false;
}

// A conversion that fails stores nothing, and a slot that was never filled holds its default.

bool CAttributeValue::asBool() const {
    if ((mask_ & kBool) == 0) {
        bool ok = type_ == CAttributeType::Integer;
        bool value = ok && int_ != 0;
        if (type_ == CAttributeType::String) {
            value = CString::toBool(string_, &ok);
        }
        if (ok) {
            bool_ = value;
            mask_ |= kBool;
        }
    }
    return bool_;
}

double CAttributeValue::asReal() const {
    if ((mask_ & kReal) == 0) {
        bool ok = type_ == CAttributeType::Integer;
        double value = int_;
        if (type_ == CAttributeType::String) {
            value = CString::toDouble(string_, &ok);
        }
        if (ok) {
            real_ = value;
            mask_ |= kReal;
        }
    }
    return real_;
}

int32_t CAttributeValue::asInt() const {
    if ((mask_ & kInt) == 0) {
        bool ok = type_ == CAttributeType::Boolean;
        int32_t value = ok && bool_ ? 1 : 0;
        if (type_ == CAttributeType::Real) {
            ok = roundToInt(real_, value);
        } else if (type_ == CAttributeType::String) {
            value = CString::toInt(string_, &ok);
        }
        if (ok) {
            int_ = value;
            mask_ |= kInt;
        }
    }
    return int_;
}

const CString& CAttributeValue::asString() const {
    if ((mask_ & kString) == 0 && type_ != CAttributeType::Pointer) {
        if (type_ == CAttributeType::Boolean) {
            string_ = bool_ ? "true" : "false";
        } else if (type_ == CAttributeType::Real) {
            string_ = CString::fromDouble(real_, 4);
        } else {
            string_ = CString::fromInt(int_);
        }
        mask_ |= kString;
    }
    return string_;
}

void* CAttributeValue::asPointer() const {
    return pointer_;
}

void CAttributeValue::convertAll() const {
    asBool();
    asReal();
    asInt();
    asString();
}

}  // namespace tarv
