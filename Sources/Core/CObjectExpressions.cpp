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

const CString& textOf(const CAttributeValue* value) {
    return value ? value->asString() : emptyText();
}

const CAttributeValue* findAttr(const CObject& object, const CString& name) {
    const auto found = object.attributes().find(name);
    return found == object.attributes().end() ? nullptr : &found->second;
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

const CAttributeValue* readExpression(const CObject& object, const CString& expression) {
    if (expression.isEmpty()) {
        return nullptr;
    }
    if (expression.at(0) == '/') {
        const int32_t blank = expression.indexOf(' ');
        const CString path = expression.substring(1, blank < 0 ? -1 : blank - 1);
        const CObject* source = object.findObject(path);
        return source && blank >= 0 ? findAttr(*source, expression.substring(blank + 1)) : nullptr;
    }
    for (const CObject* owner = &object; owner; owner = owner->parent()) {
        if (const CAttributeValue* value = findAttr(*owner, expression)) {
            return value;
        }
    }
    return nullptr;
}

const CAttributeValue* readLiveExpression(CObject& object, const CString& targetAttr, const CString& text) {
    const CArray<CString, 4> words = text.split(' ');
    if (words.count() < 2) {
        return nullptr;
    }
    CObject* source = findLiveSource(object, words[0]);
    if (!source || source->isReadOnly() || source == &object) {
        return nullptr;
    }
    source->linkObserver(object, words[1], targetAttr);
    return findAttr(*source, words[1]);
}

const CAttributeValue* evaluate(CObject& object, const CString& name, const CString& expression) {
    if (!expression.isEmpty() && expression.at(0) == '*') {
        return readLiveExpression(object, name, expression.substring(1));
    }
    return readExpression(object, expression);
}

CString withoutBraces(const CString& text) {
    CString result(text);
    for (int32_t i = 0; i < result.length(); ++i) {
        if (result.at(i) == '{' || result.at(i) == '}') {
            result.set(i, ' ');
        }
    }
    return result;
}

/// A text whose expressions are replaced one by one.
struct CExpansion {
    explicit CExpansion(const CString& given) : text(given), braces(given) {}

    /// Puts a value in the place of what stands from `open` to `close`; null is empty text.
    void replace(int32_t open, int32_t close, const CAttributeValue* value) {
        const CString result(textOf(value));
        const bool isPlain = value && value->isPlain();
        text = text.substring(0, open) + result + text.substring(close + 1);
        braces = braces.substring(0, open) + (isPlain ? withoutBraces(result) : result) + braces.substring(close + 1);
        isReplaced = true;
        holdsPlain = holdsPlain || isPlain;
    }

    CString text;
    CString braces;  ///< the text without the braces of plain values, for the search
    bool isReplaced = false;
    bool holdsPlain = false;
};

}  // namespace

void expandValue(CObject& object, const CString& name, CAttributeValue& value) {
    if (value.type() != CAttributeType::String || value.isPlain() || value.asString().indexOf('{') < 0) {
        return;
    }
    CExpansion expansion(value.asString());
    for (int32_t i = 0; i < kMaxReplacements && expansion.text.length() <= kMaxLength; ++i) {
        const int32_t open = expansion.braces.lastIndexOf('{');
        const int32_t close = open < 0 ? -1 : expansion.braces.indexOf('}', open);
        if (close < 0) {
            break;
        }
        expansion.replace(open, close, evaluate(object, name, expansion.text.substring(open + 1, close - open - 1)));
    }
    if (expansion.isReplaced) {
        value = expansion.holdsPlain ? CAttributeValue::fromPlainString(expansion.text)
                                     : CAttributeValue::fromString(expansion.text);
    }
}

const CString& evalExpression(const CObject& object, const CString& expression) {
    return textOf(readExpression(object, expression));
}

const CString& evalLiveExpression(CObject& object, const CString& targetAttr, const CString& text) {
    return textOf(readLiveExpression(object, targetAttr, text));
}

}  // namespace tarv
