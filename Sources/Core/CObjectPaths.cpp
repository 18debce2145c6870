// Paths: how objects find one another.

#include <iterator>

#include "Core/CApplication.h"
#include "Core/CObject.h"

namespace tarv {

namespace {

constexpr int32_t kSharedPrefixLength = 8;
// A variable may name a variable; one that comes back to itself ends here.
constexpr int32_t kMaxVariables = 32;

}  // namespace

CObject* CObject::firstChildNamed(const CString& baseName) const {
    auto base = childMap_.find(baseName);
    return base == childMap_.end() ? nullptr : base->second.begin()->second;
}

CObject* CObject::findChild(const CString& name) const {
    int32_t mark = name.indexOf('#');
    if (mark < 0) {
        return firstChildNamed(name);
    }
    auto base = childMap_.find(name.substring(0, mark));
    if (base == childMap_.end()) {
        return nullptr;
    }
    const auto& siblings = base->second;
    CString step = name.substring(mark + 1);
    if (step.isEmpty()) {
        return siblings.rbegin()->second;
    }
    bool fromFirst = step.at(0) == '+';
    if (!fromFirst && step.at(0) != '-') {
        auto found = siblings.find(CString::toInt(step));
        return found == siblings.end() ? nullptr : found->second;
    }
    int32_t count = CString::toInt(step.substring(1));
    if (count < 0 || static_cast<size_t>(count) >= siblings.size()) {
        return nullptr;
    }
    return fromFirst ? std::next(siblings.begin(), count)->second : std::next(siblings.rbegin(), count)->second;
}

CObject* CObject::findObject(const CString& path) const {
    return findObjectFrom(path, 0);
}

CObject* CObject::findObjectFrom(const CString& path, int32_t variables) const {
    if (path.isEmpty()) {
        return nullptr;
    }
    const CObject* current = root_;
    int32_t segment = 0;
    uint16_t first = path.at(0);
    if (first == '.' || first == '^' || first == '$') {
        current = this;
    } else if (path.startsWith("shared::")) {
        current = CApplication::sharedRoot();
        segment = kSharedPrefixLength;
    }
    bool isObject = false;  // whether the path so far ends behind an object, not within a name
    for (int32_t i = segment; i < path.length() && current; ++i) {
        uint16_t unit = path.at(i);
        isObject = false;
        if (unit == '/') {
            current = root_;
        } else if (unit == '^') {
            current = current->parent_;
            isObject = true;
        } else if (unit == '.') {
            isObject = i == segment;
            current = isObject ? current : current->findChild(path.substring(segment, i - segment));
        } else if (unit == '$') {
            return variables < kMaxVariables ? current->followVariable(path, i + 1, variables + 1) : nullptr;
        } else {
            continue;
        }
        segment = i + 1;
    }
    if (!current || segment == path.length()) {
        return isObject ? const_cast<CObject*>(current) : nullptr;
    }
    return current->findChild(path.substring(segment));
}

CObject* CObject::followVariable(const CString& path, int32_t nameStart, int32_t variables) const {
    int32_t nameEnd = path.indexOf('.', nameStart);
    nameEnd = nameEnd < 0 ? path.length() : nameEnd;
    CString expanded = getAttrString(path.substring(nameStart, nameEnd - nameStart));
    expanded += path.substring(nameEnd);
    return findObjectFrom(expanded, variables);
}

}  // namespace tarv
