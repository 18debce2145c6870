#include "Core/CObjectExpressions.h"

#include "Core/CObject.h"

namespace tarv {

namespace {

// An object's name may hold braces, and so come back to itself. No definition comes near either limit.
constexpr int32_t kMaxReplacements = 256;
constexpr int32_t kMaxLength = 65536;

const CString& emptyText() {
    static const CString empty;
    return empty;
}

const CString& evaluate(CObject& object, const CString& name, const CString& expression) {
    if (!expression.isEmpty() && expression.at(0) == '*') {
        return evalLiveExpression(object, name, expression.substring(1));
    }
    return evalExpression(object, expression);
}

CObject* findLiveSource(CObject& object, const CString& word) {
    if (word.at(0) == '/') {
        return object.findObject(word.substring(1));
    }
    for (CObject* ancestor = &object; ancestor; ancestor = ancestor->parent()) {
        if (CObject* child = ancestor->firstChildNamed(word)) {
            return child;
        }
    }
    return nullptr;
}

}  // namespace

void expandValue(CObject& object, const CString& name, CAttributeValue& value) {
    if (value.type() != CAttributeType::String || value.asString().indexOf('{') < 0) {
        return;
    }
    CString text = value.asString();
    bool replaced = false;
    for (int32_t i = 0; i < kMaxReplacements && text.length() <= kMaxLength; ++i) {
        int32_t open = text.lastIndexOf('{');
        int32_t close = open < 0 ? -1 : text.indexOf('}', open);
        if (close < 0) {
            break;
        }
        CString expanded = text.substring(0, open);
        expanded += evaluate(object, name, text.substring(open + 1, close - open - 1));
        expanded += text.substring(close + 1);
        text = expanded;
        replaced = true;
    }
    if (replaced) {
        value = CAttributeValue::fromString(text);
    }
}

const CString& evalExpression(const CObject& object, const CString& expression) {
    if (expression.isEmpty()) {
        return emptyText();
    }
    if (expression.at(0) == '/') {
        int32_t blank = expression.indexOf(' ');
        CString path = expression.substring(1, blank < 0 ? -1 : blank - 1);
        const CObject* source = object.findObject(path);
        return source && blank >= 0 ? source->getAttrString(expression.substring(blank + 1)) : emptyText();
    }
    for (const CObject* owner = &object; owner; owner = owner->parent()) {
        if (owner->hasAttr(expression)) {
            return owner->getAttrString(expression);
        }
    }
    return emptyText();
}

const CString& evalLiveExpression(CObject& object, const CString& targetAttr, const CString& text) {
    CArray<CString, 4> words = text.split(' ');
    if (words.count() < 2) {
        return emptyText();
    }
    CObject* source = findLiveSource(object, words[0]);
    if (!source || source->isReadOnly() || source == &object) {
        return emptyText();
    }
    source->linkObserver(object, words[1], targetAttr);
    return source->getAttrString(words[1]);
}

}  // namespace tarv
