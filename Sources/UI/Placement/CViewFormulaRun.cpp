#include "UI/Placement/CViewFormulaRun.h"

#include <algorithm>
#include <cmath>

#include "UI/Placement/CViewAreaNet.h"

namespace tarv {

namespace {

// Each token pushes one value at most, and takes one place.
constexpr int32_t kStackValues = CViewFormula::kMaxTokens;
constexpr float kLeastOfMany = -1e20f;
constexpr float kHalf = 0.5f;

/// The values that a program works on. A step that lacks operands breaks the program.
class CStack {
public:
    int32_t count() const { return count_; }
    float top() const { return values_[count_ - 1]; }
    void push(float value) { values_[count_++] = value; }
    bool needs(int32_t count) const { return count_ >= count; }
    float pop() { return values_[--count_]; }
    void replaceTop(float value) { values_[count_ - 1] = value; }
    bool keepLargest() {
        const float wanted = std::round(pop());
        if (!(wanted >= 0.0f) || wanted > static_cast<float>(count_)) {
            return false;
        }
        if (wanted == 0.0f) {
            push(0.0f);
            return true;
        }
        float largest = kLeastOfMany;
        for (int32_t n = static_cast<int32_t>(wanted); n > 0; --n) {
            largest = std::max(largest, pop());
        }
        push(largest);
        return true;
    }

private:
    int32_t count_ = 0;
    float values_[kStackValues];
};

bool applyToTwo(CStack& stack, CViewToken token) {
    if (!stack.needs(2)) {
        return false;
    }
    const float b = stack.pop();
    const float a = stack.top();
    switch (token) {
        case CViewToken::Divide:
            stack.replaceTop(a / b);
            return true;
        case CViewToken::Max:
            stack.replaceTop(std::max(a, b));
            return true;
        case CViewToken::Subtract:
            stack.replaceTop(a - b);
            return true;
        case CViewToken::Multiply:
            stack.replaceTop(a * b);
            return true;
        default:
            stack.replaceTop(a + b);
            return true;
    }
}

bool applyStep(CStack& stack, CViewToken token) {
    if (!stack.needs(1)) {
        return false;
    }
    switch (token) {
        case CViewToken::SafeDivide: {
            if (!stack.needs(3)) {
                return false;
            }
            const float c = stack.pop();
            const float b = stack.pop();
            stack.replaceTop(std::abs(b) > CViewAreaNet::kTolerance ? stack.top() / b : c);
            return true;
        }
        case CViewToken::Halve:
            stack.replaceTop(stack.top() * kHalf);
            return true;
        case CViewToken::Floor:
            stack.replaceTop(std::floor(stack.top()));
            return true;
        case CViewToken::Round:
            stack.replaceTop(std::round(stack.top()));
            return true;
        case CViewToken::MaxOf:
            return stack.keepLargest();
        case CViewToken::Divide:
        case CViewToken::Max:
        case CViewToken::Subtract:
        case CViewToken::Multiply:
        case CViewToken::Add:
            return applyToTwo(stack, token);
        default:
            return false;
    }
}

}  // namespace

bool runViewFormula(const CViewAreaNet& net, const uint16_t* tokens, int32_t count, float& result) {
    CStack stack;
    for (int32_t i = 0; i < count; ++i) {
        const auto token = static_cast<CViewToken>(tokens[i]);
        if (token == CViewToken::Constant) {
            stack.push(net.constant(tokens[++i]));
        } else if (token == CViewToken::Cell) {
            stack.push(net.value(tokens[++i]));
        } else if (!applyStep(stack, token)) {
            return false;
        }
    }
    if (stack.count() != 1) {
        return false;
    }
    result = stack.top();
    return true;
}

}  // namespace tarv
