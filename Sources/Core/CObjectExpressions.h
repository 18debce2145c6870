#pragma once

#include "Core/CAttribute.h"

namespace tarv {

class CObject;

/// Replaces the expressions in braces of a text that `object` is about to take as its attribute `name`, innermost and
/// last first; what an expression gives is scanned again, unless it is plain text. A value of another type, plain text,
/// or text without a complete expression stays as it is. What does not resolve is empty text. Thread: the one of the
/// object's tree.
void expandValue(CObject& object, const CString& name, CAttributeValue& value);

/// `attr`: of the object or its nearest ancestor that has one. `/path attr`: of the object at the path.
const CString& evalExpression(const CObject& object, const CString& expression);

/// `/path attr` or `name attr` (a child of the object or of its nearest ancestor that has one of that name): the
/// present value, and a link that keeps `targetAttr` of the object up to date.
const CString& evalLiveExpression(CObject& object, const CString& targetAttr, const CString& text);

}  // namespace tarv
