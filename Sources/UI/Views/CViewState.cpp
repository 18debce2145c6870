#include "UI/Views/CViewState.h"

#include <algorithm>
#include <iterator>

namespace tarv {

namespace {

// What a state object is by itself; expressions in it mean this object.
const char* const kOwn[] = {"duration", "full-name", "morph-duration", "name", "state-name"};
// What it gives to the look of the view, not to an attribute.
const char* const kLook[] = {"color-state", "eq", "image-set-range"};

template <size_t N>
bool isOneOf(const char* const (&names)[N], const CString& name) {
    return std::any_of(std::begin(names), std::end(names), [&](const char* known) { return name == CString(known); });
}

}  // namespace

bool CViewState::isOverride(const CString& name) {
    return !isOneOf(kOwn, name) && !isOneOf(kLook, name);
}

void CViewState::prepareAttribute(const CString& name, CAttributeValue& value) {
    if (isOneOf(kOwn, name)) {
        CObject::prepareAttribute(name, value);
    }
}

}  // namespace tarv
